// Faults that need POSIX processes: a viewer that dies while a query waits, and a
// stranger (another user) on the reply slot.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "FakeViewer.h"
#include "InformationRecords.h"
#include "KPCBAPI.hpp"
#include "SlotNames.h"
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
