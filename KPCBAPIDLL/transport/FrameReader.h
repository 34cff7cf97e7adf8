// The serving side's frame reader: waits with a bound, so that a server can notice
// its close request, and refuses frames that break the rules instead of blocking.
#pragma once

#include <chrono>
#include <map>

#include "CMailslot.h"

enum class FrameResult {
    Frame,      // a whole frame is in the file
    Nothing,    // no message within the wait (or the wait was interrupted)
    Malformed,  // messages that do not form a frame; they were consumed and dropped
};

// Reads the frames that arrive at one slot. Every sender writes a frame's two messages
// in turn, but frames of different processes can interleave (A's length, B's length,
// A's payload, ...). Where the system names the sender of each message (POSIX) each
// length is paired with the next message of the same sender; where it does not
// (Windows) messages pair in arrival order.
class FrameReceiver {
public:
    // payloadWaitMs: how long an announced payload may take to follow its length.
    explicit FrameReceiver(int payloadWaitMs = 2000) : m_payloadWaitMs(payloadWaitMs) {}

    // Waits up to waitMs for a frame and puts its payload into file. A length whose
    // payload has not come within the payload wait is dropped (Malformed); while one
    // is awaited, the wait lasts until it comes or is given up.
    FrameResult Receive(CMailslot& slot, CMemFile& file, int waitMs);

private:
    struct Announced {
        uint32_t length;
        std::chrono::steady_clock::time_point until;  // the payload must have come by then
    };
    void Announce(int sender, uint32_t length);
    bool DropOverdue();
    int MsUntilFirstDue() const;

    int m_payloadWaitMs;
    std::map<int, Announced> m_announced;  // sender -> the length it announced
};

// Opens the write side of a slot that may appear a little later: retried for up to
// openWaitMs. 1 when open.
int OpenWhenReady(CMailslot& slot, int openWaitMs);
// Writes one frame to the slot of that name, opened with OpenWhenReady. 1 on success.
int SendFrameTo(const CString& slotName, const void* payload, uint32_t size, int openWaitMs);
// Writes one bare message (no length message) to the slot of that name. 1 on success.
int SendMessageTo(const CString& slotName, const void* data, uint32_t size, int openWaitMs);
