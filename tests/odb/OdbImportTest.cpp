// A small hand-written job, packed as an archive, read whole: the facts of the format
// that readers get wrong and that KiCad's exports never show.
#include <gtest/gtest.h>

#include <archive.h>
#include <archive_entry.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "OdbImport.h"
#include "TestPaths.h"

namespace {

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
         "P 1.0 1.0 3 P 0 0\n"  // an unlinked pad at a pin: the linked one after it is the pin's
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
         "TOP 0 25.4 25.4 90 N 1 0 1\nTOP 1 27.94 25.4 90 N 2 1 2\nTOP 2 30.48 25.4 90 N 0 2 3\n"},
        {"steps/pcb/layers/comp_+_bot/components", ""},
        // LYR names lower case; TOP net numbers follow these NET records, not the cadnet list.
        {"steps/pcb/eda/data",
         "HDR test\nUNITS=MM\nLYR top bottom drill\n"
         "NET $NONE$\nSNT TRC\nFID C 0 6\n"
         "NET GND\nSNT TOP T 0 0\nFID C 0 1\nFID H 2 0\nSNT TRC\nFID C 0 3\nFID C 0 4\nSNT PLN S 0 0\nFID C 0 8\n"
         "NET SIG\nSNT TOP T 0 1\nFID C 0 2\nSNT VIA\nFID H 2 1\nFID C 0 5\n"
         "PKG SOT 2.54 -1 -1 3 1\nRC -1 -1 4 2\nPIN 1 T 0 0 0 E U\nCR 0 0 0.5\nPIN 2 S 2.54 0 0 E S\nSQ 2.54 0 0.5\n"
         "PIN 3 S 5.08 0 0 E S\nRC 4.58 -0.25 1 0.5\n"},
        {"steps/pcb/netlists/cadnet/netlist", "H optimize n staggered n\n$0 GND\n$1 SIG\n0 0.1 1 1 T\n"},
    };
    return files;
}

void WriteFile(const std::string& path, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

void WriteEntry(archive* a, const std::string& name, const std::string& data) {
    archive_entry* entry = archive_entry_new();
    if (!name.empty()) archive_entry_set_pathname(entry, name.c_str());
    archive_entry_set_filetype(entry, AE_IFREG);
    archive_entry_set_perm(entry, 0644);
    archive_entry_set_size(entry, static_cast<la_int64_t>(data.size()));
    archive_write_header(a, entry);
    archive_write_data(a, data.data(), data.size());
    archive_entry_free(entry);
}

// The file in Unix compress form, made by libarchive's writer.
std::string Compress(const std::string& data) {
    archive* a = archive_write_new();
    archive_write_set_format_raw(a);
    archive_write_add_filter_compress(a);
    std::string out(data.size() * 2 + 1024, '\0');
    size_t used = 0;
    archive_write_open_memory(a, out.data(), out.size(), &used);
    WriteEntry(a, "", data);
    archive_write_close(a);
    archive_write_free(a);
    out.resize(used);
    return out;
}

// The job packed as an archive at path, its layer table stored as a ".Z" member
// (the folder form is read in the real-board tests).
void WriteJobArchive(const std::string& path) {
    archive* a = archive_write_new();
    archive_write_set_format_pax_restricted(a);
    archive_write_add_filter_gzip(a);
    archive_write_open_filename(a, path.c_str());
    for (const auto& file : JobFiles()) {
        const bool compress = file.first == "matrix/matrix";
        WriteEntry(a, "job/" + file.first + (compress ? ".Z" : ""), compress ? Compress(file.second) : file.second);
    }
    archive_write_close(a);
    archive_write_free(a);
}

bool AnyContains(const std::vector<std::string>& lines, const std::string& part) {
    for (const std::string& line : lines) {
        if (line.find(part) != std::string::npos) return true;
    }
    return false;
}

// Placement, rotation and the nets of pins are checked on real boards; this job holds
// what KiCad never writes, and the conversions those boards' facts do not cover.
TEST(OdbImport, ReadsAnArchivedJob) {
    testing_support::TempDir dir;
    WriteJobArchive(dir / "job.tgz");
    OdbImportOptions options;
    options.threads = 3;
    std::vector<std::string> warnings;
    std::string error;
    ASSERT_TRUE(IsOdbJob(dir / "job.tgz"));
    std::unique_ptr<CPdb> pdb = ImportOdbJob(dir / "job.tgz", options, warnings, error);
    ASSERT_TRUE(pdb) << error;
    EXPECT_EQ(pdb->GetBoardName(), CString("PCB"));  // the first step by COL, not by file order

    // Rows in ROW order, names as the matrix has them, the component layers left out.
    const CPDBLayerManager& layers = pdb->GetLayerManager();
    ASSERT_EQ(layers.GetLayerCount(), 4);
    const char* const names[] = {"SST", "TOP", "BOTTOM", "DRILL"};
    const LayerKind kinds[] = {LayerKind::Silk, LayerKind::Copper, LayerKind::Copper, LayerKind::Drill};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(layers.GetLayer(i)->GetEcadName(), CString(names[i]));
        EXPECT_EQ(layers.GetLayer(i)->GetKind(), kinds[i]);
    }

    CPComp* u1 = pdb->FindComp("U1");
    ASSERT_TRUE(u1);
    EXPECT_EQ(u1->GetPartName(), CString("PART-A"));
    EXPECT_EQ(u1->GetPart()->GetPackage(), CString("SOT"));

    // Pin 1: the linked pad (mils in an inch layer), not the unlinked one before it.
    CPRefPin* pin1 = u1->FindPin("1");
    ASSERT_TRUE(pin1);
    EXPECT_EQ(pin1->GetShape(), PadShape::Rect);
    EXPECT_NEAR(pin1->GetSizeX(), 1.524, 1e-9);
    EXPECT_NEAR(pin1->GetSizeY(), 1.016, 1e-9);
    EXPECT_NEAR(pin1->GetDrill(), 0.5, 1e-9);
    ASSERT_TRUE(pin1->GetNet());
    EXPECT_EQ(pin1->GetNet()->GetName(), CString("GND"));  // net numbers of the NET records

    CPRefPin* pin2 = u1->FindPin("2");
    ASSERT_TRUE(pin2);
    EXPECT_EQ(pin2->GetShape(), PadShape::Polygon);
    EXPECT_EQ(pin2->GetPadOutline().size(), 2u);
    EXPECT_NEAR(pin2->GetSizeX(), 2.032, 0.005);  // a circle of chords
    EXPECT_EQ(pin2->GetDrill(), 0);

    // No pad on copper: the package's outline of the pin, turned with the component.
    CPRefPin* pin3 = u1->FindPin("3");
    ASSERT_TRUE(pin3);
    EXPECT_EQ(pin3->GetShape(), PadShape::Polygon);
    EXPECT_NEAR(pin3->GetSizeX(), 0.5, 1e-9);
    EXPECT_NEAR(pin3->GetSizeY(), 1.0, 1e-9);
    EXPECT_EQ(pin3->GetNet(), nullptr);

    const CPRouteNet& gnd = pdb->FindNet("GND")->GetRoute();
    ASSERT_EQ(gnd.GetCount(), 2);
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
    EXPECT_EQ(sig.GetAt(0)->GetLastLayer(), 2);

    ASSERT_EQ(pdb->GetAreaCount(), 1);  // the pad of the unknown symbol is skipped
    EXPECT_EQ(pdb->GetArea(0)->GetNet(), pdb->FindNet("GND"));
    EXPECT_EQ(pdb->GetArea(0)->GetHoleCount(), 1);
    EXPECT_EQ(pdb->GetOutline().GetSize(), 4);
    EXPECT_EQ(pdb->FindNet("$NONE$"), nullptr);

    // Line numbers count the continued line once per physical line.
    EXPECT_TRUE(AnyContains(warnings, "layers/top/features:7: unknown symbol 'unknown_sym'"));
    EXPECT_TRUE(AnyContains(warnings, "layers/top/features:18: barcode"));
    EXPECT_TRUE(AnyContains(warnings, "1 lines and arcs on no net"));
    EXPECT_FALSE(AnyContains(warnings, "malformed"));
    CString problem;
    EXPECT_TRUE(pdb->Validate(problem)) << problem.GetString();
}

TEST(OdbImport, BadJobsFailWithTheFileNamed) {
    testing_support::TempDir base;
    WriteFile(base / "nomatrix/steps/pcb/stephdr", "X_DATUM=0\n");
    WriteFile(base / "openblock/matrix/matrix", "STEP {\n COL=1\n NAME=PCB\n}\nLAYER {\n ROW=1\n");
    WriteJobArchive(base / "whole.tgz");
    std::ifstream in(base / "whole.tgz", std::ios::binary);
    const std::string whole((std::istreambuf_iterator<char>(in)), {});
    WriteFile(base / "truncated.tgz", whole.substr(0, whole.size() / 2));

    const struct {
        std::string path;
        std::string message;
    } cases[] = {
        {base / "nomatrix", "matrix"},
        {base / "openblock", "matrix/matrix:6:"},
        {base / "truncated.tgz", "truncated.tgz"},
        {base / "absent", "absent"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> warnings;
        std::string error;
        EXPECT_FALSE(ImportOdbJob(c.path, OdbImportOptions(), warnings, error)) << c.path;
        EXPECT_NE(error.find(c.message), std::string::npos) << c.path << ": " << error;
    }
    EXPECT_FALSE(IsOdbJob(base / "nomatrix"));
}

}  // namespace
