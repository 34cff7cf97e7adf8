#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include "ToolRun.h"

namespace tool_test {

namespace {

// One argument as the C runtime's command-line parser reads it back.
std::string Quoted(const std::string& arg) {
    if (!arg.empty() && arg.find_first_of(" \t\"") == std::string::npos) return arg;
    std::string quoted = "\"";
    size_t backslashes = 0;
    for (const char c : arg) {
        if (c == '\\') {
            ++backslashes;
            continue;
        }
        quoted.append(c == '"' ? backslashes * 2 + 1 : backslashes, '\\');
        quoted += c;
        backslashes = 0;
    }
    quoted.append(backslashes * 2, '\\');
    return quoted + "\"";
}

HANDLE OpenInheritable(const std::string& path, bool write) {
    SECURITY_ATTRIBUTES inherit{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    return CreateFileA(path.c_str(), write ? GENERIC_WRITE : GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit,
                       write ? CREATE_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

int RunProgram(const std::string& exe, const std::vector<std::string>& args, const std::string& cwd,
               const std::string& inFile, const std::string& outFile, const std::string& errFile) {
    std::string line = Quoted(exe);
    for (const auto& arg : args) line += " " + Quoted(arg);
    STARTUPINFOA startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = OpenInheritable(inFile, false);
    startup.hStdOutput = OpenInheritable(outFile, true);
    startup.hStdError = OpenInheritable(errFile, true);
    PROCESS_INFORMATION process{};
    const BOOL started = CreateProcessA(exe.c_str(), &line[0], nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                                        cwd.empty() ? nullptr : cwd.c_str(), &startup, &process);
    for (HANDLE h : {startup.hStdInput, startup.hStdOutput, startup.hStdError}) {
        if (h != INVALID_HANDLE_VALUE) CloseHandle(h);
    }
    if (!started) return -1;
    DWORD status = static_cast<DWORD>(-1);
    if (WaitForSingleObject(process.hProcess, 120000) != WAIT_OBJECT_0) {
        TerminateProcess(process.hProcess, 1);
        WaitForSingleObject(process.hProcess, INFINITE);
    } else if (!GetExitCodeProcess(process.hProcess, &status)) {
        status = static_cast<DWORD>(-1);
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(status);
}

}  // namespace tool_test
