// A viewer launched by one kpcb call outlives it and is driven by later calls
// through its pid; only the launching process could close it with exit.
#include <gtest/gtest.h>

#include <filesystem>

#include "KPCBAPI.h"
#include "TestPaths.h"
#include "TestSystem.h"
#include "ToolRun.h"
#include "platform.h"

using testing_support::TempDir;
using tool_test::RunKpcb;

namespace {

// Ends a viewer that this process did not launch: SIGTERM is its close request.
class ViewerProcess {
public:
    explicit ViewerProcess(int pid) : m_pid(pid) {}
    ~ViewerProcess() {
        if (m_pid > 0 && platform::ProcessExists(m_pid)) {
            platform::RequestClose(m_pid, 0);
            platform::WaitProcessExit(m_pid, 10000);
        }
    }
    ViewerProcess(const ViewerProcess&) = delete;
    ViewerProcess& operator=(const ViewerProcess&) = delete;

private:
    int m_pid;
};

}  // namespace

TEST(ToolLaunch, ViewerOutlivesTheLaunchingCall) {
    TempDir dir;
    testing_support::SetEnv("KPCB_DATA_DIR", dir.path());
    std::filesystem::copy_file(testing_support::SampleBoard(), dir / "board.pdbba");

    const auto launched = RunKpcb({"launch-hidden", "board.pdbba"}, dir.path());
    ASSERT_EQ(launched.status, 0) << launched.err;
    ASSERT_GT(tool_test::NumberLine(launched.out), 0) << launched.out;
    const std::string pid = std::to_string(tool_test::NumberLine(launched.out));
    ViewerProcess viewer(std::stoi(pid));

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
