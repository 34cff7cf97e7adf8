// The copper merge in process, without the viewer and its transport: the mesh net
// of BenchSupport.h (vias joined by tracks, one outline with many holes) for about
// 1,000, 10,000 and 100,000 shapes, 32 segments per circle; and, when
// KPCB_BENCH_REAL_BOARD names a converted real board, the load of that board and the
// merge of its largest net on every copper layer (the viewer's default division).
//
// Counters: shapes, outlines and holes of the result. The growth from one size to
// the next is the ratio of two lines of the same run (report.py prints it).
#include <benchmark/benchmark.h>

#include "BenchSupport.h"
#include "CPdb.h"
#include "CPdbbProcessor.h"
#include "CopperMerge.h"

namespace {

void Count(benchmark::State& state, int shapes, const viewer::CopperMergeResult& result) {
    size_t holes = 0;
    for (const viewer::CopperPolygon& piece : result.polygons) holes += piece.holes.size();
    state.counters["shapes"] = shapes;
    state.counters["outlines"] = static_cast<double>(result.polygons.size());
    state.counters["holes"] = static_cast<double>(holes);
}

void BM_CopperMerge(benchmark::State& state) {
    CPdb pdb;
    const int shapes = bench::BuildMesh(pdb, bench::MeshSide(static_cast<double>(state.range(0))));
    viewer::CopperMergeResult result;
    for (auto _ : state) {
        result = viewer::MergeNetCopper(pdb, "MESH", {"TOP"}, 32);
        if (result.error != 0 || result.polygons.size() != 1) return state.SkipWithError("merge failed");
    }
    Count(state, shapes, result);
}

std::unique_ptr<CPdb> LoadRealBoard(benchmark::State& state) {
    CString error;
    std::unique_ptr<CPdb> pdb;
    if (bench::RealBoard().empty())
        state.SkipWithError("KPCB_BENCH_REAL_BOARD names no board");
    else if (!(pdb = CPdbbProcessor::LoadPDB(bench::RealBoard().c_str(), error)))
        state.SkipWithError(error.GetString());
    return pdb;
}

// The baseline of the real board's launch: loading it in process.
void BM_RealBoardLoad(benchmark::State& state) {
    for (auto _ : state)
        if (!LoadRealBoard(state)) break;
}

void BM_RealBoardLargestNet(benchmark::State& state) {
    const std::unique_ptr<CPdb> pdb = LoadRealBoard(state);
    if (!pdb) return;
    std::vector<std::string> layers;
    int shapes = 0;
    const std::string net = bench::LargestNet(*pdb, layers, &shapes);
    viewer::CopperMergeResult result;
    for (auto _ : state) {
        result = viewer::MergeNetCopper(*pdb, net, layers, 0);
        if (result.error != 0) return state.SkipWithError("merge failed");
    }
    state.SetLabel(net + " on " + std::to_string(layers.size()) + " copper layers");
    Count(state, result.shapes, result);
}

}  // namespace

BENCHMARK(BM_CopperMerge)->Arg(1000)->Arg(10000)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RealBoardLoad)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RealBoardLargestNet)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
