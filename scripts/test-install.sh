#!/usr/bin/env bash
# Installs a build as users would and uses it from outside the source tree:
#   scripts/test-install.sh [BUILD_DIR]     (default build/test, already built)
# 1. `cmake --install` into a scratch prefix; every installed header compiles alone;
# 2. an application (examples/consumer, in C and in C++) built through
#    find_package(KPCBAPI) and through pkg-config drives the installed viewer;
# 3. the .deb made by cpack, unpacked under a scratch root, serves the same application;
# 4. `pip install` of the Python binding, offline, into a venv of Debian's Python, whose
#    tests then run against the installed prefix.
set -euo pipefail
cd "$(dirname "$0")/.."
source=$PWD
build=$(cd "${1:-build/test}" && pwd)
work=$(mktemp -d "${TMPDIR:-/tmp}/kpcb-install-XXXXXX")
trap 'rm -rf "$work"' EXIT
export KPCB_DATA_DIR="$work/data"
board="$source/samples/demo_board.pdbba"
started=$(date +%s)
step() { echo "== install: $* ($(($(date +%s) - started)) s)"; }

step "cmake --install"
prefix="$work/prefix"
cmake --install "$build" --prefix "$prefix" >/dev/null
headers="$prefix/include/kpcbapi"
for header in "$headers"/*; do
  echo "#include <${header##*/}>" | c++ -std=c++17 -Wall -Wextra -fsyntax-only -I"$headers" -x c++ -
done
echo "#include <KPCBAPI.h>" | cc -std=c99 -Wall -Wextra -fsyntax-only -I"$headers" -x c -
"$prefix/bin/kpcb" --help >/dev/null

step "find_package(KPCBAPI)"
cmake -S examples/consumer -B "$work/consumer" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/consumer" >/dev/null
"$work/consumer/consumer" "$board"
"$work/consumer/consumer_cxx" "$board"

# Builds the example, C and C++, with pkg-config against a prefix's .pc folder and runs it.
run_with_pkg_config() {
  local pcdir=$1 out=$2 flags libdir
  flags=$(PKG_CONFIG_PATH="$pcdir" pkg-config --cflags --libs kpcbapi)
  libdir=$(PKG_CONFIG_PATH="$pcdir" pkg-config --variable=libdir kpcbapi)
  cc -o "$out" examples/consumer/main.c $flags
  c++ -std=c++17 -o "$out-cxx" examples/consumer/main.cpp $flags
  LD_LIBRARY_PATH=$libdir "$out" "$board"
  LD_LIBRARY_PATH=$libdir "$out-cxx" "$board"
}
step "pkg-config kpcbapi"
run_with_pkg_config "$prefix/lib/pkgconfig" "$work/consumer-pc"

step ".deb"
(cd "$build" && cpack -G DEB -B "$work/deb" >"$work/cpack.log" 2>&1) || { cat "$work/cpack.log"; exit 1; }
deb=$(ls "$work"/deb/*.deb)
dpkg-deb -f "$deb" Package Version Depends
dpkg-deb -x "$deb" "$work/root"
run_with_pkg_config "$work/root/usr/lib/pkgconfig" "$work/consumer-deb"

step "pip install (offline)"
/usr/bin/python3 -m venv --system-site-packages "$work/venv"
PIP_NO_INDEX=1 PIP_DISABLE_PIP_VERSION_CHECK=1 "$work/venv/bin/python" -m pip install -q --no-build-isolation \
  --no-deps "$source/bindings/python"
# Found through the system's loader, then through KPCB_LIBRARY for the tests.
(cd "$work" && LD_LIBRARY_PATH="$prefix/lib" "$work/venv/bin/python" -c \
  'import kpcb, sys; print("python: kpcb", kpcb.__version__, "loads", kpcb.find_library()); kpcb.library()')
(cd bindings/python/tests && KPCB_TEST_INSTALLED=1 KPCB_LIBRARY="$prefix/lib" \
  timeout 900 "$work/venv/bin/python" -m unittest discover -s . -p 'test_*.py' -q)
step "done"
