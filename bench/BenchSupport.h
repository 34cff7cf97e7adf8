// What the transport benchmarks share: CPU pinning of the measuring process and of
// the processes it talks to, helper processes, reference viewers, boards written for
// the benchmarks, and the caller's resident size and open descriptors.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

class CPdb;

namespace bench {

// The CPUs the run may use (the affinity it was started with, e.g. by taskset). With
// one CPU every process runs on it; with two or more the measuring thread runs on the
// first and every server (echo process, ZeroMQ peer, viewer) on the second.
struct Pinning {
    int clientCpu = -1;
    int serverCpu = -1;
    bool split() const { return clientCpu != serverCpu; }
    std::string Describe() const;
};
const Pinning& GetPinning();
// Pins the calling thread to the client CPU (threads it starts later inherit it).
void PinCallerToClientCpu();
// Pins every thread of a running process to the server CPU.
void PinProcessToServerCpu(pid_t pid);

// A forked helper process running body (pinned to the server CPU); ready is called
// in the child once it can be talked to, and the parent waits for that.
class Helper {
public:
    Helper() = default;
    ~Helper();
    Helper(const Helper&) = delete;
    Helper& operator=(const Helper&) = delete;
    // body receives a function to call when ready.
    void Start(const std::function<void(const std::function<void()>& ready)>& body);
    void Stop();
    pid_t pid() const { return m_pid; }

private:
    pid_t m_pid = -1;
};

// A reference viewer on a board file, launched through the library, pinned to the
// server CPU, ended with KPCB_Exit(pid, 1).
class Viewer {
public:
    explicit Viewer(const std::string& boardPath);
    ~Viewer();
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;
    int pid() const { return m_pid; }
    bool ok() const { return m_pid > 0; }

private:
    int m_pid = -1;
};

// Launches and returns the pid (or the failure code), without pinning or ending it.
int LaunchViewer(const std::string& boardPath);

// Folder for the files of this run, created on first use.
const std::string& WorkDirectory();

// Boards, written once per run and cached by name:
// a generated board of n components (.pdbb), and the reference of its first component;
std::string GeneratedBoard(int components, std::string* firstReference = nullptr);
// a board whose net "OUTLINE" has one copper area on TOP with that many corners
// (a regular polygon), so that its merge gives one outline of about as many points
// (the union drops corners that the grid puts on one line with their neighbours);
std::string LargeOutlineBoard(int points);
// a board whose net "MESH" is a k x k grid of vias joined by tracks to their right and
// upper neighbours: 3k^2 - 2k shapes on TOP, one outline with (k-1)^2 holes.
std::string MeshBoard(int k, int* shapes);
// The same net built into a board in memory; returns its number of shapes.
int BuildMesh(CPdb& pdb, int k);
// The k whose mesh has about that many shapes.
int MeshSide(double shapes);

// The real board of the run: the .pdbb that KPCB_BENCH_REAL_BOARD names, or "".
std::string RealBoard();
// The net with the most copper shapes (pads, tracks, vias and areas on copper layers)
// and its count; layers receives the names of every copper layer.
std::string LargestNet(const CPdb& pdb, std::vector<std::string>& layers, int* shapes);

// The text of a wide path for the C functions.
std::wstring Wide(const std::string& text);

// Resident size of this process in KiB, and the number of its open descriptors.
long ResidentKiB();
int OpenDescriptors();

}  // namespace bench
