// Why a platform call failed, named the same way on every system.
#pragma once

namespace platform {

// The reasons a caller can tell apart. Mapped from errno on POSIX and from
// GetLastError on Windows; kUnknown covers the rest.
enum class Error : int {
    kNone = 0,      // success
    kNotFound,      // no such file, folder, slot, module or process
    kAccessDenied,  // not allowed, or held by someone else
    kExists,        // already there (a slot of that name, a file)
    kWouldBlock,    // no room or nothing there, and the call does not wait (or waited its limit)
    kTimedOut,      // nothing came within the wait
    kTooBig,        // a message, name or buffer size beyond what fits
    kGone,          // the other end has closed
    kNoMemory,      // out of memory, handles or descriptors
    kInvalid,       // a bad handle, argument or file format
    kInterrupted,   // a signal or close request ended the wait
    kUnknown,
};

// Fixed English text of an error ("timed out"); never null, static storage.
const char* ErrorText(Error error);

// The result of a platform call: true on success, and when false, why. Converts to
// bool so that a caller who only asks whether it worked writes `if (!platform::X())`.
class Status {
public:
    Status() = default;
    Status(Error error) : m_error(error) {}  // NOLINT: a reason is a status
    operator bool() const { return m_error == Error::kNone; }  // NOLINT: as the bool it was
    Error error() const { return m_error; }
    const char* Text() const { return ErrorText(m_error); }

private:
    Error m_error = Error::kNone;
};

// The calling thread's last system error (errno, GetLastError) as a failed status;
// kUnknown when the system recorded none.
Status LastSystemError();

}  // namespace platform
