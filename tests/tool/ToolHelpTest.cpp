// kpcb's help names a subcommand for every exported function; usage mistakes end
// with status 2.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "ToolRun.h"

using tool_test::RunKpcb;

// Every function that the public headers export (the name before the "(" that
// follows KPCBAPI_EXPORT), but for the helpers that only free or read back results,
// which the subcommands use underneath.
TEST(ToolHelp, NamesASubcommandForEveryExportedFunction) {
    const auto help = RunKpcb({"--help"});
    ASSERT_EQ(help.status, 0) << help.err;
    const std::regex exported(R"(KPCBAPI_EXPORT [^(;]*?\b((KPCB_|ExtractPdbbFrom)\w+)\s*\()");
    std::set<std::string> functions;
    for (const char* header : {"KPCBAPI.h", "KPCBAPI.hpp", "KPCBAPIExtract.h"}) {
        std::ostringstream text;
        text << std::ifstream(std::string(KPCB_INCLUDE_DIR) + "/" + header).rdbuf();
        const std::string s = text.str();
        for (std::sregex_iterator it(s.begin(), s.end(), exported), end; it != end; ++it) {
            const std::string name = (*it)[1];
            if (name.rfind("KPCB_ArrayD_", 0) != 0 && name != "KPCB_FreeString") functions.insert(name);
        }
    }
    EXPECT_GT(functions.size(), 60u);
    for (const auto& function : functions)
        EXPECT_TRUE(std::regex_search(help.out, std::regex("\\b" + function + "\\b"))) << function << " has no subcommand";
}

TEST(ToolHelp, UsageMistakesEndWithStatusTwo) {
    const struct {
        std::vector<std::string> args;
        std::string err;  // a part of standard error
    } cases[] = {
        {{}, "Usage: kpcb"},
        {{"zoom-inn", "--pid", "1"}, "zoom-inn"},
        {{"rotate", "--pid", "1"}, "ANGLE"},
        {{"highlight-color", "--pid", "1", "0", "GND", "--color", "300,0,0"}, "300,0,0"},
        {{"components", "--pid", "1", "maybe"}, "maybe"},
        {{"extract-zuken", "out.pdbb", "design", "aw"}, "one letter"},
    };
    for (const auto& c : cases) {
        const auto result = RunKpcb(c.args);
        EXPECT_EQ(result.status, 2) << c.err;
        EXPECT_NE(result.err.find(c.err), std::string::npos) << result.err;
    }
}
