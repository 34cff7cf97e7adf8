// <windows.h> for the Windows platform sources, then the platform header. Some
// Windows names are macros (DeleteFile is DeleteFileA) that would rename our own
// functions: they are undone here, before the platform header is read.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#undef DeleteFile

#include "../platform.h"

namespace platform {
namespace win32 {
// Set by the viewer's close request; slot waits that may be interrupted look at it.
bool CloseRequestPending();
}  // namespace win32
}  // namespace platform
