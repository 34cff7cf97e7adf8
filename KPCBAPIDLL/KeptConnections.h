// Connections to viewers kept open between calls, when the caller switches keeping
// on: per viewer, the write side of its command slot, the reply slot of this
// process and a watch on the viewer's process. Without keeping (the default) every
// call opens and closes its slots and looks the process up, as it always has.
#pragma once

#include <memory>
#include <mutex>

#include "CMailslot.h"
#include "platform.h"

namespace kapi {

// What is kept for one viewer. A call holds it through a shared pointer, so that
// forgetting the viewer meanwhile does not pull the slots from under it.
class KeptConnection {
public:
    explicit KeptConnection(int pid, platform::ProcessWatch watch);
    ~KeptConnection();
    KeptConnection(const KeptConnection&) = delete;
    KeptConnection& operator=(const KeptConnection&) = delete;

    bool Running() const;
    // Sends one frame through the kept command slot, opening it again once when the
    // kept one no longer reaches a reader. False when the slot cannot be opened.
    bool SendFrame(CFile& file);
    // The kept reply slot, created on first use; null when its name is taken. Only
    // the holder of ReplyLock() may use it.
    CMailslot* ReplySlot();
    // Drops the kept reply slot (after a reply went missing, nothing late stays in it).
    void DropReplySlot();
    std::mutex& ReplyLock() { return m_replyLock; }

private:
    int m_pid;
    platform::ProcessWatch m_watch;
    std::mutex m_commandLock;
    std::unique_ptr<CMailslot> m_command;
    std::mutex m_replyLock;
    std::unique_ptr<CMailslot> m_reply;
};

// Switches keeping on or off for the whole process; off lets go of everything kept.
// Returns the previous setting.
bool SetKeepConnections(bool keep);
// The kept connection to the viewer, made when keeping is on and the process runs;
// null otherwise.
std::shared_ptr<KeptConnection> ConnectionTo(int pid);
// Whether the viewer runs: the kept watch when there is one (a viewer found ended is
// forgotten), else a lookup of the process.
bool ViewerRunning(int pid);
// Lets go of what is kept for that viewer.
void ForgetViewer(int pid);

}  // namespace kapi
