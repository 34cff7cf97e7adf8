// What an operating system must provide to the library, the viewer and the tools.
// Everything here is implemented once per platform folder (posix/, win32/); no other
// source calls the operating system directly. Calls that can fail for a reason worth
// logging return a Status (true on success), or, when they return a handle, take an
// optional Status* that receives the reason of a failure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "platform_status.h"

namespace platform {

// ---- Mailslots -------------------------------------------------------------
// A slot is a named, local, message-oriented channel: the read side creates it,
// write sides open it by name; one write is one message, delivered whole.
// Handles are opaque pointers: null is a handle that was never opened (closing it
// does nothing) and InvalidSlot() the result of a failed open.
using SlotHandle = void*;
inline SlotHandle InvalidSlot() { return reinterpret_cast<SlotHandle>(~static_cast<uintptr_t>(0)); }

// Read side. Fails (InvalidSlot) when a slot of that name exists already.
SlotHandle CreateSlot(const std::string& name, Status* why = nullptr);
// Write side. Fails (InvalidSlot) when no slot of that name exists.
SlotHandle OpenSlot(const std::string& name, Status* why = nullptr);
// Sends count bytes as one message; any size. written receives the count sent.
Status WriteSlot(SlotHandle slot, const void* data, uint32_t count, uint32_t* written);
// Sends two messages in this order, in one system call where the system has one
// (a frame's length and payload). False when either could not be sent; the first
// may then have gone out alone.
Status WriteSlotPair(SlotHandle slot, const void* first, uint32_t firstCount, const void* second, uint32_t secondCount);
// How long a write waits for room in a slot whose reader does not read, before it
// fails as an undeliverable mailslot write does.
constexpr int kSlotSendWaitMs = 2000;
// Waits for the next message and reads it whole into data. Fails, leaving the
// message queued, when it is larger than capacity. A slot whose wait is limited
// (SetSlotReadTimeout) fails when nothing arrives in time.
Status ReadSlot(SlotHandle slot, void* data, uint32_t capacity, uint32_t* read);
// Size of the next message, waiting up to timeoutMs (-1: for ever). Returns false on
// time-out, error or a signal. Lets a server wait with a bound and size its buffer.
// sender, when given, receives the id of the process that sent the message where the
// system tells it (POSIX), else 0 (Windows mailslots do not).
Status PeekSlotMessageSize(SlotHandle slot, int timeoutMs, uint32_t* size, int* sender = nullptr);
// Size of the next message, waiting as ReadSlot does.
Status NextSlotMessageSize(SlotHandle slot, uint32_t* size);
// 0 waits for ever (the default).
void SetSlotReadTimeout(SlotHandle slot, int milliseconds);
// Whether a write side that stays open fails its writes once the read side it
// reached is closed, even when a new read side of the same name exists: then a
// writer may be kept and opened again only when a write fails. True on POSIX (a
// connected socket is refused by a closed peer); not relied on for mailslots.
bool KeptWriterNoticesClosedReader();
void CloseSlot(SlotHandle slot);

// ---- Processes -------------------------------------------------------------
int CurrentProcessId();
// True while a process with that id exists and has not ended.
bool ProcessExists(int pid);
// Starts exe detached from the caller (never its zombie, no console), with the
// given arguments after the program name. commandLine is the Windows-style line,
// used as is where the system takes one. Returns the pid, or -1 (why says why).
int StartProcess(const std::string& exe, const std::string& commandLine, const std::vector<std::string>& args,
                 Status* why = nullptr);
// Asks a viewer to close: its main window gets WM_CLOSE / its process SIGTERM.
void RequestClose(int pid, intptr_t window);
// Ends a started process that nobody will talk to (a launch that could not hear
// its hello): SIGTERM on POSIX, TerminateProcess on Windows.
void AbandonProcess(int pid);
// Waits for the process to end. With timeoutMs < 0 waits for ever. True when it ended.
Status WaitProcessExit(int pid, int timeoutMs);

// A held handle on one running process that tells whether it is still running
// without looking it up again (a pidfd on Linux, a process handle on Windows), and
// that cannot be fooled by a new process that reuses the id. Where the kernel has no
// pidfd it falls back to looking the id up each time. Null when no such process runs.
using ProcessWatch = void*;
ProcessWatch WatchProcess(int pid);
// True while the watched process has not ended. Null: false.
bool WatchedProcessRunning(ProcessWatch watch);
// Null does nothing.
void StopWatching(ProcessWatch watch);

// Viewer side: makes the platform's close request (WM_CLOSE to the main window,
// SIGTERM on POSIX) set a flag and interrupt slot waits. Returns the value that
// identifies the main window in the hello (positive).
intptr_t InstallCloseRequest();
bool CloseRequested();
// Viewer side, first thing in main() for a big board: where the C library backs its
// heap with 4 KiB pages unless told otherwise at start (glibc), runs this program
// again in the same process (same id, same arguments) with large pages asked for,
// which makes the first touch of a big board's memory several times cheaper.
// Returns only when it does not restart: already asked for, nothing to ask on this
// platform, or the restart failed.
void RestartWithLargeHeapPages(char** argv);

// ---- Files and folders -----------------------------------------------------
char PathSeparator();
// What ends the name of an executable file ("" or ".exe").
const char* ExecutableSuffix();
bool PathExists(const std::string& path);
bool IsDirectory(const std::string& path);
Status MakeDirectory(const std::string& path);
Status DeleteFile(const std::string& path);
// Folder of the module (shared library or executable) that holds this code.
std::string ModuleDirectory();
// Folder of the running executable.
std::string ExecutableDirectory();
// The per-user data folder: KPCB_DATA_DIR when set, else the system's default.
std::string DataDirectory();
std::string GetEnv(const char* name);

// ---- Text ------------------------------------------------------------------
// Conversions between the system's narrow code page and wide text.
std::wstring AnsiToWide(const std::string& text);
std::string WideToAnsi(const std::wstring& text);
std::string Utf16ToAnsi(const char16_t* text, size_t count);
// UTF-8 text in the narrow code page (unchanged where that page is UTF-8).
std::string Utf8ToAnsi(const std::string& text);

// Allocation of strings handed to callers; FreeSysString releases them.
wchar_t* AllocSysString(const wchar_t* text);
void FreeSysString(wchar_t* text);

// Broken-down local time, thread-safe.
std::tm LocalTime(std::time_t when);

// Trace output for debuggers (stderr on POSIX when KPCB_DEBUG_OUTPUT is set).
void DebugOutput(const char* text);

}  // namespace platform

namespace platform {

// ---- Loadable modules ----------------------------------------------------------
// A shared library loaded at run time by its file path (any file name or extension).
// LoadModule gives an opaque handle, or null when the file cannot be loaded. Loading
// the same file again gives the same module, counted; UnloadModule releases one count.
void* LoadModule(const std::string& path, Status* why = nullptr);
// Address of an exported symbol of a loaded module, or null.
void* ModuleSymbol(void* module, const char* name);
// Null does nothing.
void UnloadModule(void* module);

}  // namespace platform
