// The user's importer settings, read from a small text file under the data folder:
//
//     <data folder>/Settings/ImporterSettings.ini
//
//     # comment
//     [Allegro]
//     ConvertEucJPtoShiftJIS = 1
//     [CR5000BD]
//     [BoardStation]
//     [CR5000PWS]
//
// One section per ECAD format; section and key names ignore case. Values are
// integers. Unknown sections, keys and malformed lines are ignored; a missing file
// or a missing key leaves the default (0).
#pragma once

#include "CString.h"

// Options shared by every ECAD format's settings.
class CKP_UIS_ECAD_Format {
public:
    // 1: the board's texts are converted from EUC-JP to Shift-JIS after reading.
    int GetConvertEucJPtoShiftJIS() const { return m_nConvertEucJPtoShiftJIS; }
    void SetConvertEucJPtoShiftJIS(int value) { m_nConvertEucJPtoShiftJIS = value; }

private:
    int m_nConvertEucJPtoShiftJIS = 0;
};

class CKP_UIS_ECAD_Allegro : public CKP_UIS_ECAD_Format {};
class CKP_UIS_ECAD_CR5000BD : public CKP_UIS_ECAD_Format {};
class CKP_UIS_ECAD_BoardStation : public CKP_UIS_ECAD_Format {};
class CKP_UIS_ECAD_CR5000PWS : public CKP_UIS_ECAD_Format {};

class CKP_UIS_ECAD {
public:
    CKP_UIS_ECAD_Allegro* GetAllegro() { return &m_Allegro; }
    CKP_UIS_ECAD_CR5000BD* GetCR5000BD() { return &m_CR5000BD; }
    CKP_UIS_ECAD_BoardStation* GetBoardStation() { return &m_BoardStation; }
    CKP_UIS_ECAD_CR5000PWS* GetCR5000PWS() { return &m_CR5000PWS; }

private:
    CKP_UIS_ECAD_Allegro m_Allegro;
    CKP_UIS_ECAD_CR5000BD m_CR5000BD;
    CKP_UIS_ECAD_BoardStation m_BoardStation;
    CKP_UIS_ECAD_CR5000PWS m_CR5000PWS;
};

class CKP_UIS__Main {
public:
    // The settings file under the data folder.
    static CString GetDefaultFilePath();
    // Resets to the defaults, then reads the settings file. 1 when the file was read,
    // 0 when there is none (the defaults stay).
    int LoadFromDefaultFile();
    int LoadFromFile(const CString& path);

    CKP_UIS_ECAD* GetECAD() { return &m_ECAD; }

private:
    CKP_UIS_ECAD m_ECAD;
};
