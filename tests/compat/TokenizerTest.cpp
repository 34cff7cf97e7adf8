// Splitting a text at any character of a separator set.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CTokenizer.h"

namespace {

std::vector<std::string> Split(const char* text, const char* separators) {
    CStringArray tokens;
    const INT_PTR n = CTokenizer(text, separators).GetTokenArray(tokens);
    EXPECT_EQ(n, tokens.GetSize());
    std::vector<std::string> out;
    for (INT_PTR i = 0; i < tokens.GetSize(); ++i) out.push_back(tokens.GetAt(i).str());
    return out;
}

using Tokens = std::vector<std::string>;

TEST(Tokenizer, EverySeparatorCharacterSplits) {
    EXPECT_EQ(Split("a,b,c", ","), (Tokens{"a", "b", "c"}));
    EXPECT_EQ(Split("a;b c,d", "; ,"), (Tokens{"a", "b", "c", "d"}));
    EXPECT_EQ(Split("abc", ","), (Tokens{"abc"}));
}

TEST(Tokenizer, RunsOfSeparatorsGiveNoEmptyToken) {
    EXPECT_EQ(Split("a,,,b", ","), (Tokens{"a", "b"}));
    EXPECT_EQ(Split("a,;,b", ",;"), (Tokens{"a", "b"}));
}

TEST(Tokenizer, SeparatorsAtEitherEndGiveNoEmptyToken) {
    EXPECT_EQ(Split(",a,b,", ","), (Tokens{"a", "b"}));
    EXPECT_EQ(Split(";;;a;;;", ";"), (Tokens{"a"}));
    EXPECT_EQ(Split(",,,", ","), Tokens{});
    EXPECT_EQ(Split(",", ","), Tokens{});
}

TEST(Tokenizer, EmptySeparatorSetKeepsTheWholeText) {
    EXPECT_EQ(Split("a, b;c", ""), (Tokens{"a, b;c"}));
    EXPECT_EQ(Split(" ", ""), (Tokens{" "}));
}

TEST(Tokenizer, EmptyTextGivesNoToken) {
    EXPECT_EQ(Split("", ","), Tokens{});
    EXPECT_EQ(Split("", ""), Tokens{});
}

TEST(Tokenizer, TokensKeepTheirWhiteSpace) {
    // Trimming is the caller's step; a blank token between separators is a token.
    EXPECT_EQ(Split(" a , b ", ","), (Tokens{" a ", " b "}));
    EXPECT_EQ(Split("a, ,b", ","), (Tokens{"a", " ", "b"}));
}

TEST(Tokenizer, ReplacesWhatTheListHeld) {
    CStringArray tokens{"old", "older"};
    EXPECT_EQ(CTokenizer("x", ",").GetTokenArray(tokens), 1);
    ASSERT_EQ(tokens.GetSize(), 1);
    EXPECT_EQ(tokens.GetAt(0), "x");
    EXPECT_EQ(CTokenizer("", ",").GetTokenArray(tokens), 0);
    EXPECT_TRUE(tokens.IsEmpty());
}

}  // namespace
