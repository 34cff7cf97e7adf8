// Ending a started process that will never be served.
#include <windows.h>

#include "../platform.h"

namespace platform {

void AbandonProcess(int pid) {
    const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, static_cast<DWORD>(pid));
    if (!process) return;
    TerminateProcess(process, 1);
    CloseHandle(process);
}

}  // namespace platform
