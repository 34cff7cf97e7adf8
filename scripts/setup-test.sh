#!/usr/bin/env bash
# Installs, on top of scripts/setup.sh, what only the test command needs: the test
# and benchmark libraries, clang for the fuzzers and the MSVC import check, valgrind,
# the MinGW-w64 cross compiler and Wine for the Windows build, Python's packaging
# tools, Clipper's sources for the cross build, and KiCad for the importer fixtures.
set -euo pipefail
here=$(dirname "$0")
"$here/setup.sh"
source "$here/lib/apt-install.sh"
apt_install libgtest-dev googletest libgmock-dev libbenchmark-dev libzmq3-dev \
  clang libclang-rt-14-dev lld valgrind \
  g++-mingw-w64-x86-64 binutils-mingw-w64-x86-64 wine wine64 \
  python3-setuptools python3-pip python3-venv zip
# The Windows cross build compiles the Clipper library from Debian's sources.
"$here/setup-clipper-source.sh"
"$here/setup-kicad.sh"
