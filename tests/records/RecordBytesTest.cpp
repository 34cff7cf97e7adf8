// The exact bytes of record images, written out by hand from the wire format: the
// viewer reads these bytes, so a change of field order, width or encoding shows here.
// Every image of the tables must also load back (twice into one record: a load
// replaces what was there), be refused when cut short, and, for commands, come back
// whole through the class-id factory under the record's own name.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <type_traits>

#include "CaptureRecords.h"
#include "HighlightRecords.h"
#include "InformationRecords.h"
#include "LayerRecords.h"
#include "PolygonMergeRecords.h"
#include "RecordTestSupport.h"
#include "RedMarkRecords.h"
#include "ViewRecords.h"

namespace {

CStringArray List(std::initializer_list<CString> items) { return CStringArray(items); }

struct Row {
    const char* name;                           // the record class
    std::function<Bytes()> store;               // the filled record's image
    std::function<Bytes(const Bytes&)> reload;  // loads an image, stores it again
    bool command;
    Bytes expected;
};

template <class Record>
Row MakeRow(const char* name, void (*fill)(Record&), Bytes expected) {
    Row row{name, nullptr, nullptr, std::is_base_of<CKPRCI__Base, Record>::value, std::move(expected)};
    row.store = [fill] {
        Record record;
        fill(record);
        return Store(record);
    };
    row.reload = [](const Bytes& image) {
        Record record;
        Load(image, record);
        if (Load(image, record) != 0) return Bytes{};  // left bytes unread
        return Store(record);
    };
    return row;
}

// A row: the record class, the setter calls that fill r, the expected image.
#define ROW(Record, fill, ...) MakeRow<Record>(#Record, [](Record& r) { (void)r; fill; }, Bytes{__VA_ARGS__})

void CheckTable(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Hex(row.store()), Hex(row.expected));
        EXPECT_EQ(Hex(row.reload(row.expected)), Hex(row.expected));
        for (size_t length = 0; length < row.expected.size(); ++length)
            EXPECT_THROW(row.reload(Prefix(row.expected, length)), CArchiveException) << "cut to " << length;
        if (!row.command) continue;
        std::unique_ptr<CKPRCI__Base> loaded = LoadCommandBytes(row.expected);
        ASSERT_NE(loaded, nullptr);
        EXPECT_EQ(Hex(Store(*loaded)), Hex(row.expected));
        const char* name = CommandRecordName(loaded->GetClassID());
        EXPECT_STREQ(name ? name : "", row.name) << "the name the viewer's journal gives it";
        Bytes padded = row.expected;
        padded.push_back(0);
        EXPECT_EQ(LoadCommandBytes(padded), nullptr) << "a byte after the image";
    }
}

TEST(RecordBytes, Highlight) {
    CheckTable({
        ROW(CKPRCI_Highlight,
            r.SetFunctionType(3); r.SetHighlightObjType(2); r.SetObjectNameList(List({"U1", "R10"}));
            r.SetLayerNameType(-1); r.SetSpecificLayerList(List({"TOP"}));
            r.SetHighlightColor(0x12 | (0x34 << 8) | (0x56 << 16)); r.SetContrast(70);
            r.SetLayerHighlightColorFromAPI(1),
            0x03, 0x00, 0x00, 0x00,                          // class id 3
            0x03, 0x00, 0x00, 0x00,                          // FunctionType
            0x02, 0x00, 0x00, 0x00,                          // HighlightObjType
            0x02, 0x00, 0x02, 'U', '1', 0x03, 'R', '1', '0', // ObjectNameList
            0xFF, 0xFF, 0xFF, 0xFF,                          // LayerNameType -1
            0x01, 0x00, 0x03, 'T', 'O', 'P',                 // SpecificLayerList
            0x12, 0x34, 0x56, 0x00,                          // HighlightColor: red, green, blue
            0x46, 0x00, 0x00, 0x00,                          // Contrast 70
            0x01, 0x00, 0x00, 0x00),                         // LayerHighlightColorFromAPI
        // A fresh record: every field zero, the lists empty.
        ROW(CKPRCI_Highlight, , 0x03, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
            0x00),
        ROW(CKPRCI_Highlight_Color, r.SetHighlightColor(0x00FF8000), 0x04, 0x00, 0x00, 0x00, 0x00, 0x80, 0xFF, 0x00),
        ROW(CKPRCI_Highlight_RefPin,
            r.SetRefName("U7"); r.SetPinNames(List({"1", "A2"})); r.SetHighlightColor(0x0000FF); r.SetZoom(1);
            r.SetLayerHighlightColorFromAPI(2),
            0x05, 0x00, 0x00, 0x00,                 // class id 5
            0x02, 'U', '7',                         // RefName
            0x02, 0x00, 0x01, '1', 0x02, 'A', '2',  // PinNames
            0xFF, 0x00, 0x00, 0x00,                 // HighlightColor
            0x01, 0x00, 0x00, 0x00,                 // Zoom
            0x02, 0x00, 0x00, 0x00),                // LayerHighlightColorFromAPI
        ROW(CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin,
            r.SetNetName("N"); r.SetRef1Name("R1"); r.SetPin1Name("1"); r.SetRef2Name("R2"); r.SetPin2Name("2"),
            0x06, 0x00, 0x00, 0x00, 0x01, 'N', 0x02, 'R', '1', 0x01, '1', 0x02, 'R', '2', 0x01, '2'),
        ROW(CKPRCI_Highlight_ZoomNetSegment,
            r.SetNetName("GND"); r.SetSegmentIndex(CArrayN{0, 7, -1}); r.SetColor(0x00010203),
            0x07, 0x00, 0x00, 0x00,  // class id 7
            0x03, 'G', 'N', 'D',     // NetName
            0x03, 0x00,              // three indices: 0, 7, -1
            0x00, 0x00, 0x00, 0x00, 0x07, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF,
            0x03, 0x02, 0x01, 0x00),  // Color
    });
}

TEST(RecordBytes, ViewAndLayers) {
    CheckTable({
        ROW(CKPRCI_SimpleCMD, r.SetCommandType(2); r.SetCommonValue(-3),
            0x08, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0xFD, 0xFF, 0xFF, 0xFF),
        ROW(CKPRCI_ObjectOnOff, r.SetObjectType(4); r.SetOnOff(1),
            0x09, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00),
        ROW(CKPRCI_ToolOnOff, r.SetToolType(5); r.SetOnOff(0),
            0x14, 0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00),
        ROW(CKPRCI_ZoomArea, r.SetData(1.0, 2.0, -2.0, 0.5),
            0x0A, 0x00, 0x00, 0x00,                          // class id 10
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F,  // X1 1.0
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x40,  // Y1 2.0
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xC0,  // X2 -2.0
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x3F), // Y2 0.5
        ROW(CKPRCI_SetWindowPosition, r.SetData(1, 2, 300, -1),
            0x0B, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x2C, 0x01, 0x00, 0x00,
            0xFF, 0xFF, 0xFF, 0xFF),
        ROW(CKPRCI_RotateBoard, r.SetAngle(-1.0),
            0x0C, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0xBF),
        ROW(CKPRCI_Information_SetMainTitle, r.SetTitle("Board"), 0x1B, 0x00, 0x00, 0x00, 0x05, 'B', 'o', 'a', 'r', 'd'),
        ROW(CKPRCI_VisibleLayer, r.SetLayerControlType(2); r.SetLayerNames(List({"L1", "L2"})); r.SetVisible(1),
            0x0D, 0x00, 0x00, 0x00,                      // class id 13
            0x02, 0x00, 0x00, 0x00,                      // LayerControlType
            0x02, 0x00, 0x02, 'L', '1', 0x02, 'L', '2',  // LayerNames
            0x01, 0x00, 0x00, 0x00),                     // Visible
    });
}

TEST(RecordBytes, RedMark) {
    CheckTable({
        ROW(CKPRCI_RedMark_SaveLoad,
            r.SetReadState(1); r.SetAsciiData(5); r.SetRedMarkFilePath("/tmp/a.rm"); r.SetTitleName_Delimiter(";"),
            0x15, 0x00, 0x00, 0x00,                             // class id 21
            0x01, 0x00, 0x00, 0x00,                             // ReadState
            0x05, 0x00, 0x00, 0x00,                             // AsciiData
            0x09, '/', 't', 'm', 'p', '/', 'a', '.', 'r', 'm',  // RedMarkFilePath
            0x01, ';'),                                         // TitleName_Delimiter
        ROW(CKPRCI_RedMark_SelectedItem, r.SetTitle("T1"), 0x16, 0x00, 0x00, 0x00, 0x02, 'T', '1'),
        ROW(CKPRCI_RedMark_RemoveItem, r.SetTitle("T2"), 0x17, 0x00, 0x00, 0x00, 0x02, 'T', '2'),
        ROW(CKPRCI_RedMark_SetStatusForCalling, r.SetReturnMode(1); r.SetCallStatus(3),
            0x18, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00),
        ROW(CKPRCI_RedMark_Load_RV, r.SetErrorCode(-200); r.SetTitleNames(List({"T1", "T2"})),
            0x38, 0xFF, 0xFF, 0xFF, 0x02, 0x00, 0x02, 'T', '1', 0x02, 'T', '2'),
        ROW(CKPRCI_RedMark_SelectedItem_RV, r.SetContents("hi"), 0x00, 0x00, 0x00, 0x00, 0x02, 'h', 'i'),
        ROW(CKPRCI_RedMark_SetStatusForCalling_RV, r.SetErrorCode(-201); r.SetCallStatus(2),
            0x37, 0xFF, 0xFF, 0xFF, 0x02, 0x00, 0x00, 0x00),
    });
}

TEST(RecordBytes, Information) {
    CheckTable({
        ROW(CKPRCI_Information_GetReferencePlaceStatus, r.SetRefName("U1"); r.SetHighlight(1),
            0x0E, 0x00, 0x00, 0x00, 0x02, 'U', '1', 0x01, 0x00, 0x00, 0x00),
        ROW(CKPRCI_Information_GetReferenceCountForPlace, r.SetRefNames(List({"U1", "U2", "U3"})); r.SetHighlight(1),
            0x0F, 0x00, 0x00, 0x00,                                      // class id 15
            0x03, 0x00, 0x02, 'U', '1', 0x02, 'U', '2', 0x02, 'U', '3',  // RefNames
            0x01, 0x00, 0x00, 0x00),                                     // Highlight
        ROW(CKPRCI_Information_GetReferenceCountForPlaceOfPart, r.SetPartNames(List({"RES"})); r.SetHighlight(7),
            0x10, 0x00, 0x00, 0x00, 0x01, 0x00, 0x03, 'R', 'E', 'S', 0x07, 0x00, 0x00, 0x00),
        ROW(CKPRCI_Information_GetPinPitch, r.SetFunctionType(1); r.SetRefName("C3"); r.SetUnit(2),
            0x11, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x02, 'C', '3', 0x02, 0x00, 0x00, 0x00),
        ROW(CKPRCI_Information_GetCompPinCount, r.SetFunctionType(1); r.SetObjectName("SOIC8"),
            0x12, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x05, 'S', 'O', 'I', 'C', '8'),
        ROW(CKPRCI_Information_GetPinListInfoOfNet_RefPin, r.SetRefName("U1"); r.SetPinName("3"),
            0x13, 0x00, 0x00, 0x00, 0x02, 'U', '1', 0x01, '3'),
        ROW(CKPRCI_Information_GetReferencePlaceStatus_RV, r.SetStatusOfPlace(5),
            0x00, 0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00),
        ROW(CKPRCI_Information_GetReferenceCountForPlace_RV, r.SetTopCount(2); r.SetBtmCount(1); r.SetElseCount(3),
            0x00, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00),
        ROW(CKPRCI_Information_GetReferenceCountForPlaceOfPart_RV,
            r.SetErrorCode(-202); r.SetTopCount(4); r.SetBtmCount(5); r.SetElseCount(6),
            0x36, 0xFF, 0xFF, 0xFF, 0x04, 0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00, 0x06, 0x00, 0x00, 0x00),
        ROW(CKPRCI_Information_GetPinPitch_RV, r.SetPinPitch(2.5),
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x04, 0x40),
        ROW(CKPRCI_Information_GetCompPinCount_RV, r.SetPinCount(8), 0x00, 0x00, 0x00, 0x00, 0x08, 0x00, 0x00, 0x00),
        ROW(CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV,
            r.SetNetName("VCC"); r.SetRefPinNames(List({"U1-3", "C1-1"})),
            0x00, 0x00, 0x00, 0x00,  // ErrorCode
            0x03, 'V', 'C', 'C',     // NetName
            0x02, 0x00,              // two entries
            0x04, 'U', '1', '-', '3', 0x04, 'C', '1', '-', '1'),
    });
}

TEST(RecordBytes, PolygonMergeCaptureAndExplorer) {
    CheckTable({
        ROW(CKPRCI_PolygonMerge,
            r.SetMode(2); r.SetRun(List({"TOP", "BOT"}), "GND", 2.0); r.SetCWIndex(1); r.SetCCWIndex(2);
            r.SetPointIndex(3),
            0x1C, 0x00, 0x00, 0x00,                                // class id 28
            0x02, 0x00, 0x00, 0x00,                                // Mode
            0x02, 0x00, 0x03, 'T', 'O', 'P', 0x03, 'B', 'O', 'T',  // LayerNames
            0x03, 'G', 'N', 'D',                                   // NetName
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x40,        // Division 2.0
            0x01, 0x00, 0x00, 0x00,                                // CWIndex
            0x02, 0x00, 0x00, 0x00,                                // CCWIndex
            0x03, 0x00, 0x00, 0x00),                               // PointIndex
        ROW(CKPRCI_PolygonMerge_RV,
            r.SetMode(9); r.SetErrorCode(-1); r.SetCWPolygonCount(1); r.SetCCWPolygonCount(4);
            r.SetCWPointCount(2); r.SetCCWPointCount(5); r.SetPointX(0.5); r.SetPointY(-1.0);
            r.SetCWPointsX(CArrayD{1.0, 2.0}); r.SetCWPointsY(CArrayD{-2.0}); r.SetCCWPointsY(CArrayD{0.5}),
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
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x3F),
        ROW(CKPRCI_Capture_ExportBitmap, r.SetExport_FilePath("a.bmp"),
            0x19, 0x00, 0x00, 0x00, 0x05, 'a', '.', 'b', 'm', 'p'),
        ROW(CKPRCI_Export_PDBBAscii, r.SetPdbbaFilePath("b.txt"), 0x1A, 0x00, 0x00, 0x00, 0x05, 'b', '.', 't', 'x', 't'),
        ROW(CKPRCI_Explorer, r.SetSelectionTypeA(2); r.SetObjectListFilePath("l.txt"),
            0x02, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x05, 'l', '.', 't', 'x', 't'),
    });
}

}  // namespace
