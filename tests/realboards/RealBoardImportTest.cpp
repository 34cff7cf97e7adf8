// Real boards written by KiCad as ODB++ and as IPC-2581 and converted through the
// argument-list extraction, compared with what KiCad's own Python module says of the
// same board (board_facts.py) and with each other. The exports and KiCad's accounts
// are made once per build by the realboards_export fixture (export_boards.cmake).
//
// KiCad writes both formats with Y negated (its Y grows downwards); the board
// database keeps the export's orientation and turns rotations counter-clockwise, so
// a KiCad footprint at (x, y) turned by r appears at (x, -y) turned by r (mod 360),
// on either side.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "CPdbbProcessor.h"
#include "KPCBAPI.hpp"
#include "KPCBAPIExtract.h"
#include "TestPaths.h"
#include "TestSystem.h"
#include "platform.h"

namespace {

struct Footprint {
    std::string side;
    double x = 0, y = 0, rotation = 0;
    int pads = 0;
};

// KiCad's account of one board.
struct Facts {
    std::map<std::string, Footprint> footprints;
    std::map<std::string, std::set<std::string>> nets;  // name -> REF-PAD
};

std::vector<std::string> SplitTabs(const std::string& line) {
    std::vector<std::string> fields;
    std::stringstream in(line);
    for (std::string field; std::getline(in, field, '\t');) fields.push_back(field);
    return fields;
}

Facts ReadFacts(const std::string& path) {
    Facts facts;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
        const std::vector<std::string> f = SplitTabs(line);
        if (f.size() == 7 && f[0] == "F") {
            facts.footprints[f[1]] = {f[2], std::stod(f[3]), std::stod(f[4]), std::stod(f[5]), std::stoi(f[6])};
        } else if (f.size() >= 2 && f[0] == "N") {
            facts.nets[f[1]].insert(f.begin() + 2, f.end());
        }
    }
    return facts;
}

bool KiCadAvailable() { return std::filesystem::exists(KPCB_KICAD_CLI); }

// Skips the test, saying why, when there is nothing to read or nothing to read it with.
#define SKIP_WITHOUT_REAL_BOARDS(readersBuilt)                                               \
    do {                                                                                     \
        if (!KiCadAvailable()) GTEST_SKIP() << "kicad-cli is not installed: no real boards"; \
        if (!(readersBuilt)) GTEST_SKIP() << "this build lacks the reader";                  \
    } while (0)

std::string Cached(const std::string& name) { return testing_support::Join(KPCB_REALBOARD_CACHE, name); }

// How a board was exported: an ODB++ archive, the same job unpacked, or IPC-2581.
enum class Export { OdbArchive, OdbFolder, Ipc2581 };

bool ReaderBuilt(Export format) { return format == Export::Ipc2581 ? KPCB_IPC2581_READER_BUILT : KPCB_ODB_READER_BUILT; }

std::string ExportPath(const std::string& board, const std::string& unit, Export format) {
    const char* ending[] = {".tgz", "", ".xml"};
    return Cached(board + "-" + unit + ending[static_cast<int>(format)]);
}

// Converts the export into folder/name.pdbb through the format's key of the argument list.
int Extract(Export format, const std::string& path, const std::string& folder, const std::string& name) {
    const char* args[] = {"From_KAPI", format == Export::Ipc2581 ? "/IPC" : "/ODB", path.c_str(), folder.c_str(),
                          name.c_str()};
    return ExtractPdbbFromArgumentList(5, args);
}

std::unique_ptr<CPdb> Load(const std::string& path) {
    CString error;
    std::unique_ptr<CPdb> pdb = CPdbbProcessor::LoadPDB(CString(path), error);
    EXPECT_TRUE(pdb) << path << ": " << error.GetString();
    return pdb;
}

double AngleApart(double a, double b) {
    const double d = std::fmod(std::fabs(a - b), 360.0);
    return std::min(d, 360.0 - d);
}

// What a board database holds, in the terms of KiCad's account (Y as KiCad has it;
// components without pins, such as logos, left out).
Facts FactsOf(const CPdb& pdb) {
    Facts facts;
    for (int i = 0; i < pdb.GetCompCount(); ++i) {
        const CPComp* comp = pdb.GetComp(i);
        if (comp->GetPinCount() == 0) continue;
        facts.footprints[comp->GetReference().str()] = {comp->GetSide() == CompSide::Bottom ? "B" : "T",
                                                        comp->GetPosition().x, -comp->GetPosition().y,
                                                        comp->GetRotation(), comp->GetPinCount()};
    }
    for (int i = 0; i < pdb.GetNetCount(); ++i) {
        const CPNet* net = pdb.GetNet(i);
        for (int p = 0; p < net->GetPinCount(); ++p)
            facts.nets[net->GetName().str()].insert(net->GetPin(p)->GetComp()->GetReference().str() + "-" +
                                                    net->GetPin(p)->GetName().str());
    }
    return facts;
}

// The same components (side, position within a micrometre, rotation, pad count), and
// every net of expected with the same pins.
void ExpectAgree(const Facts& found, const Facts& expected) {
    EXPECT_EQ(found.footprints.size(), expected.footprints.size());
    for (const auto& [ref, fp] : expected.footprints) {
        const auto it = found.footprints.find(ref);
        if (it == found.footprints.end()) {
            ADD_FAILURE() << ref << " is missing";
            continue;
        }
        const Footprint& comp = it->second;
        EXPECT_EQ(comp.side, fp.side) << ref;
        EXPECT_NEAR(comp.x, fp.x, 1e-3) << ref;
        EXPECT_NEAR(comp.y, fp.y, 1e-3) << ref;
        EXPECT_LT(AngleApart(comp.rotation, fp.rotation), 1e-3) << ref << " at " << comp.rotation;
        EXPECT_EQ(comp.pads, fp.pads) << ref;
    }
    for (const auto& [name, pins] : expected.nets) {
        const auto it = found.nets.find(name);
        if (it == found.nets.end()) {
            ADD_FAILURE() << "net " << name << " is missing";
            continue;
        }
        EXPECT_EQ(it->second, pins) << "net " << name;
    }
}

struct Variant {
    const char* board;
    const char* unit;
    Export format;
};

const char* const kExportNames[] = {"tgz", "dir", "ipc2581"};

void PrintTo(const Variant& v, std::ostream* os) {
    *os << v.board << " in " << v.unit << ", " << kExportNames[static_cast<int>(v.format)];
}

// A test name made of the text, anything but letters and digits turned into '_'.
std::string Identifier(std::string text) {
    for (char& c : text)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return text;
}

std::string VariantName(const ::testing::TestParamInfo<Variant>& info) {
    return Identifier(std::string(info.param.board) + "_" + info.param.unit + "_" +
                      kExportNames[static_cast<int>(info.param.format)]);
}

class RealBoardImport : public ::testing::TestWithParam<Variant> {
protected:
    void SetUp() override {
        SKIP_WITHOUT_REAL_BOARDS(ReaderBuilt(GetParam().format));
        testing_support::SetEnv("KPCB_DATA_DIR", dir.path());
        std::filesystem::create_directories(dir / "out");  // the IPC-2581 key does not make it
    }
    testing_support::TempDir dir;
};

TEST_P(RealBoardImport, BoardDatabaseHoldsWhatKiCadSays) {
    const Variant& v = GetParam();
    ASSERT_EQ(Extract(v.format, ExportPath(v.board, v.unit, v.format), dir / "out", "board"), 0);
    const std::unique_ptr<CPdb> pdb = Load(dir / "out/board.pdbb");
    ASSERT_TRUE(pdb);
    ExpectAgree(FactsOf(*pdb), ReadFacts(Cached(std::string(v.board) + ".tsv")));
}

// The KiCad demos: RoyalBlue54L-Feather has pads that share a number (exposed pads
// over thermal vias, a pin drawn twice) and, in IPC-2581, names KiCad suffixed where
// a reference and a pin name met (C8_1, pin J4_1 of U1).
const char* const kBoards[] = {"pic_programmer", "video", "RoyalBlue54L-Feather"};

std::vector<Variant> AllVariants() {
    std::vector<Variant> all;
    for (const char* board : kBoards)
        for (const char* unit : {"mm", "in"})
            for (Export format : {Export::OdbArchive, Export::OdbFolder, Export::Ipc2581})
                all.push_back({board, unit, format});
    return all;
}

INSTANTIATE_TEST_SUITE_P(KiCadDemos, RealBoardImport, ::testing::ValuesIn(AllVariants()), VariantName);

// The two readers agree on the same board, whatever KiCad's account leaves out
// (nets of unnumbered pads, for one).
class RealBoardFormats : public ::testing::TestWithParam<const char*> {};

TEST_P(RealBoardFormats, OdbAndIpc2581ImportsAgree) {
    SKIP_WITHOUT_REAL_BOARDS(KPCB_ODB_READER_BUILT && KPCB_IPC2581_READER_BUILT);
    testing_support::TempDir dir;
    testing_support::SetEnv("KPCB_DATA_DIR", dir.path());
    const std::string board = GetParam();
    ASSERT_EQ(Extract(Export::OdbArchive, ExportPath(board, "mm", Export::OdbArchive), dir.path(), "odb"), 0);
    ASSERT_EQ(Extract(Export::Ipc2581, ExportPath(board, "mm", Export::Ipc2581), dir.path(), "ipc"), 0);
    const std::unique_ptr<CPdb> odb = Load(dir / "odb.pdbb");
    const std::unique_ptr<CPdb> ipc = Load(dir / "ipc.pdbb");
    ASSERT_TRUE(odb && ipc);
    const Facts fromOdb = FactsOf(*odb);
    const Facts fromIpc = FactsOf(*ipc);
    ExpectAgree(fromIpc, fromOdb);
    ExpectAgree(fromOdb, fromIpc);
}

INSTANTIATE_TEST_SUITE_P(KiCadDemos, RealBoardFormats, ::testing::ValuesIn(kBoards),
                         [](const ::testing::TestParamInfo<const char*>& info) { return Identifier(info.param); });

// The ECAD exports take an ODB++ job for their design when their own plug-in is
// missing (here: the plug-in folder is empty); Allegro the IPC-2581 file beside its
// board file.
TEST(RealBoardEcadExports, ReadAnExchangeExportWithoutTheirPlugIn) {
    SKIP_WITHOUT_REAL_BOARDS(KPCB_ODB_READER_BUILT && KPCB_IPC2581_READER_BUILT);
    testing_support::TempDir dir;
    testing_support::SetEnv("KPCB_DATA_DIR", dir.path());
    testing_support::SetEnv("KPCB_IMPORTER_DIR", dir / "no-plug-ins");
    const std::string folder = ExportPath("pic_programmer", "mm", Export::OdbFolder);
    const std::string archive = ExportPath("pic_programmer", "mm", Export::OdbArchive);
    for (const char* sub : {"m", "z", "b", "a"}) std::filesystem::create_directories(dir / sub);
    std::filesystem::copy_file(ExportPath("pic_programmer", "mm", Export::Ipc2581), dir / "a/pic.xml");
    const struct {
        const char* name;
        int result;
        std::string written;
    } cases[] = {
        {"Mentor", ExtractPdbbFromMentor(CString(dir / "m/out.pdbb"), CString(folder), 0, CString()), dir / "m/out.pdbb"},
        {"Zuken", ExtractPdbbFromZuken(CString(dir / "z/out.pdbb"), CString(archive), 'a', CString()),
         dir / "z/pic_programmer-mm.pdbb"},
        {"Board Designer",
         ExtractPdbbFromBoardDesigner(CString(dir / "b"), CString(archive), 'a', 's', "", "", "", ""),
         dir / "b/pic_programmer-mm.pdbb"},
        {"Allegro", ExtractPdbbFromAllegro(CString(dir / "a"), CString(dir / "a/pic.brd"), 'b', "", ""),
         dir / "a/pic.pdbb"},
    };
    const size_t footprints = ReadFacts(Cached("pic_programmer.tsv")).footprints.size();
    for (const auto& c : cases) {
        EXPECT_EQ(c.result, 0) << c.name;
        const std::unique_ptr<CPdb> pdb = Load(c.written);
        ASSERT_TRUE(pdb) << c.name;
        EXPECT_EQ(pdb->GetCompCount(), static_cast<int>(footprints)) << c.name;
    }
    testing_support::UnsetEnv("KPCB_IMPORTER_DIR");
}

// The viewer launched on a converted board answers as the job says.
TEST(RealBoardViewer, AnswersPinCountsSidesAndNetPinsOfTheConvertedBoard) {
    SKIP_WITHOUT_REAL_BOARDS(KPCB_ODB_READER_BUILT);
    testing_support::TempDir dir;
    testing_support::SetEnv("KPCB_DATA_DIR", dir.path());
    ASSERT_EQ(Extract(Export::OdbArchive, ExportPath("pic_programmer", "mm", Export::OdbArchive), dir.path(), "pic"), 0);
    const Facts facts = ReadFacts(Cached("pic_programmer.tsv"));
    const int pid = KPCB_Launch(CString((dir / "pic.pdbb").c_str()), 1);
    ASSERT_GT(pid, 0);
    for (const auto& [ref, fp] : facts.footprints) {
        const std::wstring wref = platform::AnsiToWide(ref);
        int count = -1, status = -1;
        EXPECT_EQ(KPCB_GetPinCountFromReference(pid, wref.c_str(), &count), 0);
        EXPECT_EQ(count, fp.pads) << ref;
        EXPECT_EQ(KPCB_GetReferencePlaceStatus(pid, wref.c_str(), &status, 0), 0);
        EXPECT_EQ(status, fp.side == "B" ? 2 : 1) << ref;
    }
    // The largest net: its pin list, asked through its first pin.
    auto largest = facts.nets.begin();
    for (auto it = facts.nets.begin(); it != facts.nets.end(); ++it)
        if (it->second.size() > largest->second.size()) largest = it;
    ASSERT_NE(largest, facts.nets.end());
    const std::string first = *largest->second.begin();
    const size_t dash = first.rfind('-');
    wchar_t* net = nullptr;
    wchar_t* pins = nullptr;
    ASSERT_EQ(KPCB_GetPinListInfoOfNet_RefPin(pid, platform::AnsiToWide(first.substr(0, dash)).c_str(),
                                              platform::AnsiToWide(first.substr(dash + 1)).c_str(), &net, &pins, L"|"),
              0);
    EXPECT_EQ(platform::WideToAnsi(net ? net : L""), largest->first);
    std::set<std::string> listed;
    std::stringstream in(platform::WideToAnsi(pins ? pins : L""));
    for (std::string pin; std::getline(in, pin, '|');) listed.insert(pin);
    EXPECT_EQ(listed, largest->second);
    KPCB_FreeString(net);
    KPCB_FreeString(pins);
    KPCB_Exit(pid, 1);
}

}  // namespace
