#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>
#include <winternl.h>

#include <cstdlib>
#include <functional>

#include "TestSystem.h"

namespace testing_support {
namespace {

// Calls visit for every entry of a process snapshot until it returns false.
void ForEachProcess(const std::function<bool(const PROCESSENTRY32&)>& visit) {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) return;
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32First(snapshot, &entry); more && visit(entry); more = Process32Next(snapshot, &entry)) {
    }
    CloseHandle(snapshot);
}

// The command line of another process, read from its process parameters block.
std::string CommandLineOf(DWORD pid) {
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, pid);
    if (!process) return std::string();
    std::string line;
    PROCESS_BASIC_INFORMATION basic{};
    PEB peb{};
    RTL_USER_PROCESS_PARAMETERS parameters{};
    ULONG size = 0;
    if (NtQueryInformationProcess(process, ProcessBasicInformation, &basic, sizeof(basic), &size) >= 0 &&
        ReadProcessMemory(process, basic.PebBaseAddress, &peb, sizeof(peb), nullptr) &&
        ReadProcessMemory(process, peb.ProcessParameters, &parameters, sizeof(parameters), nullptr)) {
        std::wstring wide(parameters.CommandLine.Length / sizeof(wchar_t), L'\0');
        if (!wide.empty() &&
            ReadProcessMemory(process, parameters.CommandLine.Buffer, &wide[0], parameters.CommandLine.Length, nullptr)) {
            const int n = WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), nullptr, 0, nullptr, nullptr);
            line.assign(static_cast<size_t>(n > 0 ? n : 0), '\0');
            if (n > 0) WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), &line[0], n, nullptr, nullptr);
        }
    }
    CloseHandle(process);
    return line;
}

}  // namespace

// Both the C runtime's copy of the environment and the process's own.
void SetEnv(const char* name, const std::string& value) {
    _putenv_s(name, value.c_str());
    SetEnvironmentVariableA(name, value.c_str());
}

void UnsetEnv(const char* name) {
    _putenv_s(name, "");
    SetEnvironmentVariableA(name, nullptr);
}

// A process that has just said its last word (a viewer's failing hello) may still be
// on its way out: children get a few seconds to end.
bool NoChildren() {
    const DWORD self = GetCurrentProcessId();
    for (int attempt = 0; attempt < 250; ++attempt) {
        bool none = true;
        ForEachProcess([&](const PROCESSENTRY32& entry) {
            none = entry.th32ParentProcessID != self;
            return none;
        });
        if (none) return true;
        Sleep(20);
    }
    return false;
}

std::string ExecutableNameOf(int pid) {
    std::string name;
    ForEachProcess([&](const PROCESSENTRY32& entry) {
        if (entry.th32ProcessID != static_cast<DWORD>(pid)) return true;
        name = entry.szExeFile;
        return false;
    });
    const size_t cut = name.find_last_of("\\/");
    return cut == std::string::npos ? name : name.substr(cut + 1);
}

int RunningProcessesWith(const std::string& text, const std::string& more) {
    int count = 0;
    ForEachProcess([&](const PROCESSENTRY32& entry) {
        const std::string line = CommandLineOf(entry.th32ProcessID);
        if (line.find(text) != std::string::npos && line.find(more) != std::string::npos) ++count;
        return true;
    });
    return count;
}

long ResidentKiB() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    if (!GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters))) return -1;
    return static_cast<long>(counters.WorkingSetSize / 1024);
}

long OpenSystemObjects() {
    DWORD count = 0;
    return GetProcessHandleCount(GetCurrentProcess(), &count) ? static_cast<long>(count) : -1;
}

bool RunningUnderWine() {
    const HMODULE ntdll = GetModuleHandleA("ntdll.dll");
    return ntdll && GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

}  // namespace testing_support
