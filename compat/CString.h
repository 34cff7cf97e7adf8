// Narrow MFC-style string: the text type of records, logs and paths.
#pragma once

#include <cstdarg>
#include <string>

#include "KPCBAPIExport.h"
#include "platform_types.h"

// Exported from the client library, whose C++ interface takes it.
class KPCBAPI_EXPORT CString {
public:
    CString() = default;
    CString(const char* text) : m_text(text ? text : "") {}
    CString(const char* text, int length) : m_text(text ? std::string(text, length > 0 ? length : 0) : std::string()) {}
    CString(const std::string& text) : m_text(text) {}
    CString(std::string&& text) : m_text(std::move(text)) {}
    CString(char ch, int repeat = 1) : m_text(repeat > 0 ? repeat : 0, ch) {}

    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    const char* GetString() const { return m_text.c_str(); }
    operator const char*() const { return m_text.c_str(); }
    const std::string& str() const { return m_text; }
    std::string& str() { return m_text; }

    // Out-of-range positions read as NUL, as a zero-terminated buffer would.
    char GetAt(int index) const { return index >= 0 && index < GetLength() ? m_text[index] : '\0'; }
    void SetAt(int index, char ch) { if (index >= 0 && index < GetLength()) m_text[index] = ch; }

    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;

    CString& MakeUpper();
    CString& MakeLower();
    CString& Trim();
    CString& TrimLeft();
    CString& TrimRight();
    CString& Trim(const char* chars);
    CString& TrimLeft(const char* chars);
    CString& TrimRight(const char* chars);

    int Find(char ch, int start = 0) const;
    int Find(const char* sub, int start = 0) const;
    int Replace(char from, char to);
    int Replace(const char* from, const char* to);
    int Remove(char ch);

    int Compare(const char* other) const;
    int CompareNoCase(const char* other) const;

    void Format(const char* format, ...)
        KPCB_PRINTF_LIKE(2, 3)
        ;
    void FormatV(const char* format, va_list args);

    CString& operator+=(const CString& other) { m_text += other.m_text; return *this; }
    CString& operator+=(const char* other) { if (other) m_text += other; return *this; }
    CString& operator+=(char ch) { m_text += ch; return *this; }

    friend CString operator+(const CString& a, const CString& b) { return CString(a.m_text + b.m_text); }
    friend CString operator+(const CString& a, const char* b) { CString r(a); r += b; return r; }
    friend CString operator+(const char* a, const CString& b) { CString r(a); r += b; return r; }
    friend CString operator+(const CString& a, char b) { CString r(a); r += b; return r; }
    friend bool operator==(const CString& a, const CString& b) { return a.m_text == b.m_text; }
    friend bool operator==(const CString& a, const char* b) { return a.m_text == (b ? b : ""); }
    friend bool operator==(const char* a, const CString& b) { return b == a; }
    friend bool operator!=(const CString& a, const CString& b) { return !(a == b); }
    friend bool operator!=(const CString& a, const char* b) { return !(a == b); }
    friend bool operator<(const CString& a, const CString& b) { return a.m_text < b.m_text; }

private:
    std::string m_text;
};
