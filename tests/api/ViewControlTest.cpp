// View control against the in-process fake viewer: exact bytes, message counts and
// the status codes of each path.
#include <gtest/gtest.h>

#include "FakeViewer.h"
#include "KPCBAPI.hpp"
#include "ViewRecords.h"

using testing_support::Bytes;
using testing_support::FakeViewer;

namespace {

// A pid that is surely not running: beyond the kernel's largest pid.
constexpr int kDeadPid = 0x7FFFFFF0;

// One frame: its length message, then its payload.
std::vector<Bytes> Frame(const Bytes& payload) {
    return {testing_support::LengthMessage(static_cast<uint32_t>(payload.size())), payload};
}

struct Case {
    const char* name;
    int (*send)(int pid);
    Bytes payload;
};

int Zoom(int pid) {
    const double x1 = 1.5, y1 = -2, x2 = 3, y2 = 4;
    return KPCB_ZoomArea(pid, &x1, &y1, &x2, &y2);
}
int Rotate(int pid) {
    const double angle = 90;
    return KPCB_RotateBoard(pid, &angle);
}

const Case kOneWayCases[] = {
    {"ZoomIn", KPCB_ZoomIn, {8, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0}},
    {"ZoomOut", KPCB_ZoomOut, {8, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0}},
    {"ZoomFitSize", KPCB_ZoomFitSize, {8, 0, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0}},
    {"ViewLayer_Top", KPCB_ViewLayer_Top, {8, 0, 0, 0, 5, 0, 0, 0, 0, 0, 0, 0}},
    {"ViewLayer_Btm", KPCB_ViewLayer_Btm, {8, 0, 0, 0, 6, 0, 0, 0, 0, 0, 0, 0}},
    {"ViewLayer_All", KPCB_ViewLayer_All, {8, 0, 0, 0, 7, 0, 0, 0, 0, 0, 0, 0}},
    {"ViewMirror", KPCB_ViewMirror, {8, 0, 0, 0, 8, 0, 0, 0, 0, 0, 0, 0}},
    {"ViewMirror_Clear", KPCB_ViewMirror_Clear, {8, 0, 0, 0, 9, 0, 0, 0, 0, 0, 0, 0}},
    {"ZoomArea", Zoom,
     {10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xF8, 0x3F, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x08, 0x40,
      0, 0, 0, 0, 0, 0, 0x10, 0x40}},
    {"RotateBoard", Rotate, {12, 0, 0, 0, 0, 0, 0, 0, 0, 0x80, 0x56, 0x40}},
    {"SetWindowPosition", [](int pid) { return KPCB_SetWindowPosition(pid, 10, 20, 640, 480); },
     {11, 0, 0, 0, 10, 0, 0, 0, 20, 0, 0, 0, 0x80, 2, 0, 0, 0xE0, 1, 0, 0}},
    {"Component_OnOff", [](int pid) { return KPCB_Component_OnOff(pid, 5); }, {9, 0, 0, 0, 1, 0, 0, 0, 5, 0, 0, 0}},
    {"Route_OnOff", [](int pid) { return KPCB_Route_OnOff(pid, 0); }, {9, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0}},
    {"PickingTool_OnOff", [](int pid) { return KPCB_PickingTool_OnOff(pid, 1); }, {20, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0}},
    {"RedMark_OnOff", [](int pid) { return KPCB_RedMark_OnOff(pid, -1); },
     {20, 0, 0, 0, 2, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}},
    {"MiniMap_OnOff", [](int pid) { return KPCB_MiniMap_OnOff(pid, 7); }, {20, 0, 0, 0, 3, 0, 0, 0, 7, 0, 0, 0}},
};

}  // namespace

TEST(ViewControl, EachOneWayCommandSendsOneFrameOfExactBytes) {
    for (const Case& c : kOneWayCases) {
        FakeViewer viewer;
        EXPECT_EQ(c.send(viewer.pid()), KPCB_OK) << c.name;
        ASSERT_TRUE(viewer.WaitForMessages(2)) << c.name;
        EXPECT_EQ(viewer.SettledMessageCount(20), 2u) << c.name;
        EXPECT_EQ(viewer.Messages(), Frame(c.payload)) << c.name;
    }
}

TEST(ViewControl, DeadInstanceIsRefusedBeforeAnythingIsRead) {
    FakeViewer viewer;  // running, but addressed under another pid
    for (const Case& c : kOneWayCases) EXPECT_EQ(c.send(kDeadPid), KPCB_NOT_RUNNING) << c.name;
    EXPECT_EQ(KPCB_ZoomArea(kDeadPid, nullptr, nullptr, nullptr, nullptr), KPCB_NOT_RUNNING);
    EXPECT_EQ(KPCB_RotateBoard(kDeadPid, nullptr), KPCB_NOT_RUNNING);
    EXPECT_EQ(KPCB_SetMainTitle(kDeadPid, "x"), KPCB_NOT_RUNNING);
    EXPECT_EQ(KPCB_SetZoomArea(kDeadPid, 1, 2, 3, 4), KPCB_NOT_RUNNING);
    EXPECT_EQ(viewer.SettledMessageCount(), 0u);
}

TEST(ViewControl, RunningProcessWithoutCommandSlotGivesMinusFive) {
    const int self = testing_support::FakeViewer::SelfPid();
    for (const Case& c : kOneWayCases) EXPECT_EQ(c.send(self), KPCB_SLOT_UNAVAILABLE) << c.name;
    EXPECT_EQ(KPCB_SetMainTitle(self, "title"), KPCB_SLOT_UNAVAILABLE);
}

TEST(ViewControl, NullPointersOfALiveInstanceAreRefusedWithoutSending) {
    FakeViewer viewer;
    const double v = 1;
    EXPECT_EQ(KPCB_ZoomArea(viewer.pid(), &v, nullptr, &v, &v), KPCB_NO_REPLY);
    EXPECT_EQ(KPCB_RotateBoard(viewer.pid(), nullptr), KPCB_NO_REPLY);
    EXPECT_EQ(viewer.SettledMessageCount(), 0u);
}

TEST(ViewControl, ZoomAreaAndItsOverloadSendIdenticalBytesInCallerOrder) {
    FakeViewer viewer;
    const double x1 = 30, y1 = 40, x2 = -10, y2 = 5.25;  // reversed corners stay reversed
    EXPECT_EQ(KPCB_ZoomArea(viewer.pid(), &x1, &y1, &x2, &y2), KPCB_OK);
    EXPECT_EQ(KPCB_SetZoomArea(viewer.pid(), x1, y1, x2, y2), KPCB_OK);
    ASSERT_TRUE(viewer.WaitForMessages(4));
    const std::vector<Bytes> payloads = viewer.Payloads();
    ASSERT_EQ(payloads.size(), 2u);
    EXPECT_EQ(payloads[0], payloads[1]);
    CKPRCI_ZoomArea expected;
    expected.SetData(30, 40, -10, 5.25);
    EXPECT_EQ(payloads[0], testing_support::ImageOf(expected));
}

TEST(ViewControl, SetMainTitleWaitsAndPassesOnlyMinus201) {
    const Bytes title{27, 0, 0, 0, 7, 'B', 'o', 'a', 'r', 'd', ' ', 'A'}, empty{27, 0, 0, 0, 0};
    const struct {
        const char* title;
        int replyCode;
        int expected;
        const Bytes& sent;
    } cases[] = {{"Board A", 0, KPCB_OK, title}, {"Board A", -201, KPCB_ERR_201, title},
                 {"Board A", -200, KPCB_OK, title}, {"Board A", 5, KPCB_OK, title},
                 {"", 0, KPCB_OK, empty},           {nullptr, 0, KPCB_OK, empty}};
    for (const auto& c : cases) {
        FakeViewer viewer;
        CKPRCI__BaseRV reply;
        reply.SetErrorCode(c.replyCode);
        viewer.AnswerWith(reply);
        EXPECT_EQ(KPCB_SetMainTitle(viewer.pid(), c.title), c.expected) << c.replyCode;
        EXPECT_EQ(viewer.Messages(), Frame(c.sent));
    }
}
