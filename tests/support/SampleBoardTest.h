// A fixture for runs against the reference viewer: a folder of the test's own, set
// as the data folder, holding a copy of the sample board and the journal that the
// viewers launched meanwhile keep (one line per record received).
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "TestPaths.h"
#include "TestSystem.h"

namespace testing_support {

struct JournalLine {
    int classId;          // -1 for what formed no record (and why is in note)
    std::string payload;  // the record's bytes in lower-case hex, its class id first
    std::string note;     // what the viewer did with it
};

class SampleBoardTest : public ::testing::Test {
protected:
    void SetUp() override {
        SetEnv("KPCB_DATA_DIR", dir.path());
        SetEnv("KPCB_VIEWER_JOURNAL", journal);
        std::filesystem::copy_file(SampleBoard(), board);
    }
    void TearDown() override { UnsetEnv("KPCB_VIEWER_JOURNAL"); }

    // The journal's lines: "<n>\t<class id or ->\t<class name>\t<payload hex>\t<note>".
    std::vector<JournalLine> Journal() const {
        std::vector<JournalLine> lines;
        std::ifstream file(journal);
        for (std::string line; std::getline(file, line);) {
            std::vector<std::string> fields;
            std::istringstream parts(line);
            for (std::string field; std::getline(parts, field, '\t');) fields.push_back(field);
            fields.resize(5);
            lines.push_back({fields[1] == "-" ? -1 : std::stoi(fields[1]), fields[3], fields[4]});
        }
        return lines;
    }

    TempDir dir;
    std::string board = dir / "board.pdbba";
    std::string journal = dir / "journal.txt";
};

}  // namespace testing_support
