// Status texts: one distinct text per known code, and a number of its own for an
// unknown code on every thread at once.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

#include "KPCBAPI.h"

TEST(StatusText, KnownCodesHaveDistinctTextsAndOthersTheirNumber) {
    const int known[] = {KPCB_OK, KPCB_EXIT_NOT_WAITED, KPCB_VIEWER_BOARD_UNREADABLE, KPCB_NOT_RUNNING,
                         KPCB_SLOT_UNAVAILABLE, KPCB_VIEWER_SLOT_TAKEN, KPCB_NO_REPLY, KPCB_ERR_200,
                         KPCB_ERR_201, KPCB_ERR_202};
    std::set<std::string> texts;
    for (int code : known) {
        const std::string text = KPCB_GetStatusText(code);
        EXPECT_EQ(text.find("unknown"), std::string::npos) << code;
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), sizeof known / sizeof known[0]);
    EXPECT_STREQ(KPCB_GetStatusText(-1), "unknown status -1");
    EXPECT_STREQ(KPCB_GetStatusText(-2147483647 - 1), "unknown status -2147483648");
}

TEST(StatusText, ThreadsKeepTheirOwnUnknownText) {
    std::vector<std::thread> threads;
    std::vector<int> wrong(4, 0);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t, &wrong] {
            const std::string expected = "unknown status " + std::to_string(1000 + t);
            for (int i = 0; i < 20000; ++i) {
                const char* text = KPCB_GetStatusText(1000 + t);
                if (expected != text) ++wrong[t];
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(wrong, std::vector<int>(4, 0));
}
