// The four extraction functions end to end, through the test importer plug-in
// (importer/TestImporter.cpp), which writes down the record it receives.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <map>

#include "CPdbbProcessor.h"
#include "ExtractTestLog.h"
#include "Extract_PDB_From_ECAD.h"
#include "ImporterPlugins.h"
#include "KPCBAPIExtract.h"
#include "TestSystem.h"
#include "platform.h"

namespace fs = std::filesystem;

using testing_support::Join;

namespace {

using Fields = std::map<std::string, std::string>;

const char kEucName[] = "\xA4\xA2-BOARD";   // what the test importer names its board
const char kSjisName[] = "\x82\xA0-BOARD";  // the same text in Shift-JIS

class Extraction : public ::testing::Test {
protected:
    void SetUp() override {
        testing_support::SetEnv("KPCB_DATA_DIR", dir / "data");
        testing_support::SetEnv("KPCB_IMPORTER_DIR", KPCB_TEST_IMPORTER_DIR);
        testing_support::SetEnv("KPCB_TEST_IMPORTER_RECORD", record);
        testing_support::UnsetEnv("KPCB_TEST_IMPORTER_RESULT");
        testing_support::UnsetEnv("KPCB_TEST_IMPORTER_VERSION");
        fs::create_directories(out);
    }
    void TearDown() override {
        for (const char* name : {"KPCB_DATA_DIR", "KPCB_IMPORTER_DIR", "KPCB_TEST_IMPORTER_RECORD",
                                 "KPCB_TEST_IMPORTER_RESULT", "KPCB_TEST_IMPORTER_VERSION"})
            testing_support::UnsetEnv(name);
    }

    // The record the importer last received; empty when it was not called.
    Fields Received() const {
        Fields fields;
        std::ifstream in(record);
        for (std::string line; std::getline(in, line);) {
            const size_t cut = line.find('=');
            if (cut != std::string::npos) fields[line.substr(0, cut)] = line.substr(cut + 1);
        }
        return fields;
    }
    // Each named field of the record holds the value given.
    void ExpectReceived(const Fields& expected) const {
        Fields r = Received();
        for (const auto& [key, value] : expected) EXPECT_EQ(r[key], value) << key;
    }
    std::vector<std::string> Log() const { return extract_test::ReadLogLines(dir / "data/Log/KAPI.log"); }
    // The argument list as the dump shows it.
    std::vector<std::string> Arguments() const {
        std::vector<std::string> args;
        for (const auto& line : Log()) {
            const std::string head = "   - Parameter " + std::to_string(args.size()) + " : ";
            if (line.rfind(head, 0) == 0) args.push_back(line.substr(head.size()));
        }
        return args;
    }
    std::vector<std::string> Messages() const { return extract_test::Messages(Log()); }

    std::string MakeFolder(const std::string& name) const {
        fs::create_directories(dir / name);
        return dir / name;
    }
    std::string MakeFile(const std::string& name) const {
        fs::create_directories(fs::path(dir / name).parent_path());
        std::ofstream(dir / name) << "design";
        return dir / name;
    }
    void WriteSettings(const std::string& text) const {
        fs::create_directories(dir / "data/Settings");
        std::ofstream(dir / "data/Settings/ImporterSettings.ini") << text;
    }
    // The name of the board in a .pdbb file, or "(unreadable)".
    static std::string BoardNameIn(const std::string& path) {
        CString error;
        const auto board = CPdbbProcessor::LoadPDB(path.c_str(), error);
        return board ? board->GetBoardName().str() : "(unreadable)";
    }

    testing_support::TempDir dir;
    std::string record = dir / "record.txt";
    std::string out = dir / "out";
};

// Boards of the plug-in at path not yet destroyed.
int LiveBoards(const std::string& path) {
    void* module = platform::LoadModule(path);
    if (!module) return -1;
    const auto live = reinterpret_cast<int (*)()>(platform::ModuleSymbol(module, "TestImporter_LiveBoards"));
    const int n = live ? live() : -1;
    platform::UnloadModule(module);
    return n;
}
int LiveBoards(const char* format) {
    return LiveBoards(std::string(KPCB_TEST_IMPORTER_DIR) + "/KPCBImporter_" + format + ".kpi");
}

}  // namespace

// ---- Argument lists and records, per letter -----------------------------------------

TEST_F(Extraction, AllegroKindLetters) {
    const std::string design = MakeFile("alg/board.brd");
    const std::string folder = dir / "alg";

    EXPECT_EQ(ExtractPdbbFromAllegro(out.c_str(), design.c_str(), 'a', "x1", "x2"), 0);
    EXPECT_EQ(Arguments(), (std::vector<std::string>{"From_KAPI", "/A", folder, out, "/A", "board", "x1", "x2"}));
    ExpectReceived({{"entry", "ReadAllegro"}, {"ExtractPDBMode", "1"}, {"SeparateFiles", "1"},
                    {"Brd", Join(folder, "board.brd")}, {"Pad", Join(folder, "board.pad")},
                    {"Rte", Join(folder, "board.rte")}, {"Sym", Join(folder, "board.sym")}, {"Extra1", ""}, {"Extra2", ""}});
    EXPECT_EQ(BoardNameIn(Join(out, "board.pdbb")), kEucName);

    fs::remove(dir / "data/Log/KAPI.log");
    EXPECT_EQ(ExtractPdbbFromAllegro(out.c_str(), design.c_str(), 'B', "x1", "x2"), 0);
    EXPECT_EQ(Arguments(), (std::vector<std::string>{"From_KAPI", "/A", folder, out, "/B", "board", "x1", "x2"}));
    ExpectReceived({{"SeparateFiles", "0"}, {"Brd", Join(folder, "board.brd")}, {"Pad", ""}, {"Extra1", "x1"},
                    {"Extra2", "x2"}});

    // Another letter adds no switch: the name stands at 4 and "x1" is taken for the name.
    fs::remove(dir / "data/Log/KAPI.log");
    EXPECT_EQ(ExtractPdbbFromAllegro(out.c_str(), design.c_str(), 'q', "x1", "x2"), 0);
    EXPECT_EQ(Arguments(), (std::vector<std::string>{"From_KAPI", "/A", folder, out, "board", "x1", "x2"}));
    ExpectReceived({{"SeparateFiles", "0"}, {"Brd", ""}});
    EXPECT_TRUE(fs::exists(Join(out, "x1.pdbb")));
}

TEST_F(Extraction, BoardDesignerLetters) {
    const std::string design = MakeFile("bd/job.pcf");

    EXPECT_EQ(ExtractPdbbFromBoardDesigner(out.c_str(), design.c_str(), 'a', 's', "/VD:\"/v d\"", " /uh:/u/h ",
                                           "/ZUKENROOT:/z", "/uh_polygon"),
              0);
    EXPECT_EQ(Arguments(), (std::vector<std::string>{"From_KAPI", "/B", design, out, "/A", "/S", "/VD:\"/v d\"",
                                                     " /uh:/u/h ", "/ZUKENROOT:/z", "/uh_polygon"}));
    // ZukenRoot is only taken with /B, Argument7 only read in the second mode 0.
    ExpectReceived({{"entry", "ReadBoardDesigner"}, {"ExtractPDBB", "1"}, {"FirstMode", "1"}, {"SecondMode", "1"},
                    {"Design", design}, {"VD", "/v d"}, {"UH", "/u/h"}, {"ZukenRoot", ""}, {"UHPolygon", "1"},
                    {"Argument6", "/VD:\"/v d\""}, {"Argument7", ""}});
    EXPECT_TRUE(fs::exists(Join(out, "job.pdbb")));

    EXPECT_EQ(ExtractPdbbFromBoardDesigner(out.c_str(), design.c_str(), 'B', 'a', "o1", "/zukenroot:/Z/R", "/1", ""),
              0);
    ExpectReceived({{"FirstMode", "0"}, {"SecondMode", "0"}, {"ZukenRoot", "/Z/R"}, {"Argument6", "o1"},
                    {"Argument7", "/zukenroot:/Z/R"}, {"OptionOne", "1"}, {"UHPolygon", "0"}});

    // The export turns either case of the letter into "/B".
    EXPECT_EQ(ExtractPdbbFromBoardDesigner(out.c_str(), design.c_str(), 'b', 'A', "o1", "o2", "o3", "o4"), 0);
    EXPECT_EQ(Received()["FirstMode"], "0");
}

TEST_F(Extraction, BoardDesignerUppercaseSAddsNoSwitch) {
    const std::string design = MakeFile("bd/job.pcf");
    // The first string stands where the switch would, and passes as a letter switch.
    EXPECT_EQ(ExtractPdbbFromBoardDesigner(out.c_str(), design.c_str(), 'A', 'S', "/s", "o2", "o3", "o4"), 0);
    EXPECT_EQ(Arguments(), (std::vector<std::string>{"From_KAPI", "/B", design, out, "/A", "/s", "o2", "o3", "o4"}));
    ExpectReceived({{"SecondMode", "1"}, {"Argument6", "o2"}});

    fs::remove(record);
    EXPECT_EQ(ExtractPdbbFromBoardDesigner(out.c_str(), design.c_str(), 'A', 'S', "o1", "o2", "o3", "o4"), 2);
    EXPECT_TRUE(Received().empty());
    // The check leaves the design path alone; the record refuses it.
    EXPECT_EQ(ExtractPdbbFromBoardDesigner(out.c_str(), (dir / "nothing.pcf").c_str(), 'A', 'a', "", "", "", ""), 3);
    EXPECT_TRUE(Received().empty());
}

TEST_F(Extraction, BoardDesignerDriverClearsTheFirstModeForUppercaseBOnly) {
    const std::string design = MakeFile("bd/job.pcf");
    for (const char* letter : {"/b", "/B"}) {
        CStringArray args;
        for (const char* item : {"From_KAPI", "/B", design.c_str(), out.c_str(), letter, "/a", "o1", "o2"}) args.Add(item);
        CEP_Parameter param(args);
        ASSERT_EQ(param.CheckParameter(), 1);
        CString outputPath;
        delete extract_pdb::ExtractFromBoardDesigner(param, outputPath);
        EXPECT_EQ(Received()["FirstMode"], letter[1] == 'B' ? "0" : "1") << letter;
    }
    EXPECT_EQ(LiveBoards("BoardDesigner"), 0);
}

TEST_F(Extraction, MentorFlag) {
    const std::string design = MakeFolder("mentor/drawings/panel_a");  // switch names inside a path mean nothing
    EXPECT_EQ(ExtractPdbbFromMentor(Join(out, "result.pdbb").c_str(), design.c_str(), 0, "ignored"), 0);
    EXPECT_EQ(Arguments(), (std::vector<std::string>{"From_KAPI", "/M", design, out, "result"}));
    ExpectReceived({{"entry", "ReadMentor"}, {"ExtractMode", "1"}, {"ReadMode", "0"}, {"ExtractPDBB", "1"},
                    {"DesignFolder", design}, {"Panel", ""}, {"Drawing", "0"}});
    EXPECT_TRUE(fs::exists(Join(out, "result.pdbb")));

    EXPECT_EQ(ExtractPdbbFromMentor(Join(out, "second").c_str(), design.c_str(), 7, ""), 0);
    EXPECT_EQ(Received()["ReadMode"], "1");
    EXPECT_TRUE(fs::exists(Join(out, "second.pdbb")));
}

TEST_F(Extraction, ZukenZlsPresentOrAbsent) {
    const std::string design = MakeFile("pws/board.pcb");
    const std::string zls = MakeFile("pws/lib.zls");

    EXPECT_EQ(ExtractPdbbFromZuken(Join(out, "ignored.pdbb").c_str(), design.c_str(), 'w', zls.c_str()), 0);
    EXPECT_EQ(Arguments(), (std::vector<std::string>{"From_KAPI", "/Z", design, out, "/w", zls}));
    ExpectReceived({{"entry", "GetPDB"}, {"ExtractMode", "1"}, {"ReadMode", "1"}, {"ExtractPDBB", "1"},
                    {"Design", design}, {"Zls", zls}});
    EXPECT_TRUE(fs::exists(Join(out, "board.pdbb")));  // named after the design

    fs::remove(dir / "data/Log/KAPI.log");
    EXPECT_EQ(ExtractPdbbFromZuken(Join(out, "x.pdbb").c_str(), design.c_str(), 'A', (dir / "gone.zls").c_str()), 0);
    EXPECT_EQ(Arguments(), (std::vector<std::string>{"From_KAPI", "/Z", design, out, "/A"}));
    ExpectReceived({{"ReadMode", "0"}, {"Zls", ""}});

    fs::remove(record);
    EXPECT_EQ(ExtractPdbbFromZuken(Join(out, "x.pdbb").c_str(), design.c_str(), 'q', ""), 2);
    EXPECT_TRUE(Received().empty());
    EXPECT_EQ(LiveBoards("CR5000PWS"), 0);
}

// ---- Results ----------------------------------------------------------------

TEST_F(Extraction, RefusedArgumentsGiveTwoWithoutImporter) {
    const std::string missing = dir / "nowhere/board.brd";
    EXPECT_EQ(ExtractPdbbFromAllegro(out.c_str(), missing.c_str(), 'a', "", ""), 2);
    // A list that contradicts itself is refused too, not thrown at the caller.
    const std::string design = MakeFile("alg/board.brd");
    EXPECT_EQ(ExtractPdbbFromAllegro(out.c_str(), design.c_str(), 'a', "/DET_VIA", ""), 2);
    EXPECT_TRUE(Received().empty());
}

TEST_F(Extraction, NoBoardGivesThreeAndNothingIsSaved) {
    const std::string design = MakeFile("alg/board.brd");
    for (const char* answer : {"null", "throw"}) {
        testing_support::SetEnv("KPCB_TEST_IMPORTER_RESULT", answer);
        EXPECT_EQ(ExtractPdbbFromAllegro(out.c_str(), design.c_str(), 'b', "", "late"), 3) << answer;
        EXPECT_EQ(Received()["Extra2"], "late");
        EXPECT_FALSE(fs::exists(Join(out, "board.pdbb")));
    }
}

TEST_F(Extraction, ExtractionsOnTwoThreadsSaveEachToItsOwnPath) {
    const std::string design = MakeFolder("mentor");
    auto run = [&](const char* name) { return ExtractPdbbFromMentor(Join(out, name).c_str(), design.c_str(), 0, ""); };
    std::future<int> first = std::async(std::launch::async, run, "first.pdbb");
    EXPECT_EQ(run("second.pdbb"), 0);
    EXPECT_EQ(first.get(), 0);
    EXPECT_TRUE(fs::exists(Join(out, "first.pdbb")) && fs::exists(Join(out, "second.pdbb")));
}

TEST_F(Extraction, FailedSaveGivesFourAndTheBoardIsDestroyed) {
    const std::string design = MakeFolder("mentor");
    MakeFile("out/blocked.pdbb/keep");  // a folder, not empty, where the file should go
    EXPECT_EQ(ExtractPdbbFromMentor(Join(out, "blocked.pdbb").c_str(), design.c_str(), 0, ""), 4);
    EXPECT_EQ(Received()["entry"], "ReadMentor");
    EXPECT_EQ(LiveBoards("Mentor"), 0);
}

TEST_F(Extraction, MissingOrMismatchedPluginGivesThreeSayingWhatWasLookedFor) {
    const std::string design = MakeFile("alg/board.brd");
    const std::string empty = MakeFolder("no-plugins");
    testing_support::SetEnv("KPCB_IMPORTER_DIR", empty);
    EXPECT_EQ(ExtractPdbbFromAllegro(out.c_str(), design.c_str(), 'a', "", ""), 3);
    auto messages = Messages();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_NE(messages[0].find("KPCBImporter_Allegro.kpi"), std::string::npos) << messages[0];
    EXPECT_NE(messages[0].find(empty), std::string::npos) << messages[0];
    // Then the exports it looked for instead, named after the design.
    EXPECT_NE(messages[1].find(Join(dir / "alg", "board")), std::string::npos) << messages[1];

    // A copy at a path of its own is a fresh load, which checks the version.
    fs::copy_file(std::string(KPCB_TEST_IMPORTER_DIR) + "/KPCBImporter_Allegro.kpi",
                  Join(empty, "KPCBImporter_Allegro.kpi"));
    testing_support::SetEnv("KPCB_TEST_IMPORTER_VERSION", "99");
    fs::remove(dir / "data/Log/KAPI.log");
    EXPECT_EQ(ExtractPdbbFromAllegro(out.c_str(), design.c_str(), 'a', "", ""), 3);
    messages = Messages();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_NE(messages[0].find("interface version 99"), std::string::npos) << messages[0];
    EXPECT_TRUE(Received().empty());
}

TEST_F(Extraction, PluginsAreLookedForInTheConfiguredFolderThenBesideTheLibrary) {
    const CString own(platform::ModuleDirectory());
    EXPECT_EQ(importer_plugins::SearchFolders(), (std::vector<CString>{KPCB_TEST_IMPORTER_DIR, own}));
    testing_support::UnsetEnv("KPCB_IMPORTER_DIR");
    EXPECT_EQ(importer_plugins::SearchFolders(), std::vector<CString>{own});
}

TEST_F(Extraction, SettingsAskForShiftJisPerFormat) {
    const std::string alg = MakeFile("alg/board.brd");
    const std::string bd = MakeFile("bd/board.pcf");
    const std::string mentor = MakeFolder("mentor");
    const std::string pws = MakeFile("pws/board.pcb");
    auto runAll = [&] {
        EXPECT_EQ(ExtractPdbbFromAllegro(Join(out, "alg").c_str(), alg.c_str(), 'a', "", ""), 0);
        EXPECT_EQ(ExtractPdbbFromBoardDesigner(Join(out, "bd").c_str(), bd.c_str(), 'a', 's', "", "", "", ""), 0);
        EXPECT_EQ(ExtractPdbbFromMentor(Join(out, "mentor/board").c_str(), mentor.c_str(), 0, ""), 0);
        EXPECT_EQ(ExtractPdbbFromZuken(Join(out, "pws/x").c_str(), pws.c_str(), 'a', ""), 0);
        return std::vector<std::string>{BoardNameIn(Join(out, "alg/board.pdbb")),
                                        BoardNameIn(Join(out, "bd/board.pdbb")),
                                        BoardNameIn(Join(out, "mentor/board.pdbb")),
                                        BoardNameIn(Join(out, "pws/board.pdbb"))};
    };
    for (const char* sub : {"alg", "bd", "mentor", "pws"}) fs::create_directories(Join(out, sub));

    EXPECT_EQ(runAll(), (std::vector<std::string>{kEucName, kEucName, kEucName, kEucName}));
    WriteSettings("[Allegro]\nConvertEucJPtoShiftJIS=1\n[BoardStation]\nconverteucjptoshiftjis = 1\n");
    EXPECT_EQ(runAll(), (std::vector<std::string>{kSjisName, kEucName, kSjisName, kEucName}));
    WriteSettings("[cr5000bd]\nConvertEucJPtoShiftJIS=1\n[CR5000PWS]\nConvertEucJPtoShiftJIS=1\n");
    EXPECT_EQ(runAll(), (std::vector<std::string>{kEucName, kSjisName, kEucName, kSjisName}));
    // The importers are handed their part of the settings.
    EXPECT_EQ(Received()["Convert"], "1");
}

// ---- The C forms ---------------------------------------------------------------------

TEST_F(Extraction, CFormsPassWideTextAndNullAsEmpty) {
    const std::string design = MakeFile("pws/board.pcb");
    const std::wstring wideOut(out.begin(), out.end());
    const std::wstring wideDesign(design.begin(), design.end());
    EXPECT_EQ(KPCB_ExtractPdbbFromZuken((wideOut + L"/x.pdbb").c_str(), wideDesign.c_str(), 'a', nullptr), 0);
    EXPECT_EQ(Arguments(), (std::vector<std::string>{"From_KAPI", "/Z", design, out, "/a"}));
    EXPECT_TRUE(fs::exists(Join(out, "board.pdbb")));

    fs::remove(record);
    EXPECT_EQ(KPCB_ExtractPdbbFromAllegro(nullptr, nullptr, 'a', nullptr, nullptr), 2);
    EXPECT_EQ(KPCB_ExtractPdbbFromBoardDesigner(nullptr, nullptr, 'a', 's', nullptr, nullptr, nullptr, nullptr), 2);
    EXPECT_EQ(KPCB_ExtractPdbbFromMentor(nullptr, nullptr, 1, nullptr), 2);
    EXPECT_TRUE(Received().empty()) << "no importer runs for refused arguments";
}

// The argument-list entry hands a checked list to the driver of its format key, or
// ends with 3 and one line naming a key that has no importer.
TEST_F(Extraction, ArgumentListGoesToTheImporterOfItsKey) {
    const std::string folder = MakeFolder("design");
    const std::string file = MakeFile("design.txt");
    const struct {
        std::vector<std::string> args;
        int result;
        const char* entry;    // the plug-in entry called, "" for none
        const char* message;  // a line the log must hold, "" for none
    } cases[] = {
        {{"From_KAPI", "/m", folder, out, "mentor"}, 0, "ReadMentor", ""},
        {{"From_KAPI", "//ZPS//", file, out, "/W"}, 0, "GetPDB", ""},
        {{"From_KAPI", "/GM", file, out}, 3, "", "No importer for the format key : GM"},
        {{"From_KAPI", "/I", file, out, "board"}, 3, "", ""},
        {{"From_KAPI", "/ODB", dir / "missing", out, "board"}, 2, "", ""},
        {{"From_KAPI", "/ODB", file, out, "board", "/U:inch"}, 3, "", ""},
        {{"From_KAPI", "/X"}, 2, "", ""},
    };
    for (const auto& c : cases) {
        fs::remove(record);
        std::vector<const char*> args;
        for (const std::string& a : c.args) args.push_back(a.c_str());
        EXPECT_EQ(ExtractPdbbFromArgumentList(static_cast<int>(args.size()), args.data()), c.result) << c.args[1];
        EXPECT_EQ(Received()["entry"], c.entry) << c.args[1];
        if (*c.message) {
            EXPECT_EQ(extract_test::CountLines(Messages(), c.message), 1) << c.args[1];
        }
    }
    EXPECT_FALSE(fs::exists(Join(out, "board.pdbb")));  // nothing half-written by the refused reads
    EXPECT_TRUE(fs::exists(Join(out, "design.pdbb")));   // the CR5000 driver names its file after the design
}
