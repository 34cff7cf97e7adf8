// What the Mentor BoardStation importer is asked to read. The read mode (0 /S,
// 1 /A, 2 /AF) travels as an argument of the read call.
#pragma once

#include "CString.h"

class CPMentorParamForPDB {
public:
    // 1 when the request comes from a board database extraction.
    int GetExtractPDBB() const { return m_nExtractPDBB; }
    void SetExtractPDBB(int value) { m_nExtractPDBB = value; }
    const CString& GetDesignFolder() const { return m_strDesignFolder; }
    void SetDesignFolder(const CString& path) { m_strDesignFolder = path; }

    // Values of /PANEL:, /COCTOP: and /COCBOTTOM:.
    const CString& GetPanelName() const { return m_strPanelName; }
    void SetPanelName(const CString& name) { m_strPanelName = name; }
    const CString& GetCocTopLayer() const { return m_strCocTopLayer; }
    void SetCocTopLayer(const CString& name) { m_strCocTopLayer = name; }
    const CString& GetCocBottomLayer() const { return m_strCocBottomLayer; }
    void SetCocBottomLayer(const CString& name) { m_strCocBottomLayer = name; }

    // /DRAWING, /EXCEPTZEROSILK, /MAKEHATCH.
    int GetDrawing() const { return m_nDrawing; }
    void SetDrawing(int value) { m_nDrawing = value; }
    int GetExceptZeroSilk() const { return m_nExceptZeroSilk; }
    void SetExceptZeroSilk(int value) { m_nExceptZeroSilk = value; }
    int GetMakeHatch() const { return m_nMakeHatch; }
    void SetMakeHatch(int value) { m_nMakeHatch = value; }

private:
    int m_nExtractPDBB = 0;
    CString m_strDesignFolder;
    CString m_strPanelName;
    CString m_strCocTopLayer;
    CString m_strCocBottomLayer;
    int m_nDrawing = 0;
    int m_nExceptZeroSilk = 0;
    int m_nMakeHatch = 0;
};
