#include "Tool.h"

#include "KPCBAPI.h"

namespace kpcb {

int ExitStatusOf(int status) {
    switch (status) {
        case KPCB_OK: return kExitOk;
        case KPCB_NOT_RUNNING: return kExitNotRunning;
        case KPCB_SLOT_UNAVAILABLE: return kExitSlot;
        case KPCB_NO_REPLY: return kExitNoReply;
        case KPCB_ERR_200: return kExit200;
        case KPCB_ERR_201: return kExit201;
        case KPCB_ERR_202: return kExit202;
        default: return kExitOther;
    }
}

std::string MeaningOf(int status, const Meanings& special) {
    const auto own = special.find(status);
    if (own != special.end()) return own->second;
    return KPCB_GetStatusText(status);
}

Command::Command(Tool& tool, CLI::App* parser, bool forViewer) : m_tool(tool), m_parser(parser) {
    if (!forViewer) return;
    m_pidOption = parser->add_option("--pid,-p", m_pid, "the viewer's process id, as launch printed it");
    if (!tool.session().inScript) {
        m_pidOption->envname("KPCB_PID");
    } else {
        m_pidOption->description("the viewer's process id (default: the viewer launched last in this script)");
    }
}

Session& Command::session() const { return m_tool.session(); }

int Command::Pid() const {
    if (m_pidOption && m_pidOption->count() > 0) return m_pid;
    if (session().inScript) {
        if (session().currentPid > 0) return session().currentPid;
        throw UsageError("which viewer? give --pid, or launch one earlier in the script");
    }
    throw UsageError("which viewer? give --pid (or set KPCB_PID)");
}

int Command::Finish(int status, const Meanings& special) const {
    if (status == KPCB_OK) return kExitOk;
    err() << "kpcb: " << name() << ": " << status << ": " << MeaningOf(status, special) << '\n';
    return ExitStatusOf(status);
}

int Command::Fail(const std::string& message, int exitStatus) const {
    err() << "kpcb: " << name() << ": " << message << '\n';
    return exitStatus;
}

Tool::Tool(Session& session)
    : m_session(session), m_app("Drives KorbinPCB viewers through KPCBAPI: one subcommand per exported function.", "kpcb") {
    m_app.require_subcommand(1);
    m_app.fallthrough();  // options of kpcb itself may follow the subcommand
    m_timeoutOption = m_app.add_option("--timeout", m_timeout,
                                       "limit every wait for a viewer's answer to this many milliseconds, after which "
                                       "the call fails with -7; 0 waits for ever (KPCB_SetReplyTimeout)");
    if (!session.inScript) m_timeoutOption->envname("KPCB_TIMEOUT");
    m_keepOption = m_app.add_flag("--keep-connections",
                                  "keep the connections to viewers open from one call to the next, for the rest of "
                                  "this process: the lines of a script run faster (KPCB_KeepConnections)");
    m_app.footer(
        "A viewer is named by its process id: --pid N, or KPCB_PID in the environment.\n"
        "A viewer launched by one kpcb call keeps running after it; only the process that launched\n"
        "it can close it with exit, so `kpcb run SCRIPT` launches, drives and closes within one call.\n"
        "Exit status: 0 done; 1 is-running: not running; 2 usage; 3 -4 not running; 4 -5 no slot;\n"
        "5 -7 no reply; 6 -200; 7 -201; 8 -202; 9 another code; 10-12 extraction results 2-4.\n"
        "A failure is reported with its code and the library's text for it (KPCB_GetStatusText).\n"
        "--timeout (or KPCB_TIMEOUT) limits the waits for a viewer's answers.\n"
        "Every subcommand takes --help.");
    AddLaunchCommands(*this);
    AddViewCommands(*this);
    AddHighlightCommands(*this);
    AddLayerCommands(*this);
    AddRedMarkCommands(*this);
    AddInformationCommands(*this);
    AddMergeCommands(*this);
    AddCaptureCommands(*this);
    AddExtractionCommands(*this);
    if (!session.inScript) AddScriptCommand(*this);
}

Command& Tool::Add(const std::string& name, const std::string& help) {
    CLI::App* parser = m_app.add_subcommand(name, help);
    if (!m_group.empty()) parser->group(m_group);
    m_commands.push_back(std::make_unique<Command>(*this, parser, false));
    return *m_commands.back();
}

Command& Tool::AddForViewer(const std::string& name, const std::string& help) {
    CLI::App* parser = m_app.add_subcommand(name, help);
    if (!m_group.empty()) parser->group(m_group);
    m_commands.push_back(std::make_unique<Command>(*this, parser, true));
    return *m_commands.back();
}

int Tool::Run(const std::vector<std::string>& args) {
    std::ostream& out = *m_session.out;
    std::ostream& err = *m_session.err;
    if (args.empty()) {
        err << m_app.help();
        return kExitUsage;
    }
    if (args[0].empty() || args[0][0] != '-') {
        try {
            m_app.get_subcommand(args[0]);
        } catch (const CLI::OptionNotFound&) {
            err << "kpcb: unknown subcommand \"" << args[0] << "\" (kpcb --help lists them)\n";
            return kExitUsage;
        }
    }
    std::vector<std::string> reversed(args.rbegin(), args.rend());  // the parser takes them last first
    try {
        m_app.parse(reversed);
    } catch (const CLI::ParseError& e) {
        return m_app.exit(e, out, err) == 0 ? kExitOk : kExitUsage;
    }
    if (m_timeoutOption->count() > 0) KPCB_SetReplyTimeout(m_timeout);
    if (m_keepOption->count() > 0) KPCB_KeepConnections(1);
    for (const auto& command : m_commands) {
        if (!command->parser()->parsed()) continue;
        try {
            return command->Act();
        } catch (const UsageError& e) {
            return command->Fail(e.what(), kExitUsage);
        }
    }
    return kExitUsage;
}

}  // namespace kpcb
