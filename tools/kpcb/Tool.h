// kpcb: one subcommand per exported function of KPCBAPI. This header holds what
// every subcommand shares: the session of one kpcb process, the registration of
// subcommands, and the way status codes become messages and exit statuses.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace kpcb {

// Exit statuses of kpcb (docs/kpcb.md lists them).
constexpr int kExitOk = 0;
constexpr int kExitNo = 1;  // is-running: the process does not run
constexpr int kExitUsage = 2;  // the command line or a script line was not understood
constexpr int kExitNotRunning = 3;  // -4
constexpr int kExitSlot = 4;  // -5
constexpr int kExitNoReply = 5;  // -7
constexpr int kExit200 = 6;  // -200
constexpr int kExit201 = 7;  // -201
constexpr int kExit202 = 8;  // -202
constexpr int kExitOther = 9;  // any other failure code (a viewer's own hello failure, an answer passed through)
constexpr int kExitRefused = 10;  // extraction 2: the arguments were refused
constexpr int kExitNoBoard = 11;  // extraction 3: the importer gave no board
constexpr int kExitSaveFailed = 12;  // extraction 4: the board could not be saved

// The exit status for a status code of a remote-control function (0 for 0).
int ExitStatusOf(int status);

// What status codes mean for one subcommand, beyond the common table.
using Meanings = std::map<int, std::string>;

// The common meaning of a status code, or the subcommand's own from special.
std::string MeaningOf(int status, const Meanings& special = {});

// What one kpcb process carries from one call to the next: the commands of a
// script share it.
struct Session {
    std::ostream* out = nullptr;
    std::ostream* err = nullptr;
    bool inScript = false;
    // The viewer started by the latest launch of this process (0: none); the
    // default viewer of the script's later lines.
    int currentPid = 0;
    // Viewers launched by this process and not yet closed by it.
    std::vector<int> launched;
};

// A mistake in how a subcommand was called that the parser cannot see (a missing
// --pid, a bad colour). kpcb reports it and ends with kExitUsage.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Tool;

// One subcommand: its parser, its action and the values its options fill.
class Command {
public:
    Command(Tool& tool, CLI::App* parser, bool forViewer);
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    CLI::App* parser() const { return m_parser; }
    const std::string& name() const { return m_parser->get_name(); }
    Session& session() const;
    std::ostream& out() const { return *session().out; }
    std::ostream& err() const { return *session().err; }

    // A value that lives as long as the command, for an option to fill.
    template <class T>
    T& Hold(T initial = T()) {
        auto value = std::make_shared<T>(std::move(initial));
        m_held.push_back(value);
        return *value;
    }

    // What the command does once its arguments are parsed; gives the exit status.
    void Does(std::function<int()> action) { m_action = std::move(action); }
    int Act() const { return m_action ? m_action() : kExitOk; }

    // The addressed viewer: --pid, else KPCB_PID, else (in a script) the viewer that
    // the script launched last. Throws UsageError when there is none.
    int Pid() const;

    // 0 gives kExitOk; any other status prints "kpcb: <command>: <code>: <meaning>"
    // on the error stream and gives its exit status.
    int Finish(int status, const Meanings& special = {}) const;
    // Reports a failure that is not a status code (exit status as given).
    int Fail(const std::string& message, int exitStatus) const;

private:
    Tool& m_tool;
    CLI::App* m_parser;
    int m_pid = 0;
    CLI::Option* m_pidOption = nullptr;
    std::function<int()> m_action;
    std::vector<std::shared_ptr<void>> m_held;
};

// The whole command line: every subcommand registered on one parser.
class Tool {
public:
    explicit Tool(Session& session);
    Tool(const Tool&) = delete;
    Tool& operator=(const Tool&) = delete;

    Session& session() const { return m_session; }
    CLI::App& parser() { return m_app; }

    // A subcommand that talks to no viewer (launch, extraction, run).
    Command& Add(const std::string& name, const std::string& help);
    // A subcommand that addresses a viewer: it takes --pid.
    Command& AddForViewer(const std::string& name, const std::string& help);
    // Help groups: the subcommands added after this call are listed under title.
    void Group(const std::string& title) { m_group = title; }

    // Parses the arguments (without the program name), runs the chosen subcommand
    // and gives the exit status. Usage errors and --help are printed here.
    int Run(const std::vector<std::string>& args);

private:
    Session& m_session;
    CLI::App m_app;
    int m_timeout = 0;
    CLI::Option* m_timeoutOption = nullptr;
    CLI::Option* m_keepOption = nullptr;
    std::string m_group;
    std::vector<std::unique_ptr<Command>> m_commands;
};

// The families of subcommands, one registration function each.
void AddLaunchCommands(Tool& tool);
void AddViewCommands(Tool& tool);
void AddHighlightCommands(Tool& tool);
void AddLayerCommands(Tool& tool);
void AddRedMarkCommands(Tool& tool);
void AddInformationCommands(Tool& tool);
void AddMergeCommands(Tool& tool);
void AddCaptureCommands(Tool& tool);
void AddExtractionCommands(Tool& tool);
// `run`: not offered inside a script.
void AddScriptCommand(Tool& tool);

// Closes, waiting for each, the viewers that this process launched and that are
// still open (KPCB_Exit works only from the launching process).
void CloseLaunchedViewers(Session& session);

}  // namespace kpcb
