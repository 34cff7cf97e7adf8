// The memory file under every frame: seeking, length changes and direct buffer access
// (plain writes and reads are exercised by every byte-image test).
#include <gtest/gtest.h>

#include <cstring>

#include "CException.h"
#include "ByteImages.h"

namespace {

TEST(MemFile, Seek) {
    CMemFile file(1024);
    FillFile(file, {'a', 'b', 'c', 'd', 'e', 'f'});
    EXPECT_EQ(file.Seek(2, CFile::begin), 2u);
    EXPECT_EQ(file.Seek(3, CFile::current), 5u);
    EXPECT_EQ(file.Seek(-1, CFile::current), 4u);
    EXPECT_EQ(file.Seek(-2, CFile::end), 4u);
    uint8_t c = 0;
    file.Read(&c, 1);
    EXPECT_EQ(c, 'e');

    // Before the start: refused, position kept.
    EXPECT_THROW(file.Seek(-1, CFile::begin), CInvalidArgException);
    EXPECT_THROW(file.Seek(-7, CFile::end), CInvalidArgException);
    EXPECT_EQ(file.GetPosition(), 5u);

    // Past the end: allowed; nothing to read there, and a write fills the gap with zeros.
    EXPECT_EQ(file.Seek(3, CFile::end), 9u);
    EXPECT_EQ(file.Read(&c, 1), 0u);
    EXPECT_EQ(file.GetLength(), 6u);
    file.Write("Z", 1);
    EXPECT_EQ(Hex(FileBytes(file)), "61 62 63 64 65 66 00 00 00 5A");
}

// Grown while holding data (the block moves), written through the buffer pointer,
// shrunk and grown again, set for overwrite, written past the end: the position
// follows the length, and every byte exposed reads 0, never an old byte.
TEST(MemFile, LengthChangesExposeOnlyZeros) {
    CMemFile file(16);
    FillFile(file, {1, 2, 3});
    file.SetLength(100000);  // beyond the grow step
    Bytes expected(100000, 0);
    expected[0] = 1, expected[1] = 2, expected[2] = 3;
    EXPECT_TRUE(FileBytes(file) == expected);
    file.SeekToBegin();
    void* start = nullptr;
    ASSERT_EQ(file.GetBufferPtr(CFile::bufferRead, 100000, &start, nullptr), 100000u);
    std::memset(start, 0xAB, 100000);

    file.Seek(6, CFile::begin);
    file.SetLength(3);  // shrinking clamps the position
    EXPECT_EQ(file.GetPosition(), 3u);
    file.Seek(1, CFile::begin);
    file.SetLength(6);  // growing keeps it
    EXPECT_EQ(file.GetPosition(), 1u);
    EXPECT_EQ(Hex(FileBytes(file)), "AB AB AB 00 00 00");
    file.SetLength(0);
    EXPECT_EQ(file.GetPosition(), 0u);
    EXPECT_TRUE(FileBytes(file).empty());

    // How a frame whose payload is all there is received: no zeros written first.
    file.SetLengthForOverwrite(5);
    file.SeekToBegin();
    ASSERT_EQ(file.GetBufferPtr(CFile::bufferRead, 5, &start, nullptr), 5u);
    std::memcpy(start, "abcde", 5);
    file.SetLength(2);
    file.SetLength(4);  // what the overwrite exposed is no exception
    EXPECT_EQ(Hex(FileBytes(file)), "61 62 00 00");
    file.SetLength(1);
    file.Seek(4, CFile::begin);
    file.Write("Z", 1);
    EXPECT_EQ(Hex(FileBytes(file)), "61 00 00 00 5A");
}

TEST(MemFile, BufferPointerForDirectReads) {
    CMemFile file(1024);
    FillFile(file, {10, 11, 12, 13, 14});
    file.Seek(1, CFile::begin);

    void* start = nullptr;
    void* max = nullptr;
    EXPECT_EQ(file.GetBufferPtr(CFile::bufferRead, 3, &start, &max), 3u);
    ASSERT_NE(start, nullptr);
    EXPECT_EQ(static_cast<uint8_t*>(max) - static_cast<uint8_t*>(start), 3);
    EXPECT_EQ(static_cast<uint8_t*>(start)[0], 11);
    EXPECT_EQ(file.GetPosition(), 4u);

    // Asking for more than is left hands out only what is left.
    EXPECT_EQ(file.GetBufferPtr(CFile::bufferRead, 100, &start, &max), 1u);
    EXPECT_EQ(static_cast<uint8_t*>(start)[0], 14);
    EXPECT_EQ(static_cast<uint8_t*>(max) - static_cast<uint8_t*>(start), 1);
    EXPECT_EQ(file.GetPosition(), 5u);
    EXPECT_EQ(file.GetBufferPtr(CFile::bufferRead, 10, &start, &max), 0u);
    EXPECT_EQ(start, max);

    EXPECT_EQ(file.GetBufferPtr(CFile::bufferCheck), 1u);
}

}  // namespace
