// Splitting a text at any character of a separator set.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CTokenizer.h"

namespace {

using Tokens = std::vector<std::string>;

TEST(Tokenizer, SplitsAtEverySeparatorAndDropsEmptyTokens) {
    const struct {
        const char* text;
        const char* separators;
        Tokens tokens;
    } cases[] = {
        {"a;b c,d", "; ,", {"a", "b", "c", "d"}},
        {"abc", ",", {"abc"}},
        {"a,;,b", ",;", {"a", "b"}},             // a run of separators
        {";;;a;;;", ";", {"a"}},                 // separators at either end
        {",", ",", {}},
        {"a, b;c", "", {"a, b;c"}},              // no separators: the whole text
        {"", ",", {}},
        {" a , b ", ",", {" a ", " b "}},        // trimming is the caller's step
        {"a, ,b", ",", {"a", " ", "b"}},
    };
    for (const auto& c : cases) {
        CStringArray tokens{"left over"};  // a split replaces what the list held
        const INT_PTR n = CTokenizer(c.text, c.separators).GetTokenArray(tokens);
        Tokens got;
        for (INT_PTR i = 0; i < tokens.GetSize(); ++i) got.push_back(tokens.GetAt(i).str());
        EXPECT_EQ(got, c.tokens) << '"' << c.text << "\" at \"" << c.separators << '"';
        EXPECT_EQ(n, tokens.GetSize());
    }
}

}  // namespace
