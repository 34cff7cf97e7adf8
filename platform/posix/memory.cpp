#include <unistd.h>

#include <cstdlib>
#include <string>

#include "../platform.h"

namespace platform {

namespace {
// glibc's switch for backing its heap with transparent huge pages (glibc 2.35 on);
// it is read only when a program starts.
const char kLargePages[] = "glibc.malloc.hugetlb=1";
}  // namespace

void RestartWithLargeHeapPages(char** argv) {
    const char* tunables = std::getenv("GLIBC_TUNABLES");
    const std::string current = tunables ? tunables : "";
    if (current.find("glibc.malloc.hugetlb") != std::string::npos) return;  // set, or already restarted
    const std::string wanted = current.empty() ? kLargePages : current + ":" + kLargePages;
    if (setenv("GLIBC_TUNABLES", wanted.c_str(), 1) != 0) return;
    execv("/proc/self/exe", argv);
    // Not restarted: go on with small pages, and leave the environment as it was.
    if (tunables)
        setenv("GLIBC_TUNABLES", current.c_str(), 1);
    else
        unsetenv("GLIBC_TUNABLES");
}

}  // namespace platform
