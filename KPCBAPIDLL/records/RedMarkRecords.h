// Records of the red-mark commands and their replies.
#pragma once

#include "CKPRCI__Base.h"
#include "JoinText.h"

// Loads the red marks from a file (ReadState 1) or saves them to it (ReadState 0).
// A load is answered by CKPRCI_RedMark_Load_RV.
class CKPRCI_RedMark_SaveLoad : public CKPRCI__Base {
public:
    enum { ClassID = 21 };
    void Serialize(CArchive& ar) override {
        records::SerializeCommand(ar, ClassID, m_ReadState, m_AsciiData, m_RedMarkFilePath, m_TitleName_Delimiter);
    }
    int GetClassID() const override { return ClassID; }

    int GetReadState() const { return m_ReadState; }
    void SetReadState(int v) { m_ReadState = v; }
    // Non-zero: the file is text.
    int GetAsciiData() const { return m_AsciiData; }
    void SetAsciiData(int v) { m_AsciiData = v; }
    CString GetRedMarkFilePath() const { return m_RedMarkFilePath; }
    void SetRedMarkFilePath(const CString& v) { m_RedMarkFilePath = v; }
    // Load only: the separator of the returned title list.
    CString GetTitleName_Delimiter() const { return m_TitleName_Delimiter; }
    void SetTitleName_Delimiter(const CString& v) { m_TitleName_Delimiter = v; }

private:
    int m_ReadState = 0;
    int m_AsciiData = 0;
    CString m_RedMarkFilePath;
    CString m_TitleName_Delimiter;
};

// The titles of the red marks that a load brought in.
class CKPRCI_RedMark_Load_RV : public CKPRCI__BaseRV {
public:
    void Serialize(CArchive& ar) override { records::SerializeReply(ar, *this, m_TitleNames); }

    void SetTitleNames(const CStringArray& v) { m_TitleNames.Copy(v); }
    void GetTitleNames(CStringArray& out) const { out.Copy(m_TitleNames); }
    // The titles with the delimiter between them.
    CString GetTitleNames(const CString& delimiter) const { return records::Join(m_TitleNames, delimiter); }

private:
    CStringArray m_TitleNames;
};

// Calls up one red mark by its title; answered by CKPRCI_RedMark_SelectedItem_RV.
class CKPRCI_RedMark_SelectedItem : public records::TitleCommand<22> {};

// The text of the red mark called up.
class CKPRCI_RedMark_SelectedItem_RV : public CKPRCI__BaseRV {
public:
    void Serialize(CArchive& ar) override { records::SerializeReply(ar, *this, m_Contents); }

    CString GetContents() const { return m_Contents; }
    void SetContents(const CString& v) { m_Contents = v; }

private:
    CString m_Contents;
};

// Removes one red mark by its title; answered by a bare CKPRCI__BaseRV.
class CKPRCI_RedMark_RemoveItem : public records::TitleCommand<23> {};

// Sets the calling status, or (ReturnMode 1) asks for it unchanged; the question is
// answered by CKPRCI_RedMark_SetStatusForCalling_RV.
class CKPRCI_RedMark_SetStatusForCalling : public CKPRCI__Base {
public:
    enum { ClassID = 24 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_ReturnMode, m_CallStatus); }
    int GetClassID() const override { return ClassID; }

    int IsReturnMode() const { return m_ReturnMode; }
    void SetReturnMode(int v) { m_ReturnMode = v; }
    int GetCallStatus() const { return m_CallStatus; }
    void SetCallStatus(int v) { m_CallStatus = v; }

private:
    int m_ReturnMode = 0;
    int m_CallStatus = 0;
};

// The viewer's current calling status.
class CKPRCI_RedMark_SetStatusForCalling_RV : public CKPRCI__BaseRV {
public:
    void Serialize(CArchive& ar) override { records::SerializeReply(ar, *this, m_CallStatus); }

    int GetCallStatus() const { return m_CallStatus; }
    void SetCallStatus(int v) { m_CallStatus = v; }

private:
    int m_CallStatus = 0;
};
