#include "FrameReader.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "CArchive.h"
#include "CKPRCI__Base.h"

namespace {
// At most this many senders may have a length waiting for its payload; an overflow
// drops them all (a frame of a sender that is alive comes again complete).
constexpr size_t kMostAnnouncers = 64;

// The library's reply frames: an announced length may exceed the payload by this
// much (the rest of the reply is zeros, as the memory file was sized); anything
// larger is refused rather than allocated.
constexpr uint32_t kLargestReplyShortfall = 16u << 20;

// Reads the next message whole and forgets it.
void Discard(CMailslot& slot, uint32_t size) {
    std::vector<unsigned char> stray(size ? size : 1);
    uint32_t read = 0;
    platform::ReadSlot(slot.GetHandle(), stray.data(), size, &read);
}

// The size and sender of the next message. waitMs < 0: the wait of the slot's reads,
// which a signal does not end; the message is then held, so the look after it is free.
bool NextMessage(CMailslot& slot, int waitMs, uint32_t* size, int* sender) {
    if (waitMs < 0 && !platform::NextSlotMessageSize(slot.GetHandle(), size)) return false;
    return platform::PeekSlotMessageSize(slot.GetHandle(), waitMs < 0 ? 0 : waitMs, size, sender);
}
}  // namespace

bool FrameReceiver::DropOverdue() {
    const auto now = std::chrono::steady_clock::now();
    bool dropped = false;
    for (auto it = m_announced.begin(); it != m_announced.end();) {
        if (it->second.until <= now) {
            it = m_announced.erase(it);
            dropped = true;
        } else {
            ++it;
        }
    }
    return dropped;
}

void FrameReceiver::Announce(int sender, uint32_t length) {
    m_announced[sender] = Announced{length, std::chrono::steady_clock::now() + std::chrono::milliseconds(m_payloadWaitMs)};
}

int FrameReceiver::MsUntilFirstDue() const {
    auto first = m_announced.begin()->second.until;
    for (const auto& entry : m_announced) first = std::min(first, entry.second.until);
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(first - std::chrono::steady_clock::now());
    return static_cast<int>(std::max<long long>(left.count() + 1, 1));
}

// The next message of a sender that announced length is size bytes long.
FrameResult FrameReceiver::TakePayload(CMailslot& slot, CMemFile& file, int sender, uint32_t length, uint32_t size) {
    const bool whole = size == length;
    if (!whole && !(size < length && length - size <= m_largestShortfall)) {
        // Not the payload that was announced. A 4-byte message starts the sender's
        // next frame (it sent a frame again after a cut-short one); anything else is
        // consumed so that the slot stays in step.
        if (size == 4) {
            uint32_t next = 0, read = 0;
            if (platform::ReadSlot(slot.GetHandle(), &next, 4, &read) && read == 4 && next != 0) Announce(sender, next);
        } else {
            Discard(slot, size);
        }
        return FrameResult::Malformed;
    }
    file.SetLength(0);
    file.SeekToBegin();
    // A whole payload overwrites every byte, so zeros first would be wasted.
    if (whole)
        file.SetLengthForOverwrite(length);
    else
        file.SetLength(length);
    void* start = nullptr;
    file.GetBufferPtr(CFile::bufferRead, length, &start, nullptr);
    file.SeekToBegin();
    uint32_t read = 0;
    if (!platform::ReadSlot(slot.GetHandle(), start, size, &read) || read != size) return FrameResult::Malformed;
    return FrameResult::Frame;
}

FrameResult FrameReceiver::Receive(CMailslot& slot, CMemFile& file, int waitMs) {
    for (;;) {
        if (DropOverdue()) return FrameResult::Malformed;
        const bool awaiting = !m_announced.empty();
        const int wait = awaiting ? MsUntilFirstDue() : waitMs;
        uint32_t size = 0;
        int sender = 0;
        if (!NextMessage(slot, wait, &size, &sender)) {
            // Nothing came: the overdue lengths are given up at the top; a server
            // asked to close returns so that it can look.
            if (!awaiting || platform::CloseRequested()) return FrameResult::Nothing;
            continue;
        }

        const auto announced = m_announced.find(sender);
        if (announced != m_announced.end()) {
            const uint32_t length = announced->second.length;
            m_announced.erase(announced);
            return TakePayload(slot, file, sender, length, size);
        }

        // A sender's first message must be the 4-byte length; anything else is dropped.
        if (size != 4) {
            Discard(slot, size);
            return FrameResult::Malformed;
        }
        uint32_t length = 0;
        uint32_t read = 0;
        if (!platform::ReadSlot(slot.GetHandle(), &length, 4, &read) || read != 4) return FrameResult::Malformed;
        if (length == 0) {
            file.SetLength(0);
            file.SeekToBegin();
            return FrameResult::Frame;
        }
        if (m_announced.size() >= kMostAnnouncers) {
            m_announced.clear();
            return FrameResult::Malformed;
        }
        Announce(sender, length);
    }
}

int CMailslot::ReceiveFrame(CMemFile& file) {
    FrameReceiver frames(FrameReceiver::kPayloadWaitMs, kLargestReplyShortfall);
    return frames.Receive(*this, file, -1) == FrameResult::Frame ? 1 : 0;
}

int ReceiveRecord(CMailslot& slot, CMemFile* file, CKPRCI__BaseRV& record) {
    std::unique_ptr<CMemFile> owned(file);
    if (!owned) return 0;
    if (!slot.ReceiveFrame(*owned)) return 0;
    return LoadReplyRecord(*owned, record);
}

int LoadReplyRecord(CMemFile& file, CKPRCI__BaseRV& record) {
    if (file.GetLength() < 4) return 0;
    try {
        file.SeekToBegin();
        CArchive ar(&file, CArchive::load, 4096);
        // A reply is read by its fields: bytes after them are ignored, so that a
        // viewer that adds a field later still answers callers built before it.
        record.Serialize(ar);
        ar.Close();
    } catch (const std::exception&) {
        return 0;  // a short or malformed image: no valid reply
    }
    return 1;
}

int ReceiveLeadingInt(CMailslot& slot, int* value) {
    uint32_t size = 0;
    if (!platform::NextSlotMessageSize(slot.GetHandle(), &size)) return 0;
    std::unique_ptr<unsigned char[]> message(new unsigned char[size < 4 ? 4 : size]);
    uint32_t read = 0;
    if (!platform::ReadSlot(slot.GetHandle(), message.get(), size, &read) || read < 4) return 0;
    std::memcpy(value, message.get(), 4);
    return 1;
}
