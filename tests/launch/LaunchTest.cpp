// Launch, liveness and exit against the real viewer process, and launch failures
// with the shared library copied into folders laid out for each case.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "CMailslot.h"
#include "KPCBAPI.hpp"
#include "SampleBoardTest.h"
#include "SlotNames.h"
#include "platform.h"

namespace fs = std::filesystem;
using testing_support::NoChildren;
using testing_support::TempDir;

namespace {

bool WaitUntil(const std::function<bool()>& condition, int timeoutMs = 5000) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

class LaunchTest : public testing_support::SampleBoardTest {
protected:
    std::vector<int> JournalClassIds() const {
        std::vector<int> ids;
        for (const auto& line : Journal()) ids.push_back(line.classId);
        return ids;
    }
    // Running reference viewers whose command line names this test's data folder.
    int ViewerCount() const { return testing_support::RunningProcessesWith("-LAUNCH-FROM-KAPI", dir.path()); }
};

// A copy of the shared library in a folder of its own, with chosen viewer files beside it.
class LibraryCopy {
public:
    LibraryCopy() { fs::copy_file(testing_support::BinDir() + "/" + kLibraryFile, dir / kLibraryFile); }
    ~LibraryCopy() { platform::UnloadModule(handle); }
    // A viewer program under another name (without the system's executable suffix).
    void AddViewer(const std::string& name) {
        const std::string suffix = platform::ExecutableSuffix();
        fs::copy_file(testing_support::BinDir() + "/KorbinPCB" + suffix, dir / (name + suffix));
    }
    // A file that is not a program, under a viewer's name.
    void AddFile(const std::string& name, fs::perms mode) {
        const std::string path = dir / (name + platform::ExecutableSuffix());
        std::ofstream(path) << "not a program\n";
        fs::permissions(path, mode);
    }
    int Launch(const std::string& file) {
        if (!handle) handle = platform::LoadModule(dir / kLibraryFile);
        EXPECT_NE(handle, nullptr);
        auto launch = reinterpret_cast<int (*)(const wchar_t*)>(platform::ModuleSymbol(handle, "KPCB_Launch"));
        const std::wstring wide(file.begin(), file.end());
        return launch(wide.c_str());
    }
    int Exit(int pid, int wait) {
        auto exit = reinterpret_cast<int (*)(int, int)>(platform::ModuleSymbol(handle, "KPCB_Exit"));
        return exit(pid, wait);
    }

    static constexpr const char* kLibraryFile = KPCB_CLIENT_LIBRARY_FILE;
    TempDir dir;
    void* handle = nullptr;
};

}  // namespace

TEST_F(LaunchTest, LaunchDriveAndExitWithoutWaiting) {
    const int pid = KPCB_Launch(CString(board), 0);
    ASSERT_GT(pid, 0);
    EXPECT_EQ(KPCB_IsRunning(pid), 1);
    EXPECT_EQ(KPCB_ZoomIn(pid), 0);
    EXPECT_EQ(KPCB_ViewMirror(pid), 0);
    const double angle = 45;
    EXPECT_EQ(KPCB_RotateBoard(pid, &angle), 0);
    EXPECT_EQ(KPCB_SetMainTitle(pid, "Main board"), 0) << "the viewer answers the title";
    EXPECT_EQ(JournalClassIds(), (std::vector<int>{8, 8, 12, 27}));

    EXPECT_EQ(KPCB_Exit(pid, 0), KPCB_EXIT_NOT_WAITED);
    EXPECT_EQ(KPCB_Exit(pid, 0), KPCB_NOT_RUNNING) << "forgotten, or already gone";
    EXPECT_TRUE(WaitUntil([&] { return KPCB_IsRunning(pid) == 0; }));
    EXPECT_TRUE(NoChildren());
    // The exit switched the red-mark tool off first.
    EXPECT_EQ(JournalClassIds().back(), 20);
}

// With the connections kept between calls, so that a viewer that ends is seen to
// have ended through what is kept as well.
TEST_F(LaunchTest, TwoViewersSideBySideEachExitWaitsForItsOwn) {
    ASSERT_EQ(KPCB_KeepConnections(1), 0);
    const int first = KPCB_Launch(CString(board), 1);
    const int second = KPCB_Launch(CString(board), 1);
    ASSERT_GT(first, 0);
    ASSERT_GT(second, 0);
    EXPECT_NE(first, second);
    for (int pid : {first, second}) {
        int pins = 0;
        EXPECT_EQ(KPCB_GetPinCountFromReference(pid, L"U1", &pins), 0);
        EXPECT_EQ(pins, 14);
    }
    EXPECT_EQ(KPCB_Exit(first, 1), KPCB_OK);
    EXPECT_EQ(KPCB_IsRunning(first), 0);
    EXPECT_EQ(KPCB_Exit(first, 1), KPCB_NOT_RUNNING);
    EXPECT_EQ(KPCB_IsRunning(second), 1);
    platform::AbandonProcess(second);  // this one ends on its own
    ASSERT_TRUE(platform::WaitProcessExit(second, 10000));
    for (int pid : {first, second}) {
        EXPECT_EQ(KPCB_ZoomIn(pid), KPCB_NOT_RUNNING);
        int pins = 0;
        EXPECT_EQ(KPCB_GetPinCountFromReference(pid, L"U1", &pins), KPCB_NOT_RUNNING);
    }
    EXPECT_EQ(KPCB_KeepConnections(0), 1);
    EXPECT_TRUE(NoChildren());
    EXPECT_EQ(KPCB_Exit(platform::CurrentProcessId(), 0), KPCB_NOT_RUNNING) << "not launched here";
    std::ifstream log(dir / "Log/KAPI.log");
    std::string firstLine;
    ASSERT_TRUE(std::getline(log, firstLine));
    EXPECT_NE(firstLine.find("\" -LAUNCH-FROM-KAPI-HIDE \"" + board + "\""), std::string::npos) << firstLine;
}

TEST_F(LaunchTest, MissingDesignFileIsMinus200AndStartsNothing) {
    EXPECT_EQ(KPCB_Launch(CString(dir / "missing.pdbb"), 0), KPCB_ERR_200);
    EXPECT_EQ(KPCB_Launch(static_cast<const wchar_t*>(nullptr)), KPCB_ERR_200);
    EXPECT_TRUE(NoChildren());
    EXPECT_TRUE(Journal().empty());
}

TEST_F(LaunchTest, NegativeHelloIsReturnedAndNothingStored) {
    // A folder passes the existence test but cannot be read as a board: the viewer says -3.
    const int result = KPCB_Launch(CString(dir.path()), 0);
    EXPECT_EQ(result, -3);
    // So does a file that is not a board; the reason goes to the journal.
    const std::string notABoard = dir / "notes.pdbba";
    std::ofstream(notABoard) << "shopping list\n";
    EXPECT_EQ(KPCB_Launch(CString(notABoard), 0), -3);
    const auto lines = Journal();
    ASSERT_EQ(lines.size(), 2u);
    for (const auto& line : lines) EXPECT_NE(line.note.find("board not loaded"), std::string::npos) << line.note;
    EXPECT_TRUE(NoChildren());
}

TEST_F(LaunchTest, NoViewerBesideTheLibraryIsMinus201) {
    LibraryCopy copy;
    EXPECT_EQ(copy.Launch(board), KPCB_ERR_201);
}

TEST_F(LaunchTest, ViewerThatCannotBeStartedIsMinus202) {
    LibraryCopy copy;
    copy.AddFile("KorbinPCB", fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read |
                                 fs::perms::others_read);
    EXPECT_EQ(copy.Launch(board), KPCB_ERR_202);
    EXPECT_TRUE(NoChildren());
}

TEST_F(LaunchTest, ViewerNamesAreTriedInOrder) {
    for (const auto& names : {std::vector<std::string>{"KorbinPCB_n"}, {"KorbinPCB_n", "KorbinPCB_l"}}) {
        LibraryCopy copy;
        for (const auto& name : names) copy.AddViewer(name);
        const int pid = copy.Launch(board);
        ASSERT_GT(pid, 0);
        EXPECT_EQ(testing_support::ExecutableNameOf(pid), names.back() + platform::ExecutableSuffix());
        EXPECT_EQ(copy.Exit(pid, 1), 0);
    }
}

TEST_F(LaunchTest, BusyReturnSlotIsMinusFiveAndLeavesNoViewerBehind) {
    CMailslot held(0, ReturnSlotName());  // another launch is waiting on it
    ASSERT_EQ(held.Open(), 1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(KPCB_Launch(CString(board), 1), KPCB_SLOT_UNAVAILABLE);
    // The viewer that was started is told to close and does, long before its
    // hello would have given up.
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_TRUE(WaitUntil([&] { return Journal().empty() && ViewerCount() == 0; }, 10000));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}
