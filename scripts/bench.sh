#!/usr/bin/env bash
# Builds the benchmarks in release mode, runs them with both processes on one CPU and
# with the caller and the servers on two CPUs, and prints the table of ratios
# (docs/performance.md explains it). Takes a few minutes.
#
#   scripts/bench.sh                 everything
#   KPCB_BENCH_REPETITIONS=9         repetitions of the quick benchmarks (default 7)
#   KPCB_BENCH_CPUS="2 3"            the two CPUs to use (default: the first two allowed)
#   KPCB_BENCH_BUILD=<dir>           build folder (default build/bench)
#   KPCB_BENCH_SOAK_CALLS=<n>        calls of the memory check (default 1000000)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${KPCB_BENCH_BUILD:-$root/build/bench}
reps=${KPCB_BENCH_REPETITIONS:-7}
soak=${KPCB_BENCH_SOAK_CALLS:-1000000}

command -v taskset >/dev/null || { echo "bench: taskset (util-linux) is needed" >&2; exit 1; }
for header in /usr/include/benchmark/benchmark.h /usr/include/zmq.h; do
  [ -f "$header" ] || { echo "bench: $header is missing: run scripts/setup-test.sh" >&2; exit 1; }
done

# The CPUs: the first two this shell may use, unless given.
if [ -n "${KPCB_BENCH_CPUS:-}" ]; then
  read -r cpu0 cpu1 <<<"$KPCB_BENCH_CPUS"
else
  mapfile -t allowed < <(python3 -c 'import os; print("\n".join(map(str, sorted(os.sched_getaffinity(0)))))')
  cpu0=${allowed[0]}
  cpu1=${allowed[1]:-}
fi

echo "== build (Release) in $build"
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DKPCB_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j2 --target KorbinPCB KPCBAPIDLL bench_transport bench_board_load bench_copper_merge >/dev/null
bin=$build/bin
out=$build/bench-results
rm -rf "$out"
mkdir -p "$out"

run() {  # run <name> <cpus> <binary> <benchmark arguments...>
  local name=$1 cpus=$2 binary=$3
  shift 3
  echo "== $name (CPUs $cpus)"
  taskset -c "$cpus" "$bin/$binary" --benchmark_out="$out/$name.json" --benchmark_out_format=json \
    --benchmark_counters_tabular=true "$@"
}

quick='^BM_(RawRoundTrip|ZmqRoundTrip|QueryRoundTrip|RawSendRate|OneWayRate|Memcpy|LargeAnswer)'
interleaved=(--benchmark_repetitions="$reps" --benchmark_enable_random_interleaving=true
             --benchmark_report_aggregates_only=true --benchmark_min_time=0.2)

run one-cpu "$cpu0" bench_transport --benchmark_filter="$quick" "${interleaved[@]}"
if [ -n "$cpu1" ]; then
  run two-cpus "$cpu0,$cpu1" bench_transport --benchmark_filter="$quick" "${interleaved[@]}"
  heavy_cpus="$cpu0,$cpu1"
else
  echo "bench: only one CPU available: the two-CPU figures are left out" >&2
  heavy_cpus="$cpu0"
fi
run launch-merge "$heavy_cpus" bench_transport --benchmark_filter='^BM_(LaunchToReady|MergeRun)' \
  --benchmark_repetitions=3 --benchmark_report_aggregates_only=true
run arrivals "$heavy_cpus" bench_transport --benchmark_filter='^BM_OneWayArrivals'
KPCB_BENCH_SOAK_CALLS=$soak run memory "$heavy_cpus" bench_transport --benchmark_filter='^BM_CallerMemory'
run merge-in-process "$cpu0" bench_copper_merge --benchmark_filter='^BM_CopperMerge' --benchmark_repetitions=3 --benchmark_report_aggregates_only=true
run board-load "$cpu0" bench_board_load --benchmark_filter='^BM_(ReadFileBytes|LoadPdbb)/10000/' \
  --benchmark_repetitions=3 --benchmark_report_aggregates_only=true

# A real ODB++ job (KiCad's vme-wren demo, exported once into the build folder):
# import against tar -xzf, peak memory against the unpacked size, viewer ready time;
# then, on the board converted by the importer, the merge of its largest net and the
# launch against the load in process.
if command -v kicad-cli >/dev/null; then
  cmake --build "$build" -j2 --target kpcb >/dev/null
  cmake -DKICAD_CLI="$(command -v kicad-cli)" -DPYTHON=/usr/bin/python3 -DDEMOS=/usr/share/kicad/demos \
    -DCACHE="$build/realboards" -DBOARDS=vme-wren -DUNITS=mm -P "$root/tests/realboards/export_boards.cmake" >/dev/null
  python3 "$root/bench/odb_import.py" "$bin" "$build/realboards/vme-wren-mm.tgz" | tee "$out/odb-import.txt"
  KPCB_DATA_DIR="$out/data" "$bin/kpcb" extract-odb "$build/realboards/vme-wren-mm.tgz" "$out" vme-wren >/dev/null
  export KPCB_BENCH_REAL_BOARD="$out/vme-wren.pdbb"
  run real-board "$cpu0" bench_copper_merge --benchmark_filter='^BM_RealBoard' \
    --benchmark_repetitions=3 --benchmark_report_aggregates_only=true
  run real-board-launch "$heavy_cpus" bench_transport --benchmark_filter='^BM_LaunchRealBoard' \
    --benchmark_repetitions=3 --benchmark_report_aggregates_only=true
else
  echo "bench: kicad-cli is not installed (scripts/setup-kicad.sh): the ODB++ import figures are left out" >&2
fi

echo
python3 "$root/bench/report.py" "$out" | tee "$out/table.md"
echo
echo "bench: results in $out (table.md and the JSON of every run)"
