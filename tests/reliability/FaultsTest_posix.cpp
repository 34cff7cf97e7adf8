// Faults that need POSIX processes: a viewer that dies while a query waits, one that
// stops reading, a stranger (another user) on the reply slot, a kernel without pidfds.
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <stddef.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>

#include "FakeViewer.h"
#include "FaultTiming.h"
#include "InformationRecords.h"
#include "KPCBAPI.hpp"
#include "SlotNames.h"
#include "platform.h"

using testing_support::Bytes;
using testing_support::FakeViewer;

TEST(ReplyTimeout, ViewerThatEndsWhileAQueryWaitsIsNoticedPromptly) {
    const pid_t child = fork();
    if (child == 0) {
        // A viewer that takes the request and dies without answering.
        platform::SlotHandle slot = platform::CreateSlot(MakeCommandSlotName(getpid()).str());
        if (slot == platform::InvalidSlot()) _exit(2);
        unsigned char buffer[256];
        uint32_t read = 0;
        for (int i = 0; i < 2; ++i) platform::ReadSlot(slot, buffer, sizeof(buffer), &read);
        _exit(0);
    }
    // Wait for its slot.
    for (int i = 0; i < 500; ++i) {
        platform::SlotHandle probe = platform::OpenSlot(MakeCommandSlotName(child).str());
        if (probe != platform::InvalidSlot()) {
            platform::CloseSlot(probe);
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    std::thread reaper([&] {
        int status;
        waitpid(child, &status, 0);
    });
    ReplyTimeout limit(20000);
    double pitch = 0;
    const auto start = Clock::now();
    EXPECT_EQ(KPCB_GetPinPitch(child, L"U1", 0, &pitch), KPCB_NO_REPLY);
    EXPECT_LT(MillisecondsSince(start), 5000) << "the end of the process ends the wait, not the limit";
    reaper.join();
}

TEST(Strangers, ReplyFromAnotherUserIsNeverTakenAsTheAnswer) {
    if (getuid() != 0) GTEST_SKIP() << "needs root to act as another user";
    FakeViewer viewer;
    const std::string replySlot = MakeReplySlotName(viewer.pid()).str();
    CKPRCI_Information_GetCompPinCount_RV forged;
    forged.SetPinCount(666);
    const Bytes forgedImage = testing_support::ImageOf(forged);
    const pid_t child = fork();
    if (child == 0) {
        if (setgid(65534) != 0 || setuid(65534) != 0) _exit(2);
        // Keep trying to slip a forged answer into the reply slot for a while.
        const uint32_t length = static_cast<uint32_t>(forgedImage.size());
        for (int i = 0; i < 400; ++i) {
            platform::SlotHandle slot = platform::OpenSlot(replySlot);
            if (slot != platform::InvalidSlot()) {
                uint32_t written;
                platform::WriteSlot(slot, &length, 4, &written);
                platform::WriteSlot(slot, forgedImage.data(), length, &written);
                platform::CloseSlot(slot);
            }
            usleep(500);
        }
        _exit(0);
    }
    CKPRCI_Information_GetCompPinCount_RV real;
    real.SetPinCount(14);
    for (int round = 0; round < 20; ++round) {
        viewer.AnswerWith(real);
        int count = 0;
        ASSERT_EQ(KPCB_GetPinCountFromPart(viewer.pid(), L"P", &count), 0);
        EXPECT_EQ(count, 14) << "round " << round;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    int status;
    waitpid(child, &status, 0);
}

namespace {
// Makes pidfd_open fail with ENOSYS in this process from now on, as on a kernel that
// predates it (or under a tool that does not pass it on).
bool DenyPidfds() {
    sock_filter rules[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_pidfd_open, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    sock_fprog program{static_cast<unsigned short>(sizeof(rules) / sizeof(rules[0])), rules};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}
}  // namespace

TEST(ProcessExit, WaitLastsUntilTheEndWithoutPidfds) {
    // In a child, so that the filter stays there: it starts a process that lives
    // 300 ms and waits for it. Exit codes: 0 waited, 1 returned early, 2 no filter.
    const pid_t child = fork();
    if (child == 0) {
        if (!DenyPidfds() || syscall(SYS_pidfd_open, getpid(), 0) >= 0) _exit(2);
        const pid_t shortLived = fork();
        if (shortLived == 0) {
            usleep(300 * 1000);
            _exit(0);
        }
        const auto start = Clock::now();
        const bool ended = platform::WaitProcessExit(shortLived, -1);
        _exit(ended && MillisecondsSince(start) >= 250 ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 2) GTEST_SKIP() << "no seccomp filter can be installed here";
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(Isolation, AViewerThatDoesNotReadHoldsUpNoOtherViewer) {
    // The stuck viewer: a child that makes its command slot and never reads it.
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t stuck = fork();
    if (stuck == 0) {
        const platform::SlotHandle slot = platform::CreateSlot(MakeCommandSlotName(getpid()).str());
        const char made = slot != platform::InvalidSlot() ? 1 : 0;
        if (write(ready[1], &made, 1) != 1) _exit(2);
        pause();
        _exit(0);
    }
    char made = 0;
    ASSERT_EQ(read(ready[0], &made, 1), 1);
    ASSERT_EQ(made, 1);
    close(ready[0]);
    close(ready[1]);

    FakeViewer viewer;
    std::atomic<bool> stop{false};
    std::atomic<int> sent{0};
    std::thread flood([&] {
        while (!stop) {
            KPCB_ZoomIn(stuck);
            ++sent;
        }
    });
    // Once the stuck viewer's queue is full its sends wait for room.
    for (int quiet = 0, last = -1, rounds = 0; quiet < 3 && rounds < 200; ++rounds) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        quiet = sent == last ? quiet + 1 : 0;
        last = sent;
    }

    const auto start = Clock::now();
    for (int i = 0; i < 5; ++i) EXPECT_EQ(KPCB_ZoomOut(viewer.pid()), 0);
    CKPRCI_Information_GetCompPinCount_RV reply;
    reply.SetPinCount(6);
    viewer.AnswerWith(reply);
    int count = 0;
    EXPECT_EQ(KPCB_GetPinCountFromPart(viewer.pid(), L"P", &count), 0);
    EXPECT_EQ(count, 6);
    EXPECT_LT(MillisecondsSince(start), platform::kSlotSendWaitMs - 500) << "another viewer's calls wait for nothing";

    stop = true;
    flood.join();
    // A send into the full slot gives up after its bound; the write is not examined.
    const auto blocked = Clock::now();
    EXPECT_EQ(KPCB_ZoomIn(stuck), 0);
    const long long waited = MillisecondsSince(blocked);
    EXPECT_GE(waited, platform::kSlotSendWaitMs - 100);
    EXPECT_LT(waited, platform::kSlotSendWaitMs + 2000);
    kill(stuck, SIGKILL);
    int status;
    waitpid(stuck, &status, 0);
}
