// Writes the seed corpora of the fuzzers: valid images of every reply and command
// class and of the sample board, so that fuzzing starts from inputs that load.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "BoardGenerator.h"
#include "CArchive.h"
#include "CPdbbProcessor.h"
#include "InformationRecords.h"
#include "PdbText.h"
#include "PolygonMergeRecords.h"
#include "RecordImage.h"
#include "RecordFactory.h"
#include "RedMarkRecords.h"

namespace fs = std::filesystem;

namespace {
void Write(const fs::path& path, const std::vector<unsigned char>& bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

template <class Reply>
void ReplySeed(const fs::path& dir, unsigned char which, Reply reply) {
    std::vector<unsigned char> bytes{which};
    const std::vector<unsigned char> image = records::Image(reply);
    bytes.insert(bytes.end(), image.begin(), image.end());
    Write(dir / ("reply-" + std::to_string(which)), bytes);
}
}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: write_seeds <corpus root>\n");
        return 2;
    }
    const fs::path root = argv[1];
    for (const char* name : {"reply", "command", "board"}) fs::create_directories(root / name);

    CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV pins;
    pins.SetNetName("GND");
    pins.SetRefPinNames(CStringArray{"U1-7", "C1-2"});
    CKPRCI_PolygonMerge_RV merge(9);
    merge.SetCWPointsX(CArrayD{0, 1, 1});
    merge.SetCWPointsY(CArrayD{0, 0, 1});
    CKPRCI_RedMark_Load_RV titles;
    titles.SetTitleNames(CStringArray{"a", "b"});
    ReplySeed(root / "reply", 0, CKPRCI__BaseRV());
    ReplySeed(root / "reply", 2, pins);
    ReplySeed(root / "reply", 7, merge);
    ReplySeed(root / "reply", 8, titles);

    for (int id = 2; id <= 28; ++id) {
        if (auto record = CreateCommandRecord(id)) Write(root / "command" / ("class-" + std::to_string(id)), records::Image(*record));
    }

    CString error;
    auto board = CPdbbProcessor::LoadBoardFile(CString(KPCB_SOURCE_DIR "/samples/demo_board.pdbba"), error);
    if (!board) {
        std::fprintf(stderr, "%s\n", error.GetString());
        return 1;
    }
    std::vector<unsigned char> image;
    if (CPdbbProcessor::SavePDBToMemory(*board, image, error)) Write(root / "board" / "demo.pdbb", image);
    const CString text = CPdbText::Write(*board);
    Write(root / "board" / "demo.pdbba", std::vector<unsigned char>(text.str().begin(), text.str().end()));
    // A generated board holds polygon pads, track arcs and mirrored components too.
    const std::unique_ptr<CPdb> generated = GenerateBoard(12, 5);
    if (CPdbbProcessor::SavePDBToMemory(*generated, image, error)) Write(root / "board" / "generated.pdbb", image);
    const CString generatedText = CPdbText::Write(*generated);
    Write(root / "board" / "generated.pdbba",
          std::vector<unsigned char>(generatedText.str().begin(), generatedText.str().end()));
    return 0;
}
