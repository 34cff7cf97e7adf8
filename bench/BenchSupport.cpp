#include "BenchSupport.h"

#include <dirent.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>

#include "BoardGenerator.h"
#include "CPdb.h"
#include "CPdbbProcessor.h"
#include "KPCBAPI.h"

namespace bench {
namespace {

constexpr double kPi = 3.14159265358979323846;

bool PinThread(pid_t tid, int cpu) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(cpu, &set);
    return sched_setaffinity(tid, sizeof(set), &set) == 0;
}

[[noreturn]] void Fail(const std::string& what) {
    std::fprintf(stderr, "bench: %s\n", what.c_str());
    std::exit(2);
}

std::string SaveBoard(const CPdb& pdb, const std::string& name) {
    const std::string path = WorkDirectory() + "/" + name;
    CString error;
    if (!CPdbbProcessor::SaveBoardFile(CString(path.c_str()), pdb, error)) Fail(error.str());
    return path;
}

// Four copper layers, as the generated boards have.
void AddCopperStack(CPdb& pdb) {
    CPDBLayerManager& layers = pdb.GetLayerManager();
    layers.AddLayer("TOP", "L1_TOP", LayerKind::Copper);
    layers.AddLayer("GND", "L2_GND", LayerKind::Copper);
    layers.AddLayer("PWR", "L3_PWR", LayerKind::Copper);
    layers.AddLayer("BOTTOM", "L4_BOTTOM", LayerKind::Copper);
}

}  // namespace

std::string Pinning::Describe() const {
    if (!split()) return "both processes on CPU " + std::to_string(clientCpu);
    return "caller on CPU " + std::to_string(clientCpu) + ", servers on CPU " + std::to_string(serverCpu);
}

const Pinning& GetPinning() {
    static const Pinning pinning = [] {
        cpu_set_t set;
        CPU_ZERO(&set);
        if (sched_getaffinity(0, sizeof(set), &set) != 0) Fail("no CPU affinity");
        std::vector<int> cpus;
        for (int cpu = 0; cpu < CPU_SETSIZE; ++cpu)
            if (CPU_ISSET(cpu, &set)) cpus.push_back(cpu);
        if (cpus.empty()) Fail("no CPU allowed");
        Pinning p;
        p.clientCpu = cpus[0];
        p.serverCpu = cpus.size() > 1 ? cpus[1] : cpus[0];
        return p;
    }();
    return pinning;
}

void PinCallerToClientCpu() { PinThread(0, GetPinning().clientCpu); }

void PinProcessToServerCpu(pid_t pid) {
    const std::string tasks = "/proc/" + std::to_string(pid) + "/task";
    DIR* dir = opendir(tasks.c_str());
    if (!dir) {
        PinThread(pid, GetPinning().serverCpu);
        return;
    }
    while (dirent* entry = readdir(dir)) {
        const int tid = std::atoi(entry->d_name);
        if (tid > 0) PinThread(tid, GetPinning().serverCpu);
    }
    closedir(dir);
}

Helper::~Helper() { Stop(); }

void Helper::Start(const std::function<void(const std::function<void()>& ready)>& body) {
    int fds[2];
    if (pipe(fds) != 0) Fail("pipe");
    const pid_t child = fork();
    if (child < 0) Fail("fork");
    if (child == 0) {
        close(fds[0]);
        prctl(PR_SET_PDEATHSIG, SIGKILL);  // never outlive the benchmark
        PinThread(0, GetPinning().serverCpu);
        const int readyFd = fds[1];
        body([readyFd] {
            const char one = 1;
            if (write(readyFd, &one, 1) != 1) _exit(3);
            close(readyFd);
        });
        _exit(0);
    }
    close(fds[1]);
    char byte = 0;
    const ssize_t n = read(fds[0], &byte, 1);
    close(fds[0]);
    m_pid = child;
    if (n != 1) Fail("helper process did not start");
}

void Helper::Stop() {
    if (m_pid <= 0) return;
    kill(m_pid, SIGKILL);
    int status;
    waitpid(m_pid, &status, 0);
    m_pid = -1;
}

int LaunchViewer(const std::string& boardPath) { return KPCB_Launch_HideMode(Wide(boardPath).c_str()); }

Viewer::Viewer(const std::string& boardPath) {
    m_pid = LaunchViewer(boardPath);
    if (m_pid <= 0) {
        std::fprintf(stderr, "bench: the viewer did not start on %s: %d\n", boardPath.c_str(), m_pid);
        return;
    }
    PinProcessToServerCpu(m_pid);
}

Viewer::~Viewer() {
    if (m_pid > 0) KPCB_Exit(m_pid, 1);
}

const std::string& WorkDirectory() {
    static const std::string dir = [] {
        const std::filesystem::path path =
            std::filesystem::temp_directory_path() / ("kpcb-bench-" + std::to_string(getpid()));
        std::filesystem::create_directories(path);
        return path.string();
    }();
    return dir;
}

std::string GeneratedBoard(int components, std::string* firstReference) {
    static std::map<int, std::pair<std::string, std::string>> cache;  // path, first reference
    auto found = cache.find(components);
    if (found == cache.end()) {
        std::unique_ptr<CPdb> pdb = GenerateBoard(components);
        const std::string reference = pdb->GetCompCount() ? pdb->GetComp(0)->GetReference().str() : "";
        found = cache.emplace(components, std::make_pair(SaveBoard(*pdb, "generated-" + std::to_string(components) + ".pdbb"),
                                                          reference)).first;
    }
    if (firstReference) *firstReference = found->second.second;
    return found->second.first;
}

std::string LargeOutlineBoard(int points) {
    static std::map<int, std::string> cache;
    auto found = cache.find(points);
    if (found != cache.end()) return found->second;
    CPdb pdb;
    pdb.SetBoardName("large outline");
    AddCopperStack(pdb);
    CPNet* net = pdb.AddNet("OUTLINE");
    CPArea* area = pdb.AddArea(0, net);
    CArrayPointD& outline = area->GetOutline();
    outline.SetSize(points);
    const double radius = 40.0;
    for (int i = 0; i < points; ++i) {
        const double a = 2 * kPi * i / points;
        outline[i] = CPointD(50 + radius * std::cos(a), 50 + radius * std::sin(a));
    }    return cache[points] = SaveBoard(pdb, "outline-" + std::to_string(points) + ".pdbb");
}

int BuildMesh(CPdb& pdb, int k) {
    pdb.SetBoardName("mesh");
    AddCopperStack(pdb);
    CPNet* net = pdb.AddNet("MESH");
    CPRouteNet& route = net->GetRoute();
    const double pitch = 1.27, via = 0.6, drill = 0.3, width = 0.25;
    int count = 0;
    for (int row = 0; row < k; ++row) {
        for (int col = 0; col < k; ++col) {
            const CPointD at(col * pitch, row * pitch);
            route.AddVia(at, via, drill, 0, 3);
            ++count;
            if (col + 1 < k) {
                route.AddSegment(0, width, C2PointD(at, CPointD((col + 1) * pitch, row * pitch)));
                ++count;
            }
            if (row + 1 < k) {
                route.AddSegment(0, width, C2PointD(at, CPointD(col * pitch, (row + 1) * pitch)));
                ++count;
            }
        }
    }
    return count;
}

int MeshSide(double shapes) { return static_cast<int>(std::lround((2 + std::sqrt(4 + 12 * shapes)) / 6)); }

std::string MeshBoard(int k, int* shapes) {
    CPdb pdb;
    const int count = BuildMesh(pdb, k);
    if (shapes) *shapes = count;
    return SaveBoard(pdb, "mesh-" + std::to_string(k) + ".pdbb");
}

std::string RealBoard() {
    const char* path = std::getenv("KPCB_BENCH_REAL_BOARD");
    return path ? path : "";
}

std::string LargestNet(const CPdb& pdb, std::vector<std::string>& layers, int* shapes) {
    const CPDBLayerManager& manager = pdb.GetLayerManager();
    std::vector<int> copper;
    layers.clear();
    for (int i = 0; i < manager.GetLayerCount(); ++i) {
        if (!manager.IsCopperLayer(i)) continue;
        copper.push_back(i);
        layers.push_back(manager.GetLayer(i)->GetName().str());
    }
    auto onCopper = [&](auto&& test) { return std::any_of(copper.begin(), copper.end(), test); };
    std::string largest;
    int most = -1;
    for (int n = 0; n < pdb.GetNetCount(); ++n) {
        const CPNet& net = *pdb.GetNet(n);
        int count = 0;
        for (int i = 0; i < net.GetPinCount(); ++i)
            count += onCopper([&](int layer) { return pdb.IsPadOnLayer(*net.GetPin(i), layer); });
        for (int i = 0; i < net.GetRoute().GetCount(); ++i)
            count += onCopper([&](int layer) { return net.GetRoute().GetAt(i)->IsOnLayer(layer); });
        for (INT_PTR i = 0; i < net.GetAreas().GetSize(); ++i)
            count += manager.IsCopperLayer(net.GetAreas().GetAt(i)->GetLayer());
        if (count > most) {
            most = count;
            largest = net.GetName().str();
        }
    }
    if (shapes) *shapes = most;
    return largest;
}

std::wstring Wide(const std::string& text) { return std::wstring(text.begin(), text.end()); }

long ResidentKiB() {
    FILE* f = std::fopen("/proc/self/statm", "r");
    if (!f) return -1;
    long size = 0, resident = 0;
    const int n = std::fscanf(f, "%ld %ld", &size, &resident);
    std::fclose(f);
    return n == 2 ? resident * (sysconf(_SC_PAGESIZE) / 1024) : -1;
}

int OpenDescriptors() {
    DIR* dir = opendir("/proc/self/fd");
    if (!dir) return -1;
    int count = 0;
    while (dirent* entry = readdir(dir))
        if (entry->d_name[0] != '.') ++count;
    closedir(dir);
    return count - 1;  // the listing's own descriptor
}

}  // namespace bench
