// Files, folders, module location and environment on POSIX.
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "../platform.h"

namespace platform {

char PathSeparator() { return '/'; }

const char* ExecutableSuffix() { return ""; }

bool PathExists(const std::string& path) {
    struct stat st;
    return !path.empty() && stat(path.c_str(), &st) == 0;
}

bool IsDirectory(const std::string& path) {
    struct stat st;
    return !path.empty() && stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

Status MakeDirectory(const std::string& path) {
    if (path.empty()) return Error::kInvalid;
    if (IsDirectory(path)) return Status();
    // Create every missing parent first.
    const size_t cut = path.find_last_of('/');
    if (cut != std::string::npos && cut > 0) MakeDirectory(path.substr(0, cut));
    if (mkdir(path.c_str(), 0777) == 0 || errno == EEXIST) return Status();
    return LastSystemError();
}

Status DeleteFile(const std::string& path) { return unlink(path.c_str()) == 0 ? Status() : LastSystemError(); }

std::string ModuleDirectory() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&ModuleDirectory), &info) == 0 || !info.dli_fname) return ExecutableDirectory();
    char resolved[PATH_MAX];
    std::string file = realpath(info.dli_fname, resolved) ? resolved : info.dli_fname;
    const size_t cut = file.find_last_of('/');
    return cut == std::string::npos ? std::string(".") : file.substr(0, cut);
}

std::string ExecutableDirectory() {
    char path[PATH_MAX];
    const ssize_t n = readlink("/proc/self/exe", path, sizeof(path) - 1);
    if (n <= 0) return ".";
    std::string file(path, static_cast<size_t>(n));
    const size_t cut = file.find_last_of('/');
    return cut == std::string::npos ? std::string(".") : file.substr(0, cut);
}

std::string GetEnv(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string DataDirectory() {
    std::string dir = GetEnv("KPCB_DATA_DIR");
    if (!dir.empty()) return dir;
    dir = GetEnv("XDG_DATA_HOME");
    if (dir.empty()) {
        const std::string home = GetEnv("HOME");
        dir = (home.empty() ? std::string("/tmp") : home) + "/.local/share";
    }
    return dir + "/KorbinPCB";
}

}  // namespace platform
