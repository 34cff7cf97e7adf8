#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

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

bool RunningUnderWine() { return false; }

}  // namespace testing_support
