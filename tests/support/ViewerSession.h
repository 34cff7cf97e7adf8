// A reference viewer on a board of the test's own folder, for the end-to-end tests of
// the viewer's answers, merge and pictures.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "KPCBAPI.hpp"
#include "LiveViewer.h"
#include "TestPaths.h"
#include "TestSystem.h"
#include "TextBoard.h"

namespace viewer_board_test {

using testing_support::OwnedString;
using testing_support::Viewer;
using testing_support::Wide;

// A board file in a fresh folder (the sample board, or a text of the test's own),
// the same text read by the tests' own reader, and a journal file for the viewer.
class BoardTest : public ::testing::Test {
protected:
    void SetUp() override {
        testing_support::SetEnv("KPCB_DATA_DIR", dir.path());
        testing_support::SetEnv("KPCB_VIEWER_JOURNAL", journal);
    }
    void TearDown() override { testing_support::UnsetEnv("KPCB_VIEWER_JOURNAL"); }

    void UseSample() {
        std::filesystem::copy_file(testing_support::SampleBoard(), boardFile);
        text = text_board::ParseFile(boardFile);
    }
    void UseText(const std::string& boardText) {
        std::ofstream(boardFile) << boardText;
        text = text_board::Parse(boardText);
    }
    std::vector<std::string> JournalLines() const {
        std::ifstream in(journal);
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);) lines.push_back(line);
        return lines;
    }

    testing_support::TempDir dir;
    std::string boardFile = dir / "board.pdbba";
    std::string journal = dir / "journal.txt";
    text_board::Board text;
};

}  // namespace viewer_board_test
