// The list replies hand their lists out joined with a caller's delimiter: between
// entries only, never after the last; or copied out over the caller's list.
#include <gtest/gtest.h>

#include "InformationRecords.h"
#include "RecordTestSupport.h"
#include "RedMarkRecords.h"

namespace {

struct Case {
    CStringArray list;
    const char* delimiter;
    const char* joined;
};

const Case kCases[] = {
    {{}, ",", ""},
    {{"U1-1"}, ",", "U1-1"},
    {{"A", "BB", "C"}, " | ", "A | BB | C"},
    {{"A", "BB", "C"}, "", "ABBC"},
    {{"", "B", ""}, ";", ";B;"},
};

TEST(JoinedList, RedMarkTitles) {
    for (const Case& c : kCases) {
        CKPRCI_RedMark_Load_RV reply;
        reply.SetTitleNames(c.list);
        EXPECT_EQ(reply.GetTitleNames(c.delimiter), c.joined);
    }
    CKPRCI_RedMark_Load_RV reply;
    reply.SetTitleNames(CStringArray{"x", "y"});
    CStringArray out{"old1", "old2", "old3"};
    reply.GetTitleNames(out);
    EXPECT_EQ(out, (CStringArray{"x", "y"}));
}

TEST(JoinedList, PinsOfANet) {
    for (const Case& c : kCases) {
        CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV reply;
        reply.SetRefPinNames(c.list);
        EXPECT_EQ(reply.GetRefPinNames(c.delimiter), c.joined);
    }
    CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV reply;
    reply.SetRefPinNames(CStringArray{"x", "y"});
    CStringArray out{"old1", "old2", "old3"};
    reply.GetRefPinNames(out);
    EXPECT_EQ(out, (CStringArray{"x", "y"}));
}

}  // namespace
