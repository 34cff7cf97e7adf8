#include "CMailslot.h"

#include <cstdint>
#include <cstring>
#include <memory>

#include "CArchive.h"
#include "CKPRCI__Base.h"
#include "CUniversalLogger.h"

namespace {
// How far an announced length may exceed the payload that arrives (the rest of the
// memory file is zero-filled).
constexpr uint32_t kLargestPadding = 16u << 20;

// The documented line, then why the system refused the write.
void LogSendFailure(uint32_t unsent, platform::Status why) {
    GetUniversalLogger().LogLine("Send Fail data : %d", static_cast<int>(unsent));
    GetUniversalLogger().LogLine("Send Fail reason : %s", why.Text());
}
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
        const platform::Status sent = platform::WriteSlot(handle, bytes + total, count - total, &written);
        if (!sent || written == 0) {
            LogSendFailure(count - total, sent);
            return 0;
        }
        total += written;
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

int CMailslot::SendFrame(CFile& file) {
    file.SeekToBegin();
    const uint32_t length = static_cast<uint32_t>(file.GetLength());
    void* start = nullptr;
    if (auto* memory = dynamic_cast<CMemFile*>(&file)) {
        memory->GetBufferPtr(CFile::bufferRead, length, &start, nullptr);
    }
    const int result = WriteFrame(*this, start, length);
    file.SeekToBegin();
    return result;
}

int WriteFrame(CMailslot& slot, const void* payload, uint32_t size) {
    unsigned char prefix[4];
    std::memcpy(prefix, &size, 4);
    // An empty frame is its length alone; the empty write is logged as every one is.
    if (size == 0) return slot.WriteBytes(prefix, 4) && slot.WriteBytes(payload, 0);
    const platform::Status sent = platform::WriteSlotPair(slot.GetHandle(), prefix, 4, payload, size);
    if (sent) return 1;
    LogSendFailure(size, sent);
    return 0;
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
