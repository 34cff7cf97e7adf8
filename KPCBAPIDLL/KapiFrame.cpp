#include "KapiFrame.h"

#include <cstring>
#include <new>

#include "CArchive.h"
#include "CTokenizer.h"
#include "SentTwice.h"
#include "platform.h"

namespace kapi {

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

int ViewerCall::OneWay(CKPRCI__Base& record) {
    CMemFile frame(1024);
    SerializeRecord(record, frame);
    return m_connection->OneWay(frame);
}

int ViewerCall::Query(CKPRCI__Base& request, CKPRCI__BaseRV& reply) {
    CMemFile frame(1024);
    SerializeRecord(request, frame);
    return m_connection->Query(frame, reply, SentTwice(request));
}

int ViewerCall::Acknowledged(CKPRCI__Base& record) {
    CMemFile frame(1024);
    SerializeRecord(record, frame);
    return m_connection->Acknowledged(frame);
}

int OneWay(int pid, CKPRCI__Base& record) noexcept {
    return WithViewer(pid, [&](ViewerCall& call) { return call.OneWay(record); });
}

int Query(int pid, CKPRCI__Base& request, CKPRCI__BaseRV& reply) noexcept {
    return WithViewer(pid, [&](ViewerCall& call) { return call.Query(request, reply); });
}

}  // namespace kapi
