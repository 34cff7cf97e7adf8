// Records of the bitmap capture, the text export and the explorer selection.
#pragma once

#include "CKPRCI__Base.h"

// Writes the current view to a bitmap file.
class CKPRCI_Capture_ExportBitmap : public CKPRCI__Base {
public:
    enum { ClassID = 25 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_Export_FilePath); }
    int GetClassID() const override { return ClassID; }

    CString GetExport_FilePath() const { return m_Export_FilePath; }
    void SetExport_FilePath(const CString& v) { m_Export_FilePath = v; }

private:
    CString m_Export_FilePath;
};

// Writes the board database to a text export file.
class CKPRCI_Export_PDBBAscii : public CKPRCI__Base {
public:
    enum { ClassID = 26 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_PdbbaFilePath); }
    int GetClassID() const override { return ClassID; }

    CString GetPdbbaFilePath() const { return m_PdbbaFilePath; }
    void SetPdbbaFilePath(const CString& v) { m_PdbbaFilePath = v; }

private:
    CString m_PdbbaFilePath;
};

// Selects the objects listed in a file; acknowledged by a bare 4-byte message on the
// return slot rather than by a reply record.
class CKPRCI_Explorer : public CKPRCI__Base {
public:
    enum { ClassID = 2 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_SelectionTypeA, m_ObjectListFilePath); }
    int GetClassID() const override { return ClassID; }

    // 0, 1 or 2.
    int GetSelectionTypeA() const { return m_SelectionTypeA; }
    void SetSelectionTypeA(const int& v) { m_SelectionTypeA = v; }
    CString GetObjectListFilePath() const { return m_ObjectListFilePath; }
    void SetObjectListFilePath(const CString& v) { m_ObjectListFilePath = v; }

private:
    int m_SelectionTypeA = 0;
    CString m_ObjectListFilePath;
};
