// Red marks, information queries, polygon merge, capture and export against the
// fake viewer: request bytes, out-arguments per reply, and the failure paths.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

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

// ---- information queries ----

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
}

TEST(Information, FailuresLeaveOutArgumentsAlone) {
    int count = 5;
    EXPECT_EQ(KPCB_GetPinCountFromPart(kDeadPid, L"P", &count), KPCB_NOT_RUNNING);
    EXPECT_EQ(KPCB_GetPinCountFromPart(FakeViewer::SelfPid(), L"P", &count), KPCB_SLOT_UNAVAILABLE);
    EXPECT_EQ(count, 5);
}

// ---- polygon merge ----

TEST(PolygonMerge, RunChecksComeFirstInTheirOrder) {
    const wchar_t* layers[] = {L"L1", L"L2"};
    EXPECT_EQ(KPCB_PolygonMergeRun(kDeadPid, layers, 0, L"GND", 8), KPCB_ERR_202);
    EXPECT_EQ(KPCB_PolygonMergeRun(kDeadPid, nullptr, 2, nullptr, 8), KPCB_ERR_202);
    EXPECT_EQ(KPCB_PolygonMergeRun(kDeadPid, layers, 2, nullptr, 8), KPCB_ERR_201);
    EXPECT_EQ(KPCB_PolygonMergeRun(kDeadPid, layers, 2, L"GND", 8), KPCB_NOT_RUNNING);
}

TEST(PolygonMerge, ArrayReadsReplaceWhatTheArraysHeld) {
    FakeViewer viewer;
    CKPRCI_PolygonMerge_RV reply;
    reply.SetCWPointsX(CArrayD{0, 10, 10});
    reply.SetCWPointsY(CArrayD{0, 0, 5});
    viewer.AnswerWith(reply);
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
