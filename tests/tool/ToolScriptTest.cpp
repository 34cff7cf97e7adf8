// `kpcb run`: a script launches the reference viewer on the sample board, drives it
// and closes it within one kpcb process. What reached the viewer is read back from
// its journal.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "KPCBAPI.h"
#include "SampleBoardTest.h"
#include "ToolRun.h"

using tool_test::NumberLine;
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

class ToolScript : public testing_support::SampleBoardTest {
protected:
    bool JournalHas(int classId, const std::string& payloadPart) const {
        for (const auto& line : Journal())
            if (line.classId == classId && line.payload.find(payloadPart) != std::string::npos) return true;
        return false;
    }
    std::string WriteScript(const std::string& text) {
        const std::string path = dir / "script.kpcb";
        std::ofstream(path) << text;
        return path;
    }
};

}  // namespace

// With the connections kept: the plain way is the one of the other tests.
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
        "pin-count-ref U1\n"
        "pin-count-ref X9\n"
        "merge GND GND\n"
        "capture picture.bmp\n"
        "redmark-remove Short\n"
        "redmark-call Short\n"
        "exit --wait\n");
    const auto result = RunKpcb({"run", "--keep-connections", "--echo", "--keep-going", script}, dir.path());

    // The failing lines: a query value that carries the viewer's code, and the red
    // mark removed just before.
    EXPECT_EQ(result.status, 6) << result.err;
    EXPECT_NE(result.err.find("kpcb: pin-count-ref: -200: the viewer answered -200"), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("kpcb: redmark-call: -200: no red mark has that title"), std::string::npos)
        << result.err;

    auto output = OutputByLine(result.out);
    const int pid = NumberLine(output["launch-hidden board.pdbba"]);
    ASSERT_GT(pid, 0) << result.out;
    EXPECT_EQ(KPCB_IsRunning(pid), 0) << "exit --wait left the viewer running";

    EXPECT_EQ(output["title \"KPCB demo board\"   # quoted: one argument"], "");
    EXPECT_EQ(output["redmark-load marks.txt --text"], "Short\nOpen pad\n");
    EXPECT_EQ(output["redmark-call Short"], "U1-3 touches GND\nsee layer 2\n");
    EXPECT_EQ(output["capture picture.bmp"], (std::filesystem::path(dir.path()) / "picture.bmp").string() + "\n");
    EXPECT_EQ(output["pin-count-ref U1"], "14\n");  // U1 is the board's SOIC-14
    EXPECT_EQ(output["pin-count-ref X9"], "-200\n");
    // The pin's net on the first line, then one pin per line.
    EXPECT_EQ(output["net-pins U1 14"].substr(0, 4), "GND\n");
    EXPECT_EQ(output["net-pins U1 14"].find('|'), std::string::npos);
    // Each outline and hole under its heading, then one "x y" line per point.
    const std::regex mergeLine(R"(outline \d+|hole \d+ \d+|\S+ \S+)");
    std::istringstream merged(output["merge GND GND"]);
    for (std::string line; std::getline(merged, line);)
        EXPECT_TRUE(std::regex_match(line, mergeLine)) << "merge printed: " << line;
    EXPECT_FALSE(output["merge GND GND"].empty());

    EXPECT_TRUE(JournalHas(27, Archived("KPCB demo board")));
    EXPECT_TRUE(JournalHas(12, "0c000000" + Hex(std::string("\x00\x00\x00\x00\x00\x80\x56\xc0", 8)))) << "rotate -90";
    // Class 3, function 0, kind 0 (nets), two names split at the comma and trimmed.
    EXPECT_TRUE(JournalHas(3, "03000000" "00000000" "00000000" "0200" + Archived("GND") + Archived("+5V")));
    // Kind 1 (components); without --separators each argument is one name.
    EXPECT_TRUE(JournalHas(3, "03000000" "00000000" "01000000" "0200" + Archived("U1") + Archived("R 5")));
    EXPECT_TRUE(JournalHas(13, Archived("BOTTOM")));
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
    const int pid = NumberLine(stopped.out);
    ASSERT_GT(pid, 0) << stopped.out;
    EXPECT_EQ(KPCB_IsRunning(pid), 0) << "the launched viewer was left running";

    // --keep-going runs every line; the first failure gives the exit status.
    const auto kept = RunKpcb({"run", "--keep-going", script}, dir.path());
    EXPECT_EQ(kept.status, 3);
    EXPECT_NE(kept.err.find("kpcb: launch-hidden: -200: the board file does not exist: " +
                            (std::filesystem::path(dir.path()) / "missing.pdbba").string()),
              std::string::npos)
        << kept.err;
    const int keptPid = NumberLine(kept.out);
    ASSERT_GT(keptPid, 0) << kept.out;
    EXPECT_EQ(KPCB_IsRunning(keptPid), 0);
}

TEST_F(ToolScript, RefusesLinesItCannotRead) {
    const struct {
        std::vector<std::string> args;
        std::string input, err;  // err: a part of standard error
    } cases[] = {
        {{"run", "-"}, "\n# comment\ntitle \"no end\n", "line 3: unclosed \" quote"},
        {{"run", "-"}, "zoom-in\n", "launch one earlier in the script"},
        {{"run", "-"}, "run other.kpcb\n", ""},
        {{"run", dir / "no-such-script"}, "", "cannot read the script"},
    };
    for (const auto& c : cases) {
        const auto result = RunKpcb(c.args, dir.path(), c.input);
        EXPECT_EQ(result.status, 2) << c.input;
        EXPECT_NE(result.err.find(c.err), std::string::npos) << result.err;
    }
}
