#include "FrameReader.h"

#include <chrono>
#include <cstring>
#include <thread>
#include <vector>

FrameResult ReceiveFrameWithin(CMailslot& slot, CMemFile& file, int waitMs, int payloadWaitMs) {
    uint32_t size = 0;
    if (!platform::PeekSlotMessageSize(slot.GetHandle(), waitMs, &size)) return FrameResult::Nothing;
    // The first message should be the 4-byte length; anything else is read whole and dropped.
    unsigned char small[16];
    std::vector<unsigned char> large(size > sizeof(small) ? size : 0);
    unsigned char* first = large.empty() ? small : large.data();
    uint32_t read = 0;
    if (!platform::ReadSlot(slot.GetHandle(), first, size, &read)) return FrameResult::Malformed;
    if (read != 4) return FrameResult::Malformed;
    uint32_t length;
    std::memcpy(&length, first, 4);
    file.SetLength(0);
    file.SeekToBegin();
    if (length == 0) return FrameResult::Frame;
    uint32_t payloadSize = 0;
    if (!platform::PeekSlotMessageSize(slot.GetHandle(), payloadWaitMs, &payloadSize)) return FrameResult::Malformed;
    if (payloadSize != length) {
        // Not the payload that was announced: consume it so the slot stays in step.
        std::vector<unsigned char> stray(payloadSize ? payloadSize : 1);
        platform::ReadSlot(slot.GetHandle(), stray.data(), payloadSize, &read);
        return FrameResult::Malformed;
    }
    file.SetLengthForOverwrite(length);  // the payload fills it all
    void* start = nullptr;
    file.GetBufferPtr(CFile::bufferRead, length, &start, nullptr);
    file.SeekToBegin();
    if (!platform::ReadSlot(slot.GetHandle(), start, length, &read) || read != length) return FrameResult::Malformed;
    return FrameResult::Frame;
}

int OpenWhenReady(CMailslot& slot, int openWaitMs) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(openWaitMs);
    while (!slot.Open()) {
        if (std::chrono::steady_clock::now() >= deadline) return 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return 1;
}

int SendFrameTo(const CString& slotName, const void* payload, uint32_t size, int openWaitMs) {
    CMailslot slot(1, slotName);
    if (!OpenWhenReady(slot, openWaitMs)) return 0;
    unsigned char prefix[4];
    std::memcpy(prefix, &size, 4);
    if (!slot.WriteBytes(prefix, 4)) return 0;
    return size ? slot.WriteBytes(payload, size) : 1;
}

int SendMessageTo(const CString& slotName, const void* data, uint32_t size, int openWaitMs) {
    CMailslot slot(1, slotName);
    return OpenWhenReady(slot, openWaitMs) && slot.WriteBytes(data, size);
}
