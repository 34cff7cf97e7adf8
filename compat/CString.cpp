#include "CString.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {
bool IsBlank(char ch) { return std::isspace(static_cast<unsigned char>(ch)) != 0; }
}

CString CString::Left(int count) const {
    return CString(m_text.substr(0, static_cast<size_t>(std::clamp(count, 0, GetLength()))));
}

CString CString::Right(int count) const {
    const int n = std::clamp(count, 0, GetLength());
    return CString(m_text.substr(static_cast<size_t>(GetLength() - n)));
}

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
    first = std::clamp(first, 0, GetLength());
    count = std::clamp(count, 0, GetLength() - first);
    return CString(m_text.substr(static_cast<size_t>(first), static_cast<size_t>(count)));
}

CString& CString::MakeUpper() {
    for (char& ch : m_text) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    return *this;
}

CString& CString::MakeLower() {
    for (char& ch : m_text) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    return *this;
}

CString& CString::Trim() { return TrimRight().TrimLeft(); }

CString& CString::TrimLeft() {
    m_text.erase(m_text.begin(), std::find_if(m_text.begin(), m_text.end(), [](char c) { return !IsBlank(c); }));
    return *this;
}

CString& CString::TrimRight() {
    m_text.erase(std::find_if(m_text.rbegin(), m_text.rend(), [](char c) { return !IsBlank(c); }).base(), m_text.end());
    return *this;
}

CString& CString::Trim(const char* chars) { return TrimRight(chars).TrimLeft(chars); }

CString& CString::TrimLeft(const char* chars) {
    const size_t first = m_text.find_first_not_of(chars ? chars : "");
    m_text.erase(0, first == std::string::npos ? m_text.size() : first);
    return *this;
}

CString& CString::TrimRight(const char* chars) {
    const size_t last = m_text.find_last_not_of(chars ? chars : "");
    m_text.erase(last == std::string::npos ? 0 : last + 1);
    return *this;
}

int CString::Find(char ch, int start) const {
    if (start < 0 || start >= GetLength()) return -1;
    const size_t at = m_text.find(ch, static_cast<size_t>(start));
    return at == std::string::npos ? -1 : static_cast<int>(at);
}

int CString::Find(const char* sub, int start) const {
    if (!sub || start < 0 || start > GetLength()) return -1;
    const size_t at = m_text.find(sub, static_cast<size_t>(start));
    return at == std::string::npos ? -1 : static_cast<int>(at);
}

int CString::Replace(char from, char to) {
    int count = 0;
    for (char& ch : m_text)
        if (ch == from) { ch = to; ++count; }
    return count;
}

int CString::Replace(const char* from, const char* to) {
    if (!from || !*from) return 0;
    const std::string needle(from), replacement(to ? to : "");
    int count = 0;
    for (size_t at = m_text.find(needle); at != std::string::npos; at = m_text.find(needle, at + replacement.size())) {
        m_text.replace(at, needle.size(), replacement);
        ++count;
    }
    return count;
}

int CString::Remove(char ch) {
    const size_t before = m_text.size();
    m_text.erase(std::remove(m_text.begin(), m_text.end(), ch), m_text.end());
    return static_cast<int>(before - m_text.size());
}

int CString::Compare(const char* other) const { return std::strcmp(m_text.c_str(), other ? other : ""); }

int CString::CompareNoCase(const char* other) const {
    const char* a = m_text.c_str();
    const char* b = other ? other : "";
    for (;; ++a, ++b) {
        const int ca = std::tolower(static_cast<unsigned char>(*a));
        const int cb = std::tolower(static_cast<unsigned char>(*b));
        if (ca != cb || ca == 0) return ca - cb;
    }
}

void CString::Format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}

void CString::FormatV(const char* format, va_list args) {
    if (!format) { m_text.clear(); return; }
    va_list copy;
    va_copy(copy, args);
    const int needed = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    if (needed < 0) { m_text.clear(); return; }
    std::vector<char> buffer(static_cast<size_t>(needed) + 1);
    std::vsnprintf(buffer.data(), buffer.size(), format, args);
    m_text.assign(buffer.data(), static_cast<size_t>(needed));
}
