// Layers of a board in stack order, from the top of the board to the bottom, with
// the viewer's name and the ECAD tool's name of each.
#pragma once

#include <string>
#include <unordered_map>

#include "CExPtrArray.h"
#include "CString.h"

// Paste, Drill and Document layers come from designs imported from ECAD exchange
// formats; boards written before they existed use the first four only.
enum class LayerKind { Copper = 0, Silk = 1, Mask = 2, Other = 3, Paste = 4, Drill = 5, Document = 6 };

// The side a layer or a component belongs to.
enum class BoardSide { Top = 0, Bottom = 1, None = 2 };

class CPLay {
public:
    CPLay(const CString& name, const CString& ecadName, LayerKind kind, int index)
        : m_Name(name), m_EcadName(ecadName), m_Kind(kind), m_Index(index) {}
    virtual ~CPLay() = default;

    // The viewer's name: unique on the board.
    const CString& GetName() const { return m_Name; }
    // The name of the layer in the ECAD tool the board came from; may repeat.
    const CString& GetEcadName() const { return m_EcadName; }
    LayerKind GetKind() const { return m_Kind; }
    bool IsCopper() const { return m_Kind == LayerKind::Copper; }
    // Position in the stack, 0 at the top.
    int GetIndex() const { return m_Index; }

private:
    friend class CPDBLayerManager;
    CString m_Name;
    CString m_EcadName;
    LayerKind m_Kind;
    int m_Index;
};

// Owns the layers. Objects of the board name a layer by its index in the stack.
class CPDBLayerManager {
public:
    CPDBLayerManager() = default;
    ~CPDBLayerManager() { m_Layers.DeleteAll(); }
    CPDBLayerManager(const CPDBLayerManager&) = delete;
    CPDBLayerManager& operator=(const CPDBLayerManager&) = delete;

    // Appends a layer below the others; null when the name is empty or taken.
    CPLay* AddLayer(const CString& name, const CString& ecadName, LayerKind kind);

    int GetLayerCount() const { return static_cast<int>(m_Layers.GetSize()); }
    // Null for an index outside the stack.
    CPLay* GetLayer(int index) const { return m_Layers.GetAt(index); }
    bool IsValidLayer(int index) const { return m_Layers.IsValidIndex(index); }
    bool IsCopperLayer(int index) const { return IsValidLayer(index) && GetLayer(index)->IsCopper(); }

    // Index of the layer of that viewer name, or -1.
    int FindLayerIndex(const CString& name) const;
    CPLay* FindLayer(const CString& name) const { return GetLayer(FindLayerIndex(name)); }
    // The first layer (from the top) of that ECAD name, or null.
    CPLay* FindLayerByEcadName(const CString& ecadName) const;

    int GetCopperLayerCount() const;
    // Index of the first / last copper layer of the stack, or -1 without copper.
    int GetTopCopperIndex() const;
    int GetBottomCopperIndex() const;
    // Copper: the outer layers give their side, inner ones None. Silk, mask, paste and
    // document layers above the top copper are Top, below the bottom copper Bottom.
    // Other and drill layers (a drill goes through the board): None.
    BoardSide GetLayerSide(int index) const;

    // Changes every name (viewer and ECAD) through convert and rebuilds the lookups.
    // When two names become equal, lookups find the upper layer.
    template <class Convert>
    void ConvertNames(Convert convert) {
        for (INT_PTR i = 0; i < m_Layers.GetSize(); ++i) {
            CPLay* layer = m_Layers.GetAt(i);
            layer->m_Name = convert(layer->m_Name);
            layer->m_EcadName = convert(layer->m_EcadName);
        }
        RebuildLookups();
    }

private:
    void RebuildLookups();

    CExPtrArray<CPLay*, CPLay*> m_Layers;
    std::unordered_map<std::string, int> m_ByName;
    std::unordered_map<std::string, int> m_ByEcadName;
};
