// The archive encodings at every boundary where their form changes, checked against
// bytes written out by hand, and loads that run past the end of their data.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "CArrayD.h"
#include "CArrayN.h"
#include "CStringArray.h"
#include "ByteImages.h"
#include "platform.h"

namespace {

CString Text(size_t n) {
    std::string s(n, 'x');
    for (size_t i = 0; i < n; ++i) s[i] = static_cast<char>('a' + i % 26);
    return CString(std::move(s));
}

CString LoadString(const Bytes& image, ULONGLONG* left = nullptr) {
    CMemFile file(1024);
    FillFile(file, image);
    CArchive ar(&file, CArchive::load, 4096);
    CString text;
    ar >> text;
    if (left) *left = ar.Remaining();
    return text;
}

struct StringBoundary {
    size_t length;
    Bytes prefix;  // written out by hand
};

TEST(ArchiveStrings, LengthPrefixAtEveryBoundary) {
    const StringBoundary cases[] = {
        {0, {0x00}},
        {1, {0x01}},
        {254, {0xFE}},
        {255, {0xFF, 0xFF, 0x00}},
        {256, {0xFF, 0x00, 0x01}},
        {0xFFFD, {0xFF, 0xFD, 0xFF}},
        // 0xFFFE in the 16-bit form would read as the wide-string marker.
        {0xFFFE, {0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00}},
        {0xFFFF, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00}},
        {0x10000, {0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x01, 0x00}},
    };
    for (const StringBoundary& c : cases) {
        SCOPED_TRACE(c.length);
        const CString text = Text(c.length);
        const Bytes image = Image([&](CArchive& ar) { ar << text; });
        ASSERT_EQ(image.size(), c.prefix.size() + c.length);
        EXPECT_EQ(Hex(Prefix(image, c.prefix.size())), Hex(c.prefix));
        EXPECT_TRUE(std::equal(image.begin() + static_cast<std::ptrdiff_t>(c.prefix.size()), image.end(),
                               text.str().begin()));
        ULONGLONG left = 99;
        EXPECT_EQ(LoadString(image, &left), text);
        EXPECT_EQ(left, 0u);
    }
}

TEST(ArchiveStrings, ReaderTakesLongFormsAndTheWideMarker) {
    // A reader takes any prefix form, even one longer than a writer would use.
    EXPECT_EQ(LoadString({0xFF, 0x02, 0x00, 'h', 'i'}), "hi");
    EXPECT_EQ(LoadString({0xFF, 0xFF, 0xFF, 0x02, 0x00, 0x00, 0x00, 'h', 'i'}), "hi");
    // FF FE FF, a length of 3 UTF-16 units, then "Ab\u00e9", which arrives in the
    // system's narrow code page (UTF-8 on POSIX, the ANSI code page on Windows).
    ULONGLONG left = 99;
    EXPECT_EQ(LoadString({0xFF, 0xFE, 0xFF, 0x03, 'A', 0x00, 'b', 0x00, 0xE9, 0x00}, &left),
              CString(platform::WideToAnsi(L"Ab\u00e9")));
    EXPECT_EQ(left, 0u);
    // The length after the marker has the same long forms.
    EXPECT_EQ(LoadString({0xFF, 0xFE, 0xFF, 0xFF, 0x02, 0x00, 'O', 0x00, 'K', 0x00}), "OK");
    EXPECT_EQ(LoadString({0xFF, 0xFE, 0xFF, 0x00}), "");
}

TEST(ArchiveCounts, SixteenAndThirtyTwoBitForms) {
    struct Case {
        size_t count;
        const char* hex;
    };
    for (const Case& c : {Case{0, "00 00"}, Case{1, "01 00"}, Case{0xFFFE, "FE FF"}, Case{0xFFFF, "FF FF FF FF 00 00"},
                          Case{0x12345, "FF FF 45 23 01 00"}}) {
        SCOPED_TRACE(c.count);
        const Bytes image = Image([&](CArchive& ar) { ar.WriteCount(c.count); });
        EXPECT_EQ(Hex(image), c.hex);
        CMemFile file(1024);
        FillFile(file, image);
        CArchive ar(&file, CArchive::load, 4096);
        EXPECT_EQ(ar.ReadCount(), c.count);
        EXPECT_EQ(ar.Remaining(), 0u);
    }
}

// The lists write their counts through the same forms.
TEST(ArchiveCounts, ListsAtTheCountBoundary) {
    for (INT_PTR n : {INT_PTR(0xFFFE), INT_PTR(0xFFFF)}) {
        SCOPED_TRACE(n);
        CStringArray strings;
        strings.SetSize(n);
        strings.SetAt(n - 1, "end");
        const Bytes image = Image([&](CArchive& ar) { strings.Serialize(ar); });
        const Bytes countBytes = n == 0xFFFE ? Bytes{0xFE, 0xFF} : Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00};
        EXPECT_EQ(Hex(Prefix(image, countBytes.size())), Hex(countBytes));
        EXPECT_EQ(image.size(), countBytes.size() + static_cast<size_t>(n) - 1 + 4);  // n-1 empty, one "end"

        CMemFile file(1024);
        FillFile(file, image);
        CArchive ar(&file, CArchive::load, 4096);
        CStringArray loaded;
        loaded.Serialize(ar);
        EXPECT_TRUE(loaded == strings);
    }
}

// ---- Loads that run past the end -------------------------------------------

template <class Reader>
void ExpectEndOfData(const Bytes& image, Reader read) {
    CMemFile file(1024);
    FillFile(file, image);
    CArchive ar(&file, CArchive::load, 4096);
    try {
        read(ar);
        ADD_FAILURE() << "the load of " << Hex(image) << " succeeded";
    } catch (const CArchiveException&) {
    } catch (const std::exception& e) {
        ADD_FAILURE() << "the load of " << Hex(image) << " raised " << e.what() << " instead of CArchiveException";
    }
}

TEST(ArchivePastTheEnd, NumbersAndStrings) {
    ExpectEndOfData({}, [](CArchive& ar) { int v; ar >> v; });
    ExpectEndOfData({0x01, 0x02, 0x03}, [](CArchive& ar) { int v; ar >> v; });
    ExpectEndOfData({0, 0, 0, 0, 0, 0, 0}, [](CArchive& ar) { double v; ar >> v; });
    ExpectEndOfData({0x0A, 'a', 'b', 'c'}, [](CArchive& ar) { CString s; ar >> s; });
    ExpectEndOfData({0xFF, 0x00}, [](CArchive& ar) { CString s; ar >> s; });
    ExpectEndOfData({0xFF, 0xFF, 0xFF, 0x10}, [](CArchive& ar) { CString s; ar >> s; });
    ExpectEndOfData({0xFF, 0xFE, 0xFF, 0x03, 'A', 0x00, 'b'}, [](CArchive& ar) { CString s; ar >> s; });
    ExpectEndOfData({0xFF, 0xFE, 0xFF}, [](CArchive& ar) { CString s; ar >> s; });
    ExpectEndOfData({0xFF}, [](CArchive& ar) { ar.ReadCount(); });
    ExpectEndOfData({0xFF, 0xFF, 0x01, 0x00}, [](CArchive& ar) { ar.ReadCount(); });
}

TEST(ArchivePastTheEnd, HugeAnnouncementsRaiseRatherThanAllocate) {
    // A 10-byte payload announcing 0xFFFFFFFF strings.
    ExpectEndOfData({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x01, 'a', 0x01, 'b'},
                    [](CArchive& ar) { CStringArray list; list.Serialize(ar); });
    ExpectEndOfData({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 0x00, 0x00, 0x00, 0x00},
                    [](CArchive& ar) { CArrayD values; values.Serialize(ar); });
    ExpectEndOfData({0xFF, 0xFF, 0x00, 0x00, 0x00, 0x40, 0x00, 0x00, 0x00, 0x00},
                    [](CArchive& ar) { CArrayN values; values.Serialize(ar); });
    ExpectEndOfData({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 'a', 'b'}, [](CArchive& ar) { CString s; ar >> s; });
    ExpectEndOfData({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 'a', 'b'}, [](CArchive& ar) { CString s; ar >> s; });
    ExpectEndOfData({0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x3F, 'a', 0x00},
                    [](CArchive& ar) { CString s; ar >> s; });
}

TEST(ArchivePastTheEnd, BytesBeyondTheFileLengthAreNeverRead) {
    // The memory file keeps its old bytes behind a shortened length; a load must
    // stop at the length, not at the end of the storage.
    CMemFile file(1024);
    FillFile(file, {0x08, 's', 't', 'a', 'l', 'e', '!', '!', '!'});
    file.SetLength(3);
    file.SeekToBegin();
    CArchive ar(&file, CArchive::load, 4096);
    CString text;
    try {
        ar >> text;
        FAIL() << "read past the length";
    } catch (const CArchiveException& e) {
        EXPECT_EQ(e.m_cause, CArchiveException::endOfFile);
    }
    EXPECT_EQ(text, "");
}

// ---- Buffering ---------------------------------------------------------------

TEST(ArchiveBuffer, DestructionWritesWhatIsBuffered) {
    CMemFile file(1024);
    {
        CArchive ar(&file, CArchive::store, 4096);
        ar << 7;
    }
    EXPECT_EQ(Hex(FileBytes(file)), "07 00 00 00");
}

TEST(ArchiveBuffer, ValuesStraddlingBufferRefillsLoadIntact) {
    // 4-, 8- and odd-length fields that cross the 4096-byte buffer at every offset.
    CMemFile file(1024);
    {
        CArchive ar(&file, CArchive::store, 4096);
        for (int i = 0; i < 3000; ++i) ar << i << static_cast<double>(i) / 4 << CString(char('a' + i % 26), i % 5);
        ar << CString(Text(5000));  // a block larger than the buffer
        ar << -1;
        ar.Close();
    }
    file.SeekToBegin();
    CArchive ar(&file, CArchive::load, 4096);
    for (int i = 0; i < 3000; ++i) {
        int n = 0;
        double d = 0;
        CString s;
        ar >> n >> d >> s;
        ASSERT_EQ(n, i);
        ASSERT_EQ(d, static_cast<double>(i) / 4);
        ASSERT_EQ(s, CString(char('a' + i % 26), i % 5));
    }
    CString big;
    int last = 0;
    ar >> big >> last;
    EXPECT_EQ(big, Text(5000));
    EXPECT_EQ(last, -1);
    EXPECT_EQ(ar.Remaining(), 0u);
}

}  // namespace
