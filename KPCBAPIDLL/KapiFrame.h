// The shared shape of every exported command: slot names, string conversions at
// the boundary, and the two send paths (one-way; query with its reply slot).
#pragma once

#include <cwchar>

#include "CKPRCI__Base.h"
#include "CMailslot.h"
#include "CMemFile.h"
#include "CString.h"
#include "CStringArray.h"
#include "KPCBAPI.h"
#include "SlotNames.h"

namespace kapi {

constexpr int kOk = KPCB_OK;
constexpr int kNotRunning = KPCB_NOT_RUNNING;
constexpr int kSlotUnavailable = KPCB_SLOT_UNAVAILABLE;
constexpr int kNoReply = KPCB_NO_REPLY;

using ::MakeCommandSlotName;
using ::MakeReplySlotName;
using ::ReturnSlotName;

// Wide text to the narrow code page; null gives an empty string.
CString WideToCString(const wchar_t* text);
// Narrow text to a new wide buffer (free with FreeCoTaskWide). Null source: null
// result and 0. Returns 0, or a negative failure result (out of memory).
long CStringToCoTaskWide(const CString& text, wchar_t** result);
void FreeCoTaskWide(wchar_t* text);
// Hands a string result to the caller: allocated when *out is null, then copied into
// *out without a bound. A null out is left alone.
void DeliverString(const CString& text, wchar_t** out);
// Splits a names text at any of the separator characters and trims every token.
CStringArray SplitNames(const CString& text, const CString& separators);

// Writes record into a fresh memory file through a storing archive (closed before return).
void SerializeRecord(CKPRCI__Base& record, CMemFile& file);

// One-way: serialise, open the command slot (-5), send once (result not examined), 0.
int SendOneWay(int pid, CKPRCI__Base& record);

enum class Copies { Once, Twice };
// Query: serialise, open the command slot (-5), [Twice: send], create the reply slot
// (-5), send, receive one reply into reply (-7), 0. Liveness is the caller's test.
int SendQuery(int pid, CKPRCI__Base& request, CKPRCI__BaseRV& reply, Copies copies = Copies::Once);

// Time limit of every reply wait in milliseconds; 0 waits for ever.
void SetReplyTimeout(int milliseconds);
int ReplyTimeout();
// With a time limit set: waits until a message is in slot, and false when the limit
// passes or process pid ends first. Without one: true at once (the read then waits).
// Also applies the limit to the slot's reads.
bool AwaitAnswer(CMailslot& slot, int pid);

// Runs body, turning anything it throws into failure: nothing crosses the boundary.
template <class Body>
int Guarded(Body&& body, int failure = kNoReply) noexcept {
    try {
        return body();
    } catch (...) {
        return failure;
    }
}

}  // namespace kapi
