#include "KapiFrame.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <new>

#include "CArchive.h"
#include "CMailslot.h"
#include "CTokenizer.h"
#include "KeptConnections.h"
#include "platform.h"

namespace kapi {
namespace {
std::atomic<int> g_replyTimeoutMs{0};
}  // namespace

CString WideToCString(const wchar_t* text) {
    if (!text) return CString();
    return CString(platform::WideToAnsi(std::wstring(text)));
}

long CStringToCoTaskWide(const CString& text, wchar_t** result) {
    if (!result) return 0;
    *result = nullptr;
    const std::wstring wide = platform::AnsiToWide(text.str());
    wchar_t* buffer = new (std::nothrow) wchar_t[wide.size() + 1];
    if (!buffer) return static_cast<long>(0x8007000EL);
    std::wmemcpy(buffer, wide.c_str(), wide.size() + 1);
    *result = buffer;
    return 0;
}

void FreeCoTaskWide(wchar_t* text) { delete[] text; }

void DeliverString(const CString& text, wchar_t** out) {
    if (!out) return;
    wchar_t* converted = nullptr;
    if (CStringToCoTaskWide(text, &converted) != 0 || !converted) return;
    if (!*out) *out = platform::AllocSysString(converted);
    if (*out) std::wcscpy(*out, converted);
    FreeCoTaskWide(converted);
}

CStringArray SplitNames(const CString& text, const CString& separators) {
    CStringArray tokens;
    CTokenizer(text, separators).GetTokenArray(tokens);
    for (INT_PTR i = 0; i < tokens.GetSize(); ++i) tokens.ElementAt(i).Trim();
    return tokens;
}

void SerializeRecord(CKPRCI__Base& record, CMemFile& file) {
    CArchive ar(&file, CArchive::store, 4096);
    record.Serialize(ar);
    ar.Close();
}

int SendOneWay(int pid, CKPRCI__Base& record) {
    CMemFile file(1024);
    SerializeRecord(record, file);
    if (auto kept = ConnectionTo(pid)) return kept->SendFrame(file) ? kOk : kSlotUnavailable;
    CMailslot command(1, MakeCommandSlotName(pid));
    if (!command.Open()) return kSlotUnavailable;
    command.SendFrame(file);  // a failed write still counts as handed over
    return kOk;
}

namespace {
// The query through a kept connection: the same steps, with the kept slots. A query
// of another thread in progress holds the reply slot, as its name would be taken.
int SendKeptQuery(KeptConnection& kept, int pid, CMemFile& file, CKPRCI__BaseRV& reply, Copies copies) {
    std::unique_lock<std::mutex> lease(kept.ReplyLock(), std::try_to_lock);
    if (!lease.owns_lock()) return kSlotUnavailable;
    if (copies == Copies::Twice && !kept.SendFrame(file)) return kSlotUnavailable;
    CMailslot* replySlot = kept.ReplySlot();
    if (!replySlot) return kSlotUnavailable;
    if (!kept.SendFrame(file)) return kSlotUnavailable;
    if (ReplyTimeout() <= 0) platform::SetSlotReadTimeout(replySlot->GetHandle(), 0);  // a limit set earlier is gone
    if (!AwaitAnswer(*replySlot, pid) || !ReceiveRecord(*replySlot, new CMemFile(1024), reply)) {
        kept.DropReplySlot();
        return kNoReply;
    }
    return kOk;
}
}  // namespace

int SendQuery(int pid, CKPRCI__Base& request, CKPRCI__BaseRV& reply, Copies copies) {
    CMemFile file(1024);
    SerializeRecord(request, file);
    if (auto kept = ConnectionTo(pid)) return SendKeptQuery(*kept, pid, file, reply, copies);
    CMailslot command(1, MakeCommandSlotName(pid));
    if (!command.Open()) return kSlotUnavailable;
    if (copies == Copies::Twice) command.SendFrame(file);
    CMailslot replySlot(0, MakeReplySlotName(pid));
    if (!replySlot.Open()) return kSlotUnavailable;
    CMemFile* replyFile = new CMemFile(1024);
    command.SendFrame(file);
    if (!AwaitAnswer(replySlot, pid)) {
        delete replyFile;
        return kNoReply;
    }
    if (!ReceiveRecord(replySlot, replyFile, reply)) return kNoReply;
    return kOk;
}

void SetReplyTimeout(int milliseconds) { g_replyTimeoutMs = milliseconds > 0 ? milliseconds : 0; }
int ReplyTimeout() { return g_replyTimeoutMs; }

bool AwaitAnswer(CMailslot& slot, int pid) {
    const int limit = ReplyTimeout();
    if (limit <= 0) return true;
    platform::SetSlotReadTimeout(slot.GetHandle(), limit);
    // Wait in short slices so that a viewer that has ended is noticed at once.
    constexpr int kSliceMs = 20;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(limit);
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
        if (left <= 0) return false;
        uint32_t size = 0;
        if (platform::PeekSlotMessageSize(slot.GetHandle(), static_cast<int>(std::min<long long>(left, kSliceMs)), &size))
            return true;
        if (!ViewerRunning(pid)) {
            // It may have answered just before it ended.
            return platform::PeekSlotMessageSize(slot.GetHandle(), 0, &size);
        }
    }
}

}  // namespace kapi
