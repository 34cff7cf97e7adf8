#include "CMailslot.h"

#include <chrono>
#include <cstdint>
#include <cstring>
#include <string>
#include <thread>

#include "CUniversalLogger.h"

namespace {
// The API log carries the documented line alone, since integrators read it; why the
// system refused the write goes to the debugger's trace.
void LogSendFailure(uint32_t unsent, platform::Status why) {
    GetUniversalLogger().LogLine("Send Fail data : %d", static_cast<int>(unsent));
    const std::string reason = std::string("Send Fail reason : ") + why.Text();
    platform::DebugOutput(reason.c_str());
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
