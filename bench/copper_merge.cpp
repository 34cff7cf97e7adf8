// The copper merge in process, without the viewer and its transport: the mesh net
// of BenchSupport.h (vias joined by tracks, one outline with many holes) for about
// 1,000, 10,000 and 100,000 shapes, 32 segments per circle.
//
// Counters: shapes, outlines and holes of the result. The growth from one size to
// the next is the ratio of two lines of the same run (report.py prints it).
#include <benchmark/benchmark.h>

#include "BenchSupport.h"
#include "CPdb.h"
#include "CopperMerge.h"

namespace {

void BM_CopperMerge(benchmark::State& state) {
    CPdb pdb;
    const int shapes = bench::BuildMesh(pdb, bench::MeshSide(static_cast<double>(state.range(0))));
    viewer::CopperMergeResult result;
    for (auto _ : state) {
        result = viewer::MergeNetCopper(pdb, "MESH", {"TOP"}, 32);
        if (result.error != 0 || result.polygons.size() != 1) return state.SkipWithError("merge failed");
    }
    state.counters["shapes"] = shapes;
    state.counters["outlines"] = static_cast<double>(result.polygons.size());
    state.counters["holes"] = static_cast<double>(result.polygons[0].holes.size());
}

}  // namespace

BENCHMARK(BM_CopperMerge)->Arg(1000)->Arg(10000)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
