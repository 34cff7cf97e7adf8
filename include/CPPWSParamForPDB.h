// What the Zuken CR5000 PWS importer is asked to read, and the settings it reads with.
// The read mode (0 /A, 1 /W) travels as an argument of the read call.
#pragma once

#include "CKP_UIS__Main.h"
#include "CString.h"

class CPPWSParamForPDB {
public:
    // 1 when the request comes from a board database extraction.
    int GetExtractPDBB() const { return m_nExtractPDBB; }
    void SetExtractPDBB(int value) { m_nExtractPDBB = value; }
    const CString& GetDesignPath() const { return m_strDesignPath; }
    void SetDesignPath(const CString& path) { m_strDesignPath = path; }
    // Empty when the request names no zls file.
    const CString& GetZlsFilePath() const { return m_strZlsFilePath; }
    void SetZlsFilePath(const CString& path) { m_strZlsFilePath = path; }

private:
    int m_nExtractPDBB = 0;
    CString m_strDesignPath;
    CString m_strZlsFilePath;
};

// The PWS importer's settings: the CR5000 PWS part of the user's settings.
class CPPWSUis {
public:
    void SetAppPWSUIS(const CKP_UIS_ECAD_CR5000PWS& settings) { m_AppSettings = settings; }
    const CKP_UIS_ECAD_CR5000PWS& GetAppPWSUIS() const { return m_AppSettings; }

private:
    CKP_UIS_ECAD_CR5000PWS m_AppSettings;
};
