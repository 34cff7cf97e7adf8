// Roots of the record tree. A command record's image is its class id, then its
// fields in member order; a reply record's image is its error code, then its fields.
#pragma once

#include "CArchive.h"
#include "CArrayD.h"
#include "CArrayN.h"
#include "CString.h"
#include "CStringArray.h"
#include "WinTypes.h"

// Root of every command record.
class CKPRCI__Base {
public:
    CKPRCI__Base() = default;
    CKPRCI__Base(const CKPRCI__Base&) {}
    CKPRCI__Base& operator=(const CKPRCI__Base&) { return *this; }
    virtual ~CKPRCI__Base() = default;
    // Store: writes the class id, then the fields. Load: reads them back; an image of
    // another class raises CArchiveException.
    virtual void Serialize(CArchive& ar) = 0;
    virtual int GetClassID() const = 0;
};

// Root of every reply record: carries the viewer's outcome.
class CKPRCI__BaseRV {
public:
    CKPRCI__BaseRV() = default;
    virtual ~CKPRCI__BaseRV() = default;
    virtual void Serialize(CArchive& ar);

    int GetErrorCode() const { return m_ErrorCode; }
    void SetErrorCode(int code) { m_ErrorCode = code; }

private:
    int m_ErrorCode = 0;
};

// Field-by-field serialisation shared by all records.
namespace records {

inline void Field(CArchive& ar, int& v) { if (ar.IsStoring()) ar << v; else ar >> v; }
inline void Field(CArchive& ar, DWORD& v) {
    uint32_t raw = static_cast<uint32_t>(v);
    if (ar.IsStoring()) ar << raw; else { ar >> raw; v = raw; }
}
inline void Field(CArchive& ar, double& v) { if (ar.IsStoring()) ar << v; else ar >> v; }
inline void Field(CArchive& ar, CString& v) { if (ar.IsStoring()) ar << v; else ar >> v; }
inline void Field(CArchive& ar, CStringArray& v) { v.Serialize(ar); }
inline void Field(CArchive& ar, CArrayN& v) { v.Serialize(ar); }
inline void Field(CArchive& ar, CArrayD& v) { v.Serialize(ar); }

template <class... Fields>
void Fields_(CArchive& ar, Fields&... fields) { (Field(ar, fields), ...); }

// A command image: the class id, then the fields. On load the id must match.
template <class... Fields>
void SerializeCommand(CArchive& ar, int classId, Fields&... fields) {
    int id = classId;
    Field(ar, id);
    if (ar.IsLoading() && id != classId) throw CArchiveException(CArchiveException::badClass);
    Fields_(ar, fields...);
}

// A reply image: the error code (written by the base), then the fields.
template <class... Fields>
void SerializeReply(CArchive& ar, CKPRCI__BaseRV& reply, Fields&... fields) {
    reply.CKPRCI__BaseRV::Serialize(ar);
    Fields_(ar, fields...);
}

// A command whose one field is a title (the class id tells what is done with it).
template <int Id>
class TitleCommand : public CKPRCI__Base {
public:
    enum { ClassID = Id };
    void Serialize(CArchive& ar) override { SerializeCommand(ar, ClassID, m_Title); }
    int GetClassID() const override { return ClassID; }

    CString GetTitle() const { return m_Title; }
    void SetTitle(const CString& v) { m_Title = v; }

private:
    CString m_Title;
};

}  // namespace records
