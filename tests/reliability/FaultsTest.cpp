// Viewers that do not answer or end, and callers on several threads.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "FakeViewer.h"
#include "FaultTiming.h"
#include "InformationRecords.h"
#include "KapiFrame.h"
#include "KPCBAPI.hpp"
#include "SlotNames.h"
#include "TestPaths.h"
#include "platform.h"

using testing_support::Bytes;
using testing_support::FakeViewer;

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

TEST(ReplyTimeout, HelloWaitEndsWhenTheProcessHasEnded) {
    // The wait that launch uses, with a started program that ends without a hello:
    // the viewer itself, started without arguments, prints its usage and ends.
    ReplyTimeout limit(20000);
    const std::string viewer = testing_support::BinDir() + "/KorbinPCB" + platform::ExecutableSuffix();
    const int pid = platform::StartProcess(viewer, "\"" + viewer + "\"", {});
    ASSERT_GT(pid, 0);
    CMailslot slot(0, ReturnSlotName());
    ASSERT_EQ(slot.Open(), 1);
    const auto start = Clock::now();
    EXPECT_FALSE(kapi::AwaitAnswer(slot, pid));
    EXPECT_LT(MillisecondsSince(start), 5000);
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
