// GetLastError as a portable reason.
#include "win32.h"

namespace platform {

Status LastSystemError() {
    switch (GetLastError()) {
    case ERROR_FILE_NOT_FOUND: case ERROR_PATH_NOT_FOUND: case ERROR_MOD_NOT_FOUND: case ERROR_INVALID_NAME:
    case ERROR_BAD_NETPATH: case ERROR_PROC_NOT_FOUND: return Error::kNotFound;
    case ERROR_ACCESS_DENIED: case ERROR_SHARING_VIOLATION: case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT: return Error::kAccessDenied;
    case ERROR_ALREADY_EXISTS: case ERROR_FILE_EXISTS: return Error::kExists;
    case ERROR_NO_DATA: case ERROR_BROKEN_PIPE: case ERROR_PIPE_NOT_CONNECTED: return Error::kGone;
    case ERROR_SEM_TIMEOUT: case ERROR_TIMEOUT: case WAIT_TIMEOUT: return Error::kTimedOut;
    case ERROR_INSUFFICIENT_BUFFER: case ERROR_MORE_DATA: case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_DISK_FULL: return Error::kTooBig;
    case ERROR_NOT_ENOUGH_MEMORY: case ERROR_OUTOFMEMORY: case ERROR_NO_SYSTEM_RESOURCES:
    case ERROR_TOO_MANY_OPEN_FILES: return Error::kNoMemory;
    case ERROR_INVALID_HANDLE: case ERROR_INVALID_PARAMETER: case ERROR_BAD_EXE_FORMAT:
    case ERROR_BAD_FORMAT: return Error::kInvalid;
    case ERROR_OPERATION_ABORTED: return Error::kInterrupted;
    default: return Error::kUnknown;
    }
}

}  // namespace platform
