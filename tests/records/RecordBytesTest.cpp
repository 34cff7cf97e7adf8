// The exact bytes of record images, written out by hand from the wire format: the
// viewer reads these bytes, so a change of field order, width or encoding shows here.
// Every image of the tables must also load back (twice into one record: a load
// replaces what was there), be refused when cut short, and, for commands, come back
// whole through the class-id factory.
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
    const char* name;
    std::function<Bytes()> store;               // the filled record's image
    std::function<Bytes(const Bytes&)> reload;  // loads an image, stores it again
    bool command;
    Bytes expected;
};

// make() builds the filled record; its type is the row's record class.
template <class Make>
Row R(const char* name, Make make, Bytes expected) {
    using Record = decltype(make());
    Row row{name, nullptr, nullptr, std::is_base_of<CKPRCI__Base, Record>::value, std::move(expected)};
    row.store = [make] {
        Record record = make();
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
        Bytes padded = row.expected;
        padded.push_back(0);
        EXPECT_EQ(LoadCommandBytes(padded), nullptr) << "a byte after the image";
    }
}

TEST(RecordBytes, Highlight) {
    CheckTable({
        R("highlight",
          [] {
              CKPRCI_Highlight r;
              r.SetFunctionType(3);
              r.SetHighlightObjType(2);
              r.SetObjectNameList(List({"U1", "R10"}));
              r.SetLayerNameType(-1);
              r.SetSpecificLayerList(List({"TOP"}));
              r.SetHighlightColor(0x12 | (0x34 << 8) | (0x56 << 16));
              r.SetContrast(70);
              r.SetLayerHighlightColorFromAPI(1);
              return r;
          },
          {
              0x03, 0x00, 0x00, 0x00,                          // class id 3
              0x03, 0x00, 0x00, 0x00,                          // FunctionType
              0x02, 0x00, 0x00, 0x00,                          // HighlightObjType
              0x02, 0x00, 0x02, 'U', '1', 0x03, 'R', '1', '0', // ObjectNameList
              0xFF, 0xFF, 0xFF, 0xFF,                          // LayerNameType -1
              0x01, 0x00, 0x03, 'T', 'O', 'P',                 // SpecificLayerList
              0x12, 0x34, 0x56, 0x00,                          // HighlightColor: red, green, blue
              0x46, 0x00, 0x00, 0x00,                          // Contrast 70
              0x01, 0x00, 0x00, 0x00,                          // LayerHighlightColorFromAPI
          }),
        R("fresh highlight", [] { return CKPRCI_Highlight(); },
          {
              0x03, 0x00, 0x00, 0x00,  // class id
              0x00, 0x00, 0x00, 0x00,  // FunctionType
              0x00, 0x00, 0x00, 0x00,  // HighlightObjType
              0x00, 0x00,              // no object names
              0x00, 0x00, 0x00, 0x00,  // LayerNameType
              0x00, 0x00,              // no layers
              0x00, 0x00, 0x00, 0x00,  // HighlightColor
              0x00, 0x00, 0x00, 0x00,  // Contrast
              0x00, 0x00, 0x00, 0x00,  // LayerHighlightColorFromAPI
          }),
        R("colour",
          [] {
              CKPRCI_Highlight_Color r;
              r.SetHighlightColor(0x00FF8000);
              return r;
          },
          {0x04, 0x00, 0x00, 0x00, 0x00, 0x80, 0xFF, 0x00}),
        R("reference pins",
          [] {
              CKPRCI_Highlight_RefPin r;
              r.SetRefName("U7");
              r.SetPinNames(List({"1", "A2"}));
              r.SetHighlightColor(0x0000FF);
              r.SetZoom(1);
              r.SetLayerHighlightColorFromAPI(2);
              return r;
          },
          {
              0x05, 0x00, 0x00, 0x00,                 // class id 5
              0x02, 'U', '7',                         // RefName
              0x02, 0x00, 0x01, '1', 0x02, 'A', '2',  // PinNames
              0xFF, 0x00, 0x00, 0x00,                 // HighlightColor
              0x01, 0x00, 0x00, 0x00,                 // Zoom
              0x02, 0x00, 0x00, 0x00,                 // LayerHighlightColorFromAPI
          }),
        R("section",
          [] {
              CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin r;
              r.SetNetName("N");
              r.SetRef1Name("R1");
              r.SetPin1Name("1");
              r.SetRef2Name("R2");
              r.SetPin2Name("2");
              return r;
          },
          {0x06, 0x00, 0x00, 0x00, 0x01, 'N', 0x02, 'R', '1', 0x01, '1', 0x02, 'R', '2', 0x01, '2'}),
        R("segment",
          [] {
              CKPRCI_Highlight_ZoomNetSegment r;
              r.SetNetName("GND");
              r.SetSegmentIndex(CArrayN{0, 7, -1});
              r.SetColor(0x00010203);
              return r;
          },
          {
              0x07, 0x00, 0x00, 0x00,  // class id 7
              0x03, 'G', 'N', 'D',     // NetName
              0x03, 0x00,              // three indices
              0x00, 0x00, 0x00, 0x00,  // 0
              0x07, 0x00, 0x00, 0x00,  // 7
              0xFF, 0xFF, 0xFF, 0xFF,  // -1
              0x03, 0x02, 0x01, 0x00,  // Color
          }),
    });
}

TEST(RecordBytes, ViewAndLayers) {
    CheckTable({
        R("simple command",
          [] {
              CKPRCI_SimpleCMD r;
              r.SetCommandType(2);
              r.SetCommonValue(-3);
              return r;
          },
          {0x08, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0xFD, 0xFF, 0xFF, 0xFF}),
        R("object on/off",
          [] {
              CKPRCI_ObjectOnOff r;
              r.SetObjectType(4);
              r.SetOnOff(1);
              return r;
          },
          {0x09, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00}),
        R("tool on/off",
          [] {
              CKPRCI_ToolOnOff r;
              r.SetToolType(5);
              r.SetOnOff(0);
              return r;
          },
          {0x14, 0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}),
        R("zoom area",
          [] {
              CKPRCI_ZoomArea r;
              r.SetData(1.0, 2.0, -2.0, 0.5);
              return r;
          },
          {
              0x0A, 0x00, 0x00, 0x00,                          // class id 10
              0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F,  // X1 1.0
              0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x40,  // Y1 2.0
              0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xC0,  // X2 -2.0
              0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x3F,  // Y2 0.5
          }),
        R("window position",
          [] {
              CKPRCI_SetWindowPosition r;
              r.SetData(1, 2, 300, -1);
              return r;
          },
          {0x0B, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x2C, 0x01, 0x00, 0x00,
           0xFF, 0xFF, 0xFF, 0xFF}),
        R("rotate",
          [] {
              CKPRCI_RotateBoard r;
              r.SetAngle(-1.0);
              return r;
          },
          {0x0C, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0xBF}),
        R("main title",
          [] {
              CKPRCI_Information_SetMainTitle r;
              r.SetTitle("Board");
              return r;
          },
          {0x1B, 0x00, 0x00, 0x00, 0x05, 'B', 'o', 'a', 'r', 'd'}),
        R("visible layers",
          [] {
              CKPRCI_VisibleLayer r;
              r.SetLayerControlType(2);
              r.SetLayerNames(List({"L1", "L2"}));
              r.SetVisible(1);
              return r;
          },
          {
              0x0D, 0x00, 0x00, 0x00,                      // class id 13
              0x02, 0x00, 0x00, 0x00,                      // LayerControlType
              0x02, 0x00, 0x02, 'L', '1', 0x02, 'L', '2',  // LayerNames
              0x01, 0x00, 0x00, 0x00,                      // Visible
          }),
    });
}

TEST(RecordBytes, RedMark) {
    CheckTable({
        R("save/load",
          [] {
              CKPRCI_RedMark_SaveLoad r;
              r.SetReadState(1);
              r.SetAsciiData(5);
              r.SetRedMarkFilePath("/tmp/a.rm");
              r.SetTitleName_Delimiter(";");
              return r;
          },
          {
              0x15, 0x00, 0x00, 0x00,                             // class id 21
              0x01, 0x00, 0x00, 0x00,                             // ReadState
              0x05, 0x00, 0x00, 0x00,                             // AsciiData
              0x09, '/', 't', 'm', 'p', '/', 'a', '.', 'r', 'm',  // RedMarkFilePath
              0x01, ';',                                          // TitleName_Delimiter
          }),
        R("selected item",
          [] {
              CKPRCI_RedMark_SelectedItem r;
              r.SetTitle("T1");
              return r;
          },
          {0x16, 0x00, 0x00, 0x00, 0x02, 'T', '1'}),
        R("remove item",
          [] {
              CKPRCI_RedMark_RemoveItem r;
              r.SetTitle("T2");
              return r;
          },
          {0x17, 0x00, 0x00, 0x00, 0x02, 'T', '2'}),
        R("status",
          [] {
              CKPRCI_RedMark_SetStatusForCalling r;
              r.SetReturnMode(1);
              r.SetCallStatus(3);
              return r;
          },
          {0x18, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00}),
        R("load reply",
          [] {
              CKPRCI_RedMark_Load_RV r;
              r.SetErrorCode(-200);
              r.SetTitleNames(List({"T1", "T2"}));
              return r;
          },
          {0x38, 0xFF, 0xFF, 0xFF, 0x02, 0x00, 0x02, 'T', '1', 0x02, 'T', '2'}),
        R("selected item reply",
          [] {
              CKPRCI_RedMark_SelectedItem_RV r;
              r.SetContents("hi");
              return r;
          },
          {0x00, 0x00, 0x00, 0x00, 0x02, 'h', 'i'}),
        R("status reply",
          [] {
              CKPRCI_RedMark_SetStatusForCalling_RV r;
              r.SetErrorCode(-201);
              r.SetCallStatus(2);
              return r;
          },
          {0x37, 0xFF, 0xFF, 0xFF, 0x02, 0x00, 0x00, 0x00}),
    });
}

TEST(RecordBytes, Information) {
    CheckTable({
        R("place status",
          [] {
              CKPRCI_Information_GetReferencePlaceStatus r;
              r.SetRefName("U1");
              r.SetHighlight(1);
              return r;
          },
          {0x0E, 0x00, 0x00, 0x00, 0x02, 'U', '1', 0x01, 0x00, 0x00, 0x00}),
        R("count for place",
          [] {
              CKPRCI_Information_GetReferenceCountForPlace r;
              r.SetRefNames(List({"U1", "U2", "U3"}));
              r.SetHighlight(1);
              return r;
          },
          {
              0x0F, 0x00, 0x00, 0x00,                                      // class id 15
              0x03, 0x00, 0x02, 'U', '1', 0x02, 'U', '2', 0x02, 'U', '3',  // RefNames
              0x01, 0x00, 0x00, 0x00,                                      // Highlight
          }),
        R("count for place of part",
          [] {
              CKPRCI_Information_GetReferenceCountForPlaceOfPart r;
              r.SetPartNames(List({"RES"}));
              r.SetHighlight(7);
              return r;
          },
          {0x10, 0x00, 0x00, 0x00, 0x01, 0x00, 0x03, 'R', 'E', 'S', 0x07, 0x00, 0x00, 0x00}),
        R("pin pitch",
          [] {
              CKPRCI_Information_GetPinPitch r;
              r.SetFunctionType(1);
              r.SetRefName("C3");
              r.SetUnit(2);
              return r;
          },
          {0x11, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x02, 'C', '3', 0x02, 0x00, 0x00, 0x00}),
        R("pin count",
          [] {
              CKPRCI_Information_GetCompPinCount r;
              r.SetFunctionType(1);
              r.SetObjectName("SOIC8");
              return r;
          },
          {0x12, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x05, 'S', 'O', 'I', 'C', '8'}),
        R("pins of net",
          [] {
              CKPRCI_Information_GetPinListInfoOfNet_RefPin r;
              r.SetRefName("U1");
              r.SetPinName("3");
              return r;
          },
          {0x13, 0x00, 0x00, 0x00, 0x02, 'U', '1', 0x01, '3'}),
        R("place status reply",
          [] {
              CKPRCI_Information_GetReferencePlaceStatus_RV r;
              r.SetStatusOfPlace(5);
              return r;
          },
          {0x00, 0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00}),
        R("count reply",
          [] {
              CKPRCI_Information_GetReferenceCountForPlace_RV r;
              r.SetTopCount(2);
              r.SetBtmCount(1);
              r.SetElseCount(3);
              return r;
          },
          {0x00, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00}),
        R("count of part reply",
          [] {
              CKPRCI_Information_GetReferenceCountForPlaceOfPart_RV r;
              r.SetErrorCode(-202);
              r.SetTopCount(4);
              r.SetBtmCount(5);
              r.SetElseCount(6);
              return r;
          },
          {0x36, 0xFF, 0xFF, 0xFF, 0x04, 0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00, 0x06, 0x00, 0x00, 0x00}),
        R("pin pitch reply",
          [] {
              CKPRCI_Information_GetPinPitch_RV r;
              r.SetPinPitch(2.5);
              return r;
          },
          {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x04, 0x40}),
        R("pin count reply",
          [] {
              CKPRCI_Information_GetCompPinCount_RV r;
              r.SetPinCount(8);
              return r;
          },
          {0x00, 0x00, 0x00, 0x00, 0x08, 0x00, 0x00, 0x00}),
        R("pins of net reply",
          [] {
              CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV r;
              r.SetNetName("VCC");
              r.SetRefPinNames(List({"U1-3", "C1-1"}));
              return r;
          },
          {
              0x00, 0x00, 0x00, 0x00,  // ErrorCode
              0x03, 'V', 'C', 'C',     // NetName
              0x02, 0x00,              // two entries
              0x04, 'U', '1', '-', '3', 0x04, 'C', '1', '-', '1',
          }),
    });
}

TEST(RecordBytes, PolygonMergeCaptureAndExplorer) {
    CheckTable({
        R("merge run",
          [] {
              CKPRCI_PolygonMerge r(2);
              r.SetRun(List({"TOP", "BOT"}), "GND", 2.0);
              r.SetCWIndex(1);
              r.SetCCWIndex(2);
              r.SetPointIndex(3);
              return r;
          },
          {
              0x1C, 0x00, 0x00, 0x00,                                // class id 28
              0x02, 0x00, 0x00, 0x00,                                // Mode
              0x02, 0x00, 0x03, 'T', 'O', 'P', 0x03, 'B', 'O', 'T',  // LayerNames
              0x03, 'G', 'N', 'D',                                   // NetName
              0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x40,        // Division 2.0
              0x01, 0x00, 0x00, 0x00,                                // CWIndex
              0x02, 0x00, 0x00, 0x00,                                // CCWIndex
              0x03, 0x00, 0x00, 0x00,                                // PointIndex
          }),
        R("merge reply",
          [] {
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
              return r;
          },
          {
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
          }),
        R("bitmap",
          [] {
              CKPRCI_Capture_ExportBitmap r;
              r.SetExport_FilePath("a.bmp");
              return r;
          },
          {0x19, 0x00, 0x00, 0x00, 0x05, 'a', '.', 'b', 'm', 'p'}),
        R("ascii export",
          [] {
              CKPRCI_Export_PDBBAscii r;
              r.SetPdbbaFilePath("b.txt");
              return r;
          },
          {0x1A, 0x00, 0x00, 0x00, 0x05, 'b', '.', 't', 'x', 't'}),
        R("explorer",
          [] {
              CKPRCI_Explorer r;
              r.SetSelectionTypeA(2);
              r.SetObjectListFilePath("l.txt");
              return r;
          },
          {0x02, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x05, 'l', '.', 't', 'x', 't'}),
    });
}

}  // namespace
