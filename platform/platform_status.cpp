#include "platform_status.h"

namespace platform {

const char* ErrorText(Error error) {
    switch (error) {
    case Error::kNone: return "success";
    case Error::kNotFound: return "not found";
    case Error::kAccessDenied: return "access denied";
    case Error::kExists: return "already exists";
    case Error::kWouldBlock: return "would block";
    case Error::kTimedOut: return "timed out";
    case Error::kTooBig: return "too big";
    case Error::kGone: return "the other end has closed";
    case Error::kNoMemory: return "out of memory or handles";
    case Error::kInvalid: return "invalid handle, argument or format";
    case Error::kInterrupted: return "interrupted";
    case Error::kUnknown: break;
    }
    return "unknown error";
}

}  // namespace platform
