// The class-id factory: the ids it refuses, the payloads it refuses, and how it reads
// the file. Which id builds which record is checked with every record's bytes.
#include <gtest/gtest.h>

#include <climits>

#include "CaptureRecords.h"
#include "HighlightRecords.h"
#include "RecordFactory.h"
#include "RecordTestSupport.h"

namespace {

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
