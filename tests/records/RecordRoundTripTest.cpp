// Every record class, filled with a non-default value in every field: the image it
// writes loads back into a fresh record with every value intact, copies and
// assignments carry every field, and every truncation of the image is refused.
// Command images also go through the class-id factory.
#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

#include "CaptureRecords.h"
#include "HighlightRecords.h"
#include "InformationRecords.h"
#include "LayerRecords.h"
#include "PolygonMergeRecords.h"
#include "RecordFactory.h"
#include "RecordTestSupport.h"
#include "RedMarkRecords.h"
#include "ViewRecords.h"

namespace {

CStringArray List(std::initializer_list<CString> items) { return CStringArray(items); }

// One struct per record class: Fill sets every field to a value other than its
// default, Check expects exactly those values.

struct Highlight {
    using Record = CKPRCI_Highlight;
    static void Fill(Record& r) {
        r.SetFunctionType(3);
        r.SetHighlightObjType(2);
        r.SetObjectNameList(List({"U1", "NET 5", ""}));
        r.SetLayerNameType(-1);
        r.SetSpecificLayerList(List({"TOP", "L2"}));
        r.SetHighlightColor(0x00ABCDEF);
        r.SetContrast(-40);
        r.SetLayerHighlightColorFromAPI(9);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetFunctionType(), 3);
        EXPECT_EQ(r.GetHighlightObjType(), 2);
        EXPECT_EQ(r.GetObjectNameList(), List({"U1", "NET 5", ""}));
        EXPECT_EQ(r.GetLayerNameType(), -1);
        EXPECT_EQ(r.GetSpecificLayerList(), List({"TOP", "L2"}));
        EXPECT_EQ(r.GetHighlightColor(), 0x00ABCDEFu);
        EXPECT_EQ(r.GetContrast(), -40);
        EXPECT_EQ(r.IsLayerHighlightColorFromAPI(), 9);
    }
};

struct HighlightColor {
    using Record = CKPRCI_Highlight_Color;
    static void Fill(Record& r) { r.SetHighlightColor(0x00102030); }
    static void Check(const Record& r) { EXPECT_EQ(r.GetHighlightColor(), 0x00102030u); }
};

struct HighlightRefPin {
    using Record = CKPRCI_Highlight_RefPin;
    static void Fill(Record& r) {
        r.SetRefName("U12");
        r.SetPinNames(List({"1", "2", "A3"}));
        r.SetHighlightColor(0x000000FF);
        r.SetZoom(1);
        r.SetLayerHighlightColorFromAPI(1);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetRefName(), "U12");
        EXPECT_EQ(r.GetPinNames(), List({"1", "2", "A3"}));
        EXPECT_EQ(r.GetHighlightColor(), 0x000000FFu);
        EXPECT_EQ(r.GetZoom(), 1);
        EXPECT_EQ(r.IsLayerHighlightColorFromAPI(), 1);
    }
};

struct HighlightSection {
    using Record = CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin;
    static void Fill(Record& r) {
        r.SetNetName("CLK");
        r.SetRef1Name("U1");
        r.SetPin1Name("4");
        r.SetRef2Name("U9");
        r.SetPin2Name("B7");
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetNetName(), "CLK");
        EXPECT_EQ(r.GetRef1Name(), "U1");
        EXPECT_EQ(r.GetPin1Name(), "4");
        EXPECT_EQ(r.GetRef2Name(), "U9");
        EXPECT_EQ(r.GetPin2Name(), "B7");
    }
};

struct HighlightSegment {
    using Record = CKPRCI_Highlight_ZoomNetSegment;
    static void Fill(Record& r) {
        r.SetNetName("GND");
        r.SetSegmentIndex(CArrayN{4, 0, -3, 2147483647});
        r.SetColor(0x00FFFFFF);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetNetName(), "GND");
        EXPECT_TRUE(r.GetSegmentIndex() == (CArrayN{4, 0, -3, 2147483647}));
        EXPECT_EQ(r.GetColor(), 0x00FFFFFFu);
    }
};

struct SimpleCMD {
    using Record = CKPRCI_SimpleCMD;
    static void Fill(Record& r) {
        r.SetCommandType(11);
        r.SetCommonValue(-1);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetCommandType(), 11);
        EXPECT_EQ(r.GetCommonValue(), -1);
    }
};

struct ObjectOnOff {
    using Record = CKPRCI_ObjectOnOff;
    static void Fill(Record& r) {
        r.SetObjectType(2);
        r.SetOnOff(5);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetObjectType(), 2);
        EXPECT_EQ(r.IsOn(), 5);
    }
};

struct ToolOnOff {
    using Record = CKPRCI_ToolOnOff;
    static void Fill(Record& r) {
        r.SetToolType(3);
        r.SetOnOff(-2);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetToolType(), 3);
        EXPECT_EQ(r.IsOn(), -2);
    }
};

struct ZoomArea {
    using Record = CKPRCI_ZoomArea;
    static void Fill(Record& r) { r.SetData(10.5, -20.25, 1e9, -0.125); }
    static void Check(const Record& r) {
        double a = 0, b = 0, c = 0, d = 0;
        r.GetData(a, b, c, d);
        EXPECT_EQ(a, 10.5);
        EXPECT_EQ(b, -20.25);
        EXPECT_EQ(c, 1e9);
        EXPECT_EQ(d, -0.125);
    }
};

struct SetWindowPosition {
    using Record = CKPRCI_SetWindowPosition;
    static void Fill(Record& r) { r.SetData(-8, 16, 1024, 768); }
    static void Check(const Record& r) {
        int a = 0, b = 0, c = 0, d = 0;
        r.GetData(a, b, c, d);
        EXPECT_EQ(a, -8);
        EXPECT_EQ(b, 16);
        EXPECT_EQ(c, 1024);
        EXPECT_EQ(d, 768);
    }
};

struct RotateBoard {
    using Record = CKPRCI_RotateBoard;
    static void Fill(Record& r) { r.SetAngle(-90.5); }
    static void Check(const Record& r) { EXPECT_EQ(r.GetAngle(), -90.5); }
};

struct SetMainTitle {
    using Record = CKPRCI_Information_SetMainTitle;
    static void Fill(Record& r) { r.SetTitle("Board \xC3\xA9 1"); }
    static void Check(const Record& r) { EXPECT_EQ(r.GetTitle(), "Board \xC3\xA9 1"); }
};

struct VisibleLayer {
    using Record = CKPRCI_VisibleLayer;
    static void Fill(Record& r) {
        r.SetLayerControlType(4);
        r.SetLayerNames(List({"ETCH/TOP", "ETCH/BOTTOM"}));
        r.SetVisible(1);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetLayerControlType(), 4);
        EXPECT_EQ(r.GetLayerNames(), List({"ETCH/TOP", "ETCH/BOTTOM"}));
        EXPECT_EQ(r.GetVisible(), 1);
    }
};

struct RedMarkSaveLoad {
    using Record = CKPRCI_RedMark_SaveLoad;
    static void Fill(Record& r) {
        r.SetReadState(1);
        r.SetAsciiData(2);
        r.SetRedMarkFilePath("/data/marks.rmk");
        r.SetTitleName_Delimiter("|");
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetReadState(), 1);
        EXPECT_EQ(r.GetAsciiData(), 2);
        EXPECT_EQ(r.GetRedMarkFilePath(), "/data/marks.rmk");
        EXPECT_EQ(r.GetTitleName_Delimiter(), "|");
    }
};

struct RedMarkLoadRV {
    using Record = CKPRCI_RedMark_Load_RV;
    static void Fill(Record& r) {
        r.SetErrorCode(-200);
        r.SetTitleNames(List({"first", "second"}));
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetErrorCode(), -200);
        CStringArray titles;
        r.GetTitleNames(titles);
        EXPECT_EQ(titles, List({"first", "second"}));
    }
};

struct RedMarkSelectedItem {
    using Record = CKPRCI_RedMark_SelectedItem;
    static void Fill(Record& r) { r.SetTitle("note 3"); }
    static void Check(const Record& r) { EXPECT_EQ(r.GetTitle(), "note 3"); }
};

struct RedMarkSelectedItemRV {
    using Record = CKPRCI_RedMark_SelectedItem_RV;
    static void Fill(Record& r) {
        r.SetErrorCode(-201);
        r.SetContents("line 1\r\nline 2");
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetErrorCode(), -201);
        EXPECT_EQ(r.GetContents(), "line 1\r\nline 2");
    }
};

struct RedMarkRemoveItem {
    using Record = CKPRCI_RedMark_RemoveItem;
    static void Fill(Record& r) { r.SetTitle("old"); }
    static void Check(const Record& r) { EXPECT_EQ(r.GetTitle(), "old"); }
};

struct RedMarkStatus {
    using Record = CKPRCI_RedMark_SetStatusForCalling;
    static void Fill(Record& r) {
        r.SetReturnMode(1);
        r.SetCallStatus(6);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.IsReturnMode(), 1);
        EXPECT_EQ(r.GetCallStatus(), 6);
    }
};

struct RedMarkStatusRV {
    using Record = CKPRCI_RedMark_SetStatusForCalling_RV;
    static void Fill(Record& r) {
        r.SetErrorCode(3);
        r.SetCallStatus(-6);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetErrorCode(), 3);
        EXPECT_EQ(r.GetCallStatus(), -6);
    }
};

struct PlaceStatus {
    using Record = CKPRCI_Information_GetReferencePlaceStatus;
    static void Fill(Record& r) {
        r.SetRefName("Q4");
        r.SetHighlight(1);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetRefName(), "Q4");
        EXPECT_EQ(r.IsHighlight(), 1);
    }
};

struct PlaceStatusRV {
    using Record = CKPRCI_Information_GetReferencePlaceStatus_RV;
    static void Fill(Record& r) {
        r.SetErrorCode(-202);
        r.SetStatusOfPlace(2);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetErrorCode(), -202);
        EXPECT_EQ(r.GetStatusOfPlace(), 2);
    }
};

struct CountForPlace {
    using Record = CKPRCI_Information_GetReferenceCountForPlace;
    static void Fill(Record& r) {
        r.SetRefNames(List({"R1", "R2", "C5"}));
        r.SetHighlight(3);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetRefNames(), List({"R1", "R2", "C5"}));
        EXPECT_EQ(r.IsHighlight(), 3);
    }
};

struct CountForPlaceRV {
    using Record = CKPRCI_Information_GetReferenceCountForPlace_RV;
    static void Fill(Record& r) {
        r.SetErrorCode(1);
        r.SetTopCount(10);
        r.SetBtmCount(20);
        r.SetElseCount(30);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetErrorCode(), 1);
        EXPECT_EQ(r.GetTopCount(), 10);
        EXPECT_EQ(r.GetBtmCount(), 20);
        EXPECT_EQ(r.GetElseCount(), 30);
    }
};

struct CountForPlaceOfPart {
    using Record = CKPRCI_Information_GetReferenceCountForPlaceOfPart;
    static void Fill(Record& r) {
        r.SetPartNames(List({"RES_0402", "CAP"}));
        r.SetHighlight(1);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetPartNames(), List({"RES_0402", "CAP"}));
        EXPECT_EQ(r.IsHighlight(), 1);
    }
};

struct CountForPlaceOfPartRV {
    using Record = CKPRCI_Information_GetReferenceCountForPlaceOfPart_RV;
    static void Fill(Record& r) {
        r.SetErrorCode(-7);
        r.SetTopCount(1);
        r.SetBtmCount(2);
        r.SetElseCount(3);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetErrorCode(), -7);
        EXPECT_EQ(r.GetTopCount(), 1);
        EXPECT_EQ(r.GetBtmCount(), 2);
        EXPECT_EQ(r.GetElseCount(), 3);
    }
};

struct PinPitch {
    using Record = CKPRCI_Information_GetPinPitch;
    static void Fill(Record& r) {
        r.SetFunctionType(1);
        r.SetRefName("J2");
        r.SetUnit(3);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetFunctionType(), 1);
        EXPECT_EQ(r.GetRefName(), "J2");
        EXPECT_EQ(r.GetUnit(), 3);
    }
};

struct PinPitchRV {
    using Record = CKPRCI_Information_GetPinPitch_RV;
    static void Fill(Record& r) {
        r.SetErrorCode(-200);
        r.SetPinPitch(0.635);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetErrorCode(), -200);
        EXPECT_EQ(r.GetPinPitch(), 0.635);
    }
};

struct CompPinCount {
    using Record = CKPRCI_Information_GetCompPinCount;
    static void Fill(Record& r) {
        r.SetFunctionType(1);
        r.SetObjectName("QFP64");
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetFunctionType(), 1);
        EXPECT_EQ(r.GetObjectName(), "QFP64");
    }
};

struct CompPinCountRV {
    using Record = CKPRCI_Information_GetCompPinCount_RV;
    static void Fill(Record& r) {
        r.SetErrorCode(-201);
        r.SetPinCount(64);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetErrorCode(), -201);
        EXPECT_EQ(r.GetPinCount(), 64);
    }
};

struct PinListOfNet {
    using Record = CKPRCI_Information_GetPinListInfoOfNet_RefPin;
    static void Fill(Record& r) {
        r.SetRefName("U3");
        r.SetPinName("A1");
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetRefName(), "U3");
        EXPECT_EQ(r.GetPinName(), "A1");
    }
};

struct PinListOfNetRV {
    using Record = CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV;
    static void Fill(Record& r) {
        r.SetErrorCode(2);
        r.SetNetName("VDD");
        r.SetRefPinNames(List({"U3.A1", "C1.2", "R4.1"}));
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetErrorCode(), 2);
        EXPECT_EQ(r.GetNetName(), "VDD");
        CStringArray pins;
        r.GetRefPinNames(pins);
        EXPECT_EQ(pins, List({"U3.A1", "C1.2", "R4.1"}));
    }
};

struct PolygonMerge {
    using Record = CKPRCI_PolygonMerge;
    static void Fill(Record& r) {
        r.SetMode(8);
        r.SetRun(List({"TOP", "INNER1"}), "PWR", 0.75);
        r.SetCWIndex(2);
        r.SetCCWIndex(5);
        r.SetPointIndex(11);
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetMode(), 8);
        EXPECT_EQ(r.GetLayerNames(), List({"TOP", "INNER1"}));
        EXPECT_EQ(r.GetNetName(), "PWR");
        EXPECT_EQ(r.GetDivision(), 0.75);
        EXPECT_EQ(r.GetCWIndex(), 2);
        EXPECT_EQ(r.GetCCWIndex(), 5);
        EXPECT_EQ(r.GetPointIndex(), 11);
    }
};

struct PolygonMergeRV {
    using Record = CKPRCI_PolygonMerge_RV;
    static void Fill(Record& r) {
        r.SetErrorCode(-200);
        r.SetMode(10);
        r.SetCWPolygonCount(3);
        r.SetCCWPolygonCount(4);
        r.SetCWPointCount(5);
        r.SetCCWPointCount(6);
        r.SetPointX(1.25);
        r.SetPointY(-7.5);
        r.SetCWPointsX(CArrayD{0.0, 1.0, 2.0});
        r.SetCWPointsY(CArrayD{3.0, 4.0, 5.0});
        r.SetCCWPointsX(CArrayD{-1.5});
        r.SetCCWPointsY(CArrayD{-2.5});
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetErrorCode(), -200);
        EXPECT_EQ(r.GetMode(), 10);
        EXPECT_EQ(r.GetCWPolygonCount(), 3);
        EXPECT_EQ(r.GetCCWPolygonCount(), 4);
        EXPECT_EQ(r.GetCWPointCount(), 5);
        EXPECT_EQ(r.GetCCWPointCount(), 6);
        EXPECT_EQ(r.GetPointX(), 1.25);
        EXPECT_EQ(r.GetPointY(), -7.5);
        EXPECT_TRUE(r.GetCWPointsX() == (CArrayD{0.0, 1.0, 2.0}));
        EXPECT_TRUE(r.GetCWPointsY() == (CArrayD{3.0, 4.0, 5.0}));
        EXPECT_TRUE(r.GetCCWPointsX() == (CArrayD{-1.5}));
        EXPECT_TRUE(r.GetCCWPointsY() == (CArrayD{-2.5}));
    }
};

struct CaptureBitmap {
    using Record = CKPRCI_Capture_ExportBitmap;
    static void Fill(Record& r) { r.SetExport_FilePath("/tmp/view.bmp"); }
    static void Check(const Record& r) { EXPECT_EQ(r.GetExport_FilePath(), "/tmp/view.bmp"); }
};

struct ExportAscii {
    using Record = CKPRCI_Export_PDBBAscii;
    static void Fill(Record& r) { r.SetPdbbaFilePath("/tmp/board.txt"); }
    static void Check(const Record& r) { EXPECT_EQ(r.GetPdbbaFilePath(), "/tmp/board.txt"); }
};

struct Explorer {
    using Record = CKPRCI_Explorer;
    static void Fill(Record& r) {
        r.SetSelectionTypeA(2);
        r.SetObjectListFilePath("/tmp/objects.lst");
    }
    static void Check(const Record& r) {
        EXPECT_EQ(r.GetSelectionTypeA(), 2);
        EXPECT_EQ(r.GetObjectListFilePath(), "/tmp/objects.lst");
    }
};

template <class T>
class EveryRecord : public ::testing::Test {};

using AllRecords = ::testing::Types<
    Highlight, HighlightColor, HighlightRefPin, HighlightSection, HighlightSegment, SimpleCMD, ObjectOnOff, ToolOnOff,
    ZoomArea, SetWindowPosition, RotateBoard, SetMainTitle, VisibleLayer, RedMarkSaveLoad, RedMarkLoadRV,
    RedMarkSelectedItem, RedMarkSelectedItemRV, RedMarkRemoveItem, RedMarkStatus, RedMarkStatusRV, PlaceStatus,
    PlaceStatusRV, CountForPlace, CountForPlaceRV, CountForPlaceOfPart, CountForPlaceOfPartRV, PinPitch, PinPitchRV,
    CompPinCount, CompPinCountRV, PinListOfNet, PinListOfNetRV, PolygonMerge, PolygonMergeRV, CaptureBitmap,
    ExportAscii, Explorer>;
TYPED_TEST_SUITE(EveryRecord, AllRecords);

TYPED_TEST(EveryRecord, ImageLoadsBackIntoAFreshRecord) {
    using Record = typename TypeParam::Record;
    Record original;
    TypeParam::Fill(original);
    const Bytes image = Store(original);

    Record loaded;
    EXPECT_EQ(Load(image, loaded), 0u) << "the load must consume the whole image";
    TypeParam::Check(loaded);
    EXPECT_EQ(Hex(Store(loaded)), Hex(image));
}

TYPED_TEST(EveryRecord, LoadReplacesEveryPreviousValue) {
    // Loading into a record that already holds values leaves exactly the image's
    // values: lists are replaced, not appended to.
    using Record = typename TypeParam::Record;
    Record stale;
    TypeParam::Fill(stale);
    Record empty;
    const Bytes fresh = Store(empty);
    ASSERT_EQ(Load(fresh, stale), 0u);
    EXPECT_EQ(Hex(Store(stale)), Hex(fresh));
}

TYPED_TEST(EveryRecord, CopyAndAssignmentCarryEveryField) {
    using Record = typename TypeParam::Record;
    Record original;
    TypeParam::Fill(original);

    Record copied(original);
    TypeParam::Check(copied);

    Record assigned;
    assigned = original;
    TypeParam::Check(assigned);
}

TYPED_TEST(EveryRecord, EveryTruncatedImageIsRefused) {
    using Record = typename TypeParam::Record;
    Record original;
    TypeParam::Fill(original);
    const Bytes image = Store(original);
    for (size_t length = 0; length < image.size(); ++length) {
        const Bytes part(image.begin(), image.begin() + static_cast<std::ptrdiff_t>(length));
        Record loaded;
        EXPECT_THROW(Load(part, loaded), CArchiveException) << "image cut to " << length << " of " << image.size();
    }
}

template <class T>
class EveryCommand : public ::testing::Test {};

using CommandRecords = ::testing::Types<
    Highlight, HighlightColor, HighlightRefPin, HighlightSection, HighlightSegment, SimpleCMD, ObjectOnOff, ToolOnOff,
    ZoomArea, SetWindowPosition, RotateBoard, SetMainTitle, VisibleLayer, RedMarkSaveLoad, RedMarkSelectedItem,
    RedMarkRemoveItem, RedMarkStatus, PlaceStatus, CountForPlace, CountForPlaceOfPart, PinPitch, CompPinCount,
    PinListOfNet, PolygonMerge, CaptureBitmap, ExportAscii, Explorer>;
TYPED_TEST_SUITE(EveryCommand, CommandRecords);

std::unique_ptr<CKPRCI__Base> LoadBytes(const Bytes& payload) {
    CMemFile file(1024);
    FillFile(file, payload);
    return LoadCommandRecord(file);
}

TYPED_TEST(EveryCommand, FactoryRebuildsTheImage) {
    using Record = typename TypeParam::Record;
    static_assert(std::is_base_of<CKPRCI__Base, Record>::value, "commands only");
    Record original;
    TypeParam::Fill(original);
    std::unique_ptr<CKPRCI__Base> loaded = LoadBytes(Store(original));
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(loaded->GetClassID(), original.GetClassID());
    const Record* typed = dynamic_cast<const Record*>(loaded.get());
    ASSERT_NE(typed, nullptr);
    TypeParam::Check(*typed);
}

TYPED_TEST(EveryCommand, FactoryRefusesTruncatedAndPaddedImages) {
    using Record = typename TypeParam::Record;
    Record original;
    TypeParam::Fill(original);
    const Bytes image = Store(original);
    for (size_t length = 0; length < image.size(); ++length) {
        const Bytes part(image.begin(), image.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(LoadBytes(part), nullptr) << "image cut to " << length << " of " << image.size();
    }
    // Anything after the last field makes it something other than one record's image.
    for (uint8_t extra : {0x00, 0x01, 0xFF}) {
        Bytes padded = image;
        padded.push_back(extra);
        EXPECT_EQ(LoadBytes(padded), nullptr) << "one byte " << int(extra) << " after the image";
    }
}

}  // namespace
