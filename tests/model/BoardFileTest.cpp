// .pdbb files: the header, refusal of damaged files of every kind, contents that
// cannot be a board, and SavePDB's options.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "BoardGenerator.h"
#include "BoardTestSupport.h"
#include "CPdbbProcessor.h"
#include "PdbFileIO.h"
#include "PdbText.h"
#include "TestPaths.h"

namespace {

using Image = std::vector<unsigned char>;

Image Save(const CPdb& pdb) {
    Image image;
    CString error;
    EXPECT_TRUE(CPdbbProcessor::SavePDBToMemory(pdb, image, error)) << error.GetString();
    return image;
}

// Loads the image; returns the error ("" when it loaded).
std::string LoadError(const Image& image) {
    CString error;
    std::unique_ptr<CPdb> pdb = CPdbbProcessor::LoadPDBFromMemory(image.data(), image.size(), error);
    if (pdb) {
        CString problem;
        EXPECT_TRUE(pdb->Validate(problem)) << "a loaded board must be sound: " << problem.GetString();
        return "";
    }
    EXPECT_FALSE(error.IsEmpty());
    return error.str();
}

// Gives the image the size and checksum its data has now, as a forger would.
void Reseal(Image& image) {
    const uint64_t size = image.size() - CPdbbProcessor::kHeaderSize;
    const uint32_t crc = Crc32(image.data() + CPdbbProcessor::kHeaderSize, image.size() - CPdbbProcessor::kHeaderSize);
    std::memcpy(&image[12], &size, 8);
    std::memcpy(&image[20], &crc, 4);
}

size_t Find(const Image& image, const void* pattern, size_t length) {
    const auto* p = static_cast<const unsigned char*>(pattern);
    for (size_t i = CPdbbProcessor::kHeaderSize; i + length <= image.size(); ++i) {
        if (std::memcmp(&image[i], p, length) == 0) return i;
    }
    ADD_FAILURE() << "pattern not in the image";
    return 0;
}

TEST(Crc32, MatchesTheStandardCheckValueAndContinues) {
    EXPECT_EQ(0xCBF43926u, Crc32("123456789", 9));
    EXPECT_EQ(0u, Crc32("", 0));
    const std::string text = "The quick brown fox jumps over the lazy dog, twice over";
    for (size_t cut = 0; cut <= text.size(); ++cut) {
        EXPECT_EQ(Crc32(text.data(), text.size()), Crc32(text.data() + cut, text.size() - cut, Crc32(text.data(), cut)));
    }
    EXPECT_EQ(0x414FA339u, Crc32("The quick brown fox jumps over the lazy dog", 43));
}

TEST(PdbbFile, HeaderCarriesMagicVersionSizeAndChecksum) {
    std::unique_ptr<CPdb> pdb = board_test::SmallBoard();
    const Image image = Save(*pdb);
    ASSERT_GT(image.size(), 24u);
    EXPECT_EQ(0, std::memcmp(image.data(), "KPCBPDBB", 8));
    uint32_t version, crc;
    uint64_t size;
    std::memcpy(&version, &image[8], 4);
    std::memcpy(&size, &image[12], 8);
    std::memcpy(&crc, &image[20], 4);
    EXPECT_EQ(2u, version);
    EXPECT_EQ(image.size() - 24, size);
    EXPECT_EQ(Crc32(image.data() + 24, image.size() - 24), crc);
    // The data begins with the board name as an archive string.
    EXPECT_EQ(5, image[24]);
    EXPECT_EQ(0, std::memcmp(&image[25], "small", 5));
}

TEST(PdbbFile, DamagedFilesAreRefusedWithAReason) {
    const std::string sample = board_test::ReadText(board_test::SamplePath());
    std::unique_ptr<CPdb> pdb = board_test::ReadOrFail(sample);
    ASSERT_TRUE(pdb);
    const Image image = Save(*pdb);

    EXPECT_NE(std::string::npos, LoadError(Image()).find("empty"));
    for (size_t length = 1; length < image.size(); ++length) {
        const std::string error = LoadError(Image(image.begin(), image.begin() + length));
        EXPECT_NE(std::string::npos, error.find("truncated")) << length << ": " << error;
    }
    for (size_t i = 0; i < image.size(); ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            if (i >= 24 && bit != static_cast<int>(i % 8)) continue;  // every bit of the header, one per data byte
            Image flipped = image;
            flipped[i] ^= static_cast<unsigned char>(1 << bit);
            EXPECT_NE("", LoadError(flipped)) << "byte " << i << " bit " << bit;
        }
    }
    Image longer = image;
    longer.push_back(0);
    EXPECT_NE(std::string::npos, LoadError(longer).find("corrupt"));
    Image newer = image;
    newer[8] = 3;
    EXPECT_NE(std::string::npos, LoadError(newer).find("version 3"));
    Image text(sample.begin(), sample.end());
    EXPECT_NE(std::string::npos, LoadError(text).find("magic"));
}

TEST(PdbbFile, ContentsThatCannotBeABoardAreRefused) {
    CPdb pdb;
    pdb.GetLayerManager().AddLayer("T", "ECADT", LayerKind::Copper);
    pdb.AddNet("N");
    CPComp* comp = pdb.AddComp("R1", nullptr, CompSide::Top, CPointD(), 0);
    pdb.FindNet("N")->AddPin(comp->AddPin("1", CPointD(), PadShape::Rect, 1, 1, 0, 0.123456));
    const Image image = Save(pdb);
    ASSERT_EQ("", LoadError(image));

    const double drill = 0.123456;
    const size_t netField = Find(image, &drill, 8) + 8;  // the pin's net index follows its drill
    Image badNet = image;
    badNet[netField] = 5;
    Reseal(badNet);
    EXPECT_NE(std::string::npos, LoadError(badNet).find("net index 5")) << LoadError(badNet);

    const size_t kindField = Find(image, "ECADT", 5) + 5;
    Image badKind = image;
    badKind[kindField] = 9;
    Reseal(badKind);
    EXPECT_NE(std::string::npos, LoadError(badKind).find("unknown kind 9"));

    Image badShape = image;
    badShape[netField - 8 * 4 - 4] = 7;  // shape, then sizes, angle and drill
    Reseal(badShape);
    EXPECT_NE(std::string::npos, LoadError(badShape).find("pad shape 7"));

    // The outline count (after the empty board name) announces a billion points.
    Image huge = image;
    const unsigned char count[] = {0xFF, 0xFF, 0x00, 0xCA, 0x9A, 0x3B};
    huge.erase(huge.begin() + 25, huge.begin() + 27);
    huge.insert(huge.begin() + 25, count, count + 6);
    Reseal(huge);
    EXPECT_NE(std::string::npos, LoadError(huge).find("ends inside the board header")) << LoadError(huge);

    Image trailing = image;
    trailing.push_back(0);
    Reseal(trailing);
    EXPECT_NE(std::string::npos, LoadError(trailing).find("follow"));
}

TEST(PdbbFile, ForgedDataNeverCrashesTheLoader) {
    std::unique_ptr<CPdb> pdb = board_test::BoardWithEveryKind();
    const Image image = Save(*pdb);
    std::mt19937 random(12345);
    int loaded = 0;
    for (int round = 0; round < 4000; ++round) {
        Image forged = image;
        const int changes = 1 + random() % 4;
        for (int c = 0; c < changes; ++c) {
            const size_t at = CPdbbProcessor::kHeaderSize + random() % (forged.size() - CPdbbProcessor::kHeaderSize);
            forged[at] = static_cast<unsigned char>(random() % 3 == 0 ? 0xFF : random());
        }
        if (round % 10 == 0) forged.resize(CPdbbProcessor::kHeaderSize + random() % (image.size() - 24));
        Reseal(forged);
        loaded += LoadError(forged).empty() ? 1 : 0;
    }
    EXPECT_GT(loaded, 0);  // changed numbers still make boards
    EXPECT_LT(loaded, 4000);
}

TEST(SavePDB, OptionsAndFailures) {
    testing_support::TempDir dir;
    std::unique_ptr<CPdb> pdb = board_test::SmallBoard();
    CPdbbProcessor processor;
    const CString path = (dir / "b.pdbb").c_str();
    ASSERT_NE(0, processor.SavePDB(path, pdb.get(), 0, 1, 0)) << processor.GetLastError().GetString();
    EXPECT_EQ(CPdbText::Write(*pdb).str(), board_test::ReadText(dir / "b.pdbba"));  // the text copy asked for
    EXPECT_TRUE(board_test::ReadText(dir / "b.pdbb.tmp").empty());
    CString error;
    std::unique_ptr<CPdb> back = CPdbbProcessor::LoadPDB(path, error);
    ASSERT_TRUE(back) << error.GetString();
    EXPECT_EQ(CPdbText::Write(*pdb).str(), CPdbText::Write(*back).str());

    const std::string before = board_test::ReadText(path.str());
    std::unique_ptr<CPdb> other = GenerateBoard(5);
    EXPECT_EQ(0, processor.SavePDB(path, other.get(), 0, 0, 0));  // no overwriting asked for
    EXPECT_NE(-1, processor.GetLastError().Find("exists"));
    EXPECT_EQ(before, board_test::ReadText(path.str()));
    EXPECT_NE(0, processor.SavePDB(path, other.get(), 1, 0, 0));
    EXPECT_NE(before, board_test::ReadText(path.str()));

    const CString nested = (dir / "x/y/z.pdbb").c_str();
    EXPECT_EQ(0, processor.SavePDB(nested, pdb.get(), 1, 0, 0));
    EXPECT_FALSE(processor.GetLastError().IsEmpty());
    EXPECT_NE(0, processor.SavePDB(nested, pdb.get(), 1, 0, 1));
    EXPECT_TRUE(CPdbbProcessor::LoadPDB(nested, error)) << error.GetString();
    EXPECT_TRUE(board_test::ReadText(dir / "x/y/z.pdbba").empty());  // no text copy asked for

    EXPECT_EQ(0, processor.SavePDB(path, nullptr, 1, 0, 1));
    pdb->AddText(99, "bad layer", CPointD(), 1, 0);
    const CString invalid = (dir / "invalid.pdbb").c_str();
    EXPECT_EQ(0, processor.SavePDB(invalid, pdb.get(), 1, 0, 1));
    EXPECT_NE(-1, processor.GetLastError().Find("layer index 99"));
    EXPECT_FALSE(CPdbbProcessor::LoadPDB(invalid, error));
    EXPECT_NE(-1, error.Find("invalid.pdbb"));
}

}  // namespace
