// Real boards written by KiCad as ODB++ and converted through the argument-list
// extraction, compared with what KiCad's own Python module says of the same board
// (board_facts.py). The jobs and KiCad's accounts are made once per build by the
// realboards_export fixture (export_boards.cmake).
//
// KiCad writes ODB++ with Y negated (its Y grows downwards) and rotations clockwise;
// the board database keeps the job's orientation and turns rotations
// counter-clockwise, so a KiCad footprint at (x, y) turned by r appears at (x, -y)
// turned by r (mod 360), on either side.
#include <gtest/gtest.h>

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
#define SKIP_WITHOUT_REAL_BOARDS()                                                           \
    do {                                                                                     \
        if (!KiCadAvailable()) GTEST_SKIP() << "kicad-cli is not installed: no real boards"; \
        if (!KPCB_ODB_READER_BUILT) GTEST_SKIP() << "this build has no ODB++ reader";        \
    } while (0)

std::string Cached(const std::string& name) { return testing_support::Join(KPCB_REALBOARD_CACHE, name); }

// The job of a board in one unit, as the archive or as the unpacked folder.
std::string JobPath(const std::string& board, const std::string& unit, bool archive) {
    return Cached(board + "-" + unit + (archive ? ".tgz" : ""));
}

int ExtractOdb(const std::string& job, const std::string& folder, const std::string& name) {
    const char* args[] = {"From_KAPI", "/ODB", job.c_str(), folder.c_str(), name.c_str()};
    return ExtractPdbbFromArgumentList(5, args);
}

double AngleApart(double a, double b) {
    const double d = std::fmod(std::fabs(a - b), 360.0);
    return std::min(d, 360.0 - d);
}

void ExpectLikeKiCad(const CPdb& pdb, const Facts& facts) {
    EXPECT_EQ(pdb.GetCompCount(), static_cast<int>(facts.footprints.size()));
    for (const auto& [ref, fp] : facts.footprints) {
        const CPComp* comp = pdb.FindComp(CString(ref));
        if (!comp) {
            ADD_FAILURE() << ref << " is missing";
            continue;
        }
        EXPECT_EQ(comp->GetSide() == CompSide::Bottom ? "B" : "T", fp.side) << ref;
        EXPECT_NEAR(comp->GetPosition().x, fp.x, 1e-3) << ref;
        EXPECT_NEAR(comp->GetPosition().y, -fp.y, 1e-3) << ref;
        EXPECT_LT(AngleApart(comp->GetRotation(), fp.rotation), 1e-3) << ref << " at " << comp->GetRotation();
        EXPECT_EQ(comp->GetPinCount(), fp.pads) << ref;
    }
    for (const auto& [name, pins] : facts.nets) {
        const CPNet* net = pdb.FindNet(CString(name));
        if (!net) {
            ADD_FAILURE() << "net " << name << " is missing";
            continue;
        }
        std::set<std::string> found;
        for (int i = 0; i < net->GetPinCount(); ++i)
            found.insert(net->GetPin(i)->GetComp()->GetReference().str() + "-" + net->GetPin(i)->GetName().str());
        EXPECT_EQ(found, pins) << "net " << name;
    }
}

struct Variant {
    const char* board;
    const char* unit;
    bool archive;
};

void PrintTo(const Variant& v, std::ostream* os) {
    *os << v.board << " in " << v.unit << (v.archive ? ", archive" : ", folder");
}

std::string VariantName(const ::testing::TestParamInfo<Variant>& info) {
    std::string name = std::string(info.param.board) + "_" + info.param.unit + (info.param.archive ? "_tgz" : "_dir");
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
}

class RealBoardImport : public ::testing::TestWithParam<Variant> {
protected:
    void SetUp() override {
        SKIP_WITHOUT_REAL_BOARDS();
        testing_support::SetEnv("KPCB_DATA_DIR", dir.path());
    }
    testing_support::TempDir dir;
};

TEST_P(RealBoardImport, BoardDatabaseHoldsWhatKiCadSays) {
    const Variant& v = GetParam();
    ASSERT_EQ(ExtractOdb(JobPath(v.board, v.unit, v.archive), dir / "out", "board"), 0);
    CString error;
    const std::unique_ptr<CPdb> pdb = CPdbbProcessor::LoadPDB(CString(dir / "out/board.pdbb"), error);
    ASSERT_TRUE(pdb) << error.GetString();
    ExpectLikeKiCad(*pdb, ReadFacts(Cached(std::string(v.board) + ".tsv")));
}

INSTANTIATE_TEST_SUITE_P(KiCadDemos, RealBoardImport,
                         ::testing::Values(Variant{"pic_programmer", "mm", true}, Variant{"pic_programmer", "mm", false},
                                           Variant{"pic_programmer", "in", true}, Variant{"pic_programmer", "in", false},
                                           Variant{"video", "mm", true}, Variant{"video", "mm", false},
                                           Variant{"video", "in", true}, Variant{"video", "in", false},
                                           Variant{"RoyalBlue54L-Feather", "mm", true},
                                           Variant{"RoyalBlue54L-Feather", "mm", false},
                                           Variant{"RoyalBlue54L-Feather", "in", true},
                                           Variant{"RoyalBlue54L-Feather", "in", false}),
                         VariantName);

// The ECAD exports take an ODB++ job for their design when their own plug-in is
// missing (here: the plug-in folder is empty).
TEST(RealBoardEcadExports, ReadAnOdbJobWithoutTheirPlugIn) {
    SKIP_WITHOUT_REAL_BOARDS();
    testing_support::TempDir dir;
    testing_support::SetEnv("KPCB_DATA_DIR", dir.path());
    testing_support::SetEnv("KPCB_IMPORTER_DIR", dir / "no-plug-ins");
    const std::string folder = JobPath("pic_programmer", "mm", false);
    const std::string archive = JobPath("pic_programmer", "mm", true);
    for (const char* sub : {"m", "z", "b"}) std::filesystem::create_directories(dir / sub);
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
    };
    const size_t footprints = ReadFacts(Cached("pic_programmer.tsv")).footprints.size();
    for (const auto& c : cases) {
        EXPECT_EQ(c.result, 0) << c.name;
        CString error;
        const std::unique_ptr<CPdb> pdb = CPdbbProcessor::LoadPDB(CString(c.written), error);
        ASSERT_TRUE(pdb) << c.name << ": " << error.GetString();
        EXPECT_EQ(pdb->GetCompCount(), static_cast<int>(footprints)) << c.name;
    }
    testing_support::UnsetEnv("KPCB_IMPORTER_DIR");
}

// The viewer launched on a converted board answers as the job says.
TEST(RealBoardViewer, AnswersPinCountsSidesAndNetPinsOfTheConvertedBoard) {
    SKIP_WITHOUT_REAL_BOARDS();
    testing_support::TempDir dir;
    testing_support::SetEnv("KPCB_DATA_DIR", dir.path());
    ASSERT_EQ(ExtractOdb(JobPath("pic_programmer", "mm", true), dir.path(), "pic"), 0);
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
