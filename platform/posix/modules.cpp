// Shared libraries loaded at run time on POSIX.
#include <dlfcn.h>
#include <unistd.h>

#include "../platform.h"

namespace platform {

void* LoadModule(const std::string& path, Status* why) {
    // A name without '/' would make dlopen search the system's library path.
    const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
    void* module = path.empty() ? nullptr : dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    // dlopen keeps no errno of its own: a file that can be read and still not be
    // loaded (or the folder "./" of an empty path) is not a module.
    if (why) *why = module ? Status() : access(file.c_str(), R_OK) == 0 ? Status(Error::kInvalid) : LastSystemError();
    return module;
}

void* ModuleSymbol(void* module, const char* name) { return module && name ? dlsym(module, name) : nullptr; }

void UnloadModule(void* module) {
    if (module) dlclose(module);
}

}  // namespace platform
