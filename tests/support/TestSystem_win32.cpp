#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <tlhelp32.h>

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

bool NoChildren() {
    const DWORD self = GetCurrentProcessId();
    bool none = true;
    ForEachProcess([&](const PROCESSENTRY32& entry) {
        none = entry.th32ParentProcessID != self;
        return none;
    });
    return none;
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

bool RunningUnderWine() {
    const HMODULE ntdll = GetModuleHandleA("ntdll.dll");
    return ntdll && GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

}  // namespace testing_support
