// kpcb's help names a subcommand for every exported function; usage mistakes end
// with status 2.
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <set>
#include <sstream>

#include "ToolRun.h"

using tool_test::RunKpcb;

namespace {

std::string ReadHeader(const std::string& name) {
    std::ifstream file(std::string(KPCB_INCLUDE_DIR) + "/" + name);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

bool IsWordChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

// Every function that the public headers export, by name (the word before the "("
// that follows KPCBAPI_EXPORT); the helpers that only free or read back results are
// left out (the subcommands use them underneath).
std::set<std::string> ExportedFunctions() {
    std::set<std::string> names;
    const std::string marker = "KPCBAPI_EXPORT ";
    for (const char* header : {"KPCBAPI.h", "KPCBAPI.hpp", "KPCBAPIExtract.h"}) {
        const std::string text = ReadHeader(header);
        EXPECT_FALSE(text.empty()) << header;
        for (size_t at = text.find(marker); at != std::string::npos; at = text.find(marker, at + 1)) {
            size_t end = text.find('(', at);
            if (end == std::string::npos) break;
            while (end > at && !IsWordChar(text[end - 1])) --end;
            size_t begin = end;
            while (begin > at && IsWordChar(text[begin - 1])) --begin;
            const std::string name = text.substr(begin, end - begin);
            if (name.rfind("KPCB_", 0) != 0 && name.rfind("ExtractPdbbFrom", 0) != 0) continue;
            if (name.rfind("KPCB_ArrayD_", 0) == 0 || name == "KPCB_FreeString") continue;
            names.insert(name);
        }
    }
    return names;
}

// Whether text holds word as a whole word.
bool HasWord(const std::string& text, const std::string& word) {
    for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
        const size_t after = at + word.size();
        if ((at == 0 || !IsWordChar(text[at - 1])) && (after == text.size() || !IsWordChar(text[after]))) return true;
    }
    return false;
}

}  // namespace

TEST(ToolHelp, NamesASubcommandForEveryExportedFunction) {
    const auto help = RunKpcb({"--help"});
    ASSERT_EQ(help.status, 0) << help.err;
    const auto functions = ExportedFunctions();
    EXPECT_GT(functions.size(), 60u);
    for (const auto& function : functions) {
        EXPECT_TRUE(HasWord(help.out, function)) << function << " has no subcommand";
    }
}

TEST(ToolHelp, UsageMistakesEndWithStatusTwo) {
    const auto nothing = RunKpcb({});
    EXPECT_EQ(nothing.status, 2);
    EXPECT_NE(nothing.err.find("Usage: kpcb"), std::string::npos);

    const auto unknown = RunKpcb({"zoom-inn", "--pid", "1"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_NE(unknown.err.find("zoom-inn"), std::string::npos) << unknown.err;

    const auto missingArgument = RunKpcb({"rotate", "--pid", "1"});
    EXPECT_EQ(missingArgument.status, 2);
    EXPECT_NE(missingArgument.err.find("ANGLE"), std::string::npos) << missingArgument.err;

    const auto badColor = RunKpcb({"highlight-color", "--pid", "1", "0", "GND", "--color", "300,0,0"});
    EXPECT_EQ(badColor.status, 2);
    EXPECT_NE(badColor.err.find("300,0,0"), std::string::npos) << badColor.err;

    const auto badSwitch = RunKpcb({"components", "--pid", "1", "maybe"});
    EXPECT_EQ(badSwitch.status, 2);
    EXPECT_NE(badSwitch.err.find("maybe"), std::string::npos) << badSwitch.err;

    const auto twoLetters = RunKpcb({"extract-zuken", "out.pdbb", "design", "aw"});
    EXPECT_EQ(twoLetters.status, 2);
    EXPECT_NE(twoLetters.err.find("one letter"), std::string::npos) << twoLetters.err;
}
