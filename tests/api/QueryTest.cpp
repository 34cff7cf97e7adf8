// Red marks, information queries, polygon merge, capture and export against the
// fake viewer: request bytes, out-arguments per reply, and the failure paths.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "CMailslot.h"
#include "SlotNames.h"
#include "CUniversalLogger.h"
#include "CaptureRecords.h"
#include "FakeViewer.h"
#include "InformationRecords.h"
#include "KPCBAPI.hpp"
#include "LiveViewer.h"
#include "PolygonMergeRecords.h"
#include "RedMarkRecords.h"
#include "TestPaths.h"
#include "TestSystem.h"

using testing_support::Bytes;
using testing_support::FakeViewer;
using testing_support::ImageOf;
using testing_support::OwnedString;

namespace {
constexpr int kDeadPid = 0x7FFFFFF0;

void AnswerMalformed(FakeViewer& viewer) { viewer.AnswerRaw({testing_support::LengthMessage(3), Bytes{1, 2, 3}}); }
}  // namespace

// ---- red marks ----

TEST(RedMarks, SaveAndSetStatusAreOneWay) {
    FakeViewer viewer;
    EXPECT_EQ(KPCB_RedMarkSave(viewer.pid(), L"/tmp/marks.txt", 1), 0);
    EXPECT_EQ(KPCB_SetStatusForCallingRedMark(viewer.pid(), 4), 0);
    ASSERT_TRUE(viewer.WaitForMessages(4));
    const Bytes save{21, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 14, '/', 't', 'm', 'p', '/', 'm', 'a', 'r', 'k', 's', '.', 't', 'x', 't', 0};
    const Bytes status{24, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0};
    EXPECT_EQ(viewer.Payloads(), (std::vector<Bytes>{save, status}));
    EXPECT_EQ(KPCB_RedMarkSave(kDeadPid, L"x", 0), KPCB_NOT_RUNNING);
}

TEST(RedMarks, LoadChecksTheFileFirstAndJoinsTitles) {
    testing_support::TempDir dir;
    const std::string file = dir / "marks.txt";
    std::ofstream(file) << "x";
    const std::wstring wideFile = testing_support::Wide(file);
    FakeViewer viewer;
    EXPECT_EQ(KPCB_RedMarkLoad(viewer.pid(), (wideFile + L".missing").c_str(), nullptr, L";", 1), KPCB_ERR_200);
    EXPECT_EQ(viewer.SettledMessageCount(), 0u) << "nothing sent for a missing file";

    CKPRCI_RedMark_Load_RV reply;
    reply.SetErrorCode(-200);  // not looked at
    reply.SetTitleNames(CStringArray{"Short", "Open pad", "Via"});
    viewer.AnswerWith(reply);
    OwnedString titles;
    EXPECT_EQ(KPCB_RedMarkLoad(viewer.pid(), wideFile.c_str(), &titles.text, L";", 0), 0);
    EXPECT_EQ(titles.str(), L"Short;Open pad;Via");
    CKPRCI_RedMark_SaveLoad expected;
    expected.SetReadState(1);
    expected.SetRedMarkFilePath(CString(file));
    expected.SetTitleName_Delimiter(";");
    EXPECT_EQ(viewer.Payloads(), std::vector<Bytes>{ImageOf(expected)});
}

TEST(RedMarks, CallUpDeliversIntoNewOrGivenBuffer) {
    FakeViewer viewer;
    CKPRCI_RedMark_SelectedItem_RV reply;
    reply.SetContents("  check R12  ");
    viewer.AnswerWith(reply);
    viewer.AnswerWith(reply);
    OwnedString fresh;
    EXPECT_EQ(KPCB_CallSelectedItemFromRedMark(viewer.pid(), L"Short", &fresh.text), 0);
    EXPECT_EQ(fresh.str(), L"  check R12  ") << "not trimmed";
    wchar_t buffer[64] = L"old text that is longer than the answer";
    wchar_t* inPlace = buffer;
    EXPECT_EQ(KPCB_CallSelectedItemFromRedMark(viewer.pid(), L"Short", &inPlace), 0);
    EXPECT_EQ(inPlace, buffer) << "a given buffer is written in place";
    EXPECT_EQ(std::wstring(buffer), L"  check R12  ");
}

TEST(RedMarks, UnknownTitleIsMinus200AndAllocatesNothing) {
    FakeViewer viewer;
    CKPRCI_RedMark_SelectedItem_RV unknown;
    unknown.SetErrorCode(-200);
    unknown.SetContents("ignored");
    viewer.AnswerWith(unknown);
    CKPRCI__BaseRV removed, notThere;
    notThere.SetErrorCode(-200);
    viewer.AnswerWith(removed);
    viewer.AnswerWith(notThere);
    wchar_t* contents = nullptr;
    EXPECT_EQ(KPCB_CallSelectedItemFromRedMark(viewer.pid(), L"nope", &contents), KPCB_ERR_200);
    EXPECT_EQ(contents, nullptr);
    EXPECT_EQ(KPCB_RemoveItemFromRedMarkList(viewer.pid(), L"Short"), 0);
    EXPECT_EQ(KPCB_RemoveItemFromRedMarkList(viewer.pid(), L"Short"), KPCB_ERR_200);
}

TEST(RedMarks, GetStatusSendsTwoIdenticalRequests) {
    FakeViewer viewer;
    CKPRCI_RedMark_SetStatusForCalling_RV reply;
    reply.SetErrorCode(-201);  // not looked at
    reply.SetCallStatus(3);
    viewer.AnswerWith(reply, 2);
    int status = -1;
    EXPECT_EQ(KPCB_GetStatusForCallingRedMark(viewer.pid(), &status), 0);
    EXPECT_EQ(status, 3);
    const Bytes request{24, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(viewer.Payloads(), (std::vector<Bytes>{request, request}));
}

TEST(RedMarks, MalformedReplyWritesNothing) {
    FakeViewer viewer;
    AnswerMalformed(viewer);
    int status = 42;
    EXPECT_EQ(KPCB_GetStatusForCallingRedMark(viewer.pid(), &status), KPCB_NO_REPLY);
    EXPECT_EQ(status, 42);
}

// ---- information queries ----

TEST(Information, RequestsCarryTheirFunctionTypes) {
    FakeViewer viewer;
    CKPRCI_Information_GetCompPinCount_RV count;
    count.SetPinCount(14);
    CKPRCI_Information_GetPinPitch_RV pitch;
    pitch.SetPinPitch(1.27);
    viewer.AnswerWith(count);
    viewer.AnswerWith(count);
    viewer.AnswerWith(pitch);
    viewer.AnswerWith(pitch);
    int pins = 0;
    double value = 0;
    EXPECT_EQ(KPCB_GetPinCountFromPart(viewer.pid(), L"SOIC14", &pins), 0);
    EXPECT_EQ(pins, 14);
    EXPECT_EQ(KPCB_GetPinCountFromReference(viewer.pid(), L"U1", &pins), 0);
    EXPECT_EQ(KPCB_GetPinPitch(viewer.pid(), L"U1", 2, &value), 0);
    EXPECT_DOUBLE_EQ(value, 1.27);
    EXPECT_EQ(KPCB_GetPinPitchFrom2PinComponent(viewer.pid(), L"R1", 0, &value), 0);
    const std::vector<Bytes> payloads = viewer.Payloads();
    ASSERT_EQ(payloads.size(), 4u);
    EXPECT_EQ(payloads[0], (Bytes{18, 0, 0, 0, 1, 0, 0, 0, 6, 'S', 'O', 'I', 'C', '1', '4'}));
    EXPECT_EQ(payloads[1], (Bytes{18, 0, 0, 0, 0, 0, 0, 0, 2, 'U', '1'}));
    EXPECT_EQ(payloads[2], (Bytes{17, 0, 0, 0, 0, 0, 0, 0, 2, 'U', '1', 2, 0, 0, 0}));
    EXPECT_EQ(payloads[3], (Bytes{17, 0, 0, 0, 1, 0, 0, 0, 2, 'R', '1', 0, 0, 0, 0}));
}

TEST(Information, ValuesAreCopiedWhateverTheErrorCode) {
    FakeViewer viewer;
    CKPRCI_Information_GetReferenceCountForPlace_RV counts;
    counts.SetErrorCode(-200);
    counts.SetTopCount(2);
    counts.SetBtmCount(1);
    counts.SetElseCount(4);
    viewer.AnswerWith(counts);
    CKPRCI_Information_GetReferencePlaceStatus_RV place;
    place.SetErrorCode(-201);
    place.SetStatusOfPlace(2);
    viewer.AnswerWith(place);
    int top = -1, bottom = -1, other = -1, status = -1;
    EXPECT_EQ(KPCB_GetReferenceCountForPlace(viewer.pid(), L"U1 , C3,R7 ", L",", &top, &bottom, &other, 1), 0);
    EXPECT_EQ((std::vector<int>{top, bottom, other}), (std::vector<int>{2, 1, 4}));
    EXPECT_EQ(KPCB_GetReferencePlaceStatus(viewer.pid(), L"U1", &status, 0), 0);
    EXPECT_EQ(status, 2);
    CKPRCI_Information_GetReferenceCountForPlace expected;
    expected.SetRefNames(CStringArray{"U1", "C3", "R7"});
    expected.SetHighlight(1);
    EXPECT_EQ(viewer.Payloads().at(0), ImageOf(expected));
}

TEST(Information, NullListSendsAnEmptyListAndStillAnswers) {
    FakeViewer viewer;
    CKPRCI_Information_GetReferenceCountForPlaceOfPart_RV counts;
    counts.SetTopCount(9);
    viewer.AnswerWith(counts);
    int top = 0, bottom = 0, other = 0;
    EXPECT_EQ(KPCB_GetReferenceCountForPlaceOfPart(viewer.pid(), nullptr, L",", &top, &bottom, &other, 0), 0);
    EXPECT_EQ(top, 9);
    EXPECT_EQ(viewer.Payloads().at(0), (Bytes{16, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(Information, PinListOfNet) {
    FakeViewer viewer;
    CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV reply;
    reply.SetNetName("GND   ");
    reply.SetRefPinNames(CStringArray{"U1-7", " C1-2", "J1-1 "});
    viewer.AnswerWith(reply);
    OwnedString net, pins;
    EXPECT_EQ(KPCB_GetPinListInfoOfNet_RefPin(viewer.pid(), L"U1", L"7", &net.text, &pins.text, L","), 0);
    EXPECT_EQ(net.str(), L"GND") << "trimmed on the right";
    EXPECT_EQ(pins.str(), L"U1-7, C1-2,J1-1 ") << "joined, not trimmed";
    EXPECT_EQ(viewer.Payloads().at(0), (Bytes{19, 0, 0, 0, 2, 'U', '1', 1, '7'}));

    CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV missing;
    missing.SetErrorCode(-200);
    viewer.AnswerWith(missing);
    wchar_t* untouched = nullptr;
    EXPECT_EQ(KPCB_GetPinListInfoOfNet_RefPin(viewer.pid(), L"U1", L"99", &untouched, &untouched, L","), KPCB_ERR_200);
    EXPECT_EQ(untouched, nullptr);
}

TEST(Information, FailuresLeaveOutArgumentsAlone) {
    int count = 5;
    double pitch = 2.5;
    EXPECT_EQ(KPCB_GetPinCountFromPart(kDeadPid, L"P", &count), KPCB_NOT_RUNNING);
    EXPECT_EQ(KPCB_GetPinCountFromPart(FakeViewer::SelfPid(), L"P", &count), KPCB_SLOT_UNAVAILABLE);
    FakeViewer viewer;
    AnswerMalformed(viewer);
    EXPECT_EQ(KPCB_GetPinPitch(viewer.pid(), L"U1", 0, &pitch), KPCB_NO_REPLY);
    EXPECT_EQ(count, 5);
    EXPECT_DOUBLE_EQ(pitch, 2.5);
}

TEST(Information, ConcurrentQueryCollidesOnTheReplySlot) {
    FakeViewer viewer;
    CMailslot held(0, MakeReplySlotName(viewer.pid()));
    ASSERT_EQ(held.Open(), 1);
    int count = 0;
    EXPECT_EQ(KPCB_GetPinCountFromPart(viewer.pid(), L"P", &count), KPCB_SLOT_UNAVAILABLE);
}

// ---- polygon merge ----

TEST(PolygonMerge, RunChecksComeFirstInTheirOrder) {
    const wchar_t* layers[] = {L"L1", L"L2"};
    EXPECT_EQ(KPCB_PolygonMergeRun(kDeadPid, layers, 0, L"GND", 8), KPCB_ERR_202);
    EXPECT_EQ(KPCB_PolygonMergeRun(kDeadPid, nullptr, 2, nullptr, 8), KPCB_ERR_202);
    EXPECT_EQ(KPCB_PolygonMergeRun(kDeadPid, layers, 2, nullptr, 8), KPCB_ERR_201);
    EXPECT_EQ(KPCB_PolygonMergeRun(kDeadPid, layers, 2, L"GND", 8), KPCB_NOT_RUNNING);
}

TEST(PolygonMerge, EveryModeSendsItsIndexes) {
    FakeViewer viewer;
    CKPRCI_PolygonMerge_RV reply;
    for (int i = 0; i < 10; ++i) viewer.AnswerWith(reply);
    const wchar_t* layers[] = {L"TOP", L"L2"};
    double x, y;
    CArrayD xs, ys;
    EXPECT_EQ(KPCB_PolygonMergeCreate(viewer.pid()), 0);
    EXPECT_EQ(KPCB_PolygonMergeRun(viewer.pid(), layers, 2, L"GND", 16), 0);
    EXPECT_EQ(KPCB_GetCWPolygonCount(viewer.pid()), 0);
    EXPECT_EQ(KPCB_GetCCWPolygonCount(viewer.pid(), 1), 0);
    EXPECT_EQ(KPCB_GetCWPolygonPointCount(viewer.pid(), 2), 0);
    EXPECT_EQ(KPCB_GetCCWPolygonPointCount(viewer.pid(), 3, 4), 0);
    EXPECT_EQ(KPCB_GetCWPolygonPointData(viewer.pid(), 5, 6, &x, &y), 0);
    EXPECT_EQ(KPCB_GetCCWPolygonPointData(viewer.pid(), 7, 8, 9, &x, &y), 0);
    EXPECT_EQ(KPCB_GetCWPolygonPointDataArray(viewer.pid(), 10, &xs, &ys), 0);
    EXPECT_EQ(KPCB_GetCCWPolygonPointDataArray(viewer.pid(), 11, 12, &xs, &ys), 0);
    EXPECT_EQ(KPCB_PolygonMergeDestroy(viewer.pid()), 0);
    ASSERT_TRUE(viewer.WaitForMessages(22));
    const std::vector<Bytes> payloads = viewer.Payloads();
    ASSERT_EQ(payloads.size(), 11u);
    // mode, layer list, net, division, cw, ccw, point: the run written out by hand
    EXPECT_EQ(payloads[1], (Bytes{28, 0, 0, 0, 2, 0, 0, 0, 2, 0, 3, 'T', 'O', 'P', 2, 'L', '2', 3, 'G', 'N', 'D', 0, 0, 0,
                                  0, 0, 0, 0x30, 0x40, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    const struct {
        int mode, cw, ccw, point;
    } expected[] = {{1, 0, 0, 0}, {2, 0, 0, 0}, {3, 0, 0, 0}, {4, 1, 0, 0}, {5, 2, 0, 0}, {6, 3, 4, 0},
                    {7, 5, 0, 6}, {8, 7, 8, 9}, {9, 10, 0, 0}, {10, 11, 12, 0}, {11, 0, 0, 0}};
    for (size_t i = 0; i < 11; ++i) {
        CKPRCI_PolygonMerge request(expected[i].mode);
        if (i == 1) {
            request.SetRun(CStringArray{"TOP", "L2"}, "GND", 16);
        }
        request.SetCWIndex(expected[i].cw);
        request.SetCCWIndex(expected[i].ccw);
        request.SetPointIndex(expected[i].point);
        EXPECT_EQ(payloads[i], ImageOf(request)) << "mode " << expected[i].mode;
    }
}

TEST(PolygonMerge, ReadsIgnoreTheErrorCodeAndReplaceArrays) {
    FakeViewer viewer;
    CKPRCI_PolygonMerge_RV reply;
    reply.SetErrorCode(-200);
    reply.SetCWPolygonCount(3);
    reply.SetPointX(1.5);
    reply.SetPointY(-2.5);
    reply.SetCWPointsX(CArrayD{0, 10, 10});
    reply.SetCWPointsY(CArrayD{0, 0, 5});
    for (int i = 0; i < 3; ++i) viewer.AnswerWith(reply);
    EXPECT_EQ(KPCB_GetCWPolygonCount(viewer.pid()), 3);
    double x = 0, y = 0;
    EXPECT_EQ(KPCB_GetCWPolygonPointData(viewer.pid(), 0, 0, &x, &y), 0);
    EXPECT_EQ(std::make_pair(x, y), std::make_pair(1.5, -2.5));
    CArrayD* xs = KPCB_ArrayD_Create();
    CArrayD* ys = KPCB_ArrayD_Create();
    xs->Add(99);
    EXPECT_EQ(KPCB_GetCWPolygonPointDataArray(viewer.pid(), 0, xs, ys), 0);
    ASSERT_EQ(KPCB_ArrayD_GetSize(xs), 3);
    ASSERT_EQ(KPCB_ArrayD_GetSize(ys), 3);
    double values[3];
    EXPECT_EQ(KPCB_ArrayD_GetData(ys, values, 3), 3);
    EXPECT_EQ((std::vector<double>(values, values + 3)), (std::vector<double>{0, 0, 5}));
    KPCB_ArrayD_Free(xs);
    KPCB_ArrayD_Free(ys);
}

TEST(PolygonMerge, RunMapsTheViewersCodesAndLogs) {
    testing_support::TempDir dir;
    testing_support::SetEnv("KPCB_DATA_DIR", dir.path());
    GetUniversalLogger().Init(CString(dir / "Log/KAPI.log"), 1);
    FakeViewer viewer;
    const wchar_t* layers[] = {L"TOP", L"BOTTOM"};
    for (const int code : {-202, -201, -200, 0}) {
        CKPRCI_PolygonMerge_RV reply;
        reply.SetErrorCode(code);
        viewer.AnswerWith(reply);
        EXPECT_EQ(KPCB_PolygonMergeRun(viewer.pid(), layers, 2, L"VCC", 0.5), code == -200 ? 0 : code);
    }
    std::ifstream log(dir / "Log/KAPI.log");
    std::stringstream text;
    text << log.rdbuf();
    for (const char* line : {"Net : VCC     \n", "Layer0 : TOP\n", "Layer1 : BOTTOM\n", "Division : 0.500000\n"})
        EXPECT_NE(text.str().find(line), std::string::npos) << line;
    testing_support::UnsetEnv("KPCB_DATA_DIR");
}

TEST(PolygonMerge, TraceLinesGoToTheDebuggerOutput) {
    testing_support::SetEnv("KPCB_DEBUG_OUTPUT", "1");
    const wchar_t* layers[] = {L"TOP", L"L3"};
    testing::internal::CaptureStderr();
    KPCB_PolygonMergeRun(kDeadPid, layers, 2, L"GND", 1);
    KPCB_PolygonMergeRun(kDeadPid, layers, 0, L"GND", 1);
    EXPECT_EQ(KPCB_PolygonMergeDestroy(kDeadPid), KPCB_NOT_RUNNING);
    const std::string trace = testing::internal::GetCapturedStderr();
    testing_support::UnsetEnv("KPCB_DEBUG_OUTPUT");
    EXPECT_EQ(trace,
              "---------- saLayerNameList Convert Start -----------------\nTOP\nL3\n"
              "---------- saLayerNameList Convert End -----------------\n"
              "---------- saLayerNameList Convert Start -----------------\n"
              "---------- saLayerNameList Convert End -----------------\n"
              "Call KPCB_PolygonMergeDestroy\n");
}

// ---- capture, export, explorer ----

TEST(Capture, BitmapIsOneWayAndExportWaitsWithoutLiveness) {
    FakeViewer viewer;
    CKPRCI__BaseRV anything;
    anything.SetErrorCode(-201);
    viewer.AnswerWith(anything, 2);  // after the export's own frame, not the capture's
    EXPECT_EQ(KPCB_ExportBitmap_CurrentImage(viewer.pid(), ""), 0);
    EXPECT_EQ(KPCB_ExportPDBAscii(viewer.pid(), "/out/board.pdbba"), 0);
    CKPRCI_Capture_ExportBitmap bitmap;
    CKPRCI_Export_PDBBAscii text;
    text.SetPdbbaFilePath("/out/board.pdbba");
    EXPECT_EQ(viewer.Payloads(), (std::vector<Bytes>{ImageOf(bitmap), ImageOf(text)}));
    EXPECT_EQ(viewer.Payloads()[0], (Bytes{25, 0, 0, 0, 0}));
    EXPECT_EQ(KPCB_ExportPDBAscii(kDeadPid, "x"), KPCB_SLOT_UNAVAILABLE);
    EXPECT_EQ(KPCB_ExportBitmap_CurrentImage(kDeadPid, "x"), KPCB_NOT_RUNNING);
}

TEST(Capture, ExplorerChecksThenWaitsForItsAcknowledgement) {
    testing_support::TempDir dir;
    const std::string list = dir / "objects.txt";
    std::ofstream(list) << "U1\n";
    FakeViewer viewer;
    EXPECT_EQ(KPCB_Explorer(kDeadPid, 3, CString(list)), KPCB_NOT_RUNNING);
    EXPECT_EQ(KPCB_Explorer(viewer.pid(), 3, CString(list + ".missing")), KPCB_ERR_200);
    EXPECT_EQ(KPCB_Explorer(viewer.pid(), -1, CString(list)), KPCB_ERR_200);
    EXPECT_EQ(KPCB_Explorer(viewer.pid(), 1, CString(list + ".missing")), KPCB_ERR_201);
    EXPECT_EQ(viewer.SettledMessageCount(), 0u);

    viewer.AnswerRaw({Bytes{7, 0, 0, 0}}, 1, FakeViewer::Channel::ReturnSlot);
    EXPECT_EQ(KPCB_Explorer(viewer.pid(), 2, CString(list)), 0);
    CKPRCI_Explorer expected;
    expected.SetSelectionTypeA(2);
    expected.SetObjectListFilePath(CString(list));
    EXPECT_EQ(viewer.Payloads(), std::vector<Bytes>{ImageOf(expected)});
}
