// Launching on POSIX leaves the caller's signal handling as it was, and a viewer on
// a big board restarts itself with large heap pages without the caller noticing.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "BoardGenerator.h"
#include "CPdbbProcessor.h"
#include "KPCBAPI.hpp"
#include "SampleBoardTest.h"

using PosixLaunch = testing_support::SampleBoardTest;

TEST_F(PosixLaunch, CallerSignalHandlersAreUntouched) {
    struct sigaction before{}, after{};
    sigaction(SIGCHLD, nullptr, &before);
    const int pid = KPCB_Launch(CString(board), 1);
    ASSERT_GT(pid, 0);
    KPCB_Exit(pid, 1);
    sigaction(SIGCHLD, nullptr, &after);
    EXPECT_EQ(before.sa_handler, after.sa_handler);
}

TEST_F(PosixLaunch, BigBoardViewerRestartsInItsOwnProcess) {
    const std::string board = dir / "big.pdbb";
    CString error;
    ASSERT_TRUE(CPdbbProcessor::SaveBoardFile(CString(board.c_str()), *GenerateBoard(3000), error)) << error.str();
    ASSERT_GE(std::filesystem::file_size(board), 1u << 20) << "not big enough to restart";
    const int pid = KPCB_Launch(CString(board), 1);
    ASSERT_GT(pid, 0);
    // The process that answers is the launched one, started again with the setting.
    std::ifstream environ("/proc/" + std::to_string(pid) + "/environ");
    const std::string env((std::istreambuf_iterator<char>(environ)), std::istreambuf_iterator<char>());
    EXPECT_NE(env.find("glibc.malloc.hugetlb=1"), std::string::npos);
    EXPECT_EQ(KPCB_IsRunning(pid), 1);
    KPCB_Exit(pid, 1);
}
