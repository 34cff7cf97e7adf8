#!/usr/bin/env bash
# Sets up the machine, builds everything and runs the whole test suite twice:
# a plain build, then one under AddressSanitizer and UndefinedBehaviorSanitizer;
# then installs the plain build and uses it from outside the tree, as a package and
# from Python (scripts/test-install.sh); then the Windows x64 build, its suite under
# Wine and its zip (scripts/test-windows.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-test.sh

jobs=$(nproc 2>/dev/null || echo 2)
run_suite() {
  local dir=$1; shift
  cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKPCB_REALBOARD_CACHE="$PWD/build/realboards" "$@" >/dev/null
  cmake --build "$dir" -j"$jobs"
  ctest --test-dir "$dir" --output-on-failure -j"$jobs" --timeout 600
}

echo "== plain build"
run_suite build/test
echo "== sanitizer build (ASan + UBSan)"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  run_suite build/sanitize -DKPCB_SANITIZE=ON
echo "== memcheck (short run)"
scripts/valgrind.sh build/test
echo "== fuzz smoke runs (libFuzzer, a minute per target)"
scripts/fuzz.sh "${KPCB_FUZZ_SECONDS:-60}"
echo "== install, packages, Python binding (installed)" && scripts/test-install.sh build/test
echo "== Windows x64 build under Wine" && KPCB_SETUP_DONE=1 scripts/test-windows.sh
