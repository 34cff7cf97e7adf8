// Long runs against the real viewer: nothing lost under load from many threads, and
// nothing growing in the caller over many calls.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "KPCBAPI.hpp"
#include "SampleBoardTest.h"

// AddressSanitizer holds freed memory back (its quarantine), so resident size says
// nothing about leaks in such a build; its own leak check covers that instead.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kResidentSizeMeaningful = false;
#else
constexpr bool kResidentSizeMeaningful = true;
#endif

namespace {

using testing_support::OpenSystemObjects;
using testing_support::ResidentKiB;

long CallsFromEnvironment(const char* name, long fallback) {
    const char* value = std::getenv(name);
    return value ? std::atol(value) : fallback;
}

// A viewer on the sample board for the whole test.
class Soak : public testing_support::SampleBoardTest {
protected:
    void SetUp() override {
        SampleBoardTest::SetUp();
        pid = KPCB_Launch(CString(board), 1);
        ASSERT_GT(pid, 0);
    }
    void TearDown() override {
        if (pid > 0) {
            EXPECT_EQ(KPCB_Exit(pid, 1), 0);
        }
        SampleBoardTest::TearDown();
    }
    int pid = 0;
};

// One round of the mixed calls; returns how many calls it made.
int MixedRound(int pid, int i) {
    double pitch = 0;
    int count = 0;
    EXPECT_EQ(KPCB_ZoomIn(pid), 0);
    EXPECT_EQ(KPCB_GetPinPitch(pid, L"U1", 0, &pitch), 0);
    EXPECT_EQ(KPCB_SetMainTitle(pid, (i % 2) ? "odd" : "even"), 0);
    EXPECT_EQ(KPCB_Highlight(pid, 0, "GND", ",", 0), 0);
    EXPECT_EQ(KPCB_GetPinCountFromReference(pid, L"U1", &count), 0);
    wchar_t* net = nullptr;
    wchar_t* pins = nullptr;
    const int status = KPCB_GetPinListInfoOfNet_RefPin(pid, L"U1", L"1", &net, &pins, L",");
    EXPECT_TRUE(status == 0 || status == KPCB_ERR_200);
    KPCB_FreeString(net);
    KPCB_FreeString(pins);
    EXPECT_EQ(KPCB_IsRunning(pid), 1);
    return 7;
}

}  // namespace

TEST_F(Soak, ManyThreadsOfOneWayCommandsLoseNothing) {
    const int threads = 8;
    const long perThread = CallsFromEnvironment("KPCB_STRESS_COMMANDS", 10000);
    std::vector<std::thread> senders;
    std::vector<long> failures(threads, 0);
    for (int t = 0; t < threads; ++t) {
        senders.emplace_back([&, t] {
            for (long i = 0; i < perThread; ++i) {
                if (KPCB_Route_OnOff(pid, static_cast<int>(i & 1)) != 0) ++failures[t];
            }
        });
    }
    for (std::thread& sender : senders) sender.join();
    for (int t = 0; t < threads; ++t) EXPECT_EQ(failures[t], 0) << "thread " << t;
    // A waiting call is served after everything sent before it.
    EXPECT_EQ(KPCB_SetMainTitle(pid, "done"), 0);
    EXPECT_EQ(Journal().size(), static_cast<size_t>(threads * perThread + 1));
}

TEST_F(Soak, ResidentMemoryAndDescriptorsStayFlat) {
    testing_support::UnsetEnv("KPCB_VIEWER_JOURNAL");
    const long calls = CallsFromEnvironment("KPCB_SOAK_CALLS", 20000);
    long made = 0;
    int round = 0;
    while (made < 1000) made += MixedRound(pid, round++);
    const long residentAfterWarmUp = ResidentKiB();
    const long descriptorsAfterWarmUp = OpenSystemObjects();
    while (made < calls) made += MixedRound(pid, round++);
    const long residentAtEnd = ResidentKiB();
    EXPECT_EQ(OpenSystemObjects(), descriptorsAfterWarmUp);
    if (kResidentSizeMeaningful) {
        EXPECT_LE(residentAtEnd - residentAfterWarmUp, 1024) << "KiB grown over " << made << " calls";
    }
    RecordProperty("calls", std::to_string(made));
    RecordProperty("resident_growth_kib", std::to_string(residentAtEnd - residentAfterWarmUp));
}
