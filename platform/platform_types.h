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

// Marks a function that takes a printf format (argument f) and its values (from
// argument a) so that the compiler checks them, in the dialect of the C library in
// use: MinGW's own C99 printf rather than the system's older one on Windows.
#if defined(__MINGW32__)
#define KPCB_PRINTF_LIKE(f, a) __attribute__((format(gnu_printf, f, a)))
#elif defined(__GNUC__)
#define KPCB_PRINTF_LIKE(f, a) __attribute__((format(printf, f, a)))
#else
#define KPCB_PRINTF_LIKE(f, a)
#endif
