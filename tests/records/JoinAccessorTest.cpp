// The list replies hand their lists out joined with a caller's delimiter: between
// entries only, never after the last.
#include <gtest/gtest.h>

#include "InformationRecords.h"
#include "RecordTestSupport.h"
#include "RedMarkRecords.h"

namespace {

template <class Reply>
struct Joiner;

template <>
struct Joiner<CKPRCI_RedMark_Load_RV> {
    static void Set(CKPRCI_RedMark_Load_RV& r, const CStringArray& v) { r.SetTitleNames(v); }
    static CString Join(const CKPRCI_RedMark_Load_RV& r, const CString& d) { return r.GetTitleNames(d); }
    static void Get(const CKPRCI_RedMark_Load_RV& r, CStringArray& out) { r.GetTitleNames(out); }
};

template <>
struct Joiner<CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV> {
    using R = CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV;
    static void Set(R& r, const CStringArray& v) { r.SetRefPinNames(v); }
    static CString Join(const R& r, const CString& d) { return r.GetRefPinNames(d); }
    static void Get(const R& r, CStringArray& out) { r.GetRefPinNames(out); }
};

template <class Reply>
class JoinedList : public ::testing::Test {};

using ListReplies = ::testing::Types<CKPRCI_RedMark_Load_RV, CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV>;
TYPED_TEST_SUITE(JoinedList, ListReplies);

TYPED_TEST(JoinedList, EmptyListJoinsToNothing) {
    TypeParam reply;
    EXPECT_EQ(Joiner<TypeParam>::Join(reply, ","), "");
    Joiner<TypeParam>::Set(reply, CStringArray{});
    EXPECT_EQ(Joiner<TypeParam>::Join(reply, ", "), "");
}

TYPED_TEST(JoinedList, OneEntryHasNoDelimiter) {
    TypeParam reply;
    Joiner<TypeParam>::Set(reply, CStringArray{"U1-1"});
    EXPECT_EQ(Joiner<TypeParam>::Join(reply, ","), "U1-1");
}

TYPED_TEST(JoinedList, DelimiterOnlyBetweenEntries) {
    TypeParam reply;
    Joiner<TypeParam>::Set(reply, CStringArray{"A", "BB", "C"});
    EXPECT_EQ(Joiner<TypeParam>::Join(reply, ","), "A,BB,C");
    EXPECT_EQ(Joiner<TypeParam>::Join(reply, " | "), "A | BB | C");
    EXPECT_EQ(Joiner<TypeParam>::Join(reply, ""), "ABBC");
}

TYPED_TEST(JoinedList, EmptyEntriesKeepTheirPlace) {
    TypeParam reply;
    Joiner<TypeParam>::Set(reply, CStringArray{"", "B", ""});
    EXPECT_EQ(Joiner<TypeParam>::Join(reply, ";"), ";B;");
}

TYPED_TEST(JoinedList, CopyOutReplacesTheCallersList) {
    TypeParam reply;
    Joiner<TypeParam>::Set(reply, CStringArray{"x", "y"});
    CStringArray out{"old1", "old2", "old3"};
    Joiner<TypeParam>::Get(reply, out);
    EXPECT_EQ(out, (CStringArray{"x", "y"}));
}

TYPED_TEST(JoinedList, LoadedListJoins) {
    // The reply as it arrives: error code, then the list.
    TypeParam sent;
    Joiner<TypeParam>::Set(sent, CStringArray{"T1", "T2", "T3"});
    TypeParam received;
    ASSERT_EQ(Load(Store(sent), received), 0u);
    EXPECT_EQ(Joiner<TypeParam>::Join(received, "\n"), "T1\nT2\nT3");
}

}  // namespace
