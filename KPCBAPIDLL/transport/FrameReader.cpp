#include "FrameReader.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

namespace {
// At most this many senders may have a length waiting for its payload; an overflow
// drops them all (a frame of a sender that is alive comes again complete).
constexpr size_t kMostAnnouncers = 64;

// Reads the next message whole (size bytes) and forgets it.
void Discard(CMailslot& slot, uint32_t size) {
    std::vector<unsigned char> stray(size ? size : 1);
    uint32_t read = 0;
    platform::ReadSlot(slot.GetHandle(), stray.data(), size, &read);
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

FrameResult FrameReceiver::Receive(CMailslot& slot, CMemFile& file, int waitMs) {
    for (;;) {
        if (DropOverdue()) return FrameResult::Malformed;
        const bool awaiting = !m_announced.empty();
        const int wait = awaiting ? MsUntilFirstDue() : waitMs;
        uint32_t size = 0;
        int sender = 0;
        if (!platform::PeekSlotMessageSize(slot.GetHandle(), wait, &size, &sender)) {
            // Nothing came: the overdue lengths are given up at the top; a server
            // asked to close returns so that it can look.
            if (!awaiting || platform::CloseRequested()) return FrameResult::Nothing;
            continue;
        }

        const auto announced = m_announced.find(sender);
        if (announced != m_announced.end()) {
            const uint32_t length = announced->second.length;
            m_announced.erase(announced);
            if (size != length) {
                // Not the payload that was announced. A 4-byte message starts the
                // sender's next frame (it sent a frame again after a cut-short one);
                // anything else is consumed so that the slot stays in step.
                if (size == 4) {
                    uint32_t next = 0, read = 0;
                    if (platform::ReadSlot(slot.GetHandle(), &next, 4, &read) && read == 4 && next != 0)
                        Announce(sender, next);
                    return FrameResult::Malformed;
                }
                Discard(slot, size);
                return FrameResult::Malformed;
            }
            file.SetLength(0);
            file.SeekToBegin();
            file.SetLengthForOverwrite(length);  // the payload fills it all
            void* start = nullptr;
            file.GetBufferPtr(CFile::bufferRead, length, &start, nullptr);
            file.SeekToBegin();
            uint32_t read = 0;
            if (!platform::ReadSlot(slot.GetHandle(), start, length, &read) || read != length)
                return FrameResult::Malformed;
            return FrameResult::Frame;
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
    return WriteFrame(slot, payload, size);
}

int SendMessageTo(const CString& slotName, const void* data, uint32_t size, int openWaitMs) {
    CMailslot slot(1, slotName);
    return OpenWhenReady(slot, openWaitMs) && slot.WriteBytes(data, size);
}
