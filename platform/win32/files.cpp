// Files, folders, module location and environment on Windows (narrow, ANSI calls).
#include "win32.h"

namespace platform {
namespace {

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

std::string FolderOf(const std::string& file) {
    const size_t cut = file.find_last_of("\\/");
    return cut == std::string::npos ? std::string(".") : file.substr(0, cut);
}

std::string ModuleFileName(HMODULE module) {
    std::string path(MAX_PATH, '\0');
    for (;;) {
        const DWORD n = GetModuleFileNameA(module, &path[0], static_cast<DWORD>(path.size()));
        if (n == 0) return std::string();
        if (n < path.size()) {
            path.resize(n);
            return path;
        }
        path.resize(path.size() * 2);  // truncated: try a larger buffer
    }
}

}  // namespace

char PathSeparator() { return '\\'; }

const char* ExecutableSuffix() { return ".exe"; }

bool PathExists(const std::string& path) {
    return !path.empty() && GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool IsDirectory(const std::string& path) {
    if (path.empty()) return false;
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

Status MakeDirectory(const std::string& path) {
    if (path.empty()) return Error::kInvalid;
    if (IsDirectory(path)) return Status();
    // Create every missing parent first; a drive ("C:") or share root needs no creation.
    size_t cut = path.find_last_of("\\/");
    while (cut != std::string::npos && cut > 0 && IsSeparator(path[cut - 1])) --cut;
    if (cut != std::string::npos && cut > 0) {
        const std::string parent = path.substr(0, cut);
        if (!(parent.size() == 2 && parent[1] == ':')) MakeDirectory(parent);
    }
    if (CreateDirectoryA(path.c_str(), nullptr) != 0 || GetLastError() == ERROR_ALREADY_EXISTS) return Status();
    return LastSystemError();
}

Status DeleteFile(const std::string& path) { return DeleteFileA(path.c_str()) != 0 ? Status() : LastSystemError(); }

std::string ModuleDirectory() {
    HMODULE module = nullptr;
    if (!GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<LPCSTR>(&ModuleDirectory), &module))
        return ExecutableDirectory();
    const std::string file = ModuleFileName(module);
    return file.empty() ? ExecutableDirectory() : FolderOf(file);
}

std::string ExecutableDirectory() {
    const std::string file = ModuleFileName(nullptr);
    return file.empty() ? std::string(".") : FolderOf(file);
}

std::string GetEnv(const char* name) {
    // The process environment itself, so that values set through SetEnvironmentVariable
    // and those of the C runtime agree.
    const DWORD needed = GetEnvironmentVariableA(name, nullptr, 0);
    if (needed == 0) return std::string();
    std::string value(needed, '\0');
    const DWORD n = GetEnvironmentVariableA(name, &value[0], needed);
    if (n == 0 || n >= needed) return std::string();
    value.resize(n);
    return value;
}

std::string DataDirectory() {
    const std::string configured = GetEnv("KPCB_DATA_DIR");
    if (!configured.empty()) return configured;
    std::string common = GetEnv("ProgramData");
    if (common.empty()) common = "C:\\ProgramData";
    return common + "\\KorbinPCB";
}

}  // namespace platform
