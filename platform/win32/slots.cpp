// Mailslots: the real thing. A slot handle points to a Slot that holds the Windows
// handle; a failed open is InvalidSlot().
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "win32.h"

namespace platform {
namespace {

struct Slot {
    HANDLE handle;
    // A message already taken from the mailslot to learn its size, waiting to be read.
    bool holding = false;
    std::vector<char> held;
};

// Wine answers GetMailslotInfo by looking at the next message through a 64 KiB
// window, so a message of that size or more shows as exactly this size. Such a
// message is taken out into a buffer larger than anything Wine can carry (a few
// hundred KiB) and held; on Windows, where the size is exact, this costs one copy.
constexpr DWORD kPeekWindow = 0x10000;
constexpr DWORD kHoldCapacity = 16u << 20;

Slot* AsSlot(SlotHandle handle) {
    return handle == nullptr || handle == InvalidSlot() ? nullptr : static_cast<Slot*>(handle);
}

SlotHandle Wrap(HANDLE handle, Status* why) {
    if (handle == INVALID_HANDLE_VALUE) {
        if (why) *why = LastSystemError();
        return InvalidSlot();
    }
    Slot* slot = new (std::nothrow) Slot{handle, false, {}};
    if (!slot) {
        CloseHandle(handle);
        if (why) *why = Error::kNoMemory;
        return InvalidSlot();
    }
    return slot;
}

bool Hold(Slot& slot) {
    std::unique_ptr<char[]> buffer(new (std::nothrow) char[kHoldCapacity]);
    if (!buffer) return false;
    DWORD done = 0;
    if (!ReadFile(slot.handle, buffer.get(), kHoldCapacity, &done, nullptr)) return false;
    slot.held.assign(buffer.get(), buffer.get() + done);
    slot.holding = true;
    return true;
}

// Size of the message at the head of the queue, without waiting. False when the
// queue is empty (failed stays false) or on an error (failed is set).
bool HeadSize(Slot& slot, uint32_t& size, bool& failed) {
    failed = false;
    if (slot.holding) {
        size = static_cast<uint32_t>(slot.held.size());
        return true;
    }
    DWORD next = MAILSLOT_NO_MESSAGE;
    if (!GetMailslotInfo(slot.handle, nullptr, &next, nullptr, nullptr)) {
        failed = true;
        return false;
    }
    if (next == MAILSLOT_NO_MESSAGE) return false;
    if (next == kPeekWindow) {
        failed = !Hold(slot);
        if (failed) return false;
        next = static_cast<DWORD>(slot.held.size());
    }
    size = next;
    return true;
}

// Mailslots cannot be waited on, so the wait for the next message looks at the
// queue in short steps: at first often, then every few milliseconds.
// timeoutMs < 0 waits for ever; interruptible also ends the wait on a close request.
Status WaitHeadSize(Slot& slot, int timeoutMs, bool interruptible, uint32_t& size) {
    const ULONGLONG start = GetTickCount64();
    DWORD pause = 0;
    for (;;) {
        bool failed = false;
        if (HeadSize(slot, size, failed)) return Status();
        if (failed) return LastSystemError();
        if (interruptible && win32::CloseRequestPending()) return Error::kInterrupted;
        const ULONGLONG waited = GetTickCount64() - start;
        if (timeoutMs >= 0 && waited >= static_cast<ULONGLONG>(timeoutMs)) return Error::kTimedOut;
        DWORD step = pause;
        if (timeoutMs >= 0) step = std::min<DWORD>(step, static_cast<DWORD>(timeoutMs - waited));
        Sleep(step);
        pause = std::min<DWORD>(pause + 1, 4);
    }
}

// The slot's own read time-out as a wait for WaitHeadSize.
int ReadTimeout(const Slot& slot) {
    DWORD timeout = MAILSLOT_WAIT_FOREVER;
    if (!GetMailslotInfo(slot.handle, nullptr, nullptr, nullptr, &timeout)) return -1;
    return timeout == MAILSLOT_WAIT_FOREVER ? -1 : static_cast<int>(timeout);
}

}  // namespace

SlotHandle CreateSlot(const std::string& name, Status* why) {
    return Wrap(CreateMailslotA(name.c_str(), 0, MAILSLOT_WAIT_FOREVER, nullptr), why);
}

SlotHandle OpenSlot(const std::string& name, Status* why) {
    // Windows lets any number of writers hold a mailslot open with read sharing alone;
    // Wine refuses a second writer unless every writer also shares writing. Sharing
    // both keeps writers on several threads (or processes) apart under Wine too.
    return Wrap(CreateFileA(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr),
                why);
}

Status WriteSlot(SlotHandle handle, const void* data, uint32_t count, uint32_t* written) {
    if (written) *written = 0;
    Slot* slot = AsSlot(handle);
    if (!slot || (count && !data)) return Error::kInvalid;
    DWORD done = 0;
    if (!WriteFile(slot->handle, data, count, &done, nullptr)) return LastSystemError();
    if (written) *written = done;
    return Status();
}

Status WriteSlotPair(SlotHandle handle, const void* first, uint32_t firstCount, const void* second,
                     uint32_t secondCount) {
    // A mailslot takes one message per write; a write does not wait for the reader.
    uint32_t written = 0;
    const Status sent = WriteSlot(handle, first, firstCount, &written);
    return sent ? WriteSlot(handle, second, secondCount, &written) : sent;
}

Status ReadSlot(SlotHandle handle, void* data, uint32_t capacity, uint32_t* read) {
    if (read) *read = 0;
    Slot* slot = AsSlot(handle);
    if (!slot) return Error::kInvalid;
    // Windows fails a read into a buffer smaller than the next message and leaves the
    // message queued; Wine cuts the message to the buffer and drops the rest. So the
    // size is looked at first (a slot has one reader: the head cannot change meanwhile).
    uint32_t next = 0;
    const Status waited = WaitHeadSize(*slot, ReadTimeout(*slot), false, next);
    if (!waited) return waited;
    if (next > capacity) return Error::kTooBig;
    if (slot->holding) {
        if (next) std::memcpy(data, slot->held.data(), next);
        slot->held.clear();
        slot->held.shrink_to_fit();
        slot->holding = false;
        if (read) *read = next;
        return Status();
    }
    DWORD done = 0;
    if (!ReadFile(slot->handle, data, capacity, &done, nullptr)) return LastSystemError();
    if (read) *read = done;
    return Status();
}

Status PeekSlotMessageSize(SlotHandle handle, int timeoutMs, uint32_t* size, int* sender) {
    Slot* slot = AsSlot(handle);
    if (!slot) return Error::kInvalid;
    uint32_t next = 0;
    const Status waited = WaitHeadSize(*slot, timeoutMs, true, next);
    if (!waited) return waited;
    if (size) *size = next;
    if (sender) *sender = 0;  // a mailslot does not tell who wrote a message
    return Status();
}

Status NextSlotMessageSize(SlotHandle handle, uint32_t* size) {
    Slot* slot = AsSlot(handle);
    if (!slot) return Error::kInvalid;
    uint32_t next = 0;
    const Status waited = WaitHeadSize(*slot, ReadTimeout(*slot), false, next);
    if (!waited) return waited;
    if (size) *size = next;
    return Status();
}

bool KeptWriterNoticesClosedReader() { return false; }

void SetSlotReadTimeout(SlotHandle handle, int milliseconds) {
    if (Slot* slot = AsSlot(handle))
        SetMailslotInfo(slot->handle, milliseconds > 0 ? static_cast<DWORD>(milliseconds) : MAILSLOT_WAIT_FOREVER);
}

void CloseSlot(SlotHandle handle) {
    if (Slot* slot = AsSlot(handle)) {
        CloseHandle(slot->handle);
        delete slot;
    }
}

}  // namespace platform
