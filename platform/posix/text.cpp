// Text on POSIX: the narrow code page is UTF-8, wide text is UTF-32 wchar_t.
#include <cstdio>
#include <cstdlib>
#include <cwchar>

#include "../platform.h"

namespace platform {
namespace {

void AppendUtf8(std::string& out, char32_t c) {
    if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

}  // namespace

std::wstring AnsiToWide(const std::string& text) {
    std::wstring out;
    out.reserve(text.size());
    const unsigned char* s = reinterpret_cast<const unsigned char*>(text.data());
    const size_t n = text.size();
    for (size_t i = 0; i < n;) {
        const unsigned char b = s[i];
        char32_t c;
        size_t extra;
        if (b < 0x80) { c = b; extra = 0; }
        else if ((b & 0xE0) == 0xC0) { c = b & 0x1F; extra = 1; }
        else if ((b & 0xF0) == 0xE0) { c = b & 0x0F; extra = 2; }
        else if ((b & 0xF8) == 0xF0) { c = b & 0x07; extra = 3; }
        else { out += L'\xFFFD'; ++i; continue; }
        if (extra && i + extra >= n) { out += L'\xFFFD'; break; }
        bool valid = true;
        for (size_t k = 1; k <= extra; ++k) {
            if ((s[i + k] & 0xC0) != 0x80) { valid = false; break; }
            c = (c << 6) | (s[i + k] & 0x3F);
        }
        if (!valid) { out += L'\xFFFD'; ++i; continue; }
        out += static_cast<wchar_t>(c);
        i += extra + 1;
    }
    return out;
}

std::string WideToAnsi(const std::wstring& text) {
    std::string out;
    out.reserve(text.size());
    for (wchar_t w : text) AppendUtf8(out, static_cast<char32_t>(w));
    return out;
}

std::string Utf8ToAnsi(const std::string& text) { return text; }

std::string Utf16ToAnsi(const char16_t* text, size_t count) {
    std::string out;
    out.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        char32_t c = text[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < count && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
            c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        }
        AppendUtf8(out, c);
    }
    return out;
}

wchar_t* AllocSysString(const wchar_t* text) {
    const size_t n = text ? std::wcslen(text) : 0;
    wchar_t* copy = static_cast<wchar_t*>(std::malloc((n + 1) * sizeof(wchar_t)));
    if (!copy) return nullptr;
    if (n) std::wmemcpy(copy, text, n);
    copy[n] = L'\0';
    return copy;
}

void FreeSysString(wchar_t* text) { std::free(text); }

std::tm LocalTime(std::time_t when) {
    std::tm local{};
    localtime_r(&when, &local);
    return local;
}

void DebugOutput(const char* text) {
    if (text && !GetEnv("KPCB_DEBUG_OUTPUT").empty()) std::fprintf(stderr, "%s\n", text);
}

}  // namespace platform
