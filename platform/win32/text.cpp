// Text on Windows: the system's ANSI code page and UTF-16 wchar_t, BSTR results,
// the debugger's trace output.
#include <cstdio>
#include <ctime>

#include "win32.h"

// after <windows.h>, which it needs
#include <oleauto.h>

namespace platform {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "wide text is UTF-16 on Windows");

std::wstring AnsiToWide(const std::string& text) {
    if (text.empty()) return std::wstring();
    const int length = static_cast<int>(text.size());
    const int needed = MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0);
    if (needed <= 0) return std::wstring();
    std::wstring out(static_cast<size_t>(needed), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), length, &out[0], needed);
    return out;
}

std::string Utf16ToAnsi(const char16_t* text, size_t count) {
    if (!text || count == 0) return std::string();
    const wchar_t* wide = reinterpret_cast<const wchar_t*>(text);
    const int length = static_cast<int>(count);
    const int needed = WideCharToMultiByte(CP_ACP, 0, wide, length, nullptr, 0, nullptr, nullptr);
    if (needed <= 0) return std::string();
    std::string out(static_cast<size_t>(needed), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide, length, &out[0], needed, nullptr, nullptr);
    return out;
}

std::string WideToAnsi(const std::wstring& text) {
    return Utf16ToAnsi(reinterpret_cast<const char16_t*>(text.data()), text.size());
}

std::string Utf8ToAnsi(const std::string& text) {
    if (text.empty()) return std::string();
    const int length = static_cast<int>(text.size());
    const int needed = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    if (needed <= 0) return std::string();
    std::wstring wide(static_cast<size_t>(needed), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, &wide[0], needed);
    return WideToAnsi(wide);
}

wchar_t* AllocSysString(const wchar_t* text) { return SysAllocString(text ? text : L""); }

void FreeSysString(wchar_t* text) {
    if (text) SysFreeString(text);
}

std::tm LocalTime(std::time_t when) {
    std::tm local{};
    localtime_s(&local, &when);
    return local;
}

void DebugOutput(const char* text) {
    if (!text) return;
    OutputDebugStringA(text);
    // As on every platform, KPCB_DEBUG_OUTPUT also puts the lines on standard error.
    if (!GetEnv("KPCB_DEBUG_OUTPUT").empty()) std::fprintf(stderr, "%s\n", text);
}

}  // namespace platform
