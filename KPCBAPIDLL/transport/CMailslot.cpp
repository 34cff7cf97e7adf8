#include "CMailslot.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>

#include "CArchive.h"
#include "CKPRCI__Base.h"
#include "CUniversalLogger.h"

namespace {
// How far an announced length may exceed the payload that arrives (the rest of the
// memory file is zero-filled).
constexpr uint32_t kLargestPadding = 16u << 20;
}  // namespace

CMailslot::CMailslot(const int& isClient_, const CString& name_) : isClient(isClient_), name(name_), handle(nullptr) {}

CMailslot::~CMailslot() {
    if (handle != platform::InvalidSlot()) platform::CloseSlot(handle);
}

int CMailslot::Open() {
    handle = isClient ? platform::OpenSlot(name.str()) : platform::CreateSlot(name.str());
    return handle != platform::InvalidSlot() ? 1 : 0;
}

int CMailslot::WriteBytes(const void* buffer, unsigned int count) {
    if (count == 0) {
        GetUniversalLogger().LogLine("Send Fail data : %d", 0);
        return 1;
    }
    const unsigned char* bytes = static_cast<const unsigned char*>(buffer);
    uint32_t total = 0;
    while (total < count) {
        uint32_t written = 0;
        if (!platform::WriteSlot(handle, bytes + total, count - total, &written)) return 0;
        total += written;
        if (written == 0) return 0;
    }
    return 1;
}

int CMailslot::ReadBytes(void* buffer, unsigned int count, int once) {
    unsigned char* bytes = static_cast<unsigned char*>(buffer);
    uint32_t read = 0;
    if (!platform::ReadSlot(handle, bytes, count, &read)) return 0;
    if (once) return 1;
    uint32_t total = read;
    while (total < count) {
        if (!platform::ReadSlot(handle, bytes + total, count - total, &read)) return 0;
        total += read;
    }
    return 1;
}

namespace {
// A frame is two messages; frames sent by several threads of one process must not
// interleave in a slot, or the reader would pair one frame's length with another's
// payload.
std::mutex& FrameSendLock() {
    static std::mutex lock;
    return lock;
}
}  // namespace

int CMailslot::SendFrame(CFile& file) {
    std::lock_guard<std::mutex> whole(FrameSendLock());
    file.SeekToBegin();
    const uint32_t length = static_cast<uint32_t>(file.GetLength());
    unsigned char prefix[4];
    std::memcpy(prefix, &length, 4);
    if (!WriteBytes(prefix, 4)) return 0;
    file.SeekToBegin();
    void* start = nullptr;
    if (auto* memory = dynamic_cast<CMemFile*>(&file)) {
        memory->GetBufferPtr(CFile::bufferRead, length, &start, nullptr);
    }
    if (!WriteBytes(start, length)) return 0;
    file.SeekToBegin();
    return 1;
}

int CMailslot::ReceiveFrame(CMemFile& file) {
    uint32_t length = 0;
    if (!ReadBytes(&length, 4, 0)) return 0;
    uint32_t waiting = 0;
    if (length) {
        // The memory file takes the announced size, but a length far beyond the
        // payload that actually waits is refused rather than allocated.
        if (!platform::NextSlotMessageSize(handle, &waiting)) return 0;
        if (waiting > length) return 0;  // would not fit: the read fails, the message stays
        if (length - waiting > kLargestPadding) return 0;
    }
    // A payload of the announced size overwrites every byte, so zeros first would be
    // wasted; a shorter one leaves the rest as SetLength made it.
    if (length && waiting == length)
        file.SetLengthForOverwrite(length);
    else
        file.SetLength(length);
    file.SeekToBegin();
    void* start = nullptr;
    file.GetBufferPtr(CFile::bufferRead, length, &start, nullptr);
    // One read: a message is delivered whole, so the payload is one message.
    const int result = length ? ReadBytes(start, length, 1) : 1;
    file.SeekToBegin();
    return result;
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
        unsigned char unused[4];
        file.Read(unused, 4);
        file.SeekToBegin();
        CArchive ar(&file, CArchive::load, 4096);
        record.Serialize(ar);
        // A reply is exactly one record: bytes left over mean another class or garbage.
        if (ar.Remaining() != 0) return 0;
        ar.Close();
    } catch (const std::exception&) {
        return 0;  // a short or malformed image: no valid reply
    }
    return 1;
}
