// kpcb's help: one subcommand for every exported function, and --help on each.
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

// The subcommands that the main help lists: "  name   description" lines.
std::vector<std::string> Subcommands(const std::string& help) {
    std::vector<std::string> names;
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);) {
        if (line.size() < 3 || line.compare(0, 2, "  ") != 0 || !std::islower(static_cast<unsigned char>(line[2]))) {
            continue;
        }
        const size_t end = line.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-", 2);
        if (end != std::string::npos && line.compare(end, 2, "  ") == 0) names.push_back(line.substr(2, end - 2));
    }
    return names;
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

TEST(ToolHelp, EverySubcommandHasItsOwnHelp) {
    const auto subcommands = Subcommands(RunKpcb({"--help"}).out);
    ASSERT_GT(subcommands.size(), 70u);
    for (const auto& name : subcommands) {
        const auto help = RunKpcb({name, "--help"});
        EXPECT_EQ(help.status, 0) << name << ": " << help.err;
        EXPECT_NE(help.out.find("Usage: kpcb " + name + " "), std::string::npos) << name << ":\n" << help.out;
    }
}

TEST(ToolHelp, SubcommandHelpShowsItsArguments) {
    const auto highlight = RunKpcb({"highlight", "--help"});
    ASSERT_EQ(highlight.status, 0);
    for (const char* part : {"KIND", "NAME", "--separators", "--contrast", "--pid", "KPCB_PID"}) {
        EXPECT_NE(highlight.out.find(part), std::string::npos) << part << " missing in:\n" << highlight.out;
    }
    const auto run = RunKpcb({"run", "--help"});
    ASSERT_EQ(run.status, 0);
    for (const char* part : {"SCRIPT", "--keep-going", "--echo", "--leave-running"}) {
        EXPECT_NE(run.out.find(part), std::string::npos) << part << " missing in:\n" << run.out;
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
