// Launching on POSIX leaves the caller's signal handling as it was.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>

#include "KPCBAPI.hpp"
#include "TestPaths.h"
#include "TestSystem.h"

TEST(PosixLaunch, CallerSignalHandlersAreUntouched) {
    testing_support::TempDir data;
    testing_support::SetEnv("KPCB_DATA_DIR", data.path());
    const std::string board = data / "board.pdbba";
    std::filesystem::copy_file(testing_support::SampleBoard(), board);
    struct sigaction before{}, after{};
    sigaction(SIGCHLD, nullptr, &before);
    const int pid = KPCB_Launch(CString(board), 1);
    ASSERT_GT(pid, 0);
    KPCB_Exit(pid, 1);
    sigaction(SIGCHLD, nullptr, &after);
    EXPECT_EQ(before.sa_handler, after.sa_handler);
}
