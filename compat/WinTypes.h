// The Windows integer names that the records and the C API use, sized as on Windows x64.
#pragma once

#include <cstdint>

#include "platform_types.h"

typedef int BOOL;
typedef unsigned char BYTE;
typedef unsigned short WORD;
typedef unsigned int UINT;
typedef platform::Dword DWORD;  // the same type as <windows.h> declares
typedef DWORD COLORREF;
typedef intptr_t INT_PTR;
typedef uintptr_t UINT_PTR;
typedef uint64_t ULONGLONG;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif
