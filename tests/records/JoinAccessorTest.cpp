// The list replies hand their lists out joined with a caller's delimiter (between
// entries only, never after the last) or copied out over the caller's list.
#include <gtest/gtest.h>

#include "InformationRecords.h"
#include "JoinText.h"
#include "RecordTestSupport.h"
#include "RedMarkRecords.h"

namespace {

TEST(JoinedList, DelimiterOnlyBetweenEntries) {
    struct Case {
        CStringArray list;
        const char* delimiter;
        const char* joined;
    };
    const Case cases[] = {
        {{}, ",", ""},
        {{"U1-1"}, ",", "U1-1"},
        {{"A", "BB", "C"}, " | ", "A | BB | C"},
        {{"A", "BB", "C"}, "", "ABBC"},
        {{"", "B", ""}, ";", ";B;"},
    };
    for (const Case& c : cases) EXPECT_EQ(records::Join(c.list, c.delimiter), c.joined);
}

TEST(JoinedList, EachReplyJoinsAndCopiesOutItsOwnList) {
    const CStringArray list{"x", "y"};
    CKPRCI_RedMark_Load_RV titles;
    titles.SetTitleNames(list);
    CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV pins;
    pins.SetRefPinNames(list);
    EXPECT_EQ(titles.GetTitleNames(","), "x,y");
    EXPECT_EQ(pins.GetRefPinNames(";"), "x;y");

    CStringArray out{"old1", "old2", "old3"};
    titles.GetTitleNames(out);
    EXPECT_EQ(out, list);
    out = CStringArray{"old1", "old2", "old3"};
    pins.GetRefPinNames(out);
    EXPECT_EQ(out, list);
}

}  // namespace
