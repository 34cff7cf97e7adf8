// An importer plug-in for the extraction tests. It writes every field of the record
// it receives, one "name=value" line each, to the file named by
// KPCB_TEST_IMPORTER_RECORD, then answers as KPCB_TEST_IMPORTER_RESULT says:
// "null" gives no board, "throw" throws, anything else a small board whose name is
// EUC-JP text. TestImporter_LiveBoards counts the boards not yet destroyed.
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

#include "CPdb.h"
#include "KPCBImporterPlugin.h"

namespace {

int g_liveBoards = 0;

class TestBoard : public CPdb {
public:
    TestBoard() { ++g_liveBoards; }
    ~TestBoard() override { --g_liveBoards; }
};

std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

class Record {
public:
    explicit Record(const char* entry) { m_text = std::string("entry=") + entry + "\n"; }
    Record& operator()(const char* name, const CString& value) { return Add(name, value.str()); }
    Record& operator()(const char* name, int value) { return Add(name, std::to_string(value)); }

    CPdb* Answer() const {
        const std::string path = Env("KPCB_TEST_IMPORTER_RECORD");
        if (!path.empty()) std::ofstream(path, std::ios::binary) << m_text;
        const std::string result = Env("KPCB_TEST_IMPORTER_RESULT");
        if (result == "null") return nullptr;
        if (result == "throw") throw std::runtime_error("test importer fails");
        auto* board = new TestBoard;
        board->SetBoardName("\xA4\xA2-BOARD");  // EUC-JP hiragana "a", then ASCII
        board->AddNet("GND");
        return board;
    }

private:
    Record& Add(const char* name, const std::string& value) {
        m_text += std::string(name) + "=" + value + "\n";
        return *this;
    }
    std::string m_text;
};

}  // namespace

extern "C" {

KPCB_IMPORTER_EXPORT int KPCBImporter_InterfaceVersion() {
    const std::string forced = Env("KPCB_TEST_IMPORTER_VERSION");
    return forced.empty() ? KPCB_IMPORTER_INTERFACE_VERSION : std::atoi(forced.c_str());
}

KPCB_IMPORTER_EXPORT int TestImporter_LiveBoards() { return g_liveBoards; }

KPCB_IMPORTER_EXPORT CPdb* KPCBImporter_ReadAllegro(CPALGUIS* settings, CPALGParamForPDB* r) {
    return Record("ReadAllegro")("ExtractPDBMode", r->GetExtractPDBMode())("SeparateFiles", r->GetSeparateFiles())(
               "Brd", r->GetBrdFilePath())("Pad", r->GetPadFilePath())("Rte", r->GetRteFilePath())(
               "Sym", r->GetSymFilePath())("Extra1", r->GetExtraString1())("Extra2", r->GetExtraString2())(
               "Convert", settings->GetAllegro().GetConvertEucJPtoShiftJIS())
        .Answer();
}

KPCB_IMPORTER_EXPORT CPdb* KPCBImporter_ReadBoardDesigner(CPBDParamForPDB* r) {
    return Record("ReadBoardDesigner")("ExtractPDBB", r->GetExtractPDBB())("FirstMode", r->GetFirstMode())(
               "SecondMode", r->GetSecondMode())("Design", r->GetDesignFilePath())(
               "SaveName", r->GetPdbbSaveFileNameForExtractPDBB())("VD", r->GetVDPath())("UH", r->GetUHPath())(
               "ZukenRoot", r->GetZukenRoot())("UHPolygon", r->GetUHPolygon())("Argument6", r->GetArgument6())(
               "Argument7", r->GetArgument7())("OptionOne", r->GetOptionOne())
        .Answer();
}

KPCB_IMPORTER_EXPORT CPdb* KPCBImporter_ReadMentor(CPMentorParamForPDB* r, int extractMode, int readMode) {
    return Record("ReadMentor")("ExtractMode", extractMode)("ReadMode", readMode)("ExtractPDBB", r->GetExtractPDBB())(
               "DesignFolder", r->GetDesignFolder())("Panel", r->GetPanelName())("CocTop", r->GetCocTopLayer())(
               "CocBottom", r->GetCocBottomLayer())("Drawing", r->GetDrawing())("ExceptZeroSilk", r->GetExceptZeroSilk())(
               "MakeHatch", r->GetMakeHatch())
        .Answer();
}

KPCB_IMPORTER_EXPORT CPdb* KPCBImporter_GetPDB(CPPWSParamForPDB* r, CPPWSUis* settings, int extractMode, int readMode) {
    return Record("GetPDB")("ExtractMode", extractMode)("ReadMode", readMode)("ExtractPDBB", r->GetExtractPDBB())(
               "Design", r->GetDesignPath())("Zls", r->GetZlsFilePath())(
               "Convert", settings->GetAppPWSUIS().GetConvertEucJPtoShiftJIS())
        .Answer();
}

}  // extern "C"
