// Shared libraries loaded at run time on POSIX.
#include <dlfcn.h>

#include "../platform.h"

namespace platform {

void* LoadModule(const std::string& path) {
    if (path.empty()) return nullptr;
    // A name without '/' would make dlopen search the system's library path.
    const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
    return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* ModuleSymbol(void* module, const char* name) { return module && name ? dlsym(module, name) : nullptr; }

void UnloadModule(void* module) {
    if (module) dlclose(module);
}

}  // namespace platform
