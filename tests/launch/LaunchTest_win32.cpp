// The reference viewer's side of the launch on Windows: its hello is the handle of a
// message-only window of its own process, and WM_CLOSE posted to that window ends it.
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <gtest/gtest.h>

#include "CMailslot.h"
#include "SampleBoardTest.h"
#include "SlotNames.h"
#include "platform.h"

namespace {

// True when window is among the message-only windows of the system.
bool IsMessageOnlyWindow(HWND window) {
    for (HWND found = FindWindowExA(HWND_MESSAGE, nullptr, nullptr, nullptr); found;
         found = FindWindowExA(HWND_MESSAGE, found, nullptr, nullptr))
        if (found == window) return true;
    return false;
}

}  // namespace

using WindowsViewer = testing_support::SampleBoardTest;

TEST_F(WindowsViewer, HelloIsAMessageOnlyWindowThatTakesTheCloseRequest) {
    CMailslot returnSlot(0, ReturnSlotName());
    ASSERT_EQ(returnSlot.Open(), 1);
    platform::SetSlotReadTimeout(returnSlot.GetHandle(), 30000);
    const std::string exe = testing_support::BinDir() + "\\KorbinPCB.exe";
    const int pid = platform::StartProcess(exe, "\"" + exe + "\" -LAUNCH-FROM-KAPI-HIDE \"" + board + "\"", {});
    ASSERT_GT(pid, 0);
    int hello = -1;
    ASSERT_EQ(returnSlot.ReadBytes(&hello, 4, 0), 1);
    ASSERT_GT(hello, 0);

    const HWND window = reinterpret_cast<HWND>(static_cast<intptr_t>(hello));
    DWORD owner = 0;
    EXPECT_NE(GetWindowThreadProcessId(window, &owner), 0u);
    EXPECT_EQ(owner, static_cast<DWORD>(pid));
    EXPECT_TRUE(IsMessageOnlyWindow(window));

    EXPECT_NE(PostMessageA(window, WM_CLOSE, 0, 0), 0);
    EXPECT_TRUE(platform::WaitProcessExit(pid, 20000));
    EXPECT_FALSE(platform::ProcessExists(pid));
}
