// The class-id factory: which id builds which record, and which payloads it refuses.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <typeinfo>

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

struct Expected {
    int id;
    const char* name;
    const std::type_info& type;
};

// The ids shared with the viewer; they never change.
const Expected kTable[] = {
    {2, "CKPRCI_Explorer", typeid(CKPRCI_Explorer)},
    {3, "CKPRCI_Highlight", typeid(CKPRCI_Highlight)},
    {4, "CKPRCI_Highlight_Color", typeid(CKPRCI_Highlight_Color)},
    {5, "CKPRCI_Highlight_RefPin", typeid(CKPRCI_Highlight_RefPin)},
    {6, "CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin",
     typeid(CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin)},
    {7, "CKPRCI_Highlight_ZoomNetSegment", typeid(CKPRCI_Highlight_ZoomNetSegment)},
    {8, "CKPRCI_SimpleCMD", typeid(CKPRCI_SimpleCMD)},
    {9, "CKPRCI_ObjectOnOff", typeid(CKPRCI_ObjectOnOff)},
    {10, "CKPRCI_ZoomArea", typeid(CKPRCI_ZoomArea)},
    {11, "CKPRCI_SetWindowPosition", typeid(CKPRCI_SetWindowPosition)},
    {12, "CKPRCI_RotateBoard", typeid(CKPRCI_RotateBoard)},
    {13, "CKPRCI_VisibleLayer", typeid(CKPRCI_VisibleLayer)},
    {14, "CKPRCI_Information_GetReferencePlaceStatus", typeid(CKPRCI_Information_GetReferencePlaceStatus)},
    {15, "CKPRCI_Information_GetReferenceCountForPlace", typeid(CKPRCI_Information_GetReferenceCountForPlace)},
    {16, "CKPRCI_Information_GetReferenceCountForPlaceOfPart",
     typeid(CKPRCI_Information_GetReferenceCountForPlaceOfPart)},
    {17, "CKPRCI_Information_GetPinPitch", typeid(CKPRCI_Information_GetPinPitch)},
    {18, "CKPRCI_Information_GetCompPinCount", typeid(CKPRCI_Information_GetCompPinCount)},
    {19, "CKPRCI_Information_GetPinListInfoOfNet_RefPin", typeid(CKPRCI_Information_GetPinListInfoOfNet_RefPin)},
    {20, "CKPRCI_ToolOnOff", typeid(CKPRCI_ToolOnOff)},
    {21, "CKPRCI_RedMark_SaveLoad", typeid(CKPRCI_RedMark_SaveLoad)},
    {22, "CKPRCI_RedMark_SelectedItem", typeid(CKPRCI_RedMark_SelectedItem)},
    {23, "CKPRCI_RedMark_RemoveItem", typeid(CKPRCI_RedMark_RemoveItem)},
    {24, "CKPRCI_RedMark_SetStatusForCalling", typeid(CKPRCI_RedMark_SetStatusForCalling)},
    {25, "CKPRCI_Capture_ExportBitmap", typeid(CKPRCI_Capture_ExportBitmap)},
    {26, "CKPRCI_Export_PDBBAscii", typeid(CKPRCI_Export_PDBBAscii)},
    {27, "CKPRCI_Information_SetMainTitle", typeid(CKPRCI_Information_SetMainTitle)},
    {28, "CKPRCI_PolygonMerge", typeid(CKPRCI_PolygonMerge)},
};

TEST(CommandFactory, EveryIdBuildsItsOwnClass) {
    for (const Expected& e : kTable) {
        SCOPED_TRACE(e.name);
        std::unique_ptr<CKPRCI__Base> record = CreateCommandRecord(e.id);
        ASSERT_NE(record, nullptr);
        EXPECT_TRUE(typeid(*record) == e.type);
        EXPECT_EQ(record->GetClassID(), e.id);
        ASSERT_NE(CommandRecordName(e.id), nullptr);
        EXPECT_STREQ(CommandRecordName(e.id), e.name);
    }
}

TEST(CommandFactory, UnknownIdsBuildNothing) {
    for (int id : {0, 1, 29, 30, 100, -1, -3, INT_MAX, INT_MIN}) {
        SCOPED_TRACE(id);
        EXPECT_EQ(CreateCommandRecord(id), nullptr);
        EXPECT_EQ(CommandRecordName(id), nullptr);
    }
}

TEST(CommandFactory, RefusesPayloadsThatAreNotOneRecord) {
    // Short payloads and trailing bytes are tried on every record by the byte tables.
    EXPECT_EQ(LoadCommandBytes({0x1D, 0x00, 0x00, 0x00, 0x01, 'A'}), nullptr);  // an unknown id
    // The id is read as one little-endian 32-bit value: 3 in a high byte is not 3.
    EXPECT_EQ(LoadCommandBytes({0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00, 0x00}), nullptr);
    // A title announcing more bytes than follow.
    EXPECT_EQ(LoadCommandBytes({0x1B, 0x00, 0x00, 0x00, 0x05, 'a', 'b'}), nullptr);
    // A list announcing 0xFFFFFFFF names in a few bytes.
    EXPECT_EQ(LoadCommandBytes({0x0D, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00}),
              nullptr);
    // A string length of 0xFFFFFFFF.
    EXPECT_EQ(LoadCommandBytes({0x1B, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}), nullptr);
    // A segment index list longer than the payload.
    EXPECT_EQ(LoadCommandBytes({0x07, 0x00, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x40, 0x00, 0x00, 0x00, 0x00}),
              nullptr);
}

TEST(CommandFactory, ReadsTheWholeFileWhateverItsPosition) {
    // The payload is the file from its first byte, even when a previous reader left
    // the position elsewhere.
    CMemFile file(1024);
    FillFile(file, {0x19, 0x00, 0x00, 0x00, 0x02, 'a', 'b'});
    file.Seek(0, CFile::end);
    std::unique_ptr<CKPRCI__Base> record = LoadCommandRecord(file);
    ASSERT_NE(record, nullptr);
    auto* bitmap = dynamic_cast<CKPRCI_Capture_ExportBitmap*>(record.get());
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(bitmap->GetExport_FilePath(), "ab");
}

TEST(CommandFactory, LargeRecordsCrossTheArchiveBuffer) {
    // An image far larger than the 4096-byte archive buffer loads whole.
    CStringArray names;
    for (int i = 0; i < 3000; ++i) names.Add(CString('n', i % 7 + 1));
    CKPRCI_Highlight big;
    big.SetObjectNameList(names);
    big.SetContrast(123);
    const Bytes image = Store(big);
    ASSERT_GT(image.size(), 3u * 4096);
    std::unique_ptr<CKPRCI__Base> loaded = LoadCommandBytes(image);
    ASSERT_NE(loaded, nullptr);
    auto* highlight = dynamic_cast<CKPRCI_Highlight*>(loaded.get());
    ASSERT_NE(highlight, nullptr);
    EXPECT_EQ(highlight->GetObjectNameList(), names);
    EXPECT_EQ(highlight->GetContrast(), 123);
}

}  // namespace
