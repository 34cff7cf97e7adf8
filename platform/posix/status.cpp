// errno as a portable reason.
#include <cerrno>

#include "../platform.h"

namespace platform {

Status LastSystemError() {
    switch (errno) {
    case ENOENT: case ENOTDIR: case ECONNREFUSED: case ESRCH: return Error::kNotFound;
    case EACCES: case EPERM: case EROFS: return Error::kAccessDenied;
    case EEXIST: case EADDRINUSE: return Error::kExists;
#if EWOULDBLOCK != EAGAIN
    case EWOULDBLOCK:
#endif
    case EAGAIN: return Error::kWouldBlock;
    case ETIMEDOUT: return Error::kTimedOut;
    case EMSGSIZE: case E2BIG: case ENAMETOOLONG: case EFBIG: case ENOSPC: return Error::kTooBig;
    case EPIPE: case ECONNRESET: case ENOTCONN: case ECHILD: return Error::kGone;
    case ENOMEM: case ENOBUFS: case EMFILE: case ENFILE: return Error::kNoMemory;
    case EINVAL: case EBADF: case ENOEXEC: case ENOTSOCK: return Error::kInvalid;
    case EINTR: return Error::kInterrupted;
    default: return Error::kUnknown;
    }
}

}  // namespace platform
