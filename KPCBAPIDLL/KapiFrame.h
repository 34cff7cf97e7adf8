// The shared shape of every exported command: string conversions at the boundary,
// and the one way a command or a query goes to a viewer.
#pragma once

#include <cwchar>
#include <memory>

#include "CKPRCI__Base.h"
#include "CMemFile.h"
#include "CString.h"
#include "CStringArray.h"
#include "Connection.h"
#include "KPCBAPI.h"

namespace kapi {

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

// One call to one viewer: its connection is chosen once, on construction.
class ViewerCall {
public:
    explicit ViewerCall(int pid) : m_connection(ConnectTo(pid)) {}
    bool ViewerRunning() { return m_connection->ViewerRunning(); }
    // The record serialised and sent one-way: 0 or -5 (Connection::OneWay).
    int OneWay(CKPRCI__Base& record);
    // The request serialised and sent (twice where SentTwice says so), its reply
    // loaded: 0, -5 or -7 (Connection::Query).
    int Query(CKPRCI__Base& request, CKPRCI__BaseRV& reply);
    // The record sent, then its acknowledgement on the return slot: 0, -5 or -7.
    int Acknowledged(CKPRCI__Base& record);

private:
    std::unique_ptr<Connection> m_connection;
};

// Runs body, turning anything it throws into failure: nothing crosses the boundary.
template <class Body>
int Guarded(Body&& body, int failure = KPCB_NO_REPLY) noexcept {
    try {
        return body();
    } catch (...) {
        return failure;
    }
}

// The liveness test (-4 when the viewer does not run), then body(call): for commands
// that look at their arguments after it. Guarded.
template <class Body>
int WithViewer(int pid, Body&& body) noexcept {
    return Guarded([&]() -> int {
        ViewerCall call(pid);
        if (!call.ViewerRunning()) return KPCB_NOT_RUNNING;
        return body(call);
    });
}

// The liveness test, then the record sent one-way. Guarded.
int OneWay(int pid, CKPRCI__Base& record) noexcept;
// The liveness test, then the query. Guarded.
int Query(int pid, CKPRCI__Base& request, CKPRCI__BaseRV& reply) noexcept;

}  // namespace kapi
