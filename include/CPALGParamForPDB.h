// What the Allegro importer is asked to read, and the Allegro settings it reads with.
#pragma once

#include "CKP_UIS__Main.h"
#include "CString.h"

class CPALGParamForPDB {
public:
    // 1 when the request comes from a board database extraction.
    int GetExtractPDBMode() const { return m_nExtractPDBMode; }
    void SetExtractPDBMode(int value) { m_nExtractPDBMode = value; }
    // 1: the design comes as four files (.brd, .pad, .rte, .sym); 0: one board file.
    int GetSeparateFiles() const { return m_nSeparateFiles; }
    void SetSeparateFiles(int value) { m_nSeparateFiles = value; }

    const CString& GetBrdFilePath() const { return m_strBrdFilePath; }
    void SetBrdFilePath(const CString& path) { m_strBrdFilePath = path; }
    const CString& GetPadFilePath() const { return m_strPadFilePath; }
    void SetPadFilePath(const CString& path) { m_strPadFilePath = path; }
    const CString& GetRteFilePath() const { return m_strRteFilePath; }
    void SetRteFilePath(const CString& path) { m_strRteFilePath = path; }
    const CString& GetSymFilePath() const { return m_strSymFilePath; }
    void SetSymFilePath(const CString& path) { m_strSymFilePath = path; }

    // The caller's two further strings, passed on for a single board file.
    const CString& GetExtraString1() const { return m_strExtra1; }
    void SetExtraString1(const CString& text) { m_strExtra1 = text; }
    const CString& GetExtraString2() const { return m_strExtra2; }
    void SetExtraString2(const CString& text) { m_strExtra2 = text; }

private:
    int m_nExtractPDBMode = 0;
    int m_nSeparateFiles = 0;
    CString m_strBrdFilePath;
    CString m_strPadFilePath;
    CString m_strRteFilePath;
    CString m_strSymFilePath;
    CString m_strExtra1;
    CString m_strExtra2;
};

// The Allegro importer's settings: the Allegro part of the user's settings.
class CPALGUIS {
public:
    const CKP_UIS_ECAD_Allegro& GetAllegro() const { return m_Allegro; }
    void SetAllegro(const CKP_UIS_ECAD_Allegro& settings) { m_Allegro = settings; }

private:
    CKP_UIS_ECAD_Allegro m_Allegro;
};
