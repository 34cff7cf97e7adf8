// Integer types whose width or identity differs between the platforms.
#pragma once

#include <cstdint>

namespace platform {
#if defined(_WIN32)
typedef unsigned long Dword;  // the type <windows.h> calls DWORD, 32 bits on Windows
#else
typedef uint32_t Dword;
#endif
}  // namespace platform
