// What the Board Designer importer is asked to read.
#pragma once

#include "CString.h"

class CPBDParamForPDB {
public:
    // 1 when the request comes from a board database extraction.
    int GetExtractPDBB() const { return m_nExtractPDBB; }
    void SetExtractPDBB(int value) { m_nExtractPDBB = value; }
    // The first letter switch: 1 (the default) for /A, cleared for /B.
    int GetFirstMode() const { return m_nFirstMode; }
    void SetFirstMode(int value) { m_nFirstMode = value; }
    // The second letter switch: 1 for /S, 0 for /A.
    int GetSecondMode() const { return m_nSecondMode; }
    void SetSecondMode(int value) { m_nSecondMode = value; }

    // Takes the design file or folder; non-zero when it exists. The board database
    // file name is then the design's name with ".pdbb".
    int SetDesignFilePathForExtractPDBB(const CString& path);
    const CString& GetDesignFilePath() const { return m_strDesignFilePath; }
    const CString& GetPdbbSaveFileNameForExtractPDBB() const { return m_strPdbbSaveFileName; }

    // Values of the /VD:, /UH: and /ZUKENROOT: switches.
    const CString& GetVDPath() const { return m_strVDPath; }
    void SetVDPath(const CString& path) { m_strVDPath = path; }
    const CString& GetUHPath() const { return m_strUHPath; }
    void SetUHPath(const CString& path) { m_strUHPath = path; }
    const CString& GetZukenRoot() const { return m_strZukenRoot; }
    void SetZukenRoot(const CString& path) { m_strZukenRoot = path; }
    // /UH_POLYGON.
    int GetUHPolygon() const { return m_nUHPolygon; }
    void SetUHPolygon(int value) { m_nUHPolygon = value; }

    // The arguments at positions 6 and 7 of the request, passed on as given.
    const CString& GetArgument6() const { return m_strArgument6; }
    void SetArgument6(const CString& text) { m_strArgument6 = text; }
    const CString& GetArgument7() const { return m_strArgument7; }
    void SetArgument7(const CString& text) { m_strArgument7 = text; }
    // /1, looked for only when the second mode is 0.
    int GetOptionOne() const { return m_nOptionOne; }
    void SetOptionOne(int value) { m_nOptionOne = value; }

private:
    int m_nExtractPDBB = 0;
    int m_nFirstMode = 1;
    int m_nSecondMode = 0;
    CString m_strDesignFilePath;
    CString m_strPdbbSaveFileName;
    CString m_strVDPath;
    CString m_strUHPath;
    CString m_strZukenRoot;
    int m_nUHPolygon = 0;
    CString m_strArgument6;
    CString m_strArgument7;
    int m_nOptionOne = 0;
};
