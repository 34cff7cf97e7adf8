// kpcb's help: one subcommand for every exported function, and --help on each.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
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

// Every function that the public headers export, by name; the helpers that only
// free or read back results are left out (the subcommands use them underneath).
std::set<std::string> ExportedFunctions() {
    std::set<std::string> names;
    const std::regex exported(R"(KPCBAPI_EXPORT\s+[\w\s\*&]*?\b((KPCB|ExtractPdbbFrom)\w*)\s*\()");
    for (const char* header : {"KPCBAPI.h", "KPCBAPI.hpp", "KPCBAPIExtract.h"}) {
        const std::string text = ReadHeader(header);
        EXPECT_FALSE(text.empty()) << header;
        for (std::sregex_iterator it(text.begin(), text.end(), exported), end; it != end; ++it) {
            const std::string name = (*it)[1];
            if (name.rfind("KPCB_ArrayD_", 0) == 0 || name == "KPCB_FreeString") continue;
            names.insert(name);
        }
    }
    return names;
}

// The subcommands that the main help lists: "  name   description" lines.
std::vector<std::string> Subcommands(const std::string& help) {
    std::vector<std::string> names;
    const std::regex entry(R"(^  ([a-z0-9][a-z0-9-]*)\s{2,}\S)");
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);) {
        std::smatch match;
        if (std::regex_search(line, match, entry)) names.push_back(match[1]);
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
        EXPECT_TRUE(std::regex_search(help.out, std::regex("\\b" + function + "\\b")))
            << function << " has no subcommand";
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
