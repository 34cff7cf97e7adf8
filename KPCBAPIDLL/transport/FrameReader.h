// Reading frames: the one decoder of the two-message frame, used by the library for
// its replies and by the viewer for its commands, and the loading of a reply record
// from a received frame.
#pragma once

#include <chrono>
#include <map>

#include "CMailslot.h"

class CKPRCI__BaseRV;

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
//
// Refused, consumed and reported as Malformed: a first message that is not 4 bytes,
// a payload of another size than announced (except a shorter one within the
// shortfall allowed), and a length whose payload does not come within the payload wait.
class FrameReceiver {
public:
    // How long an announced payload may take by default: a sender writes both
    // messages at once, so only a sender cut short between them comes near it.
    static constexpr int kPayloadWaitMs = 2000;

    // payloadWaitMs: how long an announced payload may take to follow its length.
    // largestShortfall: how many bytes an announced length may exceed the payload that
    // comes; the file then takes the announced size and the rest is zeros. Larger
    // announcements are refused before anything is sized to them.
    explicit FrameReceiver(int payloadWaitMs = kPayloadWaitMs, uint32_t largestShortfall = 0)
        : m_payloadWaitMs(payloadWaitMs), m_largestShortfall(largestShortfall) {}

    // Waits up to waitMs for a frame and puts its payload into file. waitMs < 0 waits
    // as the slot's reads do (its read time-out, else for ever), through signals; a
    // wait of 0 or more ends early on a signal (Nothing). While a length is awaiting
    // its payload, the wait lasts until the payload comes or is given up.
    FrameResult Receive(CMailslot& slot, CMemFile& file, int waitMs);

private:
    struct Announced {
        uint32_t length;
        std::chrono::steady_clock::time_point until;  // the payload must have come by then
    };
    void Announce(int sender, uint32_t length);
    bool DropOverdue();
    int MsUntilFirstDue() const;
    FrameResult TakePayload(CMailslot& slot, CMemFile& file, int sender, uint32_t length, uint32_t size);

    int m_payloadWaitMs;
    uint32_t m_largestShortfall;
    std::map<int, Announced> m_announced;  // sender -> the length it announced
};

// Reads the next message whole and takes its first 4 bytes as value (a hello or an
// acknowledgement; bytes after them are ignored). 0 when none could be read or it is
// shorter than 4 bytes; value is then untouched.
int ReceiveLeadingInt(CMailslot& slot, int* value);

// Receives one frame on slot into file and loads record from it. The file is
// deleted on every path. 0 when no frame came, it is shorter than 4 bytes, or it is
// too short for the record's fields (the record may then be partly filled). Bytes
// after the fields are ignored.
int ReceiveRecord(CMailslot& slot, CMemFile* file, CKPRCI__BaseRV& record);

// Loads record from the start of file (a received payload): 1 when the file holds
// at least 4 bytes and every field of the record; never throws.
int LoadReplyRecord(CMemFile& file, CKPRCI__BaseRV& record);
