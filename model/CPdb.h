// The board database: one board with its outline, layer stack, parts, components
// and pins, nets with their routing, copper areas and texts.
//
// The board creates and owns every object; objects are added through it so that the
// lookups by reference, part, net and layer name (hash maps) stay in step. Pointers
// handed out stay valid for the life of the board. Lengths are millimetres.
#pragma once

#include <string>
#include <unordered_map>

#include "CExPtrArray.h"
#include "CPDBLayerManager.h"
#include "CString.h"
#include "PdbGeometry.h"
#include "PdbObjects.h"

class CPdb {
public:
    CPdb() = default;
    virtual ~CPdb();
    CPdb(const CPdb&) = delete;
    CPdb& operator=(const CPdb&) = delete;

    // ---- Board ----
    const CString& GetBoardName() const { return m_BoardName; }
    void SetBoardName(const CString& name) { m_BoardName = name; }
    // The board's outline as a closed polygon.
    CArrayPointD& GetOutline() { return m_Outline; }
    const CArrayPointD& GetOutline() const { return m_Outline; }
    // Extent of the outline, or of everything on the board when there is no outline.
    CRectD GetBoundingRect() const;

    // ---- Layers ----
    CPDBLayerManager& GetLayerManager() { return m_Layers; }
    const CPDBLayerManager& GetLayerManager() const { return m_Layers; }
    CPLay* FindLayer(const CString& name) const { return m_Layers.FindLayer(name); }

    // ---- Parts ----
    // Null when the name is taken.
    CPPart* AddPart(const CString& name, const CString& package);
    CPPart* FindPart(const CString& name) const;
    int GetPartCount() const { return static_cast<int>(m_Parts.GetSize()); }
    CPPart* GetPart(int index) const { return m_Parts.GetAt(index); }

    // ---- Components ----
    // part may be null. Null when the reference is empty or taken.
    CPComp* AddComp(const CString& reference, CPPart* part, CompSide side, const CPointD& position,
                    double rotation);
    CPComp* FindComp(const CString& reference) const;
    int GetCompCount() const { return static_cast<int>(m_Comps.GetSize()); }
    CPComp* GetComp(int index) const { return m_Comps.GetAt(index); }
    // The pin of that reference and pin name, or null.
    CPRefPin* FindPin(const CString& reference, const CString& pinName) const;
    int GetTotalPinCount() const;
    // Whether the pin's pad lies on that layer: a through-hole pad on every copper
    // layer, another on the outer copper layer of its component's side, an unplaced
    // component's on none.
    bool IsPadOnLayer(const CPRefPin& pin, int layer) const;

    // ---- Nets ----
    // Null when the name is empty or taken.
    CPNet* AddNet(const CString& name);
    CPNet* FindNet(const CString& name) const;
    int GetNetCount() const { return static_cast<int>(m_Nets.GetSize()); }
    CPNet* GetNet(int index) const { return m_Nets.GetAt(index); }

    // ---- Drawing objects ----
    // A copper area on layer; net may be null. The area is also listed by its net.
    CPArea* AddArea(int layer, CPNet* net);
    int GetAreaCount() const { return static_cast<int>(m_Areas.GetSize()); }
    CPArea* GetArea(int index) const { return m_Areas.GetAt(index); }
    CPText* AddText(int layer, const CString& text, const CPointD& position, double height, double rotation);
    int GetTextCount() const { return static_cast<int>(m_Texts.GetSize()); }
    CPText* GetText(int index) const { return m_Texts.GetAt(index); }

    // Makes room for that many parts, components and nets (for loaders).
    void Reserve(int parts, int comps, int nets);

    // Checks what the file forms rely on: every layer index names a layer of the stack,
    // vias run downwards (first layer not below the last), names of layers, parts,
    // components and nets are unique, polygon pads have an outline whose contours
    // have three points or more. false with the first problem found.
    bool Validate(CString& problem) const;

    // Converts every text of the board: names of the board, layers, parts, packages,
    // components, pins and nets, and the texts. Mode 1: EUC-JP to Shift-JIS. Other
    // modes change nothing. The lookups are rebuilt; when two names become equal,
    // lookups find the one added first.
    void CharSetConvertor(int mode);

private:
    void RebuildLookups();

    CString m_BoardName;
    CArrayPointD m_Outline;
    CPDBLayerManager m_Layers;
    CExPtrArray<CPPart*, CPPart*> m_Parts;
    CExPtrArray<CPComp*, CPComp*> m_Comps;
    CExPtrArray<CPNet*, CPNet*> m_Nets;
    CExPtrArray<CPArea*, CPArea*> m_Areas;
    CExPtrArray<CPText*, CPText*> m_Texts;
    std::unordered_map<std::string, CPPart*> m_PartByName;
    std::unordered_map<std::string, CPComp*> m_CompByRef;
    std::unordered_map<std::string, CPNet*> m_NetByName;
};
