#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (ASan + UBSan) and runs each one.
#   scripts/fuzz.sh [seconds per target]      (default 60)
# Corpora grow under build/fuzz/corpus/<target>; crashes land in build/fuzz/findings.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
seconds=${1:-60}
build=build/fuzz
CC=clang CXX=clang++ cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKPCB_FUZZ=ON -DKPCB_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j"$(nproc 2>/dev/null || echo 2)" --target reply_fuzzer command_fuzzer board_fuzzer odb_fuzzer write_seeds
"$build/bin/write_seeds" "$build/seeds"
mkdir -p "$build/findings"
for target in reply command board odb; do
  corpus="$build/corpus/$target"
  mkdir -p "$corpus" "$build/seeds/$target"
  echo "== ${target}_fuzzer for ${seconds}s"
  ASAN_OPTIONS=detect_leaks=1 "$build/bin/${target}_fuzzer" "$corpus" "$build/seeds/$target" \
    -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$build/findings/${target}-" 2>&1 | grep -E "^(#|INFO: (Seed|Loaded)|stat::|==)|ERROR|SUMMARY" | tail -8
done
echo "fuzz: every target ran ${seconds}s without a finding"
