// Board loading: time and memory to load generated boards of 1,000, 10,000 and
// 100,000 components from a .pdbb file and from the text form.
//
// Baseline, measured in the same run: reading the same file's bytes into memory.
// Counters:
//   x_read     load time divided by the time to read the file's bytes
//   board_MB   heap held by the loaded board
//   peak_MB    most heap in use during the load, the board included
//   file_MB    size of the file
//   comps/s    components loaded per second
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <new>
#include <string>
#include <vector>

#include "BoardGenerator.h"
#include "CPdbbProcessor.h"
#include "PdbFileIO.h"
#include "PdbText.h"

// ---- Heap accounting: every operator new carries its size in front of the block. ----

namespace {
std::atomic<long long> g_live{0};
std::atomic<long long> g_peak{0};
constexpr size_t kHeader = alignof(std::max_align_t);

void* Allocate(size_t size) {
    void* raw = std::malloc(size + kHeader);
    if (!raw) throw std::bad_alloc();
    *static_cast<size_t*>(raw) = size;
    const long long live = g_live.fetch_add(static_cast<long long>(size), std::memory_order_relaxed) + size;
    if (live > g_peak.load(std::memory_order_relaxed)) g_peak.store(live, std::memory_order_relaxed);
    return static_cast<char*>(raw) + kHeader;
}
void Release(void* block) {
    if (!block) return;
    void* raw = static_cast<char*>(block) - kHeader;
    g_live.fetch_sub(static_cast<long long>(*static_cast<size_t*>(raw)), std::memory_order_relaxed);
    std::free(raw);
}
}  // namespace

void* operator new(size_t size) { return Allocate(size); }
void* operator new[](size_t size) { return Allocate(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    try {
        return Allocate(size);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
void operator delete(void* block) noexcept { Release(block); }
void operator delete[](void* block) noexcept { Release(block); }
void operator delete(void* block, size_t) noexcept { Release(block); }
void operator delete[](void* block, size_t) noexcept { Release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Release(block); }

namespace {

using Clock = std::chrono::steady_clock;

struct BoardFiles {
    std::string binary;
    std::string text;
    int pins = 0;
};

// Generated once per size and kept on disk for the run.
const BoardFiles& Files(int components) {
    static std::map<int, BoardFiles> cache;
    auto found = cache.find(components);
    if (found != cache.end()) return found->second;
    const std::filesystem::path dir = std::filesystem::temp_directory_path() / "kpcb-bench-board-load";
    std::filesystem::create_directories(dir);
    BoardFiles files;
    files.binary = (dir / ("board-" + std::to_string(components) + ".pdbb")).string();
    files.text = (dir / ("board-" + std::to_string(components) + ".pdbba")).string();
    std::unique_ptr<CPdb> pdb = GenerateBoard(components);
    files.pins = pdb->GetTotalPinCount();
    CString error;
    if (!CPdbbProcessor::SaveBoardFile(files.binary.c_str(), *pdb, error) ||
        !CPdbbProcessor::SaveBoardFile(files.text.c_str(), *pdb, error)) {
        std::fprintf(stderr, "%s\n", error.GetString());
        std::abort();
    }
    return cache.emplace(components, files).first->second;
}

// Best of five reads of the file's bytes, in seconds.
double RawReadSeconds(const std::string& path) {
    double best = 1e9;
    for (int i = 0; i < 5; ++i) {
        std::string bytes;
        CString error;
        const auto start = Clock::now();
        pdbfile::ReadAll(path.c_str(), bytes, error);
        benchmark::DoNotOptimize(bytes.data());
        best = std::min(best, std::chrono::duration<double>(Clock::now() - start).count());
    }
    return best;
}

template <class Load>
void MeasureLoad(benchmark::State& state, const std::string& path, Load load) {
    const int components = static_cast<int>(state.range(0));
    const double raw = RawReadSeconds(path);
    double total = 0;
    long long boardBytes = 0, peakBytes = 0;
    for (auto _ : state) {
        const long long before = g_live.load();
        g_peak.store(before);
        CString error;
        const auto start = Clock::now();
        std::unique_ptr<CPdb> pdb = load(path, error);
        total += std::chrono::duration<double>(Clock::now() - start).count();
        if (!pdb || pdb->GetCompCount() != components) {
            state.SkipWithError(error.GetString());
            break;
        }
        boardBytes = g_live.load() - before;
        peakBytes = g_peak.load() - before;
        state.PauseTiming();
        pdb.reset();
        state.ResumeTiming();
    }
    const double perLoad = state.iterations() ? total / static_cast<double>(state.iterations()) : 0;
    state.counters["x_read"] = raw > 0 ? perLoad / raw : 0;
    state.counters["board_MB"] = boardBytes / 1e6;
    state.counters["peak_MB"] = peakBytes / 1e6;
    state.counters["file_MB"] = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
    state.counters["comps/s"] = perLoad > 0 ? components / perLoad : 0;
}

void BM_LoadPdbb(benchmark::State& state) {
    const BoardFiles& files = Files(static_cast<int>(state.range(0)));
    MeasureLoad(state, files.binary, [](const std::string& path, CString& error) {
        return CPdbbProcessor::LoadPDB(path.c_str(), error);
    });
}

void BM_LoadText(benchmark::State& state) {
    const BoardFiles& files = Files(static_cast<int>(state.range(0)));
    MeasureLoad(state, files.text, [](const std::string& path, CString& error) {
        return CPdbText::ReadFile(path.c_str(), error);
    });
}

// The baseline itself, for the table.
void BM_ReadFileBytes(benchmark::State& state) {
    const BoardFiles& files = Files(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::string bytes;
        CString error;
        pdbfile::ReadAll(files.binary.c_str(), bytes, error);
        benchmark::DoNotOptimize(bytes.data());
    }
    state.counters["file_MB"] = static_cast<double>(std::filesystem::file_size(files.binary)) / 1e6;
}

void Sizes(benchmark::internal::Benchmark* b) {
    b->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
}

}  // namespace

BENCHMARK(BM_ReadFileBytes)->Apply(Sizes);
BENCHMARK(BM_LoadPdbb)->Apply(Sizes);
BENCHMARK(BM_LoadText)->Apply(Sizes);

BENCHMARK_MAIN();
