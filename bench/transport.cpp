// Transport benchmarks: what a caller of the library gets against the reference
// viewer, next to the limit of this machine and a peer a user might pick instead,
// all measured in the same run with the same CPU pinning (BenchSupport.h).
//
// Baselines
//   BM_RawRoundTrip      two processes exchanging 64-byte AF_UNIX datagrams: the limit
//   BM_ZmqRoundTrip      ZeroMQ REQ/REP over ipc:// carrying the request and reply images
//                        of KPCB_GetPinPitch
//   BM_RawSendRate       64-byte datagrams one way into a process that counts them
//   BM_Memcpy            copying the bytes of a large answer once, in memory
//   BM_LaunchToReady/0   launching a viewer on the small sample board
// Measured
//   BM_QueryRoundTrip/K  KPCB_GetPinPitch; K = 1: connections kept (KPCB_KeepConnections)
//   BM_OneWayRate/K      KPCB_SetStatusForCallingRedMark, batches checked to have arrived
//   BM_OneWayArrivals    the same stream into a journalling viewer: every record counted
//   BM_LargeAnswer       KPCB_GetCWPolygonPointDataArray of a 1,000,000-point outline
//   BM_LaunchToReady/N   launch on a generated board of N components until a first answer
//   BM_LaunchRealBoard   launch on the real board of KPCB_BENCH_REAL_BOARD until a first answer
//   BM_MergeRun/N        KPCB_PolygonMergeRun of a net of about N shapes
//   BM_CallerMemory      resident size and descriptors after 1,000 and after N calls
//
// scripts/bench.sh runs this under taskset with one and with two CPUs and turns the
// medians into the ratio table of docs/performance.md.
#include <benchmark/benchmark.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "BenchSupport.h"
#include "CArchive.h"
#include "CMemFile.h"
#include "InformationRecords.h"
#include "KPCBAPI.h"

#ifdef KPCB_BENCH_ZMQ
#include <zmq.h>
#endif

namespace {

using bench::Helper;
using bench::Viewer;

// ---- Datagram sockets in the abstract namespace ------------------------------------

sockaddr_un AbstractAddress(const std::string& name, socklen_t& length) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path + 1, name.data(), name.size());
    length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    return address;
}

std::string UniqueName(const char* role) { return std::string("kpcb-bench-") + role + "-" + std::to_string(getpid()); }

int BoundDatagramSocket(const std::string& name) {
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    socklen_t length;
    const sockaddr_un address = AbstractAddress(name, length);
    if (fd < 0 || bind(fd, reinterpret_cast<const sockaddr*>(&address), length) != 0) {
        std::perror("bench: bind");
        std::exit(2);
    }
    return fd;
}

void ConnectTo(int fd, const std::string& name) {
    socklen_t length;
    const sockaddr_un address = AbstractAddress(name, length);
    if (connect(fd, reinterpret_cast<const sockaddr*>(&address), length) != 0) {
        std::perror("bench: connect");
        std::exit(2);
    }
}

// Echoes every datagram back to its sender.
void StartEcho(Helper& helper, const std::string& name) {
    helper.Start([&](const std::function<void()>& ready) {
        const int fd = BoundDatagramSocket(name);
        ready();
        unsigned char buffer[65536];
        for (;;) {
            sockaddr_un from{};
            socklen_t fromLength = sizeof(from);
            const ssize_t n = recvfrom(fd, buffer, sizeof(buffer), 0, reinterpret_cast<sockaddr*>(&from), &fromLength);
            if (n < 0) {
                if (errno == EINTR) continue;
                _exit(1);
            }
            sendto(fd, buffer, static_cast<size_t>(n), 0, reinterpret_cast<sockaddr*>(&from), fromLength);
        }
    });
}

// Counts datagrams; a datagram starting with 'E' is answered with the count since the last one.
void StartSink(Helper& helper, const std::string& name) {
    helper.Start([&](const std::function<void()>& ready) {
        const int fd = BoundDatagramSocket(name);
        ready();
        unsigned char buffer[65536];
        uint64_t count = 0;
        for (;;) {
            sockaddr_un from{};
            socklen_t fromLength = sizeof(from);
            const ssize_t n = recvfrom(fd, buffer, sizeof(buffer), 0, reinterpret_cast<sockaddr*>(&from), &fromLength);
            if (n < 0) {
                if (errno == EINTR) continue;
                _exit(1);
            }
            if (n > 0 && buffer[0] == 'E') {
                sendto(fd, &count, sizeof(count), 0, reinterpret_cast<sockaddr*>(&from), fromLength);
                count = 0;
            } else {
                ++count;
            }
        }
    });
}

constexpr size_t kDatagram = 64;

void BM_RawRoundTrip(benchmark::State& state) {
    bench::PinCallerToClientCpu();
    Helper echo;
    const std::string server = UniqueName("echo");
    StartEcho(echo, server);
    const int fd = BoundDatagramSocket(UniqueName("echo-caller"));
    ConnectTo(fd, server);
    unsigned char request[kDatagram], reply[kDatagram];
    std::memset(request, 'q', sizeof(request));
    for (auto _ : state) {
        if (send(fd, request, sizeof(request), 0) != static_cast<ssize_t>(sizeof(request)) ||
            recv(fd, reply, sizeof(reply), 0) != static_cast<ssize_t>(sizeof(reply))) {
            state.SkipWithError("echo failed");
            break;
        }
    }
    close(fd);
}

constexpr int kBatch = 2000;

void BM_RawSendRate(benchmark::State& state) {
    bench::PinCallerToClientCpu();
    Helper sink;
    const std::string server = UniqueName("sink");
    StartSink(sink, server);
    const int fd = BoundDatagramSocket(UniqueName("sink-caller"));
    ConnectTo(fd, server);
    unsigned char message[kDatagram];
    std::memset(message, 'd', sizeof(message));
    const unsigned char end = 'E';
    for (auto _ : state) {
        for (int i = 0; i < kBatch; ++i) send(fd, message, sizeof(message), 0);
        uint64_t arrived = 0;
        send(fd, &end, 1, 0);
        if (recv(fd, &arrived, sizeof(arrived), 0) != sizeof(arrived) || arrived != static_cast<uint64_t>(kBatch)) {
            state.SkipWithError("datagrams lost");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * kBatch);
    close(fd);
}

// ---- ZeroMQ ------------------------------------------------------------------------

// The request and reply images of KPCB_GetPinPitch, as the library and the viewer send them.
template <class Record>
std::vector<unsigned char> Image(Record& record) {
    CMemFile file(1024);
    {
        CArchive ar(&file, CArchive::store, 4096);
        record.Serialize(ar);
        ar.Close();
    }
    std::vector<unsigned char> bytes(static_cast<size_t>(file.GetLength()));
    file.SeekToBegin();
    file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

std::vector<unsigned char> PinPitchRequestImage(const std::string& reference) {
    CKPRCI_Information_GetPinPitch request;
    request.SetRefName(CString(reference.c_str()));
    return Image(request);
}

std::vector<unsigned char> PinPitchReplyImage() {
    CKPRCI_Information_GetPinPitch_RV reply;
    reply.SetPinPitch(1.6);
    return Image(reply);
}

#ifdef KPCB_BENCH_ZMQ
void BM_ZmqRoundTrip(benchmark::State& state) {
    bench::PinCallerToClientCpu();  // before the context, so that its I/O thread inherits it
    const std::string endpoint = "ipc://" + bench::WorkDirectory() + "/zmq-" + std::to_string(getpid());
    const std::vector<unsigned char> requestImage = PinPitchRequestImage("R1");
    const std::vector<unsigned char> replyImage = PinPitchReplyImage();
    Helper peer;
    peer.Start([&](const std::function<void()>& ready) {
        void* context = zmq_ctx_new();
        void* socket = zmq_socket(context, ZMQ_REP);
        if (zmq_bind(socket, endpoint.c_str()) != 0) _exit(1);
        ready();
        unsigned char buffer[1024];
        for (;;) {
            if (zmq_recv(socket, buffer, sizeof(buffer), 0) < 0) continue;
            zmq_send(socket, replyImage.data(), replyImage.size(), 0);
        }
    });
    void* context = zmq_ctx_new();
    void* socket = zmq_socket(context, ZMQ_REQ);
    zmq_connect(socket, endpoint.c_str());
    unsigned char buffer[1024];
    for (auto _ : state) {
        zmq_send(socket, requestImage.data(), requestImage.size(), 0);
        if (zmq_recv(socket, buffer, sizeof(buffer), 0) != static_cast<int>(replyImage.size())) {
            state.SkipWithError("zmq reply lost");
            break;
        }
    }
    zmq_close(socket);
    zmq_ctx_term(context);
    state.counters["request_B"] = static_cast<double>(requestImage.size());
    state.counters["reply_B"] = static_cast<double>(replyImage.size());
}
#endif

// ---- The library against the reference viewer ----------------------------------------

// Viewers live for the whole run; main() ends them.
std::map<std::string, std::unique_ptr<Viewer>>& Viewers() {
    static std::map<std::string, std::unique_ptr<Viewer>> viewers;
    return viewers;
}

Viewer& ViewerOn(const std::string& board) {
    std::unique_ptr<Viewer>& viewer = Viewers()[board];
    if (!viewer) viewer = std::make_unique<Viewer>(board);
    return *viewer;
}

constexpr int kQueryBoardComponents = 10000;

Viewer& QueryViewer(std::wstring* reference = nullptr) {
    std::string first;
    const std::string board = bench::GeneratedBoard(kQueryBoardComponents, &first);
    if (reference) *reference = bench::Wide(first);
    return ViewerOn(board);
}

// Connections kept between calls (argument 1) or opened by every call (0), for the
// length of one benchmark.
struct KeepingFor {
    explicit KeepingFor(const benchmark::State& state) { KPCB_KeepConnections(static_cast<int>(state.range(0))); }
    ~KeepingFor() { KPCB_KeepConnections(0); }
};

void BM_QueryRoundTrip(benchmark::State& state) {
    bench::PinCallerToClientCpu();
    std::wstring reference;
    Viewer& viewer = QueryViewer(&reference);
    if (!viewer.ok()) return state.SkipWithError("no viewer");
    KeepingFor keeping(state);
    double pitch = 0;
    if (KPCB_GetPinPitch(viewer.pid(), reference.c_str(), 0, &pitch) != 0 || !(pitch > 0))
        return state.SkipWithError("no pitch");
    for (auto _ : state) {
        if (KPCB_GetPinPitch(viewer.pid(), reference.c_str(), 0, &pitch) != 0) {
            state.SkipWithError("query failed");
            break;
        }
    }
    state.counters["request_B"] = static_cast<double>(PinPitchRequestImage(std::string(reference.begin(), reference.end())).size());
}

// kBatch one-way commands, each setting the calling status to the next value; the
// read that follows sees the last value only if the viewer has served them all in order.
bool SendBatch(int pid, int& next) {
    const int first = next;
    for (int i = 0; i < kBatch; ++i) KPCB_SetStatusForCallingRedMark(pid, next++);
    int last = -1;
    return KPCB_GetStatusForCallingRedMark(pid, &last) == 0 && last == first + kBatch - 1;
}

void BM_OneWayRate(benchmark::State& state) {
    bench::PinCallerToClientCpu();
    Viewer& viewer = QueryViewer();
    if (!viewer.ok()) return state.SkipWithError("no viewer");
    KeepingFor keeping(state);
    static int next = 1;
    for (auto _ : state) {
        if (!SendBatch(viewer.pid(), next)) {
            state.SkipWithError("a command did not arrive");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * kBatch);
}

// Every record of the stream counted in the viewer's journal.
void BM_OneWayArrivals(benchmark::State& state) {
    bench::PinCallerToClientCpu();
    const std::string journal = bench::WorkDirectory() + "/journal-" + std::to_string(state.range(0)) + ".txt";
    std::remove(journal.c_str());
    setenv("KPCB_VIEWER_JOURNAL", journal.c_str(), 1);
    auto viewer = std::make_unique<Viewer>(bench::GeneratedBoard(1000));
    unsetenv("KPCB_VIEWER_JOURNAL");
    if (!viewer->ok()) return state.SkipWithError("no viewer");
    const int batches = static_cast<int>(state.range(0)) / kBatch;
    int next = 1;
    long long sent = 0;
    for (auto _ : state) {
        for (int b = 0; b < batches; ++b) {
            if (!SendBatch(viewer->pid(), next)) state.SkipWithError("a command did not arrive");
            sent += kBatch;
        }
    }
    viewer.reset();  // the journal is complete once the viewer has ended
    std::ifstream in(journal);
    long long arrived = 0, malformed = 0;
    for (std::string line; std::getline(in, line);) {
        if (line.find("\tcalling status set to ") != std::string::npos) ++arrived;
        if (line.find("\tMALFORMED\t") != std::string::npos) ++malformed;
    }
    state.counters["sent"] = static_cast<double>(sent);
    state.counters["arrived"] = static_cast<double>(arrived);
    state.counters["malformed"] = static_cast<double>(malformed);
    if (arrived != sent || malformed) state.SkipWithError("the journal misses commands");
    state.SetItemsProcessed(sent);
}

void BM_LargeAnswer(benchmark::State& state) {
    bench::PinCallerToClientCpu();
    const int corners = static_cast<int>(state.range(0));
    Viewer& viewer = ViewerOn(bench::LargeOutlineBoard(corners));
    if (!viewer.ok()) return state.SkipWithError("no viewer");
    const wchar_t* layers[] = {L"TOP"};
    if (KPCB_PolygonMergeCreate(viewer.pid()) != 0 || KPCB_PolygonMergeRun(viewer.pid(), layers, 1, L"OUTLINE", 0) != 0)
        return state.SkipWithError("no merged outline");
    const int points = KPCB_GetCWPolygonPointCount(viewer.pid(), 0);
    if (points < corners / 2) return state.SkipWithError("no merged outline of that size");
    CArrayD* xs = KPCB_ArrayD_Create();
    CArrayD* ys = KPCB_ArrayD_Create();
    for (auto _ : state) {
        if (KPCB_GetCWPolygonPointDataArray(viewer.pid(), 0, xs, ys) != 0 || KPCB_ArrayD_GetSize(xs) != points ||
            KPCB_ArrayD_GetSize(ys) != points) {
            state.SkipWithError("short answer");
            break;
        }
    }
    KPCB_ArrayD_Free(xs);
    KPCB_ArrayD_Free(ys);
    // The coordinates delivered: two arrays of 8-byte values.
    state.counters["points"] = points;
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(points) * 16);
}

void BM_Memcpy(benchmark::State& state) {
    const size_t bytes = static_cast<size_t>(state.range(0)) * 16;
    std::vector<char> from(bytes, 1), to(bytes, 0);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}

std::string SampleBoard() { return std::string(KPCB_SOURCE_DIR) + "/samples/demo_board.pdbba"; }

// Until the launched viewer has answered a first query.
void BM_LaunchToReady(benchmark::State& state) {
    bench::PinCallerToClientCpu();
    std::string reference = "U1";
    const std::string board = state.range(0) ? bench::GeneratedBoard(static_cast<int>(state.range(0)), &reference) : SampleBoard();
    const std::wstring wideReference = bench::Wide(reference);
    for (auto _ : state) {
        const int pid = bench::LaunchViewer(board);
        double pitch = 0;
        if (pid <= 0 || KPCB_GetPinPitch(pid, wideReference.c_str(), 0, &pitch) != 0) {
            state.SkipWithError("launch failed");
            break;
        }
        state.PauseTiming();
        KPCB_Exit(pid, 1);
        state.ResumeTiming();
    }
}

// The same on the real board that KPCB_BENCH_REAL_BOARD names (bench_copper_merge
// measures its load in process, the baseline of this one).
void BM_LaunchRealBoard(benchmark::State& state) {
    bench::PinCallerToClientCpu();
    if (bench::RealBoard().empty()) return state.SkipWithError("KPCB_BENCH_REAL_BOARD names no board");
    for (auto _ : state) {
        const int pid = bench::LaunchViewer(bench::RealBoard());
        if (pid <= 0 || KPCB_GetCWPolygonCount(pid) == KPCB_NO_REPLY) {
            state.SkipWithError("launch failed");
            break;
        }
        state.PauseTiming();
        KPCB_Exit(pid, 1);
        state.ResumeTiming();
    }
}

void BM_MergeRun(benchmark::State& state) {
    bench::PinCallerToClientCpu();
    const int k = bench::MeshSide(static_cast<double>(state.range(0)));
    int shapes = 0;
    const std::string board = bench::MeshBoard(k, &shapes);
    Viewer& viewer = ViewerOn(board);
    if (!viewer.ok()) return state.SkipWithError("no viewer");
    const wchar_t* layers[] = {L"TOP"};
    if (KPCB_PolygonMergeCreate(viewer.pid()) != 0) return state.SkipWithError("no merge session");
    for (auto _ : state) {
        if (KPCB_PolygonMergeRun(viewer.pid(), layers, 1, L"MESH", 32) != 0) {
            state.SkipWithError("merge failed");
            break;
        }
    }
    state.counters["shapes"] = shapes;
    state.counters["outlines"] = KPCB_GetCWPolygonCount(viewer.pid());
    state.counters["holes"] = KPCB_GetCCWPolygonCount(viewer.pid(), 0);
    KPCB_PolygonMergeDestroy(viewer.pid());
}

// Half queries, half one-way commands: both paths of the library.
void Calls(int pid, const std::wstring& reference, long long count) {
    for (long long i = 0; i < count; ++i) {
        if (i % 2 == 0) {
            double pitch = 0;
            KPCB_GetPinPitch(pid, reference.c_str(), 0, &pitch);
        } else {
            KPCB_Component_OnOff(pid, static_cast<int>(i & 2) >> 1);
        }
    }
}

void BM_CallerMemory(benchmark::State& state) {
    bench::PinCallerToClientCpu();
    std::wstring reference;
    Viewer& viewer = QueryViewer(&reference);
    if (!viewer.ok()) return state.SkipWithError("no viewer");
    const long long total = state.range(0);
    long rssEarly = 0, rssLate = 0;
    int fdsEarly = 0, fdsLate = 0;
    for (auto _ : state) {
        Calls(viewer.pid(), reference, 1000);
        rssEarly = bench::ResidentKiB();
        fdsEarly = bench::OpenDescriptors();
        Calls(viewer.pid(), reference, total - 1000);
        rssLate = bench::ResidentKiB();
        fdsLate = bench::OpenDescriptors();
    }
    state.counters["rss_kB_1k"] = static_cast<double>(rssEarly);
    state.counters["rss_kB_all"] = static_cast<double>(rssLate);
    state.counters["fds_1k"] = fdsEarly;
    state.counters["fds_all"] = fdsLate;
    state.counters["calls"] = static_cast<double>(total);
}

}  // namespace

BENCHMARK(BM_RawRoundTrip)->UseRealTime();
#ifdef KPCB_BENCH_ZMQ
BENCHMARK(BM_ZmqRoundTrip)->UseRealTime();
#endif
BENCHMARK(BM_QueryRoundTrip)->Arg(0)->Arg(1)->UseRealTime();
BENCHMARK(BM_RawSendRate)->UseRealTime();
BENCHMARK(BM_OneWayRate)->Arg(0)->Arg(1)->UseRealTime();
BENCHMARK(BM_OneWayArrivals)->Arg(100000)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Memcpy)->Arg(1000000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LargeAnswer)->Arg(1000000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LaunchToReady)->Arg(0)->Arg(10000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LaunchRealBoard)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MergeRun)->Arg(1000)->Arg(10000)->Arg(100000)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::AddCustomContext("pinning", bench::GetPinning().Describe());
    const char* soak = std::getenv("KPCB_BENCH_SOAK_CALLS");
    const long long calls = soak && std::atoll(soak) > 1000 ? std::atoll(soak) : 1000000;
    benchmark::RegisterBenchmark("BM_CallerMemory", BM_CallerMemory)
        ->Arg(calls)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    Viewers().clear();
    std::error_code ignored;
    std::filesystem::remove_all(bench::WorkDirectory(), ignored);
    return 0;
}
