// Connections kept between calls: the same results and the same bytes as without
// keeping, the slots held between calls and let go of, nothing stale taken for an
// answer.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "CMailslot.h"
#include "FakeViewer.h"
#include "InformationRecords.h"
#include "KPCBAPI.hpp"
#include "SlotNames.h"
#include "TestSystem.h"

using testing_support::FakeViewer;

namespace {

// Keeping on for one test, off again after it.
struct Keeping {
    Keeping() { EXPECT_EQ(KPCB_KeepConnections(1), 0); }
    ~Keeping() {
        EXPECT_EQ(KPCB_KeepConnections(0), 1);
        KPCB_SetReplyTimeout(0);
    }
};

testing_support::Bytes PinCountReply(int pins) {
    CKPRCI_Information_GetCompPinCount_RV reply;
    reply.SetPinCount(pins);
    return testing_support::ImageOf(reply);
}

bool ReplySlotNameFree(int pid) {
    CMailslot probe(0, MakeReplySlotName(pid));
    return probe.Open() == 1;
}

}  // namespace

TEST(KeptConnections, CallsGiveTheSameResultsAndHoldTheirSlotsUntilKeepingEnds) {
    FakeViewer viewer;
    const long before = testing_support::OpenSystemObjects();
    size_t messages = 0;
    auto calls = [&](bool keeping) {
        for (int i = 0; i < 20; ++i) {
            viewer.Answer(PinCountReply(i), 1);
            int count = -1;
            ASSERT_EQ(KPCB_GetPinCountFromReference(viewer.pid(), L"U1", &count), 0);
            EXPECT_EQ(count, i);
            EXPECT_EQ(KPCB_ZoomIn(viewer.pid()), 0);
            // The next answer is armed for the next frame: this one must be in first.
            ASSERT_TRUE(viewer.WaitForMessages(messages += 4));
            EXPECT_EQ(KPCB_IsRunning(viewer.pid()), 1);
            EXPECT_EQ(ReplySlotNameFree(viewer.pid()), !keeping) << "the reply slot is kept between calls";
        }
    };
    calls(false);
    {
        Keeping keeping;
        calls(true);
    }
    EXPECT_TRUE(ReplySlotNameFree(viewer.pid())) << "let go of when keeping ends";
    viewer.SettledMessageCount();  // the fake viewer done with its last answer
    EXPECT_EQ(testing_support::OpenSystemObjects(), before);
    // The same frames, whether kept or not.
    const std::vector<testing_support::Bytes> payloads = viewer.Payloads();
    ASSERT_EQ(payloads.size(), 80u);
    for (size_t i = 0; i < 40; ++i) EXPECT_EQ(payloads[i + 40], payloads[i]) << "frame " << i;
}

TEST(KeptConnections, HeldSlotsDoNotGrowWithTheCalls) {
    FakeViewer viewer;
    Keeping keeping;
    viewer.Answer(PinCountReply(1), 1);
    int count = 0;
    ASSERT_EQ(KPCB_GetPinCountFromReference(viewer.pid(), L"U1", &count), 0);
    viewer.SettledMessageCount();  // the fake viewer, in this process too, done with its answer
    const long afterFirst = testing_support::OpenSystemObjects();
    for (size_t i = 0, messages = 2; i < 200; ++i) {
        viewer.Answer(PinCountReply(static_cast<int>(i)), 1);
        ASSERT_EQ(KPCB_GetPinCountFromReference(viewer.pid(), L"U1", &count), 0);
        ASSERT_EQ(KPCB_Route_OnOff(viewer.pid(), static_cast<int>(i % 2)), 0);
        ASSERT_TRUE(viewer.WaitForMessages(messages += 4));  // in before the next answer is armed
    }
    viewer.SettledMessageCount();
    EXPECT_EQ(testing_support::OpenSystemObjects(), afterFirst);
}

TEST(KeptConnections, NothingLeftInTheKeptReplySlotIsTakenForAnAnswer) {
    FakeViewer viewer;
    Keeping keeping;
    int count = 0;
    viewer.Answer(PinCountReply(2), 1);
    ASSERT_EQ(KPCB_GetPinCountFromReference(viewer.pid(), L"U1", &count), 0);
    EXPECT_EQ(count, 2);

    // A late answer to some earlier request waits in the kept slot.
    viewer.AnswerNow(PinCountReply(99));
    viewer.Answer(PinCountReply(7), 1);
    ASSERT_EQ(KPCB_GetPinCountFromReference(viewer.pid(), L"U1", &count), 0);
    EXPECT_EQ(count, 7);

    // A request that gets no answer lets go of the slot; the next one makes it anew.
    KPCB_SetReplyTimeout(100);
    count = -1;
    EXPECT_EQ(KPCB_GetPinCountFromReference(viewer.pid(), L"U1", &count), KPCB_NO_REPLY);
    EXPECT_EQ(count, -1);
    EXPECT_TRUE(ReplySlotNameFree(viewer.pid()));
    KPCB_SetReplyTimeout(0);  // and the limit no longer applies to the kept slot
    viewer.Answer(PinCountReply(5), 1);
    ASSERT_EQ(KPCB_GetPinCountFromReference(viewer.pid(), L"U1", &count), 0);
    EXPECT_EQ(count, 5);
}

TEST(KeptConnections, TwoQueriesAtOnceStillOneGetsMinusFive) {
    FakeViewer viewer;
    Keeping keeping;
    std::atomic<int> first{1};
    std::thread slow([&] {
        int count;
        first = KPCB_GetPinCountFromPart(viewer.pid(), L"P", &count);
    });
    ASSERT_TRUE(viewer.WaitForMessages(2));
    int count = 0;
    EXPECT_EQ(KPCB_GetPinCountFromReference(viewer.pid(), L"U1", &count), KPCB_SLOT_UNAVAILABLE);
    viewer.AnswerNow(PinCountReply(2));
    slow.join();
    EXPECT_EQ(first.load(), 0);
}
