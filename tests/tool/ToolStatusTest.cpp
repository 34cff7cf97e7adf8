// Status codes become kpcb's exit statuses and messages that say what they mean.
#include <gtest/gtest.h>

#include <string>

#include "TestPaths.h"
#include "TestSystem.h"
#include "ToolRun.h"
#include "platform.h"

using testing_support::TempDir;
using tool_test::RunKpcb;

namespace {

// No process has this id: above Linux's largest pid, and not a multiple of four
// as Windows ids are.
const std::string kDeadPid = "99999999";

class ToolStatus : public ::testing::Test {
protected:
    void SetUp() override { testing_support::SetEnv("KPCB_DATA_DIR", dir.path()); }
    void TearDown() override { testing_support::UnsetEnv("KPCB_PID"); }
    TempDir dir;
};

}  // namespace

TEST_F(ToolStatus, DeadViewerIsMinusFourAndExitThree) {
    for (const char* command : {"zoom-in", "pin-count-ref", "redmark-get-status", "cw-count"}) {
        std::vector<std::string> args = {command, "--pid", kDeadPid};
        if (std::string(command) == "pin-count-ref") args.push_back("U1");
        const auto result = RunKpcb(args);
        EXPECT_EQ(result.status, 3) << command;
        EXPECT_NE(result.err.find(std::string("kpcb: ") + command + ": -4: the viewer is not running"),
                  std::string::npos)
            << result.err;
        EXPECT_EQ(result.out, "") << command;
    }
}

TEST_F(ToolStatus, PidComesFromTheEnvironmentWhenNotGiven) {
    const auto missing = RunKpcb({"zoom-in"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_NE(missing.err.find("--pid"), std::string::npos) << missing.err;

    testing_support::SetEnv("KPCB_PID", kDeadPid);
    const auto fromEnvironment = RunKpcb({"zoom-in"});
    EXPECT_EQ(fromEnvironment.status, 3) << fromEnvironment.err;
    EXPECT_NE(fromEnvironment.err.find("-4:"), std::string::npos) << fromEnvironment.err;
}

TEST_F(ToolStatus, MissingBoardIsMinusTwoHundredAndExitSix) {
    const auto result = RunKpcb({"launch-hidden", dir / "no-such-board.pdbba"});
    EXPECT_EQ(result.status, 6);
    EXPECT_NE(result.err.find("kpcb: launch-hidden: -200: the board file does not exist"), std::string::npos)
        << result.err;
    EXPECT_EQ(result.out, "");
}

TEST_F(ToolStatus, ExitOfAViewerThatIsNotRunning) {
    const auto result = RunKpcb({"exit", "--pid", kDeadPid, "--wait"});
    EXPECT_EQ(result.status, 3);
    EXPECT_NE(result.err.find("-4: the viewer is not running"), std::string::npos) << result.err;

    const auto running = RunKpcb({"is-running", "--pid", kDeadPid});
    EXPECT_EQ(running.status, 1);
    EXPECT_EQ(running.out, "not running\n");
}

// A running process that is no viewer: it passes the liveness test, so the codes
// that come after it show.
TEST_F(ToolStatus, RunningProcessThatIsNoViewer) {
    const std::string self = std::to_string(platform::CurrentProcessId());

    const auto running = RunKpcb({"is-running", "--pid", self});
    EXPECT_EQ(running.status, 0);
    EXPECT_EQ(running.out, "running\n");

    const auto noSlot = RunKpcb({"zoom-in", "--pid", self});
    EXPECT_EQ(noSlot.status, 4);
    EXPECT_NE(noSlot.err.find("kpcb: zoom-in: -5: no viewer serves this process id"), std::string::npos)
        << noSlot.err;

    const auto badKind = RunKpcb({"highlight", "--pid", self, "3", "GND"});
    EXPECT_EQ(badKind.status, 6);
    EXPECT_NE(badKind.err.find("-200: the object kind is not 0, 1 or 2"), std::string::npos) << badKind.err;

    const auto noLayer = RunKpcb({"merge-run", "--pid", self, "GND"});
    EXPECT_EQ(noLayer.status, 8);
    EXPECT_NE(noLayer.err.find("-202: no layer to merge on"), std::string::npos) << noLayer.err;

    const auto noList = RunKpcb({"explorer", "--pid", self, "pins", dir / "missing-list.txt"});
    EXPECT_EQ(noList.status, 7);
    EXPECT_NE(noList.err.find("-201: the list file does not exist"), std::string::npos) << noList.err;

    const auto exitForeign = RunKpcb({"exit", "--pid", self});
    EXPECT_EQ(exitForeign.status, 3);
    EXPECT_NE(exitForeign.err.find("this kpcb process did not launch it"), std::string::npos) << exitForeign.err;
}

// A command slot under this process's id that nobody reads: queries wait for an
// answer that never comes, unless a time limit is set.
TEST_F(ToolStatus, TimeoutEndsTheWaitForAViewerThatNeverAnswers) {
    const std::string self = std::to_string(platform::CurrentProcessId());
    const platform::SlotHandle slot = platform::CreateSlot("\\\\.\\mailslot\\KPCB\\RCIMR\\" + self);
    ASSERT_NE(slot, platform::InvalidSlot());

    const auto option = RunKpcb({"pin-count-ref", "--pid", self, "U1", "--timeout", "200"});
    EXPECT_EQ(option.status, 5);
    EXPECT_NE(option.err.find("kpcb: pin-count-ref: -7: no valid reply came from the viewer"), std::string::npos)
        << option.err;

    testing_support::SetEnv("KPCB_TIMEOUT", "200");
    const auto environment = RunKpcb({"redmark-get-status", "--pid", self});
    testing_support::UnsetEnv("KPCB_TIMEOUT");
    EXPECT_EQ(environment.status, 5) << environment.err;
    platform::CloseSlot(slot);
}

TEST_F(ToolStatus, ExtractionResultsHaveTheirOwnExitStatuses) {
    // An output folder that does not exist: the argument check refuses it (result 2).
    const auto refused = RunKpcb({"extract-zuken", dir / "missing-folder/out.pdbb", dir.path(), "a"});
    EXPECT_EQ(refused.status, 10) << refused.err;
    EXPECT_NE(refused.err.find("kpcb: extract-zuken: 2: the arguments were refused"), std::string::npos)
        << refused.err;

    // Arguments that pass, and no importer plug-in anywhere (result 3).
    testing_support::SetEnv("KPCB_IMPORTER_DIR", dir / "no-plug-ins");
    const auto noBoard = RunKpcb({"extract-zuken", dir / "out.pdbb", dir.path(), "a"});
    const auto noBoardCpp = RunKpcb({"extract-zuken", "--cpp", dir / "out.pdbb", dir.path(), "a"});
    testing_support::UnsetEnv("KPCB_IMPORTER_DIR");
    EXPECT_EQ(noBoard.status, 11) << noBoard.err;
    EXPECT_NE(noBoard.err.find("kpcb: extract-zuken: 3: the importer gave no board database"), std::string::npos)
        << noBoard.err;
    EXPECT_EQ(noBoardCpp.status, 11) << noBoardCpp.err;
}
