#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "TestSystem.h"

namespace testing_support {

void SetEnv(const char* name, const std::string& value) { setenv(name, value.c_str(), 1); }

void UnsetEnv(const char* name) { unsetenv(name); }

bool NoChildren() {
    int status;
    return waitpid(-1, &status, WNOHANG) == -1 && errno == ECHILD;
}

std::string ExecutableNameOf(int pid) {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/" + std::to_string(pid) + "/exe", error).filename().string();
}

int RunningProcessesWith(const std::string& text, const std::string& more) {
    int count = 0;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
        const std::string name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        std::ifstream cmdline(entry.path() / "cmdline");
        const std::string line((std::istreambuf_iterator<char>(cmdline)), std::istreambuf_iterator<char>());
        if (line.find(text) == std::string::npos || line.find(more) == std::string::npos) continue;
        std::ifstream stat(entry.path() / "stat");
        const std::string status((std::istreambuf_iterator<char>(stat)), std::istreambuf_iterator<char>());
        const size_t close = status.rfind(')');
        if (close != std::string::npos && close + 2 < status.size() && status[close + 2] != 'Z') ++count;
    }
    return count;
}

long ResidentKiB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0) return std::stol(line.substr(6));
    return -1;
}

long OpenSystemObjects() {
    long n = 0;
    std::error_code error;
    const std::filesystem::directory_iterator end;
    for (auto it = std::filesystem::directory_iterator("/proc/self/fd", error); !error && it != end; it.increment(error))
        ++n;
    return n;
}

bool RunningUnderWine() { return false; }

}  // namespace testing_support
