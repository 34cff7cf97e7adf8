// Highlight and layer-visibility commands against the fake viewer.
#include <gtest/gtest.h>

#include "FakeViewer.h"
#include "HighlightRecords.h"
#include "KPCBAPI.hpp"
#include "LayerRecords.h"
#include "ViewRecords.h"

using testing_support::Bytes;
using testing_support::FakeViewer;
using testing_support::ImageOf;

namespace {
constexpr int kDeadPid = 0x7FFFFFF0;

// Loads the record that a payload holds.
template <class Record = CKPRCI_Highlight>
Record HighlightIn(const Bytes& payload) {
    CMemFile file(1024);
    file.Write(payload.data(), static_cast<UINT>(payload.size()));
    file.SeekToBegin();
    CArchive ar(&file, CArchive::load, 4096);
    Record record;
    record.Serialize(ar);
    return record;
}

std::vector<std::string> Strings(const CStringArray& list) {
    std::vector<std::string> out;
    for (INT_PTR i = 0; i < list.GetSize(); ++i) out.push_back(list[i].str());
    return out;
}

void AnswerCode(FakeViewer& viewer, int code, int onFrame = 1) {
    CKPRCI__BaseRV reply;
    reply.SetErrorCode(code);
    viewer.AnswerWith(reply, onFrame);
}
}  // namespace

TEST(Highlight, NamedHighlightSendsTheRecordTwiceWithExactBytes) {
    FakeViewer viewer;
    AnswerCode(viewer, 0, 2);
    EXPECT_EQ(KPCB_Highlight(viewer.pid(), 1, "N1,N2", ",", 7), KPCB_OK);
    const Bytes expected{3,    0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 2,    0,    2,    'N',  '1', 2, 'N', '2',
                         0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0xFF, 0, 0, 0, 7, 0, 0, 0, 1, 0, 0, 0};
    EXPECT_EQ(viewer.Payloads(), (std::vector<Bytes>{expected, expected}));
    EXPECT_EQ(viewer.SettledMessageCount(20), 4u);
}

TEST(Highlight, NamedHighlightFunctionsFillTheirFields) {
    FakeViewer viewer;
    for (int i = 0; i < 3; ++i) AnswerCode(viewer, 0, 2);
    EXPECT_EQ(KPCB_Highlight_DependentColor(viewer.pid(), 0, "A", ",", 0x12, 0x34, 0x56, 3, 0), 0);
    EXPECT_EQ(KPCB_Highlight_DependentColor_AllLayer(viewer.pid(), 2, "B", ",", 1, 2, 3, 4, 1), 0);
    EXPECT_EQ(KPCB_Highlight_SpecificLayer(viewer.pid(), 1, "C", ",", 0, 0, 0xFF, 9, 1, 2, "TOP; L2", ";"), 0);
    const std::vector<Bytes> payloads = viewer.Payloads();
    ASSERT_EQ(payloads.size(), 6u);
    const CKPRCI_Highlight dependent = HighlightIn(payloads[0]);
    EXPECT_EQ(dependent.GetFunctionType(), 1);
    EXPECT_EQ(dependent.GetHighlightColor(), 0x00563412u);
    EXPECT_EQ(dependent.GetLayerNameType(), -1);
    EXPECT_EQ(dependent.GetContrast(), 3);
    EXPECT_EQ(dependent.IsLayerHighlightColorFromAPI(), 0);
    const CKPRCI_Highlight all = HighlightIn(payloads[2]);
    EXPECT_EQ(all.GetFunctionType(), 2);
    EXPECT_EQ(all.GetHighlightObjType(), 2);
    EXPECT_EQ(all.GetHighlightColor(), 0x00030201u);
    const CKPRCI_Highlight specific = HighlightIn(payloads[4]);
    EXPECT_EQ(specific.GetFunctionType(), 3);
    EXPECT_EQ(specific.GetLayerNameType(), 2);
    EXPECT_EQ(Strings(specific.GetSpecificLayerList()), (std::vector<std::string>{"TOP", "L2"}));
    EXPECT_EQ(specific.GetHighlightColor(), 0x00FF0000u);
}

TEST(Highlight, NamesAreTrimmedAndMissingTextsAreEmpty) {
    const struct {
        const char* text;
        const char* separators;
        std::vector<std::string> names;
    } cases[] = {
        {" U1 ,U2,  U3 ", ",", {"U1", "U2", "U3"}},
        {"U1,  ,U2", ",", {"U1", "", "U2"}},
        {nullptr, ",", {}},
        {"U1,U2", nullptr, {"U1,U2"}},
    };
    for (const auto& c : cases) {
        FakeViewer viewer;
        AnswerCode(viewer, 0, 2);
        EXPECT_EQ(KPCB_Highlight(viewer.pid(), 0, c.text, c.separators, 0), KPCB_OK);
        const std::vector<Bytes> payloads = viewer.Payloads();
        ASSERT_EQ(payloads.size(), 2u);
        EXPECT_EQ(Strings(HighlightIn(payloads[0]).GetObjectNameList()), c.names) << (c.text ? c.text : "(null)");
    }
}

TEST(Highlight, NamedHighlightStatuses) {
    const struct {
        int reply;
        int expected;
    } cases[] = {{0, 0}, {-201, -201}, {-200, 0}, {-202, 0}, {3, 0}};
    for (const auto& c : cases) {
        FakeViewer viewer;
        AnswerCode(viewer, c.reply, 2);
        EXPECT_EQ(KPCB_Highlight(viewer.pid(), 0, "N", ",", 0), c.expected) << c.reply;
    }
}

TEST(Highlight, ObjectKindIsCheckedAfterLiveness) {
    FakeViewer viewer;
    EXPECT_EQ(KPCB_Highlight(viewer.pid(), 3, "N", ",", 0), KPCB_ERR_200);
    EXPECT_EQ(KPCB_Highlight(viewer.pid(), -1, "N", ",", 0), KPCB_ERR_200);
    EXPECT_EQ(KPCB_Highlight_SpecificLayer(viewer.pid(), 7, "N", ",", 0, 0, 0, 0, 0, 0, "L", ","), KPCB_ERR_200);
    EXPECT_EQ(KPCB_Highlight(kDeadPid, 3, "N", ",", 0), KPCB_NOT_RUNNING);
    EXPECT_EQ(viewer.SettledMessageCount(), 0u);
}

TEST(Highlight, OverloadAndNetSegmentSkipTheLivenessTest) {
    CString ref("U1");
    CStringArray pins{"1"};
    EXPECT_EQ(KPCB_Highlight_RefPin(kDeadPid, ref, pins, 0xFF, 0, 0), KPCB_SLOT_UNAVAILABLE);
    EXPECT_EQ(KPCB_Highlight_ZoomNetSegment(kDeadPid, CString("GND"), CArrayN{1, 2}, 0xFF), KPCB_SLOT_UNAVAILABLE);
    EXPECT_EQ(KPCB_Highlight_RefPin(kDeadPid, "U1", "1", ",", 0, 0, 0, 0), KPCB_NOT_RUNNING);
}

TEST(Highlight, SectionIsSentTwiceAndNetSegmentOnce) {
    for (const int code : {0, -200, -201, 5}) {
        FakeViewer viewer;
        AnswerCode(viewer, code, 2);
        AnswerCode(viewer, code);
        const int expected = code == 5 ? 0 : code;
        EXPECT_EQ(KPCB_ZoomHighlightForSection_NetRefPin(viewer.pid(), "N1", "U1", "1", "U2", "3"), expected);
        EXPECT_EQ(KPCB_Highlight_ZoomNetSegment(viewer.pid(), CString("N1"), CArrayN{4, 5}, 0x00123456), expected);
        CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin section;
        section.SetNetName("N1");
        section.SetRef1Name("U1");
        section.SetPin1Name("1");
        section.SetRef2Name("U2");
        section.SetPin2Name("3");
        CKPRCI_Highlight_ZoomNetSegment segment;
        segment.SetNetName("N1");
        segment.SetSegmentIndex(CArrayN{4, 5});
        segment.SetColor(0x00123456);
        EXPECT_EQ(viewer.Payloads(), (std::vector<Bytes>{ImageOf(section), ImageOf(section), ImageOf(segment)}));
    }
}

TEST(Highlight, ColourAndClearingAreOneWay) {
    FakeViewer viewer;
    EXPECT_EQ(KPCB_Highlight_SetCurrentColor(viewer.pid(), 0x12, 0x34, 0x56), 0);
    EXPECT_EQ(KPCB_Highlight_Clear(viewer.pid()), 0);
    EXPECT_EQ(KPCB_Highlight_Clear_Basic(viewer.pid()), 0);
    EXPECT_EQ(KPCB_Highlight_Clear_Explorer(viewer.pid()), 0);
    EXPECT_EQ(KPCB_Highlight_Clear_Picking(viewer.pid()), 0);
    ASSERT_TRUE(viewer.WaitForMessages(10));
    const Bytes clearDefault{8, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0};
    const Bytes clearExplorer{8, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};
    EXPECT_EQ(viewer.Payloads(), (std::vector<Bytes>{{4, 0, 0, 0, 0x12, 0x34, 0x56, 0}, clearDefault, clearDefault,
                                                     clearExplorer, clearDefault}));
    EXPECT_EQ(KPCB_Highlight_SetCurrentColor(kDeadPid, 0, 0, 0), KPCB_NOT_RUNNING);
    EXPECT_EQ(KPCB_Highlight_Clear_Picking(kDeadPid), KPCB_NOT_RUNNING);
}

TEST(Layers, EachFunctionSendsItsControlTypeAndVisibleValue) {
    FakeViewer viewer;
    CStringArray names{"L1"};
    EXPECT_EQ(KPCB_Visible_Layers(viewer.pid(), "TOP, BOTTOM", ",", 7), 0);
    EXPECT_EQ(KPCB_Visible_Layers_Only(viewer.pid(), nullptr, ","), 0);
    EXPECT_EQ(KPCB_Visible_Layers(viewer.pid(), names, 0, 5), 0);
    EXPECT_EQ(KPCB_Visible_ECAD_Layers(viewer.pid(), "ART01", ",", 0), 0);
    EXPECT_EQ(KPCB_Visible_ECAD_Layers_Only(viewer.pid(), "ART01;ART02", ";"), 0);
    EXPECT_EQ(KPCB_Backup_Current_Layers(viewer.pid()), 0);
    EXPECT_EQ(KPCB_Restore_Current_Layers(viewer.pid()), 0);
    ASSERT_TRUE(viewer.WaitForMessages(14));
    const std::vector<Bytes> payloads = viewer.Payloads();
    ASSERT_EQ(payloads.size(), 7u);
    // type 2, ["TOP","BOTTOM"], visible 7 written out by hand
    EXPECT_EQ(payloads[0], (Bytes{13, 0, 0, 0, 2, 0, 0, 0, 2, 0, 3, 'T', 'O', 'P', 6, 'B', 'O', 'T', 'T', 'O', 'M',
                                  7, 0, 0, 0}));
    EXPECT_EQ(payloads[1], (Bytes{13, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0}));
    EXPECT_EQ(payloads[2], (Bytes{13, 0, 0, 0, 1, 0, 0, 0, 1, 0, 2, 'L', '1', 0, 0, 0, 0}));
    EXPECT_EQ(payloads[3], (Bytes{13, 0, 0, 0, 4, 0, 0, 0, 1, 0, 5, 'A', 'R', 'T', '0', '1', 0, 0, 0, 0}));
    EXPECT_EQ(payloads[4], (Bytes{13, 0, 0, 0, 3, 0, 0, 0, 2, 0, 5, 'A', 'R', 'T', '0', '1', 5, 'A', 'R', 'T', '0',
                                  '2', 0, 0, 0, 0}));
    EXPECT_EQ(payloads[5], (Bytes{8, 0, 0, 0, 10, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(payloads[6], (Bytes{8, 0, 0, 0, 11, 0, 0, 0, 0, 0, 0, 0}));
}

