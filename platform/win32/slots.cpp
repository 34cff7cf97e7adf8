// Mailslots: the real thing. A slot handle is the Windows handle itself, so a
// failed open (INVALID_HANDLE_VALUE) is InvalidSlot().
#include <algorithm>

#include "win32.h"

namespace platform {
namespace {

HANDLE AsHandle(SlotHandle slot) {
    return slot == nullptr || slot == InvalidSlot() ? nullptr : static_cast<HANDLE>(slot);
}

// Size of the message at the head of the queue, without waiting. False when the
// queue is empty or the handle is not a read side.
bool HeadSize(HANDLE slot, uint32_t& size, bool& failed) {
    DWORD next = MAILSLOT_NO_MESSAGE;
    DWORD count = 0;
    failed = GetMailslotInfo(slot, nullptr, &next, &count, nullptr) == 0;
    if (failed || next == MAILSLOT_NO_MESSAGE) return false;
    size = next;
    return true;
}

// Mailslots cannot be waited on, so the wait for the next message looks at the
// queue in short steps: at first often, then every few milliseconds.
// timeoutMs < 0 waits for ever; interruptible also ends the wait on a close request.
bool WaitHeadSize(HANDLE slot, int timeoutMs, bool interruptible, uint32_t& size) {
    const ULONGLONG start = GetTickCount64();
    DWORD pause = 0;
    for (;;) {
        bool failed = false;
        if (HeadSize(slot, size, failed)) return true;
        if (failed) return false;
        if (interruptible && win32::CloseRequestPending()) return false;
        const ULONGLONG waited = GetTickCount64() - start;
        if (timeoutMs >= 0 && waited >= static_cast<ULONGLONG>(timeoutMs)) {
            SetLastError(ERROR_SEM_TIMEOUT);
            return false;
        }
        DWORD step = pause;
        if (timeoutMs >= 0) step = std::min<DWORD>(step, static_cast<DWORD>(timeoutMs - waited));
        Sleep(step);
        pause = std::min<DWORD>(pause + 1, 4);
    }
}

}  // namespace

SlotHandle CreateSlot(const std::string& name) {
    const HANDLE slot = CreateMailslotA(name.c_str(), 0, MAILSLOT_WAIT_FOREVER, nullptr);
    return slot == INVALID_HANDLE_VALUE ? InvalidSlot() : static_cast<SlotHandle>(slot);
}

SlotHandle OpenSlot(const std::string& name) {
    const HANDLE slot = CreateFileA(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    return slot == INVALID_HANDLE_VALUE ? InvalidSlot() : static_cast<SlotHandle>(slot);
}

bool WriteSlot(SlotHandle handle, const void* data, uint32_t count, uint32_t* written) {
    if (written) *written = 0;
    const HANDLE slot = AsHandle(handle);
    if (!slot || (count && !data)) return false;
    DWORD done = 0;
    if (!WriteFile(slot, data, count, &done, nullptr)) return false;
    if (written) *written = done;
    return true;
}

bool ReadSlot(SlotHandle handle, void* data, uint32_t capacity, uint32_t* read) {
    if (read) *read = 0;
    const HANDLE slot = AsHandle(handle);
    if (!slot) return false;
    // A message larger than capacity fails with ERROR_INSUFFICIENT_BUFFER and stays queued.
    DWORD done = 0;
    if (!ReadFile(slot, data, capacity, &done, nullptr)) return false;
    if (read) *read = done;
    return true;
}

bool PeekSlotMessageSize(SlotHandle handle, int timeoutMs, uint32_t* size) {
    const HANDLE slot = AsHandle(handle);
    uint32_t next = 0;
    if (!slot || !WaitHeadSize(slot, timeoutMs, true, next)) return false;
    if (size) *size = next;
    return true;
}

bool NextSlotMessageSize(SlotHandle handle, uint32_t* size) {
    const HANDLE slot = AsHandle(handle);
    if (!slot) return false;
    DWORD readTimeout = MAILSLOT_WAIT_FOREVER;
    if (!GetMailslotInfo(slot, nullptr, nullptr, nullptr, &readTimeout)) return false;
    const int timeoutMs = readTimeout == MAILSLOT_WAIT_FOREVER ? -1 : static_cast<int>(readTimeout);
    uint32_t next = 0;
    if (!WaitHeadSize(slot, timeoutMs, false, next)) return false;
    if (size) *size = next;
    return true;
}

void SetSlotReadTimeout(SlotHandle handle, int milliseconds) {
    if (const HANDLE slot = AsHandle(handle))
        SetMailslotInfo(slot, milliseconds > 0 ? static_cast<DWORD>(milliseconds) : MAILSLOT_WAIT_FOREVER);
}

void CloseSlot(SlotHandle handle) {
    if (const HANDLE slot = AsHandle(handle)) CloseHandle(slot);
}

}  // namespace platform
