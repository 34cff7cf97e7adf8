# Cross build for Windows x64 with Debian's MinGW-w64 (g++-mingw-w64-x86-64).
#   cmake -S . -B build/windows -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake
# The posix flavour of the compiler is used: the win32 flavour of GCC 12 has no
# std::thread or std::mutex. Every program and library is linked statically against
# the compiler's runtime (libgcc, libstdc++, winpthread), so it needs no DLL beyond
# the system's own.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(KPCB_MINGW_TRIPLE x86_64-w64-mingw32)
find_program(CMAKE_C_COMPILER NAMES ${KPCB_MINGW_TRIPLE}-gcc-posix REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES ${KPCB_MINGW_TRIPLE}-g++-posix REQUIRED)
find_program(CMAKE_RC_COMPILER NAMES ${KPCB_MINGW_TRIPLE}-windres)
find_program(KPCB_MINGW_OBJDUMP NAMES ${KPCB_MINGW_TRIPLE}-objdump)

set(CMAKE_FIND_ROOT_PATH /usr/${KPCB_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(KPCB_MINGW_STATIC_RUNTIME "-static -static-libgcc -static-libstdc++")
set(CMAKE_EXE_LINKER_FLAGS_INIT "${KPCB_MINGW_STATIC_RUNTIME}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${KPCB_MINGW_STATIC_RUNTIME}")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "${KPCB_MINGW_STATIC_RUNTIME}")

# Windows programs run on this machine under Wine, through wine-run.sh.
find_program(KPCB_WINE NAMES wine)
if(KPCB_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine-run.sh)
endif()
