#include "CPdb.h"

#include "CharSetConvert.h"

CPdb::~CPdb() {
    // Nothing destroyed here looks at another object, so the order is free.
    m_Texts.DeleteAll();
    m_Areas.DeleteAll();
    m_Comps.DeleteAll();
    m_Nets.DeleteAll();
    m_Parts.DeleteAll();
}

CRectD CPdb::GetBoundingRect() const {
    if (m_Outline.GetSize()) return m_Outline.GetBoundingRect();
    CRectD r;
    for (INT_PTR i = 0; i < m_Comps.GetSize(); ++i) r.Include(m_Comps.GetAt(i)->GetBoundingRect());
    for (INT_PTR i = 0; i < m_Nets.GetSize(); ++i) {
        const CPRouteNet& route = m_Nets.GetAt(i)->GetRoute();
        for (int j = 0; j < route.GetCount(); ++j) r.Include(route.GetAt(j)->GetBoundingRect());
    }
    for (INT_PTR i = 0; i < m_Areas.GetSize(); ++i) r.Include(m_Areas.GetAt(i)->GetBoundingRect());
    for (INT_PTR i = 0; i < m_Texts.GetSize(); ++i) r.Include(m_Texts.GetAt(i)->GetBoundingRect());
    return r;
}

CPPart* CPdb::AddPart(const CString& name, const CString& package) {
    auto slot = m_PartByName.emplace(name.str(), nullptr);
    if (!slot.second) return nullptr;
    CPPart* part = new CPPart(name, package);
    slot.first->second = part;
    part->m_Index = static_cast<int>(m_Parts.Add(part));
    return part;
}

CPPart* CPdb::FindPart(const CString& name) const {
    const auto found = m_PartByName.find(name.str());
    return found == m_PartByName.end() ? nullptr : found->second;
}

CPComp* CPdb::AddComp(const CString& reference, CPPart* part, CompSide side, const CPointD& position,
                      double rotation) {
    if (reference.IsEmpty()) return nullptr;
    auto slot = m_CompByRef.emplace(reference.str(), nullptr);
    if (!slot.second) return nullptr;
    CPComp* comp = new CPComp(reference, part, side, position, rotation);
    slot.first->second = comp;
    m_Comps.Add(comp);
    if (part) part->m_Comps.Add(comp);
    return comp;
}

CPComp* CPdb::FindComp(const CString& reference) const {
    const auto found = m_CompByRef.find(reference.str());
    return found == m_CompByRef.end() ? nullptr : found->second;
}

CPRefPin* CPdb::FindPin(const CString& reference, const CString& pinName) const {
    const CPComp* comp = FindComp(reference);
    return comp ? comp->FindPin(pinName) : nullptr;
}

int CPdb::GetTotalPinCount() const {
    int count = 0;
    for (INT_PTR i = 0; i < m_Comps.GetSize(); ++i) count += m_Comps.GetAt(i)->GetPinCount();
    return count;
}

bool CPdb::IsPadOnLayer(const CPRefPin& pin, int layer) const {
    if (!m_Layers.IsCopperLayer(layer)) return false;
    switch (pin.GetComp()->GetSide()) {
    case CompSide::NotPlaced:
        return false;
    case CompSide::Top:
        return pin.IsThroughHole() || layer == m_Layers.GetTopCopperIndex();
    case CompSide::Bottom:
        return pin.IsThroughHole() || layer == m_Layers.GetBottomCopperIndex();
    }
    return false;
}

CPNet* CPdb::AddNet(const CString& name) {
    if (name.IsEmpty()) return nullptr;
    auto slot = m_NetByName.emplace(name.str(), nullptr);
    if (!slot.second) return nullptr;
    CPNet* net = new CPNet(name);
    slot.first->second = net;
    net->m_Index = static_cast<int>(m_Nets.Add(net));
    return net;
}

CPNet* CPdb::FindNet(const CString& name) const {
    const auto found = m_NetByName.find(name.str());
    return found == m_NetByName.end() ? nullptr : found->second;
}

CPArea* CPdb::AddArea(int layer, CPNet* net) {
    CPArea* area = new CPArea(layer, net);
    m_Areas.Add(area);
    if (net) net->m_Areas.Add(area);
    return area;
}

CPText* CPdb::AddText(int layer, const CString& text, const CPointD& position, double height, double rotation) {
    CPText* item = new CPText(layer, text, position, height, rotation);
    m_Texts.Add(item);
    return item;
}

void CPdb::CharSetConvertor(int mode) {
    if (mode != 1) return;
    const auto convert = [](const CString& text) { return ConvertEucJpToShiftJis(text); };
    m_BoardName = convert(m_BoardName);
    m_Layers.ConvertNames(convert);
    for (INT_PTR i = 0; i < m_Parts.GetSize(); ++i) {
        CPPart* part = m_Parts.GetAt(i);
        part->m_Name = convert(part->m_Name);
        part->m_Package = convert(part->m_Package);
    }
    for (INT_PTR i = 0; i < m_Comps.GetSize(); ++i) {
        CPComp* comp = m_Comps.GetAt(i);
        comp->m_Reference = convert(comp->m_Reference);
        for (INT_PTR j = 0; j < comp->m_Pins.GetSize(); ++j) {
            CPRefPin* pin = comp->m_Pins.GetAt(j);
            pin->m_Name = convert(pin->m_Name);
        }
    }
    for (INT_PTR i = 0; i < m_Nets.GetSize(); ++i) {
        CPNet* net = m_Nets.GetAt(i);
        net->m_Name = convert(net->m_Name);
    }
    for (INT_PTR i = 0; i < m_Texts.GetSize(); ++i) {
        CPText* text = m_Texts.GetAt(i);
        text->m_Text = convert(text->m_Text);
    }
    RebuildLookups();
}

void CPdb::RebuildLookups() {
    m_PartByName.clear();
    m_CompByRef.clear();
    m_NetByName.clear();
    for (INT_PTR i = 0; i < m_Parts.GetSize(); ++i) m_PartByName.emplace(m_Parts.GetAt(i)->GetName().str(), m_Parts.GetAt(i));
    for (INT_PTR i = 0; i < m_Comps.GetSize(); ++i)
        m_CompByRef.emplace(m_Comps.GetAt(i)->GetReference().str(), m_Comps.GetAt(i));
    for (INT_PTR i = 0; i < m_Nets.GetSize(); ++i) m_NetByName.emplace(m_Nets.GetAt(i)->GetName().str(), m_Nets.GetAt(i));
}

void CPdb::Reserve(int parts, int comps, int nets) {
    if (parts > 0) m_PartByName.reserve(static_cast<size_t>(parts));
    if (comps > 0) m_CompByRef.reserve(static_cast<size_t>(comps));
    if (nets > 0) m_NetByName.reserve(static_cast<size_t>(nets));
}

bool CPdb::Validate(CString& problem) const {
    const auto badLayer = [this](int layer) { return !m_Layers.IsValidLayer(layer); };
    if (m_PartByName.size() != static_cast<size_t>(m_Parts.GetSize())) {
        problem = "two parts have the same name";
        return false;
    }
    if (m_CompByRef.size() != static_cast<size_t>(m_Comps.GetSize())) {
        problem = "two components have the same reference";
        return false;
    }
    if (m_NetByName.size() != static_cast<size_t>(m_Nets.GetSize())) {
        problem = "two nets have the same name";
        return false;
    }
    for (int i = 0; i < m_Layers.GetLayerCount(); ++i) {
        if (m_Layers.FindLayerIndex(m_Layers.GetLayer(i)->GetName()) != i) {
            problem = "two layers have the same name";
            return false;
        }
    }
    for (INT_PTR i = 0; i < m_Comps.GetSize(); ++i) {
        const CPComp* comp = m_Comps.GetAt(i);
        for (int j = 0; j < comp->GetPinCount(); ++j) {
            const CPRefPin* pin = comp->GetPin(j);
            if (pin->GetShape() != PadShape::Polygon) continue;
            bool sound = !pin->GetPadOutline().empty();
            for (const CArrayPointD& contour : pin->GetPadOutline()) sound = sound && contour.GetSize() >= 3;
            if (!sound) {
                problem.Format("pin %s-%s: a polygon pad needs an outline of contours of three points or more",
                               comp->GetReference().GetString(), pin->GetName().GetString());
                return false;
            }
        }
    }
    for (INT_PTR i = 0; i < m_Nets.GetSize(); ++i) {
        const CPRouteNet& route = m_Nets.GetAt(i)->GetRoute();
        for (int j = 0; j < route.GetCount(); ++j) {
            const CPRouteDObj* obj = route.GetAt(j);
            if (badLayer(obj->GetLayer()) || badLayer(obj->GetLastLayer()) || obj->GetLayer() > obj->GetLastLayer()) {
                problem.Format("net '%s': routing on a layer index outside the stack (%d..%d)",
                               m_Nets.GetAt(i)->GetName().GetString(), obj->GetLayer(), obj->GetLastLayer());
                return false;
            }
        }
    }
    for (INT_PTR i = 0; i < m_Areas.GetSize(); ++i) {
        if (badLayer(m_Areas.GetAt(i)->GetLayer())) {
            problem.Format("copper area %d: layer index %d outside the stack", static_cast<int>(i),
                           m_Areas.GetAt(i)->GetLayer());
            return false;
        }
    }
    for (INT_PTR i = 0; i < m_Texts.GetSize(); ++i) {
        if (badLayer(m_Texts.GetAt(i)->GetLayer())) {
            problem.Format("text %d: layer index %d outside the stack", static_cast<int>(i), m_Texts.GetAt(i)->GetLayer());
            return false;
        }
    }
    return true;
}
