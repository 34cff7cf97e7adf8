#!/usr/bin/env bash
# Builds the Windows x64 products (KPCBAPIDLL.dll and its import library, the
# KorbinPCB.exe reference viewer, the tools) and the test suite with MinGW-w64, then
# runs the suite under Wine in a fresh Wine prefix inside the build folder.
#   scripts/test-windows.sh            build in build/windows and test
#   KPCB_WINDOWS_BUILD=<dir> ...       another build folder
# No display is needed: the viewer's main window is a message-only window.
set -euo pipefail
cd "$(dirname "$0")/.."
[ -n "${KPCB_SETUP_DONE:-}" ] || scripts/setup-test.sh

build=${KPCB_WINDOWS_BUILD:-build/windows}
jobs=$(nproc 2>/dev/null || echo 2)
started=$(date +%s)

# Wine: its own prefix, quiet, 64-bit only. The build already runs a Windows program
# (the sample board converter), so Wine is set up first.
export WINEPREFIX="$PWD/$build/wineprefix"
export WINEDEBUG=-all
export WINEARCH=win64
export WINEDLLOVERRIDES="mscoree,mshtml="  # no .NET or HTML engine to offer to install
unset DISPLAY  # headless on every machine
mkdir -p "$build"
# The server and Wine's own services (started by wineboot) live for the whole run;
# they are started here, apart from the tests' output pipes, which they would
# otherwise keep open after a test has ended.
stop_wine() { wineserver -k >/dev/null 2>&1 || true; }
stop_wine  # one left from an earlier run of this prefix
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
trap stop_wine EXIT
wineserver -p </dev/null >/dev/null 2>&1
wineboot --init </dev/null >/dev/null 2>&1
echo "== windows: wine prefix ready ($(($(date +%s) - started)) s)"

cmake -S . -B "$build" -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j"$jobs"
echo "== windows: built ($(($(date +%s) - started)) s)"

# The products need nothing beyond the system's own DLLs.
for product in KPCBAPIDLL.dll KorbinPCB.exe; do
  x86_64-w64-mingw32-objdump -p "$build/bin/$product" | awk '/DLL Name:/ {print $3}' | while read -r dll; do
    case "${dll,,}" in
      kernel32.dll | user32.dll | oleaut32.dll | ole32.dll | msvcrt.dll | advapi32.dll) ;;
      *) echo "windows: $product needs $dll" >&2; exit 1 ;;
    esac
  done
done

# Under Wine every call costs more than on Linux: the soak tests run shorter.
KPCB_STRESS_COMMANDS=${KPCB_STRESS_COMMANDS:-500} KPCB_SOAK_CALLS=${KPCB_SOAK_CALLS:-3000} \
  ctest --test-dir "$build" --output-on-failure -j"$jobs" --timeout 600
echo "== windows: tests passed ($(($(date +%s) - started)) s)"

# The zip for integrators: DLL, viewer, headers, the MinGW and the MSVC import libraries.
(cd "$build" && cpack -G ZIP -B package >/dev/null)
zip=$(ls "$build"/package/*.zip)
/usr/bin/python3 -m zipfile -l "$zip" | grep -E 'KPCBAPIDLL\.(dll|lib|def)|KorbinPCB\.exe|KPCBAPI\.h |mingw/'
echo "== windows: packed $zip ($(($(date +%s) - started)) s)"
