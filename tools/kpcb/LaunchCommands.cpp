// launch, launch-hidden, is-running, exit.
#include <algorithm>

#include "KPCBAPI.h"
#include "Text.h"
#include "Tool.h"

namespace kpcb {

namespace {

// Codes of a launch, where the call says more than the library's own text.
const Meanings kLaunchMeanings = {
    {KPCB_SLOT_UNAVAILABLE, "the return slot is busy: another launch is under way"},
    {KPCB_NO_REPLY, "the viewer did not say hello"},
    {KPCB_ERR_200, "the board file does not exist"},
    {KPCB_ERR_201, "no viewer executable was found beside the library"},
    {KPCB_ERR_202, "the viewer process could not be created"},
};

void AddLaunch(Tool& tool, const std::string& name, const std::string& help, int (*launch)(const wchar_t*)) {
    Command& c = tool.Add(name, help);
    auto& file = c.Hold<std::string>();
    c.parser()->add_option("FILE", file, "the board database (.pdbb, or its text form .pdbba)")->required();
    c.Does([&c, &file, launch] {
        const std::string path = Absolute(file);
        const int pid = launch(Wide(path).c_str());
        if (pid <= 0) {
            Meanings meanings = kLaunchMeanings;
            meanings[KPCB_ERR_200] += ": " + path;
            meanings[KPCB_VIEWER_BOARD_UNREADABLE] =
                std::string(KPCB_GetStatusText(KPCB_VIEWER_BOARD_UNREADABLE)) + ": " + path;
            return c.Finish(pid, meanings);
        }
        Session& session = c.session();
        session.currentPid = pid;
        session.launched.push_back(pid);
        c.out() << pid << '\n';
        return kExitOk;
    });
}

void Forget(Session& session, int pid) {
    session.launched.erase(std::remove(session.launched.begin(), session.launched.end(), pid), session.launched.end());
}

}  // namespace

void AddLaunchCommands(Tool& tool) {
    tool.Group("Launch, liveness, exit");
    AddLaunch(tool, "launch",
              "Starts the viewer beside the library on a board file and prints its process id (KPCB_Launch).",
              KPCB_Launch);
    AddLaunch(tool, "launch-hidden", "As launch, with the viewer's window hidden (KPCB_Launch_HideMode).",
              KPCB_Launch_HideMode);

    {
        Command& c = tool.AddForViewer("is-running",
                                       "Prints \"running\" (exit 0) or \"not running\" (exit 1) (KPCB_IsRunning).");
        c.Does([&c] {
            const int running = KPCB_IsRunning(c.Pid());
            c.out() << (running == 1 ? "running" : "not running") << '\n';
            return running == 1 ? kExitOk : kExitNo;
        });
    }
    {
        Command& c = tool.AddForViewer("exit", "Switches the red-mark tool off and asks the viewer to close "
                                               "(KPCB_Exit).");
        c.parser()->footer("Only the process that launched a viewer can close it this way: launch and exit within\n"
                           "one `kpcb run` script. A viewer started by `kpcb launch` keeps running after that call;\n"
                           "end its process (on POSIX, SIGTERM is its close request).");
        auto& wait = c.Hold<bool>(false);
        c.parser()->add_flag("--wait,-w", wait, "wait until the viewer's process has ended");
        c.Does([&c, &wait] {
            const int pid = c.Pid();
            const int status = KPCB_Exit(pid, wait ? 1 : 0);
            if (status == KPCB_OK || status == KPCB_EXIT_NOT_WAITED) {
                Forget(c.session(), pid);
                return kExitOk;
            }
            if (status == KPCB_NOT_RUNNING && KPCB_IsRunning(pid)) {
                return c.Finish(status, {{KPCB_NOT_RUNNING,
                                          "the viewer runs, but this kpcb process did not launch it, and only the "
                                          "launching process can close it: launch and exit within one `kpcb run` "
                                          "script, or end the viewer's process (SIGTERM is its close request)"}});
            }
            return c.Finish(status);
        });
    }
}

void CloseLaunchedViewers(Session& session) {
    const std::vector<int> open = session.launched;
    for (const int pid : open) {
        if (KPCB_IsRunning(pid)) KPCB_Exit(pid, 1);
        Forget(session, pid);
    }
}

}  // namespace kpcb
