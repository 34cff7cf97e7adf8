// Processes: CreateProcessA, Toolhelp snapshots for liveness, WM_CLOSE to the
// viewer's main window as the close request, process handles for waiting.
#include <atomic>

#include "win32.h"

// after <windows.h>, which it needs
#include <tlhelp32.h>

namespace platform {
namespace {

std::atomic<bool> g_closeRequested{false};

const char kCloseWindowClass[] = "KorbinPCBCloseRequest";

LRESULT CALLBACK CloseWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CLOSE:
        g_closeRequested = true;
        DestroyWindow(window);
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcA(window, message, wParam, lParam);
    }
}

BOOL WINAPI OnConsoleControl(DWORD event) {
    if (event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT || event == CTRL_CLOSE_EVENT) {
        g_closeRequested = true;
        return TRUE;
    }
    return FALSE;
}

struct WindowStart {
    HANDLE ready;
    HWND window;
};

// The main window's thread: a message-only window (it needs no desktop) that
// turns WM_CLOSE into the close request, and its message loop.
DWORD WINAPI CloseWindowThread(void* parameter) {
    WindowStart* start = static_cast<WindowStart*>(parameter);
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = CloseWindowProc;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = kCloseWindowClass;
    RegisterClassA(&windowClass);
    start->window = CreateWindowExA(0, kCloseWindowClass, "KorbinPCB", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                    windowClass.hInstance, nullptr);
    const HWND window = start->window;
    SetEvent(start->ready);  // start belongs to the caller from here on
    if (!window) return 1;
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return 0;
}

}  // namespace

namespace win32 {
bool CloseRequestPending() { return g_closeRequested; }
}  // namespace win32

intptr_t InstallCloseRequest() {
    SetConsoleCtrlHandler(OnConsoleControl, TRUE);
    WindowStart start{CreateEventA(nullptr, TRUE, FALSE, nullptr), nullptr};
    if (!start.ready) return 0;
    const HANDLE thread = CreateThread(nullptr, 0, CloseWindowThread, &start, 0, nullptr);
    if (thread) {
        WaitForSingleObject(start.ready, INFINITE);
        CloseHandle(thread);
    }
    CloseHandle(start.ready);
    return reinterpret_cast<intptr_t>(start.window);
}

bool CloseRequested() { return g_closeRequested; }

int CurrentProcessId() { return static_cast<int>(GetCurrentProcessId()); }

bool ProcessExists(int pid) {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) return false;
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    bool found = false;
    for (BOOL more = Process32First(snapshot, &entry); more && !found; more = Process32Next(snapshot, &entry))
        found = entry.th32ProcessID == static_cast<DWORD>(pid);
    CloseHandle(snapshot);
    return found;
}

int StartProcess(const std::string& exe, const std::string& commandLine, const std::vector<std::string>& /*args*/,
                 Status* why) {
    if (why) *why = Status();
    std::string line = commandLine;  // CreateProcessA may write into its command line
    STARTUPINFOA startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(exe.c_str(), &line[0], nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr, &startup,
                        &process)) {
        if (why) *why = LastSystemError();
        return -1;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(process.dwProcessId);
}

void RequestClose(int /*pid*/, intptr_t window) {
    PostMessageA(reinterpret_cast<HWND>(window), WM_CLOSE, 0, 0);
}

ProcessWatch WatchProcess(int pid) {
    if (pid <= 0) return nullptr;
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(pid));
    if (!process) return nullptr;
    if (WaitForSingleObject(process, 0) != WAIT_TIMEOUT) {  // ended, only its handle left
        CloseHandle(process);
        return nullptr;
    }
    return process;
}

bool WatchedProcessRunning(ProcessWatch watch) {
    return watch && WaitForSingleObject(static_cast<HANDLE>(watch), 0) == WAIT_TIMEOUT;
}

void StopWatching(ProcessWatch watch) {
    if (watch) CloseHandle(static_cast<HANDLE>(watch));
}

Status WaitProcessExit(int pid, int timeoutMs) {
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(pid));
    if (!process) {
        const Status refused = LastSystemError();  // before the look-up sets another
        return ProcessExists(pid) ? refused : Status();
    }
    const DWORD result = WaitForSingleObject(process, timeoutMs < 0 ? INFINITE : static_cast<DWORD>(timeoutMs));
    const Status waited = result == WAIT_OBJECT_0 ? Status()
                          : result == WAIT_TIMEOUT ? Status(Error::kTimedOut)
                                                   : LastSystemError();
    CloseHandle(process);
    return waited;
}

}  // namespace platform
