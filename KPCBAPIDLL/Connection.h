// The way from one call to one viewer, chosen once per call: slots opened and closed
// by the call (the default), or the ones kept for that viewer between calls once the
// caller switches keeping on. Both carry a command or a query by the same steps;
// they differ only in where the slots come from and how liveness is known.
#pragma once

#include <memory>

#include "CMailslot.h"

class CKPRCI__BaseRV;

namespace kapi {

class Connection {
public:
    virtual ~Connection() = default;

    // Whether the viewer's process still runs.
    virtual bool ViewerRunning() = 0;

    // One-way: opens the command slot (-5), sends the frame once (a failed write still
    // counts as handed over), 0.
    int OneWay(CMemFile& frame);
    // Query: opens the command slot (-5), [twice: sends], makes the reply slot (-5),
    // sends, receives one reply into reply (-7; bytes after its fields are ignored), 0.
    // With a reply time-out set the wait ends at the limit or when the viewer ends.
    int Query(CMemFile& frame, CKPRCI__BaseRV& reply, bool twice);
    // The explorer's way: sends once (-5), then makes the return slot (-5) and waits for
    // the viewer's 4-byte acknowledgement there (-7), 0.
    int Acknowledged(CMemFile& frame);

protected:
    explicit Connection(int pid) : m_pid(pid) {}
    // Takes what a query needs for itself before anything is sent; false: -5.
    virtual bool Reserve() { return true; }
    // Opens the viewer's command slot unless open; false when there is none.
    virtual bool OpenCommandSlot() = 0;
    // Sends one frame, after any other frame to this viewer has left whole. False only
    // when the slot is gone and cannot be opened again.
    virtual bool Send(CMemFile& frame) = 0;
    // This call's reply slot, empty of anything older; null when it cannot be had.
    virtual CMailslot* ReplySlot() = 0;
    // The reply did not come: nothing late may stay in the reply slot.
    virtual void ReplyLost() {}

    int m_pid;

private:
    bool AwaitMessage(CMailslot& slot);
};

// The connection for one call to the viewer pid: the kept one when keeping is on and
// the process runs, else fresh slots. Never null.
std::unique_ptr<Connection> ConnectTo(int pid);

// Whether the viewer runs, without making anything: the kept watch when there is one
// (a viewer found ended is forgotten), else a lookup of the process.
bool ViewerRunning(int pid);
// Switches keeping on or off for the whole process; off lets go of everything kept.
// Returns the previous setting.
bool SetKeepConnections(bool keep);
// Lets go of what is kept for that viewer.
void ForgetViewer(int pid);

// Time limit of every reply wait in milliseconds; 0 waits for ever.
void SetReplyTimeout(int milliseconds);
// With a time limit set: waits until a message is in slot, false when the limit passes
// or process pid ends first. Without one: true at once (the read then waits). Also
// applies the limit, or none, to the slot's reads. Used for the launch hello.
bool AwaitAnswer(CMailslot& slot, int pid);

}  // namespace kapi
