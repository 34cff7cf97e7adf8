// `run`: subcommands read from a script and run in this one process, so that a
// viewer launched by the script can be driven and closed by it.
#include <fstream>
#include <iostream>

#include "Text.h"
#include "Tool.h"

namespace kpcb {

namespace {

struct Script {
    std::string path;
    bool keepGoing = false;
    bool echo = false;
    bool leaveRunning = false;
};

std::string Trimmed(const std::string& line) {
    const size_t first = line.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return std::string();
    return line.substr(first, line.find_last_not_of(" \t\r\n") - first + 1);
}

int RunScript(const Command& c, const Script& script, std::istream& in) {
    Session session;
    session.out = c.session().out;
    session.err = c.session().err;
    session.inScript = true;
    int result = kExitOk;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        std::vector<std::string> words;
        std::string error;
        int status = kExitOk;
        if (!SplitScriptLine(line, words, error)) {
            c.err() << "kpcb: run: line " << number << ": " << error << '\n';
            status = kExitUsage;
        } else if (words.empty()) {
            continue;
        } else {
            if (script.echo) c.out() << "> " << Trimmed(line) << std::endl;
            Tool lineTool(session);
            status = lineTool.Run(words);
        }
        c.out().flush();
        if (status == kExitOk) continue;
        if (result == kExitOk) result = status;
        if (!script.keepGoing) {
            c.err() << "kpcb: run: stopped at line " << number << " (exit status " << status << ")\n";
            break;
        }
    }
    if (!script.leaveRunning) CloseLaunchedViewers(session);
    return result;
}

}  // namespace

void AddScriptCommand(Tool& tool) {
    tool.Group("Scripts");
    Command& c = tool.Add("run", "Runs subcommands from a script, one per line, in this one process.");
    c.parser()->footer(
        "Each line is a subcommand with its arguments, as on the command line. A viewer that a line launches is\n"
        "the default viewer of the later lines (no --pid needed), and exit can close it. Words are separated by\n"
        "blanks and grouped by \"double\" or 'single' quotes (inside double quotes, \\\" and \\\\ stand for \" and \\);\n"
        "a # that starts a word starts a comment. The script stops at the first failing line. Viewers that it\n"
        "launched and left open are closed (waited for) at the end.");
    Script& s = c.Hold<Script>();
    c.parser()->add_option("SCRIPT", s.path, "the script file, or - for standard input")->required();
    c.parser()->add_flag("--keep-going,-k", s.keepGoing,
                         "run every line; the exit status is that of the first failing line");
    c.parser()->add_flag("--echo,-e", s.echo, "print each line, after \"> \", before running it");
    c.parser()->add_flag("--leave-running", s.leaveRunning,
                         "leave open the viewers that the script launched and did not close");
    c.Does([&c, &s] {
        if (s.path == "-") return RunScript(c, s, std::cin);
        std::ifstream file(s.path);
        if (!file) return c.Fail("cannot read the script " + s.path, kExitUsage);
        return RunScript(c, s, file);
    });
}

}  // namespace kpcb
