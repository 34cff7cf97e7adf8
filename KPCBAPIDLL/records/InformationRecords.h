// Records of the information queries and their replies.
#pragma once

#include "CKPRCI__Base.h"
#include "JoinText.h"

// Placement status of one component.
class CKPRCI_Information_GetReferencePlaceStatus : public CKPRCI__Base {
public:
    enum { ClassID = 14 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_RefName, m_Highlight); }
    int GetClassID() const override { return ClassID; }

    CString GetRefName() const { return m_RefName; }
    void SetRefName(const CString& v) { m_RefName = v; }
    // Non-zero: the viewer also highlights what it reports.
    int IsHighlight() const { return m_Highlight; }
    void SetHighlight(int v) { m_Highlight = v; }

private:
    CString m_RefName;
    int m_Highlight = 0;
};

class CKPRCI_Information_GetReferencePlaceStatus_RV : public CKPRCI__BaseRV {
public:
    void Serialize(CArchive& ar) override { records::SerializeReply(ar, *this, m_StatusOfPlace); }

    int GetStatusOfPlace() const { return m_StatusOfPlace; }
    void SetStatusOfPlace(int v) { m_StatusOfPlace = v; }

private:
    int m_StatusOfPlace = 0;
};

// Counts by board side the components named by reference designator.
class CKPRCI_Information_GetReferenceCountForPlace : public CKPRCI__Base {
public:
    enum { ClassID = 15 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_RefNames, m_Highlight); }
    int GetClassID() const override { return ClassID; }

    const CStringArray& GetRefNames() const { return m_RefNames; }
    void SetRefNames(const CStringArray& v) { m_RefNames.Copy(v); }
    int IsHighlight() const { return m_Highlight; }
    void SetHighlight(int v) { m_Highlight = v; }

private:
    CStringArray m_RefNames;
    int m_Highlight = 0;
};

// How many of the components asked about are on the top side, the bottom side, neither.
class CKPRCI_Information_GetReferenceCountForPlace_RV : public CKPRCI__BaseRV {
public:
    void Serialize(CArchive& ar) override { records::SerializeReply(ar, *this, m_TopCount, m_BtmCount, m_ElseCount); }

    int GetTopCount() const { return m_TopCount; }
    void SetTopCount(int v) { m_TopCount = v; }
    int GetBtmCount() const { return m_BtmCount; }
    void SetBtmCount(int v) { m_BtmCount = v; }
    int GetElseCount() const { return m_ElseCount; }
    void SetElseCount(int v) { m_ElseCount = v; }

private:
    int m_TopCount = 0;
    int m_BtmCount = 0;
    int m_ElseCount = 0;
};

// Counts by board side the components of the named parts.
class CKPRCI_Information_GetReferenceCountForPlaceOfPart : public CKPRCI__Base {
public:
    enum { ClassID = 16 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_PartNames, m_Highlight); }
    int GetClassID() const override { return ClassID; }

    const CStringArray& GetPartNames() const { return m_PartNames; }
    void SetPartNames(const CStringArray& v) { m_PartNames.Copy(v); }
    int IsHighlight() const { return m_Highlight; }
    void SetHighlight(int v) { m_Highlight = v; }

private:
    CStringArray m_PartNames;
    int m_Highlight = 0;
};

// The same counts, for the components of the parts asked about.
class CKPRCI_Information_GetReferenceCountForPlaceOfPart_RV : public CKPRCI_Information_GetReferenceCountForPlace_RV {};

// Pin pitch of a component (FunctionType 0) or of a two-pin component (1), in the given unit.
class CKPRCI_Information_GetPinPitch : public CKPRCI__Base {
public:
    enum { ClassID = 17 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_FunctionType, m_RefName, m_Unit); }
    int GetClassID() const override { return ClassID; }

    int GetFunctionType() const { return m_FunctionType; }
    void SetFunctionType(int v) { m_FunctionType = v; }
    CString GetRefName() const { return m_RefName; }
    void SetRefName(const CString& v) { m_RefName = v; }
    int GetUnit() const { return m_Unit; }
    void SetUnit(int v) { m_Unit = v; }

private:
    int m_FunctionType = 0;
    CString m_RefName;
    int m_Unit = 0;
};

class CKPRCI_Information_GetPinPitch_RV : public CKPRCI__BaseRV {
public:
    void Serialize(CArchive& ar) override { records::SerializeReply(ar, *this, m_PinPitch); }

    double GetPinPitch() const { return m_PinPitch; }
    void SetPinPitch(const double& v) { m_PinPitch = v; }

private:
    double m_PinPitch = 0;
};

// Pin count of a part (FunctionType 1) or of a component by reference designator (0).
class CKPRCI_Information_GetCompPinCount : public CKPRCI__Base {
public:
    enum { ClassID = 18 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_FunctionType, m_ObjectName); }
    int GetClassID() const override { return ClassID; }

    int GetFunctionType() const { return m_FunctionType; }
    void SetFunctionType(int v) { m_FunctionType = v; }
    CString GetObjectName() const { return m_ObjectName; }
    void SetObjectName(const CString& v) { m_ObjectName = v; }

private:
    int m_FunctionType = 0;
    CString m_ObjectName;
};

class CKPRCI_Information_GetCompPinCount_RV : public CKPRCI__BaseRV {
public:
    void Serialize(CArchive& ar) override { records::SerializeReply(ar, *this, m_PinCount); }

    int GetPinCount() const { return m_PinCount; }
    void SetPinCount(int v) { m_PinCount = v; }

private:
    int m_PinCount = 0;
};

// The net through one component pin, and every component pin on it.
class CKPRCI_Information_GetPinListInfoOfNet_RefPin : public CKPRCI__Base {
public:
    enum { ClassID = 19 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_RefName, m_PinName); }
    int GetClassID() const override { return ClassID; }

    CString GetRefName() const { return m_RefName; }
    void SetRefName(const CString& v) { m_RefName = v; }
    CString GetPinName() const { return m_PinName; }
    void SetPinName(const CString& v) { m_PinName = v; }

private:
    CString m_RefName;
    CString m_PinName;
};

// ErrorCode -200: the viewer found no such pin.
class CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV : public CKPRCI__BaseRV {
public:
    void Serialize(CArchive& ar) override { records::SerializeReply(ar, *this, m_NetName, m_RefPinNames); }

    CString GetNetName() const { return m_NetName; }
    void SetNetName(const CString& v) { m_NetName = v; }
    void GetRefPinNames(CStringArray& out) const { out.Copy(m_RefPinNames); }
    void SetRefPinNames(const CStringArray& v) { m_RefPinNames.Copy(v); }
    // The entries with the delimiter between them.
    CString GetRefPinNames(const CString& delimiter) const { return records::Join(m_RefPinNames, delimiter); }

private:
    CString m_NetName;
    CStringArray m_RefPinNames;
};
