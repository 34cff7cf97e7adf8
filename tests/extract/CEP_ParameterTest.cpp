// The argument list of an extraction: switch scan, dump, the code table and its checks.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "CEP_Parameter.h"
#include "CException.h"
#include "ExtractTestLog.h"

namespace fs = std::filesystem;
using extract_test::ScratchLog;

using testing_support::Join;

namespace {

CStringArray Args(const std::vector<std::string>& items) {
    CStringArray out;
    for (const auto& item : items) out.Add(CString(item));
    return out;
}

void Touch(const std::string& path) { std::ofstream(path) << "x"; }

std::string Msg(const char* format, const std::string& value) {
    CString text;
    text.Format(format, value.c_str());
    return text.str();
}

const char kDesignFile[] = "Cannot found Design File Path Directory. : %s";
const char kDesignDir[] = "Cannot found design directory. : %s";
const char kSaveDir[] = "Cannot found save directory for PDBB. : %s";
const char kPdbbSaveDir[] = "Cannot found pdbb save directory. : %s";

}  // namespace

// ---- Switch scan and dump -----------------------------------------------------

TEST(CEP_ParameterScan, SwitchesAreCountedButStayListedAndShortenTheWalk) {
    ScratchLog log;
    CEP_Parameter p(Args({"From_KAPI", "/A", "/pdba", "dir", "save", "name", "lost"}));
    EXPECT_EQ(p.GetCount(), 6);
    EXPECT_EQ(p.GetAt(2), "/pdba");  // kept as given
    EXPECT_EQ(p.IsPDBA(), 1);
    EXPECT_THROW(p.GetAt(6), CInvalidArgException);

    const auto lines = log.Lines();
    const std::vector<std::string> expected = {
        "   - Parameter 0 : From_KAPI", "   - Parameter 1 : /A",   "   - Parameter 2 : /pdba",
        "   - Parameter 3 : dir",       "   - Parameter 4 : save", "   - Parameter 5 : name",
        "   - Parameter 6 : /PDBA"};
    EXPECT_EQ(lines, expected);
}

TEST(CEP_ParameterScan, DumpShowsOnlyItsFlagsInItsOrder) {
    ScratchLog log;
    CEP_Parameter p(Args({"From_KAPI", "/X", "/PLE", "/KP", "/PEMA", "/NOMERGE", "/PDBX", "/BOARDGEOM", "/PLP", "/PDBA",
                          "a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}));
    EXPECT_EQ(p.GetCount(), 12);
    EXPECT_EQ(p.IsPLE() + p.IsKP() + p.IsPEMA() + p.IsNoMerge() + p.IsPDBX() + p.IsBoardGeom() + p.IsPLP() + p.IsPDBA(), 8);
    EXPECT_EQ(p.IsDetVia() + p.IsLog() + p.IsEnd(), 0);
    auto lines = log.Lines();
    ASSERT_EQ(lines.size(), 16u);
    EXPECT_EQ(lines[11], "   - Parameter 11 : b");
    const std::vector<std::string> flags(lines.begin() + 12, lines.end());
    const std::vector<std::string> expected = {"   - Parameter 12 : /PDBA", "   - Parameter 12 : /PDBX",
                                               "   - Parameter 12 : /PEMA", "   - Parameter 12 : /PLE"};
    EXPECT_EQ(flags, expected);
}

TEST(CEP_ParameterScan, DetViaLeavesTheListWhilePdbaStays) {
    // /DET_VIA is counted and dropped, so the dump reads one place past the list.
    ScratchLog log;
    EXPECT_THROW(CEP_Parameter(Args({"From_KAPI", "/A", "/PDBA", "/det_via", "dir", "save", "n", "x"})),
                 CInvalidArgException);
    const std::vector<std::string> expected = {"   - Parameter 0 : From_KAPI", "   - Parameter 1 : /A",
                                               "   - Parameter 2 : /PDBA", "   - Parameter 3 : dir",
                                               "   - Parameter 4 : save"};
    EXPECT_EQ(log.Lines(), expected);
}

TEST(CEP_ParameterScan, FormatKeyLosesSlashesAtBothEndsOnly) {
    ScratchLog log;
    EXPECT_EQ(CEP_Parameter(Args({"From_KAPI", "//Z//", "a", "b"})).GetFormatKey(), "Z");
    EXPECT_EQ(CEP_Parameter(Args({"From_KAPI", "/z/x/", "a", "b"})).GetFormatKey(), "z/x");
}

// ---- The code table --------------------------------------------------------------

namespace {
enum class Kind { DesignFile, DesignDir, Dsn, PdbbPair, Odb, Zdf, Zps };
struct Row {
    const char* code;
    int minimum;
    Kind kind;
};
const Row kRows[] = {
    {"AD", 5, Kind::DesignFile},  {"T", 5, Kind::DesignFile},   {"AP", 5, Kind::DesignFile}, {"C", 5, Kind::DesignFile},
    {"AE", 4, Kind::DesignFile},  {"L", 4, Kind::DesignFile},   {"CA", 6, Kind::DesignDir},  {"E", 6, Kind::DesignDir},
    {"CS", 5, Kind::DesignFile},  {"R", 5, Kind::DesignFile},   {"CV", 5, Kind::Dsn},        {"V", 5, Kind::Dsn},
    {"GM", 4, Kind::DesignFile},  {"W", 4, Kind::DesignFile},   {"GR", 4, Kind::DesignFile}, {"G", 4, Kind::DesignFile},
    {"IPC", 4, Kind::DesignFile}, {"I", 4, Kind::DesignFile},   {"MB", 5, Kind::PdbbPair},   {"M", 5, Kind::PdbbPair},
    {"MN", 5, Kind::PdbbPair},    {"N", 5, Kind::PdbbPair},     {"SP", 5, Kind::DesignFile}, {"D", 5, Kind::DesignFile},
    {"SPP", 5, Kind::DesignFile}, {"PR", 5, Kind::DesignFile},  {"SX", 5, Kind::PdbbPair},   {"P", 5, Kind::PdbbPair},
    {"ODB", 5, Kind::Odb},        {"O", 5, Kind::Odb},          {"ZC", 4, Kind::DesignFile}, {"S", 4, Kind::DesignFile},
    {"ZDF", 7, Kind::Zdf},        {"B", 7, Kind::Zdf},          {"ZPS", 5, Kind::Zps},       {"Z", 5, Kind::Zps},
    {"GDSII", 4, Kind::DesignFile}, {"A", 6, Kind::DesignDir},
};

// From_KAPI, /code, design, save, then what the row's check reads, count entries in all.
CStringArray RowArgs(const Row& row, const std::string& design, const std::string& save, int count) {
    std::vector<std::string> items = {"From_KAPI", "/" + std::string(row.code), design, save};
    if (row.kind == Kind::Zdf) items.insert(items.end(), {"/A", "/S"});
    if (row.kind == Kind::Zps) items.push_back("/W");
    if (row.kind == Kind::Dsn) items.push_back("board");
    items.resize(static_cast<size_t>(count), "x");
    return Args(items);
}
}  // namespace

TEST(CEP_ParameterTable, EveryRowRefusesWithItsMessageOnceAndAcceptsGoodPaths) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.code);
        ScratchLog log;
        const std::string design = log.Dir() / "design";
        const std::string save = log.Dir() / "save";
        const std::string missing = log.Dir() / "missing";
        fs::create_directories(design);
        fs::create_directories(save);
        Touch(Join(design, "board.dsn"));
        Touch(log.Dir() / "file");
        const std::string blocked = log.Dir() / "file/save";  // a save folder that cannot exist or be made

        // Below the minimum nothing is tested and nothing is said.
        {
            CEP_Parameter few(RowArgs(row, missing, missing, row.minimum - 1));
            EXPECT_EQ(few.CheckParameter(), 0);
            EXPECT_TRUE(log.Messages().empty());
        }

        // A missing design (not tested by ZDF and ZPS).
        if (row.kind != Kind::Zdf && row.kind != Kind::Zps) {
            CEP_Parameter p(RowArgs(row, missing, save, row.minimum));
            EXPECT_EQ(p.CheckParameter(), 0);
            const char* format = row.kind == Kind::DesignFile || row.kind == Kind::Dsn ? kDesignFile
                                 : row.kind == Kind::Odb                              ? "Cannot found Design. : %s"
                                                                                      : kDesignDir;
            EXPECT_EQ(log.Messages(), std::vector<std::string>{Msg(format, missing)});
        }

        // A missing save folder.
        {
            ScratchLog again;
            const std::string where = row.kind == Kind::Odb ? blocked : missing;
            CEP_Parameter p(RowArgs(row, design, where, row.minimum));
            EXPECT_EQ(p.CheckParameter(), 0);
            const bool pdbbWording = row.kind == Kind::PdbbPair || row.kind == Kind::Zdf || row.kind == Kind::Zps;
            EXPECT_EQ(again.Messages(), std::vector<std::string>{Msg(pdbbWording ? kPdbbSaveDir : kSaveDir, where)});
        }

        // Everything present.
        {
            ScratchLog again;
            CEP_Parameter p(RowArgs(row, design, save, row.minimum));
            EXPECT_EQ(p.CheckParameter(), 1);
            EXPECT_TRUE(again.Messages().empty());
        }
    }
}

TEST(CEP_ParameterTable, UnknownKeysFailSilently) {
    ScratchLog log;
    for (const char* key : {"/QQ", "A", "/"})
        EXPECT_EQ(CEP_Parameter(Args({"From_KAPI", key, "d", "s", "n", "m"})).CheckParameter(), 0) << key;
    EXPECT_TRUE(log.Messages().empty());
}

TEST(CEP_ParameterTable, PathsAreNormalisedAndWrittenBack) {
    ScratchLog log;
    fs::create_directories(log.Dir() / "a/b");
    std::string design = log.Dir().path() + "\\a\\b";
    std::string save = log.Dir().path() + "\\a";
    CEP_Parameter p(Args({"From_KAPI", "/AD", design, save, "x"}));
    EXPECT_EQ(p.CheckParameter(), 1);
    EXPECT_EQ(p.GetAt(2), log.Dir() / "a/b");
    EXPECT_EQ(p.GetAt(3), log.Dir() / "a");
}

TEST(CEP_ParameterTable, CvLooksForTheDsnFileInTheFolder) {
    ScratchLog log;
    fs::create_directories(log.Dir() / "d");
    CEP_Parameter p(Args({"From_KAPI", "/CV", log.Dir() / "d", log.Dir().path(), "nodsn"}));
    EXPECT_EQ(p.CheckParameter(), 0);
    EXPECT_EQ(log.Messages(), std::vector<std::string>{Msg(kDesignFile, log.Dir() / "d/nodsn.dsn")});
}

TEST(CEP_ParameterTable, MentorChecksModeAndNamedValuesFromSevenArguments) {
    ScratchLog log;
    const std::string d = log.Dir().path();
    auto check = [&](std::initializer_list<std::string> tail) {
        std::vector<std::string> items = {"From_KAPI", "/MB", d, d, "out"};
        items.insert(items.end(), tail);
        return CEP_Parameter(Args(items)).CheckParameter();
    };
    EXPECT_EQ(check({"/X"}), 1);                        // six: the mode is not read
    EXPECT_EQ(check({"/X", "y"}), 0);                   // seven: the mode must be /S, /A or /AF
    EXPECT_TRUE(log.Messages().empty());
    EXPECT_EQ(check({"/af", "/PANEL:P1", "/COCTOP:\"L1\"", "/COCBOTTOM:L4"}), 1);
    EXPECT_EQ(check({"/S", "/panel:\"\""}), 0);
    EXPECT_EQ(check({"/A", "/PANEL:P", "/COCTOP:"}), 0);
    EXPECT_EQ(check({"/A", " /CocBottom:\"\" "}), 0);
    const std::vector<std::string> expected = {"Invalid Panel Name : /panel:\"\"", "Invalid COC TOP Layer Name : /COCTOP:",
                                               "Invalid COC Bottom Layer Name :  /CocBottom:\"\" "};
    EXPECT_EQ(log.Messages(), expected);
}

TEST(CEP_ParameterTable, BoardDesignerAndPwsLetterSwitchesFailSilently) {
    ScratchLog log;
    const std::string d = log.Dir().path();
    const std::string missing = log.Dir() / "missing";
    auto zdf = [&](const std::string& first, const std::string& second) {
        return CEP_Parameter(Args({"From_KAPI", "/B", missing, d, first, second, "x"})).CheckParameter();
    };
    EXPECT_EQ(zdf("/b", "/s"), 1);  // the design path is not tested
    EXPECT_EQ(zdf("/a", "/A"), 1);
    EXPECT_EQ(zdf("/S", "/S"), 0);
    EXPECT_EQ(zdf("A", "/S"), 0);
    EXPECT_EQ(zdf("/A", "/B"), 0);
    EXPECT_EQ(zdf("/A", "S"), 0);

    auto zps = [&](std::initializer_list<std::string> tail) {
        std::vector<std::string> items = {"From_KAPI", "/Z", missing, d};
        items.insert(items.end(), tail);
        return CEP_Parameter(Args(items)).CheckParameter();
    };
    EXPECT_EQ(zps({"/w"}), 1);
    EXPECT_EQ(zps({"/a"}), 1);
    EXPECT_EQ(zps({"/B"}), 0);
    EXPECT_TRUE(log.Messages().empty());
    Touch(Join(d, "lib.zls"));
    EXPECT_EQ(zps({"/A", d + "\\lib.zls"}), 1);
    EXPECT_EQ(zps({"/A", missing}), 0);
    EXPECT_EQ(zps({"/A", "x", "y"}), 1);  // seven: the zls file is not read
    EXPECT_EQ(log.Messages(), std::vector<std::string>{Msg("Cannot found zls file path. : %s", missing)});
}

TEST(CEP_ParameterTable, SxRemovesAStaleOutputUnlessTheNameCarriesTheExtension) {
    ScratchLog log;
    const std::string d = log.Dir().path();
    Touch(Join(d, "out.PDBB"));
    Touch(Join(d, "out.pdbb"));
    Touch(Join(d, "kept.pdbb.PDBB"));
    EXPECT_EQ(CEP_Parameter(Args({"From_KAPI", "/SX", d, d, "out"})).CheckParameter(), 1);
    EXPECT_FALSE(fs::exists(Join(d, "out.PDBB")));
    EXPECT_FALSE(fs::exists(Join(d, "out.pdbb")));
    EXPECT_EQ(CEP_Parameter(Args({"From_KAPI", "/P", d, d, "kept.pdbb"})).CheckParameter(), 1);
    EXPECT_TRUE(fs::exists(Join(d, "kept.pdbb.PDBB")));
}

// ---- /KP and /PLP -----------------------------------------------------------

TEST(CEP_ParameterSwitchChecks, KpChecksTheBoardFileAndAnXmlThirdArgument) {
    ScratchLog log;
    const std::string d = log.Dir().path();
    const std::string board = Join(d, "b.pdbb");
    Touch(board);
    Touch(Join(d, "r.xml"));
    // /KP stays in the list and shortens the walk, hence the trailing filler.
    EXPECT_EQ(CEP_Parameter(Args({"From_KAPI", board, "x", "notes.txt", "/KP", "f"})).CheckParameter(), 1);
    EXPECT_EQ(CEP_Parameter(Args({"From_KAPI", board, "x", d + "\\r.xml", "/KP", "f"})).CheckParameter(), 1);
    EXPECT_TRUE(log.Messages().empty());
    EXPECT_EQ(CEP_Parameter(Args({"From_KAPI", board, "x", Join(d, "gone.XML"), "/kp", "f"})).CheckParameter(), 0);
    EXPECT_EQ(CEP_Parameter(Args({"From_KAPI", Join(d, "gone.pdbb"), "x", "y", "/KP", "f"})).CheckParameter(), 0);
    const std::vector<std::string> expected = {Msg("Cannot found XML File Path. : %s", Join(d, "gone.XML")),
                                               Msg("Cannot found PDBB File Path. : %s", Join(d, "gone.pdbb"))};
    EXPECT_EQ(log.Messages(), expected);
    // Three entries pass the count test, then argument 3 is outside the list.
    CEP_Parameter three(Args({"From_KAPI", board, "/KP", "f"}));
    EXPECT_THROW(three.CheckParameter(), CInvalidArgException);
}

TEST(CEP_ParameterSwitchChecks, PlpChecksTheBoardFileAndBacksAFailedKp) {
    ScratchLog log;
    const std::string d = log.Dir().path();
    Touch(Join(d, "b.pdbb"));
    EXPECT_EQ(CEP_Parameter(Args({"From_KAPI", d + "\\b.pdbb", "/PLP", "f"})).CheckParameter(), 1);
    EXPECT_EQ(CEP_Parameter(Args({"From_KAPI", Join(d, "gone"), "/PLP", "f"})).CheckParameter(), 0);
    EXPECT_EQ(log.Messages(), std::vector<std::string>{Msg("Cannot found PDBB File Path. : %s", Join(d, "gone"))});
    // A failing XML check falls back to the /PLP check, which passes here.
    EXPECT_EQ(CEP_Parameter(Args({"From_KAPI", Join(d, "b.pdbb"), "x", Join(d, "no.xml"), "/KP", "/PLP", "f", "g"}))
                  .CheckParameter(),
              1);
}

// ---- ODB++ ------------------------------------------------------------------

namespace {
CStringArray OdbArgs(const std::string& dir, std::initializer_list<std::string> options) {
    std::vector<std::string> items = {"From_KAPI", "/ODB", dir, Join(dir, "made/here"), "job"};
    items.insert(items.end(), options);
    return Args(items);
}
}  // namespace

TEST(CEP_ParameterOdb, OptionsLandInTheirSlots) {
    ScratchLog log;
    const std::string d = log.Dir().path();
    CEP_Parameter p(OdbArgs(d, {"/s:Step1", "/b:x", "/u:MM", "/skip_misc", "/SKIP_ENDFILE", "/ADD_SUBBOARD_OUTLINE",
                                "/log:f.txt", "/SA", "/RL", "/DRILL_TO_VIA:1", "/LAY_FILTER:top", "/CD", "/plx:abc", "/K",
                                "/FIGT:t", "/FIGB:b", "/SO:o", "/SAF", "n=/Thread:4", "/POSI", "/MATERIAL", "/ZZZ"}));
    ASSERT_EQ(p.CheckParameter(), 1);
    EXPECT_TRUE(fs::is_directory(Join(d, "made/here")));
    ASSERT_EQ(p.GetCount(), 26);
    const std::vector<std::string> expected = {
        "From_KAPI", "/ODB",      "",     "",      "job",            "/s:Step1",   "/b:x",     "/u:MM",  "TRUE",
        "/log:f.txt", "TRUE",     "TRUE", "TRUE",  "TRUE",           "/DRILL_TO_VIA:1", "/LAY_FILTER:top", "TRUE",
        "abc",       "TRUE",      "/FIGT:t", "/FIGB:b", "/SO:o",     "TRUE",       "n=4",      "TRUE",   "TRUE"};
    for (int i = 4; i < 26; ++i) EXPECT_EQ(p.GetAt(i).str(), expected[i]) << "slot " << i;
}

TEST(CEP_ParameterOdb, SlotRulesTakeTheFirstTestAndTheLastArgument) {
    ScratchLog log;
    const std::string d = log.Dir().path();
    CEP_Parameter safOnly(OdbArgs(d, {"/SAF", "/S:a", "/S:b"}));
    ASSERT_EQ(safOnly.CheckParameter(), 1);
    EXPECT_EQ(safOnly.GetAt(22), "TRUE");
    EXPECT_EQ(safOnly.GetAt(10), "");
    EXPECT_EQ(safOnly.GetAt(5), "/S:b");
    EXPECT_EQ(safOnly.GetAt(18), "");

    CEP_Parameter keep(OdbArgs(d, {}));
    keep.SetOdbKeep(1);
    ASSERT_EQ(keep.CheckParameter(), 1);
    EXPECT_EQ(keep.GetAt(18), "TRUE");
    EXPECT_EQ(keep.GetAt(25), "");
}

TEST(CEP_ParameterOdb, SaveUnitMustBeMmInchOrMil) {
    ScratchLog log;
    const std::string d = log.Dir().path();
    for (const char* good : {"/U:mm", "/u:INCH", "/U:Mil", "/u:/u:mm"})
        EXPECT_EQ(CEP_Parameter(OdbArgs(d, {good})).CheckParameter(), 1) << good;
    EXPECT_TRUE(log.Messages().empty());
    for (const char* bad : {"/U:furlong", "/U:um", "/U:"})  // from "um" the leading 'u' goes too
        EXPECT_EQ(CEP_Parameter(OdbArgs(d, {bad})).CheckParameter(), 0) << bad;
    const std::vector<std::string> expected = {"Invalid PDB Save Unit : furlong", "Invalid PDB Save Unit : m",
                                               "Invalid PDB Save Unit : "};
    EXPECT_EQ(log.Messages(), expected);
}
