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

// Each status reaches the exit status and a message that says what it means: on a
// dead viewer, and on a running process that is no viewer (it passes the liveness
// test, so the codes that come after it show).
TEST_F(ToolStatus, CodesBecomeExitStatusesAndMessages) {
    const std::string self = std::to_string(platform::CurrentProcessId());
    const struct {
        std::vector<std::string> args;
        int status;
        std::string err;  // a part of standard error
        std::string out;
    } cases[] = {
        {{"zoom-in", "--pid", kDeadPid}, 3, "kpcb: zoom-in: -4: the viewer is not running", ""},
        {{"cw-count", "--pid", kDeadPid}, 3, "kpcb: cw-count: -4: the viewer is not running", ""},  // a count or a code
        {{"exit", "--pid", kDeadPid, "--wait"}, 3, "-4: the viewer is not running", ""},
        {{"is-running", "--pid", kDeadPid}, 1, "", "not running\n"},
        {{"zoom-in"}, 2, "--pid", ""},
        {{"is-running", "--pid", self}, 0, "", "running\n"},
        {{"zoom-in", "--pid", self}, 4, "kpcb: zoom-in: -5: no viewer serves this process id", ""},
        {{"highlight", "--pid", self, "3", "GND"}, 6, "-200: the object kind is not 0, 1 or 2", ""},
        {{"merge-run", "--pid", self, "GND"}, 8, "-202: no layer to merge on", ""},
        {{"explorer", "--pid", self, "pins", dir / "missing-list.txt"}, 7, "-201: the list file does not exist", ""},
        {{"exit", "--pid", self}, 3, "this kpcb process did not launch it", ""},
    };
    for (const auto& c : cases) {
        const auto result = RunKpcb(c.args);
        EXPECT_EQ(result.status, c.status) << c.args[0] << " " << c.args.back();
        EXPECT_NE(result.err.find(c.err), std::string::npos) << result.err;
        EXPECT_EQ(result.out, c.out) << c.args[0];
    }
    testing_support::SetEnv("KPCB_PID", kDeadPid);
    const auto fromEnvironment = RunKpcb({"zoom-in"});
    EXPECT_EQ(fromEnvironment.status, 3) << fromEnvironment.err;
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
