// A viewer launched by one kpcb call outlives it and is driven by later calls
// through its pid; only the launching process could close it with exit.
#include <gtest/gtest.h>

#include "KPCBAPI.h"
#include "SampleBoardTest.h"
#include "ToolRun.h"
#include "platform.h"

using tool_test::RunKpcb;

using ToolLaunch = testing_support::SampleBoardTest;

TEST_F(ToolLaunch, ViewerOutlivesTheLaunchingCall) {
    const auto launched = RunKpcb({"launch-hidden", "board.pdbba"}, dir.path());
    ASSERT_EQ(launched.status, 0) << launched.err;
    ASSERT_GT(tool_test::NumberLine(launched.out), 0) << launched.out;
    const std::string pid = std::to_string(tool_test::NumberLine(launched.out));
    // This process did not launch it: SIGTERM, the viewer's close request, ends it.
    struct Closer {
        int pid;
        ~Closer() {
            platform::RequestClose(pid, 0);
            platform::WaitProcessExit(pid, 10000);
        }
    } closer{std::stoi(pid)};

    EXPECT_EQ(RunKpcb({"is-running", "--pid", pid}).out, "running\n");
    const auto zoom = RunKpcb({"zoom-in", "--pid", pid});
    EXPECT_EQ(zoom.status, 0) << zoom.err;
    const auto status = RunKpcb({"redmark-set-status", "--pid", pid, "5"});
    EXPECT_EQ(status.status, 0) << status.err;
    EXPECT_EQ(RunKpcb({"redmark-get-status", "--pid", pid}).out, "5\n");

    const auto exit = RunKpcb({"exit", "--pid", pid, "--wait"});
    EXPECT_EQ(exit.status, 3);
    EXPECT_NE(exit.err.find("did not launch it"), std::string::npos) << exit.err;
    EXPECT_EQ(KPCB_IsRunning(std::stoi(pid)), 1);
}
