#!/usr/bin/env bash
# Installs only what building needs (scripts/setup.sh), builds the library, the
# viewer and the demo in release mode (nothing else: the tests, the tool and their
# test-only tools are left out) and runs the demo against the
# reference viewer: it launches the viewer on the sample board, drives it, prints
# every answer and the pictures' paths, and closes it. Arguments go to kpcb_demo:
# [BOARD [OUTPUT_FOLDER]].
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build/release -DCMAKE_BUILD_TYPE=Release -DKPCB_BUILD_TESTS=OFF >/dev/null
cmake --build build/release -j"$(nproc 2>/dev/null || echo 2)" --target kpcb_demo KorbinPCB KPCBAPIDLL
exec build/release/bin/kpcb_demo "$@"
