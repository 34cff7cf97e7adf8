// Processes: /proc for liveness, a double fork so that a started viewer is never
// the caller's child, SIGTERM as the close request, pidfd for waiting.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include "../platform.h"

namespace platform {
namespace {

// Messages from the launching children to the caller, written whole into one pipe.
struct LaunchNote {
    int kind;  // 1: the viewer's pid; 2: exec failed, value is errno
    int value;
};

void WriteNote(int fd, int kind, int value) {
    const LaunchNote note{kind, value};
    ssize_t r;
    do {
        r = write(fd, &note, sizeof(note));
    } while (r < 0 && errno == EINTR);
}

[[noreturn]] void ExecViewer(const char* exe, char* const* argv, int noteFd) {
    // A clean slate for the viewer: default signal handling, nothing blocked,
    // no inherited descriptors but the standard ones on /dev/null.
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_UNBLOCK, &all, nullptr);
    for (int sig = 1; sig < NSIG; ++sig) signal(sig, SIG_DFL);
    const int devNull = open("/dev/null", O_RDWR);
    if (devNull >= 0) {
        dup2(devNull, 0);
        dup2(devNull, 1);
        dup2(devNull, 2);
        if (devNull > 2) close(devNull);
    }
    if (noteFd > 3) syscall(SYS_close_range, 3u, static_cast<unsigned>(noteFd - 1), 0u);
    syscall(SYS_close_range, static_cast<unsigned>(noteFd + 1), ~0u, 0u);
    execv(exe, argv);
    WriteNote(noteFd, 2, errno);
    _exit(127);
}

volatile sig_atomic_t g_closeRequested = 0;

void OnCloseSignal(int) { g_closeRequested = 1; }

}  // namespace

intptr_t InstallCloseRequest() {
    struct sigaction action{};
    action.sa_handler = OnCloseSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0;  // no restart: a wait in progress ends at once
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
    return static_cast<intptr_t>(getpid());
}

bool CloseRequested() { return g_closeRequested != 0; }

int CurrentProcessId() { return static_cast<int>(getpid()); }

namespace {
// The state letter of /proc/<pid>/stat: the whole truth, but the kernel assembles
// fifty fields to print it.
bool StateIsLive(int pid) {
    char path[64];
    std::snprintf(path, sizeof(path), "/proc/%d/stat", pid);
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    char text[512];
    const ssize_t n = read(fd, text, sizeof(text) - 1);
    close(fd);
    if (n <= 0) return false;
    text[n] = '\0';
    // The state follows the command name, which is in parentheses and may contain anything.
    const char* close = std::strrchr(text, ')');
    if (!close || close[1] != ' ') return false;
    const char state = close[2];
    return state != 'Z' && state != 'X' && state != 'x';
}
}  // namespace

bool ProcessExists(int pid) {
    if (pid <= 0) return false;
    // A process whose executable can still be named has not ended: a zombie (or a task
    // on its way out) has given back its memory, and the executable with it. Naming it
    // is one call where the state letter takes three and fifty fields of formatting;
    // whenever it cannot be named (ended, a kernel thread, someone else's process) the
    // state letter decides, so the answer is always the state letter's.
    char path[64];
    std::snprintf(path, sizeof(path), "/proc/%d/exe", pid);
    char target[256];
    if (readlink(path, target, sizeof(target)) > 0) return true;
    return StateIsLive(pid);
}

int StartProcess(const std::string& exe, const std::string& /*commandLine*/, const std::vector<std::string>& args,
                 Status* why) {
    if (why) *why = Status();
    std::vector<std::string> owned;
    owned.reserve(args.size() + 1);
    owned.push_back(exe);
    owned.insert(owned.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& a : owned) argv.push_back(&a[0]);
    argv.push_back(nullptr);

    int notes[2];
    if (pipe2(notes, O_CLOEXEC) != 0) {
        if (why) *why = LastSystemError();
        return -1;
    }
    const pid_t middle = fork();
    if (middle < 0) {
        if (why) *why = LastSystemError();
        close(notes[0]);
        close(notes[1]);
        return -1;
    }
    if (middle == 0) {
        // The middle child starts the viewer and leaves at once, so the viewer is
        // adopted by the system and never becomes the caller's zombie.
        close(notes[0]);
        setsid();
        const pid_t viewer = fork();
        if (viewer == 0) ExecViewer(argv[0], argv.data(), notes[1]);
        WriteNote(notes[1], 1, viewer < 0 ? -1 : static_cast<int>(viewer));
        _exit(0);
    }
    close(notes[1]);
    int status;
    while (waitpid(middle, &status, 0) < 0 && errno == EINTR) {
    }
    int viewerPid = -1;
    int execError = 0;
    LaunchNote note;
    for (;;) {
        const ssize_t r = read(notes[0], &note, sizeof(note));
        if (r < 0 && errno == EINTR) continue;
        if (r != static_cast<ssize_t>(sizeof(note))) break;  // every writer has gone: exec succeeded or failed
        if (note.kind == 1) viewerPid = note.value;
        if (note.kind == 2) execError = note.value;
    }
    close(notes[0]);
    if (execError != 0 || viewerPid < 0) {
        errno = execError != 0 ? execError : EAGAIN;  // no exec error: the second fork failed
        if (why) *why = LastSystemError();
        return -1;
    }
    return viewerPid;
}

void RequestClose(int pid, intptr_t /*window*/) {
    if (pid > 0) kill(pid, SIGTERM);
}

void AbandonProcess(int pid) {
    if (pid > 0) kill(pid, SIGTERM);
}

namespace {
// A pidfd where the kernel gives one (Linux 5.3 and later); without one (older
// kernels, or a tool that runs the program and does not know the call) the process
// is looked up by its id each time, as ProcessExists does.
struct PidWatch {
    int pidFd;
    int pid;
};
}  // namespace

ProcessWatch WatchProcess(int pid) {
    if (pid <= 0) return nullptr;
    const int pidFd = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    // A zombie can still be opened; it has ended all the same.
    if (!ProcessExists(pid)) {
        if (pidFd >= 0) close(pidFd);
        return nullptr;
    }
    PidWatch* watch = new (std::nothrow) PidWatch{pidFd, pid};
    if (!watch && pidFd >= 0) close(pidFd);
    return watch;
}

bool WatchedProcessRunning(ProcessWatch handle) {
    const PidWatch* watch = static_cast<const PidWatch*>(handle);
    if (!watch) return false;
    if (watch->pidFd < 0) return ProcessExists(watch->pid);
    pollfd p{watch->pidFd, POLLIN, 0};
    int r;
    do {
        r = poll(&p, 1, 0);
    } while (r < 0 && errno == EINTR);
    return r == 0;  // readable once the process has ended
}

void StopWatching(ProcessWatch handle) {
    PidWatch* watch = static_cast<PidWatch*>(handle);
    if (!watch) return;
    if (watch->pidFd >= 0) close(watch->pidFd);
    delete watch;
}

namespace {
// Without a pidfd (an older kernel, or a tool such as memcheck that runs the program
// and does not know the call) the process is looked up every few milliseconds.
Status WaitByLookingUp(int pid, int timeoutMs) {
    constexpr useconds_t kLookEveryUs = 5000;
    for (long waitedUs = 0; ProcessExists(pid); waitedUs += kLookEveryUs) {
        if (timeoutMs >= 0 && waitedUs >= timeoutMs * 1000L) return Error::kTimedOut;
        usleep(kLookEveryUs);
    }
    return Status();
}
}  // namespace

Status WaitProcessExit(int pid, int timeoutMs) {
    if (pid <= 0) return Status();
    const int pidFd = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    if (pidFd < 0) return WaitByLookingUp(pid, timeoutMs);
    pollfd p{pidFd, POLLIN, 0};
    int r;
    do {
        r = poll(&p, 1, timeoutMs);
    } while (r < 0 && errno == EINTR);
    const Status waited = r > 0 ? Status() : r == 0 ? Status(Error::kTimedOut) : LastSystemError();
    close(pidFd);
    return waited;
}

}  // namespace platform
