// A small hand-written job, written to a folder and packed as an archive, read whole:
// the facts of the format that readers get wrong.
#include <gtest/gtest.h>

#include <archive.h>
#include <archive_entry.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "OdbImport.h"

namespace {

namespace fs = std::filesystem;

const std::map<std::string, std::string>& JobFiles() {
    static const std::map<std::string, std::string> files = {
        {"misc/info", "UNITS=MM\nJOB_NAME=test\n"},
        // Rows out of order in the file; names upper case, folders lower case.
        {"matrix/matrix",
         "STEP {\n COL=2\n NAME=PANEL\n}\nSTEP {\n COL=1\n NAME=PCB\n}\n"
         "LAYER {\n ROW=5\n CONTEXT=BOARD\n TYPE=DRILL\n NAME=DRILL\n START_NAME=TOP\n END_NAME=BOTTOM\n}\n"
         "LAYER {\n ROW=1\n CONTEXT=BOARD\n TYPE=COMPONENT\n NAME=COMP_+_TOP\n}\n"
         "LAYER {\n ROW=3\n CONTEXT=BOARD\n TYPE=SIGNAL\n NAME=TOP\n POLARITY=POSITIVE\n}\n"
         "LAYER {\n ROW=4\n CONTEXT=BOARD\n TYPE=SIGNAL\n NAME=BOTTOM\n}\n"
         "LAYER {\n ROW=2\n CONTEXT=BOARD\n TYPE=SILK_SCREEN\n NAME=SST\n}\n"},
        {"steps/pcb/stephdr", "UNITS=MM\nX_DATUM=0\nY_DATUM=0\n"},
        {"steps/pcb/profile", "UNITS=MM\nS P 0\nOB 0 0 I\nOS 100 0\nOS 100 80\nOS 0 80\nOE\nSE\n"},
        // An inch layer (sizes in mils) in a millimetre job.
        {"steps/pcb/layers/top/features",
         "UNITS=INCH\n#\n$0 rect60x40\n$1 donut_r80x40\n$2 r10\n$3 r30\n$4 unknown_sym\n@0 .smd\n&0 value\n"
         "P 1.0 1.0 0 P 0 0;0;ID=1\n"
         "P 1.1 1.0 1 P 0 0\n"
         "L 1.0 1.0 1.5 1.0 2 P 0;;ID=3\n"
         "A 1.5 1.0 1.5 1.2 1.5 1.1 2 P 0 N\n"
         "P 2.0 2.0 3 P 0 0\n"
         "L 0 0 0.1 \\\n 0.1 2 P 0\n"
         "B 1 1 UPC39 standard P 0 0.008 0.2 Y N N N 'X'\n"
         "S P 0\nOB 0 0 I\nOS 0.5 0\nOS 0.5 0.5\nOS 0 0.5\nOE\nOB 0.1 0.1 H\nOS 0.2 0.1\nOS 0.2 0.2\nOE\nSE\n"
         "P 3 3 4 P 0 0\n"},
        {"steps/pcb/layers/drill/features", "UNITS=MM\n$0 r500\nP 25.4 25.4 0 P 0 0\nP 50.8 50.8 0 P 0 0\n"},
        {"steps/pcb/layers/comp_+_top/components",
         "UNITS=MM\n@0 .comp_height\nCMP 0 26.67 25.4 90 N U1 PART-A;;ID=5\nPRP VALUE '10k'\n"
         "TOP 0 25.4 25.4 90 N 1 0 1\nTOP 1 27.94 25.4 90 N 2 1 2\n"},
        {"steps/pcb/layers/comp_+_bot/components", ""},
        // LYR names lower case; TOP net numbers follow these NET records, not the cadnet list.
        {"steps/pcb/eda/data",
         "HDR test\nUNITS=MM\nLYR top bottom drill\n"
         "NET $NONE$\nSNT TRC\nFID C 0 5\n"
         "NET GND\nSNT TOP T 0 0\nFID C 0 0\nFID H 2 0\nSNT TRC\nFID C 0 2\nFID C 0 3\nSNT PLN S 0 0\nFID C 0 7\n"
         "NET SIG\nSNT TOP T 0 1\nFID C 0 1\nSNT VIA\nFID H 2 1\nFID C 0 4\n"
         "PKG SOT 2.54 -1 -1 3 1\nRC -1 -1 4 2\nPIN 1 T 0 0 0 E U\nCR 0 0 0.5\nPIN 2 S 2.54 0 0 E S\nSQ 2.54 0 0.5\n"},
        {"steps/pcb/netlists/cadnet/netlist", "H optimize n staggered n\n$0 GND\n$1 SIG\n0 0.1 1 1 T\n"},
    };
    return files;
}

fs::path TempDir(const std::string& name) {
    fs::path dir = fs::temp_directory_path() / ("kpcb_odb_" + name + "_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()));
    fs::remove_all(dir);
    fs::create_directories(dir);
    return dir;
}

void WriteFile(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

fs::path WriteJobFolder(const std::string& name) {
    const fs::path job = TempDir(name) / "job";
    for (const auto& file : JobFiles()) WriteFile(job / file.first, file.second);
    return job;
}

// The file in Unix compress form, made by libarchive's writer.
std::string Compress(const std::string& data) {
    archive* a = archive_write_new();
    archive_write_set_format_raw(a);
    archive_write_add_filter_compress(a);
    std::string out(data.size() * 2 + 1024, '\0');
    size_t used = 0;
    archive_write_open_memory(a, out.data(), out.size(), &used);
    archive_entry* entry = archive_entry_new();
    archive_entry_set_filetype(entry, AE_IFREG);
    archive_entry_set_size(entry, static_cast<la_int64_t>(data.size()));
    archive_write_header(a, entry);
    archive_write_data(a, data.data(), data.size());
    archive_entry_free(entry);
    archive_write_close(a);
    archive_write_free(a);
    out.resize(used);
    return out;
}

// The job as <dir>/job.tgz, its layer table stored as a ".Z" member.
fs::path WriteJobArchive(const std::string& name) {
    const fs::path path = TempDir(name) / "job.tgz";
    archive* a = archive_write_new();
    archive_write_set_format_pax_restricted(a);
    archive_write_add_filter_gzip(a);
    archive_write_open_filename(a, path.string().c_str());
    for (const auto& file : JobFiles()) {
        const bool compress = file.first == "matrix/matrix";
        const std::string data = compress ? Compress(file.second) : file.second;
        archive_entry* entry = archive_entry_new();
        archive_entry_set_pathname(entry, ("job/" + file.first + (compress ? ".Z" : "")).c_str());
        archive_entry_set_filetype(entry, AE_IFREG);
        archive_entry_set_perm(entry, 0644);
        archive_entry_set_size(entry, static_cast<la_int64_t>(data.size()));
        archive_write_header(a, entry);
        archive_write_data(a, data.data(), data.size());
        archive_entry_free(entry);
    }
    archive_write_close(a);
    archive_write_free(a);
    return path;
}

bool AnyContains(const std::vector<std::string>& lines, const std::string& part) {
    for (const std::string& line : lines) {
        if (line.find(part) != std::string::npos) return true;
    }
    return false;
}

void ExpectJobBoard(const std::string& path) {
    OdbImportOptions options;
    options.threads = 3;
    std::vector<std::string> warnings;
    std::string error;
    std::unique_ptr<CPdb> pdb = ImportOdbJob(path, options, warnings, error);
    ASSERT_TRUE(pdb) << error;
    EXPECT_EQ(pdb->GetBoardName(), CString("PCB"));  // the first step by COL, not by file order

    const CPDBLayerManager& layers = pdb->GetLayerManager();
    ASSERT_EQ(layers.GetLayerCount(), 4);
    EXPECT_EQ(layers.GetLayer(0)->GetName(), CString("SST"));
    EXPECT_EQ(layers.GetLayer(0)->GetKind(), LayerKind::Silk);
    EXPECT_EQ(layers.GetLayer(1)->GetEcadName(), CString("TOP"));
    EXPECT_EQ(layers.GetLayer(2)->GetName(), CString("BOTTOM"));
    EXPECT_EQ(layers.GetLayer(3)->GetKind(), LayerKind::Drill);

    CPComp* u1 = pdb->FindComp("U1");
    ASSERT_TRUE(u1);
    EXPECT_EQ(u1->GetPartName(), CString("PART-A"));
    EXPECT_EQ(u1->GetPart()->GetPackage(), CString("SOT"));
    EXPECT_DOUBLE_EQ(u1->GetRotation(), 270);  // 90 clockwise
    EXPECT_FALSE(u1->IsMirrored());

    CPRefPin* pin1 = u1->FindPin("1");
    ASSERT_TRUE(pin1);
    EXPECT_EQ(pin1->GetShape(), PadShape::Rect);
    EXPECT_NEAR(pin1->GetSizeX(), 1.524, 1e-9);
    EXPECT_NEAR(pin1->GetSizeY(), 1.016, 1e-9);
    EXPECT_NEAR(pin1->GetDrill(), 0.5, 1e-9);
    ASSERT_TRUE(pin1->GetNet());
    EXPECT_EQ(pin1->GetNet()->GetName(), CString("GND"));

    CPRefPin* pin2 = u1->FindPin("2");
    ASSERT_TRUE(pin2);
    EXPECT_EQ(pin2->GetShape(), PadShape::Polygon);
    EXPECT_EQ(pin2->GetPadOutline().size(), 2u);
    EXPECT_NEAR(pin2->GetSizeX(), 2.032, 0.005);  // a circle of chords
    EXPECT_EQ(pin2->GetDrill(), 0);
    ASSERT_TRUE(pin2->GetNet());
    EXPECT_EQ(pin2->GetNet()->GetName(), CString("SIG"));

    const CPRouteNet& gnd = pdb->FindNet("GND")->GetRoute();
    ASSERT_EQ(gnd.GetCount(), 2);
    EXPECT_FALSE(gnd.GetAt(0)->IsArc());
    EXPECT_NEAR(gnd.GetAt(0)->GetWidth(), 0.254, 1e-9);
    EXPECT_NEAR(gnd.GetAt(0)->GetLine().p2.x, 38.1, 1e-9);
    EXPECT_EQ(gnd.GetAt(0)->GetLayer(), 1);
    EXPECT_TRUE(gnd.GetAt(1)->IsArc());
    EXPECT_FALSE(gnd.GetAt(1)->IsClockwise());

    const CPRouteNet& sig = pdb->FindNet("SIG")->GetRoute();
    ASSERT_EQ(sig.GetCount(), 1);
    ASSERT_TRUE(sig.GetAt(0)->IsVia());
    EXPECT_NEAR(sig.GetAt(0)->GetWidth(), 0.762, 1e-9);
    EXPECT_NEAR(sig.GetAt(0)->GetDrill(), 0.5, 1e-9);
    EXPECT_EQ(sig.GetAt(0)->GetLayer(), 1);
    EXPECT_EQ(sig.GetAt(0)->GetLastLayer(), 2);

    ASSERT_EQ(pdb->GetAreaCount(), 1);  // the pad of the unknown symbol is skipped
    EXPECT_EQ(pdb->GetArea(0)->GetNet(), pdb->FindNet("GND"));
    EXPECT_EQ(pdb->GetArea(0)->GetHoleCount(), 1);
    EXPECT_EQ(pdb->GetOutline().GetSize(), 4);
    EXPECT_EQ(pdb->FindNet("$NONE$"), nullptr);

    EXPECT_TRUE(AnyContains(warnings, "layers/top/features:7: unknown symbol 'unknown_sym'"));
    EXPECT_TRUE(AnyContains(warnings, "layers/top/features:17: barcode"));
    EXPECT_TRUE(AnyContains(warnings, "1 lines and arcs on no net"));
    EXPECT_FALSE(AnyContains(warnings, "malformed"));
    CString problem;
    EXPECT_TRUE(pdb->Validate(problem)) << problem.GetString();
}

TEST(OdbImport, ReadsAJobFolderAndTheSameJobAsAnArchive) {
    const fs::path folder = WriteJobFolder("folder");
    EXPECT_TRUE(IsOdbJob(folder.string()));
    EXPECT_TRUE(IsOdbJob(folder.parent_path().string()));  // the job in its one sub-folder
    ExpectJobBoard(folder.string());

    const fs::path archive = WriteJobArchive("archive");
    EXPECT_TRUE(IsOdbJob(archive.string()));
    ExpectJobBoard(archive.string());
}

TEST(OdbImport, BadJobsFailWithTheFileNamed) {
    const fs::path base = TempDir("bad");
    WriteFile(base / "nomatrix/steps/pcb/stephdr", "X_DATUM=0\n");
    WriteFile(base / "openblock/matrix/matrix", "STEP {\n COL=1\n NAME=PCB\n}\nLAYER {\n ROW=1\n");
    const fs::path archive = WriteJobArchive("truncated");
    const std::string whole = [&] {
        std::ifstream in(archive, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }();
    WriteFile(base / "truncated.tgz", whole.substr(0, whole.size() / 2));

    const struct {
        std::string path;
        std::string message;
    } cases[] = {
        {(base / "nomatrix").string(), "matrix"},
        {(base / "openblock").string(), "matrix/matrix:6:"},
        {(base / "truncated.tgz").string(), "truncated.tgz"},
        {(base / "absent").string(), "absent"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> warnings;
        std::string error;
        EXPECT_FALSE(ImportOdbJob(c.path, OdbImportOptions(), warnings, error)) << c.path;
        EXPECT_NE(error.find(c.message), std::string::npos) << c.path << ": " << error;
    }
    EXPECT_FALSE(IsOdbJob((base / "nomatrix").string()));
}

}  // namespace
