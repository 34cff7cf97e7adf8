#include "CKP_UIS__Main.h"

#include <cstdlib>
#include <fstream>
#include <string>

#include "GCUtility.h"

namespace {
CString Trimmed(const std::string& text) {
    CString out(text);
    out.Trim();
    return out;
}
}  // namespace

CString CKP_UIS__Main::GetDefaultFilePath() {
    GCUtility& util = GCUtility::GetInstance();
    return util.GCPathCombine(util.GetDataPath(), "Settings\\ImporterSettings.ini", __FILE__, __LINE__);
}

int CKP_UIS__Main::LoadFromDefaultFile() { return LoadFromFile(GetDefaultFilePath()); }

int CKP_UIS__Main::LoadFromFile(const CString& path) {
    m_ECAD = CKP_UIS_ECAD();
    std::ifstream in(path.str(), std::ios::binary);
    if (!in) return 0;

    CKP_UIS_ECAD_Format* section = nullptr;
    for (std::string raw; std::getline(in, raw);) {
        const CString line = Trimmed(raw);
        if (line.IsEmpty() || line.GetAt(0) == '#' || line.GetAt(0) == ';') continue;
        if (line.GetAt(0) == '[') {
            CString name = line;
            name.Trim("[] \t");
            section = nullptr;
            if (name.CompareNoCase("Allegro") == 0) section = m_ECAD.GetAllegro();
            if (name.CompareNoCase("CR5000BD") == 0) section = m_ECAD.GetCR5000BD();
            if (name.CompareNoCase("BoardStation") == 0) section = m_ECAD.GetBoardStation();
            if (name.CompareNoCase("CR5000PWS") == 0) section = m_ECAD.GetCR5000PWS();
            continue;
        }
        const int equals = line.Find('=');
        if (!section || equals <= 0) continue;
        const CString key = Trimmed(line.Left(equals).str());
        const CString value = Trimmed(line.Mid(equals + 1).str());
        char* end = nullptr;
        const long number = std::strtol(value.GetString(), &end, 10);
        if (value.IsEmpty() || *end != '\0') continue;
        if (key.CompareNoCase("ConvertEucJPtoShiftJIS") == 0) section->SetConvertEucJPtoShiftJIS(static_cast<int>(number));
    }
    return 1;
}
