// The exact bytes of record images, written out by hand from the wire format: the
// viewer reads these bytes, so a change of field order, width or encoding shows here.
#include <gtest/gtest.h>

#include "CaptureRecords.h"
#include "HighlightRecords.h"
#include "InformationRecords.h"
#include "LayerRecords.h"
#include "PolygonMergeRecords.h"
#include "RecordTestSupport.h"
#include "RedMarkRecords.h"

namespace {

CStringArray List(std::initializer_list<CString> items) { return CStringArray(items); }

TEST(HighlightBytes, HighlightWithNamesLayersAndColour) {
    CKPRCI_Highlight r;
    r.SetFunctionType(3);
    r.SetHighlightObjType(2);
    r.SetObjectNameList(List({"U1", "R10"}));
    r.SetLayerNameType(-1);
    r.SetSpecificLayerList(List({"TOP"}));
    r.SetHighlightColor(0x12 | (0x34 << 8) | (0x56 << 16));
    r.SetContrast(70);
    r.SetLayerHighlightColorFromAPI(1);
    const Bytes expected = {
        0x03, 0x00, 0x00, 0x00,                          // class id 3
        0x03, 0x00, 0x00, 0x00,                          // FunctionType
        0x02, 0x00, 0x00, 0x00,                          // HighlightObjType
        0x02, 0x00, 0x02, 'U', '1', 0x03, 'R', '1', '0', // ObjectNameList
        0xFF, 0xFF, 0xFF, 0xFF,                          // LayerNameType -1
        0x01, 0x00, 0x03, 'T', 'O', 'P',                 // SpecificLayerList
        0x12, 0x34, 0x56, 0x00,                          // HighlightColor: red, green, blue
        0x46, 0x00, 0x00, 0x00,                          // Contrast 70
        0x01, 0x00, 0x00, 0x00,                          // LayerHighlightColorFromAPI
    };
    EXPECT_EQ(Hex(Store(r)), Hex(expected));
}

TEST(HighlightBytes, FreshHighlightIsAllZero) {
    CKPRCI_Highlight r;
    const Bytes expected = {
        0x03, 0x00, 0x00, 0x00,  // class id
        0x00, 0x00, 0x00, 0x00,  // FunctionType
        0x00, 0x00, 0x00, 0x00,  // HighlightObjType
        0x00, 0x00,              // no object names
        0x00, 0x00, 0x00, 0x00,  // LayerNameType
        0x00, 0x00,              // no layers
        0x00, 0x00, 0x00, 0x00,  // HighlightColor
        0x00, 0x00, 0x00, 0x00,  // Contrast
        0x00, 0x00, 0x00, 0x00,  // LayerHighlightColorFromAPI
    };
    EXPECT_EQ(Hex(Store(r)), Hex(expected));
}

TEST(HighlightBytes, ColourRefPinSectionAndSegment) {
    CKPRCI_Highlight_Color color;
    color.SetHighlightColor(0x00FF8000);
    EXPECT_EQ(Hex(Store(color)), Hex({0x04, 0x00, 0x00, 0x00, 0x00, 0x80, 0xFF, 0x00}));

    CKPRCI_Highlight_RefPin refPin;
    refPin.SetRefName("U7");
    refPin.SetPinNames(List({"1", "A2"}));
    refPin.SetHighlightColor(0x0000FF);
    refPin.SetZoom(1);
    refPin.SetLayerHighlightColorFromAPI(2);
    EXPECT_EQ(Hex(Store(refPin)), Hex({
                                          0x05, 0x00, 0x00, 0x00,                    // class id 5
                                          0x02, 'U', '7',                            // RefName
                                          0x02, 0x00, 0x01, '1', 0x02, 'A', '2',     // PinNames
                                          0xFF, 0x00, 0x00, 0x00,                    // HighlightColor
                                          0x01, 0x00, 0x00, 0x00,                    // Zoom
                                          0x02, 0x00, 0x00, 0x00,                    // LayerHighlightColorFromAPI
                                      }));

    CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin section;
    section.SetNetName("N");
    section.SetRef1Name("R1");
    section.SetPin1Name("1");
    section.SetRef2Name("R2");
    section.SetPin2Name("2");
    EXPECT_EQ(Hex(Store(section)), Hex({0x06, 0x00, 0x00, 0x00, 0x01, 'N', 0x02, 'R', '1', 0x01, '1', 0x02, 'R', '2',
                                        0x01, '2'}));

    CKPRCI_Highlight_ZoomNetSegment segment;
    segment.SetNetName("GND");
    segment.SetSegmentIndex(CArrayN{0, 7, -1});
    segment.SetColor(0x00010203);
    EXPECT_EQ(Hex(Store(segment)), Hex({
                                           0x07, 0x00, 0x00, 0x00,  // class id 7
                                           0x03, 'G', 'N', 'D',     // NetName
                                           0x03, 0x00,              // three indices
                                           0x00, 0x00, 0x00, 0x00,  // 0
                                           0x07, 0x00, 0x00, 0x00,  // 7
                                           0xFF, 0xFF, 0xFF, 0xFF,  // -1
                                           0x03, 0x02, 0x01, 0x00,  // Color
                                       }));
}

TEST(LayerBytes, VisibleLayer) {
    CKPRCI_VisibleLayer r;
    r.SetLayerControlType(2);
    r.SetLayerNames(List({"L1", "L2"}));
    r.SetVisible(1);
    EXPECT_EQ(Hex(Store(r)), Hex({
                                     0x0D, 0x00, 0x00, 0x00,                          // class id 13
                                     0x02, 0x00, 0x00, 0x00,                          // LayerControlType
                                     0x02, 0x00, 0x02, 'L', '1', 0x02, 'L', '2',      // LayerNames
                                     0x01, 0x00, 0x00, 0x00,                          // Visible
                                 }));
}

TEST(RedMarkBytes, Requests) {
    CKPRCI_RedMark_SaveLoad saveLoad;
    saveLoad.SetReadState(1);
    saveLoad.SetAsciiData(5);
    saveLoad.SetRedMarkFilePath("/tmp/a.rm");
    saveLoad.SetTitleName_Delimiter(";");
    EXPECT_EQ(Hex(Store(saveLoad)), Hex({
                                            0x15, 0x00, 0x00, 0x00,                              // class id 21
                                            0x01, 0x00, 0x00, 0x00,                              // ReadState
                                            0x05, 0x00, 0x00, 0x00,                              // AsciiData
                                            0x09, '/', 't', 'm', 'p', '/', 'a', '.', 'r', 'm',   // RedMarkFilePath
                                            0x01, ';',                                           // TitleName_Delimiter
                                        }));

    CKPRCI_RedMark_SelectedItem selected;
    selected.SetTitle("T1");
    EXPECT_EQ(Hex(Store(selected)), Hex({0x16, 0x00, 0x00, 0x00, 0x02, 'T', '1'}));

    CKPRCI_RedMark_RemoveItem remove;
    remove.SetTitle("T2");
    EXPECT_EQ(Hex(Store(remove)), Hex({0x17, 0x00, 0x00, 0x00, 0x02, 'T', '2'}));

    CKPRCI_RedMark_SetStatusForCalling status;
    status.SetReturnMode(1);
    status.SetCallStatus(3);
    EXPECT_EQ(Hex(Store(status)), Hex({0x18, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00}));
}

TEST(RedMarkBytes, Replies) {
    CKPRCI_RedMark_Load_RV load;
    load.SetErrorCode(-200);
    load.SetTitleNames(List({"T1", "T2"}));
    EXPECT_EQ(Hex(Store(load)), Hex({0x38, 0xFF, 0xFF, 0xFF, 0x02, 0x00, 0x02, 'T', '1', 0x02, 'T', '2'}));

    CKPRCI_RedMark_SelectedItem_RV selected;
    selected.SetContents("hi");
    EXPECT_EQ(Hex(Store(selected)), Hex({0x00, 0x00, 0x00, 0x00, 0x02, 'h', 'i'}));

    CKPRCI_RedMark_SetStatusForCalling_RV status;
    status.SetErrorCode(-201);
    status.SetCallStatus(2);
    EXPECT_EQ(Hex(Store(status)), Hex({0x37, 0xFF, 0xFF, 0xFF, 0x02, 0x00, 0x00, 0x00}));
}

TEST(InformationBytes, Requests) {
    CKPRCI_Information_GetReferencePlaceStatus place;
    place.SetRefName("U1");
    place.SetHighlight(1);
    EXPECT_EQ(Hex(Store(place)), Hex({0x0E, 0x00, 0x00, 0x00, 0x02, 'U', '1', 0x01, 0x00, 0x00, 0x00}));

    CKPRCI_Information_GetReferenceCountForPlace count;
    count.SetRefNames(List({"U1", "U2", "U3"}));
    count.SetHighlight(1);
    EXPECT_EQ(Hex(Store(count)), Hex({
                                         0x0F, 0x00, 0x00, 0x00,                                      // class id 15
                                         0x03, 0x00, 0x02, 'U', '1', 0x02, 'U', '2', 0x02, 'U', '3',  // RefNames
                                         0x01, 0x00, 0x00, 0x00,                                      // Highlight
                                     }));

    CKPRCI_Information_GetReferenceCountForPlaceOfPart ofPart;
    ofPart.SetPartNames(List({"RES"}));
    ofPart.SetHighlight(7);
    EXPECT_EQ(Hex(Store(ofPart)),
              Hex({0x10, 0x00, 0x00, 0x00, 0x01, 0x00, 0x03, 'R', 'E', 'S', 0x07, 0x00, 0x00, 0x00}));

    CKPRCI_Information_GetPinPitch pitch;
    pitch.SetFunctionType(1);
    pitch.SetRefName("C3");
    pitch.SetUnit(2);
    EXPECT_EQ(Hex(Store(pitch)), Hex({0x11, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x02, 'C', '3', 0x02, 0x00,
                                      0x00, 0x00}));

    CKPRCI_Information_GetCompPinCount pins;
    pins.SetFunctionType(1);
    pins.SetObjectName("SOIC8");
    EXPECT_EQ(Hex(Store(pins)),
              Hex({0x12, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x05, 'S', 'O', 'I', 'C', '8'}));

    CKPRCI_Information_GetPinListInfoOfNet_RefPin net;
    net.SetRefName("U1");
    net.SetPinName("3");
    EXPECT_EQ(Hex(Store(net)), Hex({0x13, 0x00, 0x00, 0x00, 0x02, 'U', '1', 0x01, '3'}));
}

TEST(InformationBytes, Replies) {
    CKPRCI_Information_GetReferencePlaceStatus_RV place;
    place.SetStatusOfPlace(5);
    EXPECT_EQ(Hex(Store(place)), Hex({0x00, 0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00}));

    CKPRCI_Information_GetReferenceCountForPlace_RV count;
    count.SetTopCount(2);
    count.SetBtmCount(1);
    count.SetElseCount(3);
    EXPECT_EQ(Hex(Store(count)), Hex({0x00, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x03,
                                      0x00, 0x00, 0x00}));

    CKPRCI_Information_GetReferenceCountForPlaceOfPart_RV ofPart;
    ofPart.SetErrorCode(-202);
    ofPart.SetTopCount(4);
    ofPart.SetBtmCount(5);
    ofPart.SetElseCount(6);
    EXPECT_EQ(Hex(Store(ofPart)), Hex({0x36, 0xFF, 0xFF, 0xFF, 0x04, 0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00, 0x06,
                                       0x00, 0x00, 0x00}));

    CKPRCI_Information_GetPinPitch_RV pitch;
    pitch.SetPinPitch(2.5);
    EXPECT_EQ(Hex(Store(pitch)), Hex({0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x04, 0x40}));

    CKPRCI_Information_GetCompPinCount_RV pins;
    pins.SetPinCount(8);
    EXPECT_EQ(Hex(Store(pins)), Hex({0x00, 0x00, 0x00, 0x00, 0x08, 0x00, 0x00, 0x00}));

    CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV net;
    net.SetNetName("VCC");
    net.SetRefPinNames(List({"U1-3", "C1-1"}));
    EXPECT_EQ(Hex(Store(net)), Hex({
                                       0x00, 0x00, 0x00, 0x00,                      // ErrorCode
                                       0x03, 'V', 'C', 'C',                         // NetName
                                       0x02, 0x00,                                  // two entries
                                       0x04, 'U', '1', '-', '3', 0x04, 'C', '1', '-', '1',
                                   }));
}

TEST(PolygonMergeBytes, RunRequest) {
    CKPRCI_PolygonMerge r(2);
    r.SetRun(List({"TOP", "BOT"}), "GND", 2.0);
    r.SetCWIndex(1);
    r.SetCCWIndex(2);
    r.SetPointIndex(3);
    EXPECT_EQ(Hex(Store(r)), Hex({
                                     0x1C, 0x00, 0x00, 0x00,                                  // class id 28
                                     0x02, 0x00, 0x00, 0x00,                                  // Mode
                                     0x02, 0x00, 0x03, 'T', 'O', 'P', 0x03, 'B', 'O', 'T',    // LayerNames
                                     0x03, 'G', 'N', 'D',                                     // NetName
                                     0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x40,          // Division 2.0
                                     0x01, 0x00, 0x00, 0x00,                                  // CWIndex
                                     0x02, 0x00, 0x00, 0x00,                                  // CCWIndex
                                     0x03, 0x00, 0x00, 0x00,                                  // PointIndex
                                 }));
}

TEST(PolygonMergeBytes, ModeOnlyRequestKeepsDefaults) {
    CKPRCI_PolygonMerge r(3);
    EXPECT_EQ(Hex(Store(r)), Hex({
                                     0x1C, 0x00, 0x00, 0x00,                          // class id 28
                                     0x03, 0x00, 0x00, 0x00,                          // Mode
                                     0x00, 0x00,                                      // no layers
                                     0x00,                                            // empty NetName
                                     0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // Division
                                     0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // CWIndex, CCWIndex
                                     0x00, 0x00, 0x00, 0x00,                          // PointIndex
                                 }));
}

TEST(PolygonMergeBytes, Reply) {
    CKPRCI_PolygonMerge_RV r(9);
    r.SetErrorCode(-1);
    r.SetCWPolygonCount(1);
    r.SetCCWPolygonCount(4);
    r.SetCWPointCount(2);
    r.SetCCWPointCount(5);
    r.SetPointX(0.5);
    r.SetPointY(-1.0);
    r.SetCWPointsX(CArrayD{1.0, 2.0});
    r.SetCWPointsY(CArrayD{-2.0});
    r.SetCCWPointsY(CArrayD{0.5});
    EXPECT_EQ(Hex(Store(r)), Hex({
                                     0xFF, 0xFF, 0xFF, 0xFF,                          // ErrorCode -1
                                     0x09, 0x00, 0x00, 0x00,                          // Mode
                                     0x01, 0x00, 0x00, 0x00,                          // CWPolygonCount
                                     0x04, 0x00, 0x00, 0x00,                          // CCWPolygonCount
                                     0x02, 0x00, 0x00, 0x00,                          // CWPointCount
                                     0x05, 0x00, 0x00, 0x00,                          // CCWPointCount
                                     0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x3F,  // PointX 0.5
                                     0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0xBF,  // PointY -1.0
                                     0x02, 0x00,                                      // CWPointsX: 1.0, 2.0
                                     0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F,  //
                                     0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x40,  //
                                     0x01, 0x00,                                      // CWPointsY: -2.0
                                     0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xC0,  //
                                     0x00, 0x00,                                      // CCWPointsX: none
                                     0x01, 0x00,                                      // CCWPointsY: 0.5
                                     0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x3F,  //
                                 }));
}

TEST(CaptureBytes, BitmapExportAndExplorer) {
    CKPRCI_Capture_ExportBitmap bitmap;
    bitmap.SetExport_FilePath("a.bmp");
    EXPECT_EQ(Hex(Store(bitmap)), Hex({0x19, 0x00, 0x00, 0x00, 0x05, 'a', '.', 'b', 'm', 'p'}));

    CKPRCI_Export_PDBBAscii ascii;
    ascii.SetPdbbaFilePath("b.txt");
    EXPECT_EQ(Hex(Store(ascii)), Hex({0x1A, 0x00, 0x00, 0x00, 0x05, 'b', '.', 't', 'x', 't'}));

    CKPRCI_Explorer explorer;
    explorer.SetSelectionTypeA(2);
    explorer.SetObjectListFilePath("l.txt");
    EXPECT_EQ(Hex(Store(explorer)),
              Hex({0x02, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x05, 'l', '.', 't', 'x', 't'}));
}

}  // namespace
