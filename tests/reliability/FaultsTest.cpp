// Viewers that do not answer or die, strangers on the reply slot, and callers on
// several threads.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "FakeViewer.h"
#include "InformationRecords.h"
#include "KapiFrame.h"
#include "KPCBAPI.hpp"
#include "SlotNames.h"
#include "TestPaths.h"
#include "platform.h"

using testing_support::Bytes;
using testing_support::FakeViewer;
using Clock = std::chrono::steady_clock;

namespace {

long long MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

// Restores the default (no limit) whatever the test does.
struct ReplyTimeout {
    explicit ReplyTimeout(int ms) { KPCB_SetReplyTimeout(ms); }
    ~ReplyTimeout() { KPCB_SetReplyTimeout(0); }
};

}  // namespace

TEST(ReplyTimeout, SilentViewerGivesMinusSevenOnceTheLimitPasses) {
    FakeViewer viewer;  // never answers
    ReplyTimeout limit(300);
    int count = 5;
    const auto start = Clock::now();
    EXPECT_EQ(KPCB_GetPinCountFromPart(viewer.pid(), L"P", &count), KPCB_NO_REPLY);
    const long long took = MillisecondsSince(start);
    EXPECT_GE(took, 280);
    EXPECT_LT(took, 3000);
    EXPECT_EQ(count, 5);
    EXPECT_EQ(KPCB_SetMainTitle(viewer.pid(), "t"), KPCB_NO_REPLY);
}

TEST(ReplyTimeout, AnswersWithinTheLimitStillArrive) {
    FakeViewer viewer;
    ReplyTimeout limit(5000);
    CKPRCI_Information_GetCompPinCount_RV reply;
    reply.SetPinCount(3);
    viewer.AnswerWith(reply);
    int count = 0;
    EXPECT_EQ(KPCB_GetPinCountFromPart(viewer.pid(), L"P", &count), 0);
    EXPECT_EQ(count, 3);
}

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

TEST(ReplyTimeout, HelloWaitEndsWhenTheProcessHasEnded) {
    // The wait that launch uses, with a started program that ends without a hello.
    testing_support::TempDir dir;
    const std::string quiet = dir / "quiet.sh";
    std::ofstream(quiet) << "#!/bin/sh\nexit 0\n";
    std::filesystem::permissions(quiet, std::filesystem::perms::owner_all);
    ReplyTimeout limit(20000);
    const int pid = platform::StartProcess(quiet, "", {});
    ASSERT_GT(pid, 0);
    CMailslot slot(0, ReturnSlotName());
    ASSERT_EQ(slot.Open(), 1);
    const auto start = Clock::now();
    EXPECT_FALSE(kapi::AwaitAnswer(slot, pid));
    EXPECT_LT(MillisecondsSince(start), 5000);
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

TEST(Concurrency, TwoQueriesAtOnceOneGetsMinusFive) {
    FakeViewer viewer;  // answers only the second query's frame, late
    std::atomic<int> first{1};
    std::thread slow([&] {
        int count;
        first = KPCB_GetPinCountFromPart(viewer.pid(), L"P", &count);
    });
    ASSERT_TRUE(viewer.WaitForMessages(2));  // the first query's request has left: its slot exists
    int count = 0;
    EXPECT_EQ(KPCB_GetPinCountFromReference(viewer.pid(), L"U1", &count), KPCB_SLOT_UNAVAILABLE);
    CKPRCI_Information_GetCompPinCount_RV reply;
    reply.SetPinCount(2);
    viewer.AnswerNow(testing_support::ImageOf(reply));
    slow.join();
    EXPECT_EQ(first.load(), 0);
}
