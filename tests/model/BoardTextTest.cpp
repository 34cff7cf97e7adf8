// The text form: the sample board, lossless round trips through both file forms,
// quoting and numbers, and the reader's refusals. (Every kind of object through both
// forms: BoardFormsTest.)
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <sstream>
#include <vector>

#include "BoardGenerator.h"
#include "BoardTestSupport.h"
#include "CPdbbProcessor.h"
#include "PdbText.h"
#include "TestPaths.h"

namespace {

using board_test::ReadOrFail;

// How many records of one kind a text holds.
int CountRecords(const std::string& text, const std::string& key) {
    std::istringstream lines(text);
    int count = 0;
    for (std::string line; std::getline(lines, line);) count += line.compare(0, key.size() + 1, key + " ") == 0;
    return count;
}

// text -> board -> .pdbb -> board -> text, and the written text read once more.
void ExpectLosslessRoundTrip(const CPdb& board) {
    const CString first = CPdbText::Write(board);
    std::vector<unsigned char> image;
    CString error;
    ASSERT_TRUE(CPdbbProcessor::SavePDBToMemory(board, image, error)) << error.GetString();
    std::unique_ptr<CPdb> loaded = CPdbbProcessor::LoadPDBFromMemory(image.data(), image.size(), error);
    ASSERT_TRUE(loaded) << error.GetString();
    EXPECT_EQ(first.str(), CPdbText::Write(*loaded).str());
    std::unique_ptr<CPdb> reread = ReadOrFail(first.str());
    ASSERT_TRUE(reread);
    EXPECT_EQ(first.str(), CPdbText::Write(*reread).str());
}

// The hand-written sample that the viewer tests read: every record of it reaches the
// model (the written form holds as many of each kind), and it survives both forms.
TEST(SampleBoard, EveryRecordIsReadAndSurvivesBothForms) {
    const std::string text = board_test::ReadText(board_test::SamplePath());
    std::unique_ptr<CPdb> pdb = ReadOrFail(text);
    ASSERT_TRUE(pdb);
    const std::string written = CPdbText::Write(*pdb).str();
    for (const char* key : {"OUTLINE", "LAYER", "PART", "NET", "COMP", "PIN", "SEG", "VIA", "AREA", "HOLE", "TEXT"}) {
        EXPECT_GT(CountRecords(text, key), 0) << key;
        EXPECT_EQ(CountRecords(text, key), CountRecords(written, key)) << key;
    }
    ExpectLosslessRoundTrip(*pdb);
}

// A generated board of some size (the same for the same seed), and an empty one.
TEST(BoardText, RoundTripsKeepEveryObject) {
    std::unique_ptr<CPdb> generated = GenerateBoard(300, 7);
    EXPECT_EQ(300, generated->GetCompCount());
    EXPECT_EQ(CPdbText::Write(*generated).str(), CPdbText::Write(*GenerateBoard(300, 7)).str());
    ExpectLosslessRoundTrip(*generated);
    CPdb empty;
    ExpectLosslessRoundTrip(empty);
}

TEST(BoardText, OddNamesAndNumbersSurviveExactly) {
    CPdb pdb;
    // Names that need quoting, an empty ECAD name, and Shift-JIS whose second byte is '\'.
    const CString names[] = {"has space", "quote\"d", "back\\slash", "tab\there", "\x95\x5C\x8E\xA6", "#hash",
                             "\"", "ctl\x01\x7F"};
    for (const CString& n : names) ASSERT_TRUE(pdb.GetLayerManager().AddLayer(n, "", LayerKind::Copper));
    pdb.SetBoardName("");
    const double values[] = {0.1, 1.0 / 3, -0.0, 1e-300, 123456789.125, -2.5e17, 4.9e-324};
    CPComp* comp = pdb.AddComp("R 1", nullptr, CompSide::Bottom, CPointD(values[0], values[1]), values[2]);
    int k = 0;
    for (double v : values) comp->AddPin(CString(std::to_string(k++)), CPointD(v, -v), PadShape::Oblong, v, v, v, v);
    pdb.AddText(3, "line one\nline two", CPointD(), 1, 0);

    const CString text = CPdbText::Write(pdb);
    std::unique_ptr<CPdb> back = ReadOrFail(text.str());
    ASSERT_TRUE(back);
    ASSERT_EQ(8, back->GetLayerManager().GetLayerCount());
    for (int i = 0; i < 8; ++i) EXPECT_EQ(names[i], back->GetLayerManager().GetLayer(i)->GetName());
    EXPECT_EQ("line one\nline two", back->GetText(0)->GetText());
    const CPComp* c = back->FindComp("R 1");
    ASSERT_TRUE(c);
    EXPECT_EQ(CString(), c->GetPartName());
    EXPECT_TRUE(std::signbit(c->GetRotation()));
    for (int i = 0; i < 7; ++i) {
        const CPRefPin* pin = c->GetPin(i);
        EXPECT_EQ(0, std::memcmp(&values[i], &pin->GetPosition().x, sizeof(double))) << values[i];
        EXPECT_EQ(values[i], pin->GetDrill());
    }
    EXPECT_EQ(nullptr, c->GetPin(0)->GetNet());
}

TEST(BoardText, HandWrittenFormsAreAccepted) {
    std::unique_ptr<CPdb> pdb = ReadOrFail(
        "# comment first\r\n"
        "PDBBA 1\r\n"
        "\r\n"
        "   # indented comment\n"
        "LAYER\tT  t COPPER\n"
        "NET RESET#\n"  // '#' inside a name is no comment
        "COMP \"U 1\" \"\" TOP +1.5 2e1 -90\n"
        "PIN \"A\\x41\" 1 2 ROUND 1 1 0 0 RESET#\n"
        "END\n"
        "# trailing comment\n");
    ASSERT_TRUE(pdb);
    const CPComp* u1 = pdb->FindComp("U 1");
    ASSERT_TRUE(u1);
    EXPECT_EQ(1.5, u1->GetPosition().x);
    EXPECT_EQ(20, u1->GetPosition().y);
    EXPECT_EQ(pdb->FindNet("RESET#"), pdb->FindPin("U 1", "AA")->GetNet());
}

TEST(BoardText, ReaderRefusesWithTheLineAndTheReason) {
    const std::string head = "PDBBA 1\nLAYER T t COPPER\nNET N\nCOMP R1 \"\" TOP 0 0 0\n";
    struct Case {
        std::string text;
        const char* expected;  // in the message
    };
    const Case cases[] = {
        {"", "PDBBA"},
        {"BOARD x\nEND\n", "line 1"},
        {"PDBBA 3\nEND\n", "version 3"},
        {head, "without END"},
        {head + "END\nNET M\n", "line 6: text after END"},
        {head + "PIN 1 0 0 RECT 1 1 0 0 M\nEND\n", "line 5: unknown net 'M'"},
        {head + "PIN 1 0 0 HEX 1 1 0 0 N\nEND\n", "unknown pad shape 'HEX'"},
        {head + "PIN 1 0 0 RECT 1 1 0 N\nEND\n", "PIN takes 9 fields, found 8"},
        {head + "PIN 1 0 1.2.3 RECT 1 1 0 0 N\nEND\n", "'1.2.3' is not a number"},
        {head + "NET X\nPIN 1 0 0 RECT 1 1 0 0 N\nEND\n", "PIN must follow its COMP"},
        {head + "COMP R1 \"\" TOP 0 0 0\nEND\n", "'R1' is empty or used already"},
        {head + "COMP R2 P TOP 0 0 0\nEND\n", "unknown part 'P'"},
        {head + "COMP R2 \"\" LEFT 0 0 0\nEND\n", "unknown component side"},
        {head + "SEG N X 1 0 0 1 1\nEND\n", "unknown layer 'X'"},
        {head + "SEG \"\" T 1 0 0 1 1\nEND\n", "routing needs a net"},
        {head + "LAYER B b COPPER\nVIA N 0 0 1 1 B T\nEND\n", "lies below"},
        {head + "HOLE 0\nEND\n", "HOLE must follow its AREA"},
        {head + "AREA N T 3 0 0 1 1\nEND\n", "announces 3 points and gives 4 numbers"},
        {head + "NET \"open\nEND\n", "not closed"},
        {head + "NET \"a\"b\nEND\n", "runs into the next field"},
        {head + "NET \"\\q\"\nEND\n", "unknown escape"},
        {head + "WIRE N\nEND\n", "unknown record 'WIRE'"},
        {head + "BOARD a\nBOARD b\nEND\n", "second BOARD"},
        {head + "PIN 1 0 0 POLYGON 1 1 0 0 N\nPIN 2 0 0 RECT 1 1 0 0 N\nEND\n", "line 6: the POLYGON pad"},
        {head + "PIN 1 0 0 POLYGON 1 1 0 0 N\nCONTOUR 2 0 0 1 1\nEND\n", "three points"},
        {head + "PIN 1 0 0 RECT 1 1 0 0 N\nCONTOUR 3 0 0 1 0 1 1\nEND\n", "CONTOUR must follow a POLYGON"},
        {head + "ARC N T 1 0 0 1 1 1 0 LEFT\nEND\n", "unknown arc direction"},
    };
    for (const Case& c : cases) {
        CString error;
        EXPECT_EQ(nullptr, CPdbText::Read(CString(c.text), error)) << c.text;
        EXPECT_NE(-1, error.Find(c.expected)) << "got: " << error.GetString() << "\nfor: " << c.text;
    }
}

TEST(BoardText, FilesAreReadAndWrittenByName) {
    std::unique_ptr<CPdb> small = board_test::SmallBoard();
    testing_support::TempDir dir;
    const CString textPath = (dir / "b.PDBBA").c_str();
    const CString binaryPath = (dir / "b.pdbb").c_str();
    CString error;
    ASSERT_TRUE(CPdbbProcessor::SaveBoardFile(textPath, *small, error)) << error.GetString();
    ASSERT_TRUE(CPdbbProcessor::SaveBoardFile(binaryPath, *small, error)) << error.GetString();
    EXPECT_EQ(CPdbText::Write(*small).str(), board_test::ReadText(textPath.str()));
    EXPECT_EQ(0, board_test::ReadText(binaryPath.str()).compare(0, 8, "KPCBPDBB"));
    for (const CString& path : {textPath, binaryPath}) {
        std::unique_ptr<CPdb> back = CPdbbProcessor::LoadBoardFile(path, error);
        ASSERT_TRUE(back) << error.GetString();
        EXPECT_EQ(CPdbText::Write(*small).str(), CPdbText::Write(*back).str());
    }
    EXPECT_EQ(nullptr, CPdbText::ReadFile((dir / "missing.pdbba").c_str(), error));
    EXPECT_NE(-1, error.Find("missing.pdbba"));
}

}  // namespace
