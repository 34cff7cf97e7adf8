// The demo program runs its tour against the reference viewer from start to end and
// prints what the viewer answered.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "SampleBoardTest.h"
#include "ToolRun.h"

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

using Demo = testing_support::SampleBoardTest;

}  // namespace

TEST_F(Demo, ToursTheSampleBoardAndClosesTheViewer) {
    const std::string pictures = dir / "pictures";
    const auto result = tool_test::RunBeside("kpcb_demo", {board, pictures});
    ASSERT_EQ(result.status, 0) << result.out << result.err;

    EXPECT_EQ(AnswerTo(result.out, "KPCB_IsRunning"), "1");  // the first one, right after the launch
    EXPECT_EQ(AnswerTo(result.out, "KPCB_GetPinCountFromReference U1"), "14");  // the board's SOIC-14
    EXPECT_EQ(AnswerTo(result.out, "KPCB_Exit (wait)"), "0 (done)");
    const std::string picture = (std::filesystem::path(pictures) / "demo_board.bmp").string();
    EXPECT_NE(result.out.find("picture: " + picture + " ("), std::string::npos) << result.out;
    EXPECT_TRUE(std::filesystem::exists(picture));
}
