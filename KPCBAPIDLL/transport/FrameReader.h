// The serving side's frame reader: waits with a bound, so that a server can notice
// its close request, and refuses frames that break the rules instead of blocking.
#pragma once

#include "CMailslot.h"

enum class FrameResult {
    Frame,      // a whole frame is in the file
    Nothing,    // no message within the wait (or the wait was interrupted)
    Malformed,  // messages that do not form a frame; they were consumed and dropped
};

// Waits up to waitMs for a length message, then up to payloadWaitMs for its payload,
// whose size must equal the announced length.
FrameResult ReceiveFrameWithin(CMailslot& slot, CMemFile& file, int waitMs, int payloadWaitMs = 2000);

// Opens the write side of a slot that may appear a little later: retried for up to
// openWaitMs. 1 when open.
int OpenWhenReady(CMailslot& slot, int openWaitMs);
// Writes one frame (length message, then the payload unless it is empty) to the
// slot of that name, opened with OpenWhenReady. 1 on success.
int SendFrameTo(const CString& slotName, const void* payload, uint32_t size, int openWaitMs);
// Writes one bare message (no length message) to the slot of that name. 1 on success.
int SendMessageTo(const CString& slotName, const void* data, uint32_t size, int openWaitMs);
