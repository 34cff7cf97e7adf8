// Runs the kpcb program that sits beside the test program, as a separate process.
#pragma once

#include <string>
#include <vector>

namespace tool_test {

struct ToolResult {
    int status = -1;  // the exit status; -1 when kpcb could not be run or was stopped
    std::string out;  // standard output
    std::string err;  // standard error
};

// Runs the program of that name beside the test program with args, in the folder
// cwd (empty: this process's own), with input on its standard input. A program that
// takes more than two minutes is killed (status -1).
ToolResult RunBeside(const std::string& program, const std::vector<std::string>& args, const std::string& cwd = "",
                     const std::string& input = "");
// The same for kpcb.
inline ToolResult RunKpcb(const std::vector<std::string>& args, const std::string& cwd = "",
                          const std::string& input = "") {
    return RunBeside("kpcb", args, cwd, input);
}

// The number of a text that is one line holding only a whole number (a pid), else 0.
int NumberLine(const std::string& text);

// Implemented per platform: runs exe with args, standard streams from and to the
// given files. Gives the exit status, or -1.
int RunProgram(const std::string& exe, const std::vector<std::string>& args, const std::string& cwd,
               const std::string& inFile, const std::string& outFile, const std::string& errFile);

}  // namespace tool_test
