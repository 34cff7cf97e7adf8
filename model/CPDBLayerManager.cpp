#include "CPDBLayerManager.h"

CPLay* CPDBLayerManager::AddLayer(const CString& name, const CString& ecadName, LayerKind kind) {
    if (name.IsEmpty() || m_ByName.count(name.str())) return nullptr;
    const int index = GetLayerCount();
    CPLay* layer = new CPLay(name, ecadName, kind, index);
    m_Layers.Add(layer);
    m_ByName.emplace(name.str(), index);
    m_ByEcadName.emplace(ecadName.str(), index);  // keeps the upper layer of a repeated name
    return layer;
}

int CPDBLayerManager::FindLayerIndex(const CString& name) const {
    const auto found = m_ByName.find(name.str());
    return found == m_ByName.end() ? -1 : found->second;
}

CPLay* CPDBLayerManager::FindLayerByEcadName(const CString& ecadName) const {
    const auto found = m_ByEcadName.find(ecadName.str());
    return found == m_ByEcadName.end() ? nullptr : GetLayer(found->second);
}

int CPDBLayerManager::GetCopperLayerCount() const {
    int count = 0;
    for (int i = 0; i < GetLayerCount(); ++i) count += GetLayer(i)->IsCopper() ? 1 : 0;
    return count;
}

int CPDBLayerManager::GetTopCopperIndex() const {
    for (int i = 0; i < GetLayerCount(); ++i) {
        if (GetLayer(i)->IsCopper()) return i;
    }
    return -1;
}

int CPDBLayerManager::GetBottomCopperIndex() const {
    for (int i = GetLayerCount() - 1; i >= 0; --i) {
        if (GetLayer(i)->IsCopper()) return i;
    }
    return -1;
}

BoardSide CPDBLayerManager::GetLayerSide(int index) const {
    const CPLay* layer = GetLayer(index);
    if (!layer || layer->GetKind() == LayerKind::Other || layer->GetKind() == LayerKind::Drill) return BoardSide::None;
    const int top = GetTopCopperIndex(), bottom = GetBottomCopperIndex();
    if (top < 0) return BoardSide::None;
    if (layer->IsCopper()) {
        if (index == top) return BoardSide::Top;
        if (index == bottom) return BoardSide::Bottom;
        return BoardSide::None;
    }
    if (index < top) return BoardSide::Top;
    if (index > bottom) return BoardSide::Bottom;
    return BoardSide::None;
}

void CPDBLayerManager::RebuildLookups() {
    m_ByName.clear();
    m_ByEcadName.clear();
    for (int i = 0; i < GetLayerCount(); ++i) {
        m_ByName.emplace(GetLayer(i)->GetName().str(), i);
        m_ByEcadName.emplace(GetLayer(i)->GetEcadName().str(), i);
    }
}
