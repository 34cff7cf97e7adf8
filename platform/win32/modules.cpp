// DLLs loaded at run time on Windows.
#include "win32.h"

namespace platform {

void* LoadModule(const std::string& path, Status* why) {
    if (why) *why = Status();
    if (path.empty()) {
        if (why) *why = Error::kInvalid;
        return nullptr;
    }
    // A full path: a bare name would be looked for along the system's search path.
    std::string file(MAX_PATH, '\0');
    for (;;) {
        const DWORD n = GetFullPathNameA(path.c_str(), static_cast<DWORD>(file.size()), &file[0], nullptr);
        if (n == 0) {
            if (why) *why = LastSystemError();
            return nullptr;
        }
        if (n < file.size()) {
            file.resize(n);
            break;
        }
        file.resize(n);
    }
    // Without an extension the loader would append ".dll"; a trailing dot prevents it.
    const size_t name = file.find_last_of("\\/") + 1;
    if (file.find('.', name) == std::string::npos) file += '.';
    // No message box for a file that is not a module; its own DLLs are looked for beside it.
    DWORD previous = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &previous);
    HMODULE module = LoadLibraryExA(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!module && why) *why = LastSystemError();
    SetThreadErrorMode(previous, nullptr);
    return reinterpret_cast<void*>(module);
}

void* ModuleSymbol(void* module, const char* name) {
    if (!module || !name) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

void UnloadModule(void* module) {
    if (module) FreeLibrary(static_cast<HMODULE>(module));
}

}  // namespace platform
