// Records of the highlight commands. Colours are COLORREF values: red in bits 0-7,
// green in bits 8-15, blue in bits 16-23.
#pragma once

#include "CKPRCI__Base.h"

// Highlights named objects, optionally on specific layers.
class CKPRCI_Highlight : public CKPRCI__Base {
public:
    enum { ClassID = 3 };
    void Serialize(CArchive& ar) override {
        records::SerializeCommand(ar, ClassID, m_FunctionType, m_HighlightObjType, m_ObjectNameList, m_LayerNameType,
                                  m_SpecificLayerList, m_HighlightColor, m_Contrast, m_LayerHighlightColorFromAPI);
    }
    int GetClassID() const override { return ClassID; }

    // 0 plain, 1 dependent colour, 2 dependent colour on all layers, 3 specific layers.
    int GetFunctionType() const { return m_FunctionType; }
    void SetFunctionType(int v) { m_FunctionType = v; }
    int GetHighlightObjType() const { return m_HighlightObjType; }
    void SetHighlightObjType(const int& v) { m_HighlightObjType = v; }
    const CStringArray& GetObjectNameList() const { return m_ObjectNameList; }
    void SetObjectNameList(const CStringArray& v) { m_ObjectNameList.Copy(v); }
    // -1 when no layer list is given.
    int GetLayerNameType() const { return m_LayerNameType; }
    void SetLayerNameType(const int& v) { m_LayerNameType = v; }
    const CStringArray& GetSpecificLayerList() const { return m_SpecificLayerList; }
    void SetSpecificLayerList(const CStringArray& v) { m_SpecificLayerList.Copy(v); }
    DWORD GetHighlightColor() const { return m_HighlightColor; }
    void SetHighlightColor(DWORD v) { m_HighlightColor = v; }
    int GetContrast() const { return m_Contrast; }
    void SetContrast(int v) { m_Contrast = v; }
    // Non-zero: the layers take the colour given here rather than the viewer's layer colours.
    int IsLayerHighlightColorFromAPI() const { return m_LayerHighlightColorFromAPI; }
    void SetLayerHighlightColorFromAPI(int v) { m_LayerHighlightColorFromAPI = v; }

private:
    int m_FunctionType = 0;
    int m_HighlightObjType = 0;
    CStringArray m_ObjectNameList;
    int m_LayerNameType = 0;
    CStringArray m_SpecificLayerList;
    DWORD m_HighlightColor = 0;
    int m_Contrast = 0;
    int m_LayerHighlightColorFromAPI = 0;
};

// Sets the highlight colour.
class CKPRCI_Highlight_Color : public CKPRCI__Base {
public:
    enum { ClassID = 4 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_HighlightColor); }
    int GetClassID() const override { return ClassID; }

    DWORD GetHighlightColor() const { return m_HighlightColor; }
    void SetHighlightColor(DWORD v) { m_HighlightColor = v; }

private:
    DWORD m_HighlightColor = 0;
};

// Highlights pins of one component, optionally zooming to them.
class CKPRCI_Highlight_RefPin : public CKPRCI__Base {
public:
    enum { ClassID = 5 };
    void Serialize(CArchive& ar) override {
        records::SerializeCommand(ar, ClassID, m_RefName, m_PinNames, m_HighlightColor, m_Zoom,
                                  m_LayerHighlightColorFromAPI);
    }
    int GetClassID() const override { return ClassID; }

    CString GetRefName() const { return m_RefName; }
    void SetRefName(const CString& v) { m_RefName = v; }
    const CStringArray& GetPinNames() const { return m_PinNames; }
    void SetPinNames(const CStringArray& v) { m_PinNames.Copy(v); }
    DWORD GetHighlightColor() const { return m_HighlightColor; }
    void SetHighlightColor(DWORD v) { m_HighlightColor = v; }
    // 1: also zoom to the pins.
    int GetZoom() const { return m_Zoom; }
    void SetZoom(int v) { m_Zoom = v; }
    int IsLayerHighlightColorFromAPI() const { return m_LayerHighlightColorFromAPI; }
    void SetLayerHighlightColorFromAPI(int v) { m_LayerHighlightColorFromAPI = v; }

private:
    CString m_RefName;
    CStringArray m_PinNames;
    DWORD m_HighlightColor = 0;
    int m_Zoom = 0;
    int m_LayerHighlightColorFromAPI = 0;
};

// Highlights and zooms to the section of a net between two component pins.
class CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin : public CKPRCI__Base {
public:
    enum { ClassID = 6 };
    void Serialize(CArchive& ar) override {
        records::SerializeCommand(ar, ClassID, m_NetName, m_Ref1Name, m_Pin1Name, m_Ref2Name, m_Pin2Name);
    }
    int GetClassID() const override { return ClassID; }

    CString GetNetName() const { return m_NetName; }
    void SetNetName(const CString& v) { m_NetName = v; }
    CString GetRef1Name() const { return m_Ref1Name; }
    void SetRef1Name(const CString& v) { m_Ref1Name = v; }
    CString GetPin1Name() const { return m_Pin1Name; }
    void SetPin1Name(const CString& v) { m_Pin1Name = v; }
    CString GetRef2Name() const { return m_Ref2Name; }
    void SetRef2Name(const CString& v) { m_Ref2Name = v; }
    CString GetPin2Name() const { return m_Pin2Name; }
    void SetPin2Name(const CString& v) { m_Pin2Name = v; }

private:
    CString m_NetName;
    CString m_Ref1Name;
    CString m_Pin1Name;
    CString m_Ref2Name;
    CString m_Pin2Name;
};

// Highlights and zooms to segments of a net, by index.
class CKPRCI_Highlight_ZoomNetSegment : public CKPRCI__Base {
public:
    enum { ClassID = 7 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_NetName, m_SegmentIndex, m_Color); }
    int GetClassID() const override { return ClassID; }

    CString GetNetName() const { return m_NetName; }
    void SetNetName(const CString& v) { m_NetName = v; }
    CArrayN GetSegmentIndex() const { return m_SegmentIndex; }
    void SetSegmentIndex(const CArrayN& v) { m_SegmentIndex.Copy(v); }
    DWORD GetColor() const { return m_Color; }
    void SetColor(const DWORD& v) { m_Color = v; }

private:
    CString m_NetName;
    CArrayN m_SegmentIndex;
    DWORD m_Color = 0;
};
