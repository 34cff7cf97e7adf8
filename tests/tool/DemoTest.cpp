// The demo program runs its tour against the reference viewer from start to end and
// prints what the viewer answered.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "TestPaths.h"
#include "TestSystem.h"
#include "ToolRun.h"

using testing_support::TempDir;

namespace {

// The answer column of the demo's line for a call, or "" when there is none.
std::string AnswerTo(const std::string& out, const std::string& call) {
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("  " + call + " ", 0) != 0) continue;
        const size_t answer = line.find_first_not_of(' ', 2 + call.size());
        return answer == std::string::npos ? std::string() : line.substr(answer);
    }
    return std::string();
}

// The reference of the first component of a part in the board's text form.
std::string FirstComponentOf(const std::string& boardFile, const std::string& part) {
    std::ifstream file(boardFile);
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string keyword, reference, itsPart;
        words >> keyword >> reference >> itsPart;
        if (keyword == "COMP" && itsPart == part) return reference;
    }
    return std::string();
}

}  // namespace

TEST(Demo, ToursTheSampleBoardAndClosesTheViewer) {
    TempDir dir;
    testing_support::SetEnv("KPCB_DATA_DIR", dir.path());
    const std::string board = dir / "board.pdbba";
    std::filesystem::copy_file(testing_support::SampleBoard(), board);
    const std::string pictures = dir / "pictures";

    const auto result = tool_test::RunBeside("kpcb_demo", {board, pictures});
    ASSERT_EQ(result.status, 0) << result.out << result.err;

    EXPECT_EQ(AnswerTo(result.out, "KPCB_GetPinCountFromReference U1"),
              std::to_string(tool_test::PinLinesOf(board, "U1")));
    EXPECT_EQ(AnswerTo(result.out, "KPCB_GetPinCountFromPart 24LC02B-SN"),
              std::to_string(tool_test::PinLinesOf(board, FirstComponentOf(board, "24LC02B-SN"))));
    EXPECT_EQ(AnswerTo(result.out, "KPCB_Exit (wait)"), "0 (done)");
    EXPECT_EQ(AnswerTo(result.out, "KPCB_IsRunning"), "1");  // the first one, right after the launch

    const std::string picture = (std::filesystem::path(pictures) / "demo_board.bmp").string();
    EXPECT_NE(result.out.find("picture: " + picture + " ("), std::string::npos) << result.out;
    EXPECT_TRUE(std::filesystem::exists(picture));
}
