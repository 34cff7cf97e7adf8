#include "ToolRun.h"

#include <fstream>
#include <sstream>

#include "TestPaths.h"
#include "platform.h"

namespace tool_test {

namespace {

// The file's text with line ends as "\n" (a program's text output on Windows ends
// its lines with "\r\n").
std::string ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream raw;
    raw << file.rdbuf();
    std::string text;
    for (const char c : raw.str()) {
        if (c == '\n' && !text.empty() && text.back() == '\r') text.pop_back();
        text += c;
    }
    return text;
}

}  // namespace

int NumberLine(const std::string& text) {
    if (text.size() < 2 || text.size() > 11 || text.back() != '\n') return 0;
    for (size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] < '0' || text[i] > '9') return 0;
    }
    return std::stoi(text);
}

ToolResult RunBeside(const std::string& program, const std::vector<std::string>& args, const std::string& cwd,
                     const std::string& input) {
    testing_support::TempDir streams;
    const std::string in = streams / "in", out = streams / "out", err = streams / "err";
    std::ofstream(in, std::ios::binary) << input;
    ToolResult result;
    const std::string exe = testing_support::Join(testing_support::BinDir(), program + platform::ExecutableSuffix());
    result.status = RunProgram(exe, args, cwd, in, out, err);
    result.out = ReadAll(out);
    result.err = ReadAll(err);
    return result;
}

}  // namespace tool_test
