// `kpcb run`: a script launches the reference viewer on the sample board, drives it
// and closes it within one kpcb process. What reached the viewer is read back from
// its journal.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "KPCBAPI.h"
#include "TestPaths.h"
#include "TestSystem.h"
#include "ToolRun.h"

using testing_support::TempDir;
using tool_test::RunKpcb;

namespace {

std::string Hex(const std::string& bytes) {
    static const char digits[] = "0123456789abcdef";
    std::string hex;
    for (const unsigned char b : bytes) {
        hex += digits[b >> 4];
        hex += digits[b & 15];
    }
    return hex;
}

// A short string as the archive writes it: its length byte, then its bytes.
std::string Archived(const std::string& text) { return Hex(std::string(1, static_cast<char>(text.size())) + text); }

struct JournalLine {
    int classId;
    std::string payload;  // hex
};

std::vector<JournalLine> ReadJournal(const std::string& path) {
    std::vector<JournalLine> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::vector<std::string> fields;
        std::istringstream parts(line);
        for (std::string field; std::getline(parts, field, '\t');) fields.push_back(field);
        if (fields.size() >= 4 && fields[1] != "-") lines.push_back({std::stoi(fields[1]), fields[3]});
    }
    return lines;
}

bool JournalHas(const std::vector<JournalLine>& journal, int classId, const std::string& payloadPart) {
    for (const auto& line : journal) {
        if (line.classId == classId && line.payload.find(payloadPart) != std::string::npos) return true;
    }
    return false;
}

// The output of a script run with --echo, split by the line that produced it.
std::map<std::string, std::string> OutputByLine(const std::string& out) {
    std::map<std::string, std::string> sections;
    std::string* current = nullptr;
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("> ", 0) == 0) {
            current = &sections[line.substr(2)];
        } else if (current) {
            *current += line + "\n";
        }
    }
    return sections;
}

int PidIn(const std::string& launchOutput) { return tool_test::NumberLine(launchOutput); }

// "outline I", "hole I J", or a point "x y".
bool IsMergeLine(const std::string& line) {
    std::istringstream words(line);
    std::string first, second, third, rest;
    words >> first >> second >> third >> rest;
    auto whole = [](const std::string& w) { return !w.empty() && w.find_first_not_of("0123456789") == std::string::npos; };
    auto number = [](const std::string& w) {
        char* end = nullptr;
        std::strtod(w.c_str(), &end);
        return !w.empty() && *end == '\0';
    };
    if (!rest.empty()) return false;
    if (first == "outline") return whole(second) && third.empty();
    if (first == "hole") return whole(second) && whole(third);
    return number(first) && number(second) && third.empty();
}

class ToolScript : public ::testing::Test {
protected:
    void SetUp() override {
        testing_support::SetEnv("KPCB_DATA_DIR", dir.path());
        testing_support::SetEnv("KPCB_VIEWER_JOURNAL", journal);
        std::filesystem::copy_file(testing_support::SampleBoard(), board);
    }
    void TearDown() override { testing_support::UnsetEnv("KPCB_VIEWER_JOURNAL"); }

    std::string WriteScript(const std::string& text) {
        const std::string path = dir / "script.kpcb";
        std::ofstream(path) << text;
        return path;
    }

    TempDir dir;
    std::string board = dir / "board.pdbba";
    std::string journal = dir / "journal.txt";
};

}  // namespace

TEST_F(ToolScript, LaunchesDrivesAndClosesTheViewer) {
    std::ofstream(dir / "marks.txt") << "KPCB RED MARKS 1\nTITLE Short\nCONTENTS U1-3 touches GND\\nsee layer 2\n"
                                        "TITLE Open pad\nCONTENTS R7 pad 2\n";
    const std::string script = WriteScript(
        "# the sample board, start to end\n"
        "launch-hidden board.pdbba\n"
        "title \"KPCB demo board\"   # quoted: one argument\n"
        "rotate -90\n"
        "highlight nets \"GND, +5V\" -s ,\n"
        "highlight components U1 'R 5'\n"
        "visible-layers off BOTTOM\n"
        "redmark-load marks.txt --text\n"
        "redmark-call Short\n"
        "net-pins U1 14\n"
        "merge GND GND\n"
        "capture picture.bmp\n"
        "redmark-remove Short\n"
        "redmark-call Short\n"
        "exit --wait\n");
    const auto result = RunKpcb({"run", "--echo", "--keep-going", script}, dir.path());

    // The one failing line: the red mark was removed just before.
    EXPECT_EQ(result.status, 6) << result.err;
    EXPECT_NE(result.err.find("kpcb: redmark-call: -200: no red mark has that title"), std::string::npos)
        << result.err;

    auto output = OutputByLine(result.out);
    const int pid = PidIn(output["launch-hidden board.pdbba"]);
    ASSERT_GT(pid, 0) << result.out;
    EXPECT_EQ(KPCB_IsRunning(pid), 0) << "exit --wait left the viewer running";

    EXPECT_EQ(output["title \"KPCB demo board\"   # quoted: one argument"], "");
    EXPECT_EQ(output["redmark-load marks.txt --text"], "Short\nOpen pad\n");
    EXPECT_EQ(output["redmark-call Short"], "U1-3 touches GND\nsee layer 2\n");
    EXPECT_EQ(output["capture picture.bmp"], (std::filesystem::path(dir.path()) / "picture.bmp").string() + "\n");

    // The pin's net on the first line, then one pin per line.
    const std::string netPins = output["net-pins U1 14"];
    EXPECT_FALSE(netPins.empty());
    EXPECT_EQ(netPins.find('|'), std::string::npos);

    // Each outline and hole under its heading, then one "x y" line per point.
    std::istringstream merged(output["merge GND GND"]);
    for (std::string line; std::getline(merged, line);) {
        EXPECT_TRUE(IsMergeLine(line)) << "merge printed: " << line;
    }

    const auto records = ReadJournal(journal);
    ASSERT_FALSE(records.empty());
    EXPECT_TRUE(JournalHas(records, 27, Archived("KPCB demo board")));
    EXPECT_TRUE(JournalHas(records, 12, "0c000000" + Hex(std::string("\x00\x00\x00\x00\x00\x80\x56\xc0", 8))))
        << "rotate -90";
    // Class 3, function 0, kind 0 (nets), two names split at the comma and trimmed.
    EXPECT_TRUE(JournalHas(records, 3, "03000000" "00000000" "00000000" "0200" + Archived("GND") + Archived("+5V")));
    // Kind 1 (components); without --separators each argument is one name.
    EXPECT_TRUE(JournalHas(records, 3, "03000000" "00000000" "01000000" "0200" + Archived("U1") + Archived("R 5")));
    EXPECT_TRUE(JournalHas(records, 13, Archived("BOTTOM")));
}

TEST_F(ToolScript, KeepingConnectionsChangesNothingButTheSpeed) {
    const std::string script =
        "launch-hidden board.pdbba\nnet-pins U1 14\npin-count-ref U1\nmerge GND GND\nhighlight nets GND\n"
        "pin-count-part NO-SUCH-PART\nexit --wait\n";
    auto plain = RunKpcb({"run", "--echo", "--keep-going", "-"}, dir.path(), script);
    auto kept = RunKpcb({"run", "--keep-connections", "--echo", "--keep-going", "-"}, dir.path(), script);
    EXPECT_EQ(kept.status, plain.status) << kept.err;
    EXPECT_NE(plain.status, 0) << "the unknown part fails both";
    auto plainLines = OutputByLine(plain.out), keptLines = OutputByLine(kept.out);
    const int keptPid = PidIn(keptLines["launch-hidden board.pdbba"]);
    EXPECT_GT(keptPid, 0);
    EXPECT_EQ(KPCB_IsRunning(keptPid), 0);
    plainLines.erase("launch-hidden board.pdbba");  // the viewers' process ids differ
    keptLines.erase("launch-hidden board.pdbba");
    EXPECT_EQ(keptLines, plainLines);
    EXPECT_FALSE(keptLines["merge GND GND"].empty());
}

TEST_F(ToolScript, StopsAtTheFirstFailureAndClosesWhatItLaunched) {
    const std::string script = WriteScript(
        "launch-hidden board.pdbba\n"
        "zoom-in --pid 99999999\n"
        "launch-hidden missing.pdbba\n");
    const auto stopped = RunKpcb({"run", script}, dir.path());
    EXPECT_EQ(stopped.status, 3);
    EXPECT_NE(stopped.err.find("kpcb: zoom-in: -4: the viewer is not running"), std::string::npos) << stopped.err;
    EXPECT_NE(stopped.err.find("stopped at line 2"), std::string::npos) << stopped.err;
    EXPECT_EQ(stopped.err.find("missing.pdbba"), std::string::npos) << "line 3 ran: " << stopped.err;
    const int pid = PidIn(stopped.out);
    ASSERT_GT(pid, 0) << stopped.out;
    EXPECT_EQ(KPCB_IsRunning(pid), 0) << "the launched viewer was left running";

    // --keep-going runs every line; the first failure gives the exit status.
    const auto kept = RunKpcb({"run", "--keep-going", script}, dir.path());
    EXPECT_EQ(kept.status, 3);
    EXPECT_NE(kept.err.find("kpcb: launch-hidden: -200: the board file does not exist: " +
                            (std::filesystem::path(dir.path()) / "missing.pdbba").string()),
              std::string::npos)
        << kept.err;
    const int keptPid = PidIn(kept.out);
    ASSERT_GT(keptPid, 0) << kept.out;
    EXPECT_EQ(KPCB_IsRunning(keptPid), 0);
}

TEST_F(ToolScript, QueryValuesThatCarryTheViewersCodeAreReportedAsThatCode) {
    const int pins = tool_test::PinLinesOf(board, "U1");
    ASSERT_GT(pins, 0);
    const auto result = RunKpcb({"run", "--echo", "--keep-going", "-"}, dir.path(),
                                "launch-hidden board.pdbba\npin-count-ref U1\npin-count-ref X9\nexit --wait\n");
    EXPECT_EQ(result.status, 6) << result.err;
    auto output = OutputByLine(result.out);
    EXPECT_EQ(output["pin-count-ref U1"], std::to_string(pins) + "\n");
    EXPECT_EQ(output["pin-count-ref X9"], "-200\n");
    EXPECT_NE(result.err.find("kpcb: pin-count-ref: -200: the viewer answered -200"), std::string::npos) << result.err;
}

TEST_F(ToolScript, RefusesLinesItCannotRead) {
    const auto unclosed = RunKpcb({"run", "-"}, dir.path(), "\n# comment\ntitle \"no end\n");
    EXPECT_EQ(unclosed.status, 2);
    EXPECT_NE(unclosed.err.find("line 3: unclosed \" quote"), std::string::npos) << unclosed.err;

    const auto noViewer = RunKpcb({"run", "-"}, dir.path(), "zoom-in\n");
    EXPECT_EQ(noViewer.status, 2);
    EXPECT_NE(noViewer.err.find("launch one earlier in the script"), std::string::npos) << noViewer.err;

    const auto nested = RunKpcb({"run", "-"}, dir.path(), "run other.kpcb\n");
    EXPECT_EQ(nested.status, 2);

    const auto missing = RunKpcb({"run", dir / "no-such-script"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_NE(missing.err.find("cannot read the script"), std::string::npos) << missing.err;
}
