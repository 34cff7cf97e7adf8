// Array of narrow strings; serialised as a count, then each string.
#pragma once

#include "CArray.h"
#include "CString.h"

class KPCBAPI_EXPORT CStringArray : public CObject {
public:
    CStringArray() = default;
    CStringArray(std::initializer_list<CString> items) : m_items(items) {}
    CStringArray(const CStringArray&) = default;
    CStringArray& operator=(const CStringArray&) = default;
    CStringArray(CStringArray&&) noexcept = default;
    CStringArray& operator=(CStringArray&&) noexcept = default;

    const char* GetRuntimeClassName() const override { return "CStringArray"; }

    INT_PTR GetSize() const { return static_cast<INT_PTR>(m_items.size()); }
    INT_PTR GetCount() const { return GetSize(); }
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    bool IsEmpty() const { return m_items.empty(); }
    void SetSize(INT_PTR newSize);
    void RemoveAll() { m_items.clear(); }

    const CString& GetAt(INT_PTR index) const { return m_items[Checked(index)]; }
    void SetAt(INT_PTR index, const CString& text) { m_items[Checked(index)] = text; }
    CString& ElementAt(INT_PTR index) { return m_items[Checked(index)]; }
    CString& operator[](INT_PTR index) { return ElementAt(index); }
    const CString& operator[](INT_PTR index) const { return m_items[Checked(index)]; }

    INT_PTR Add(const CString& text) { m_items.push_back(text); return GetSize() - 1; }
    INT_PTR Append(const CStringArray& other);
    void Copy(const CStringArray& other) { if (this != &other) m_items = other.m_items; }
    void InsertAt(INT_PTR index, const CString& text, INT_PTR count = 1);
    void RemoveAt(INT_PTR index, INT_PTR count = 1);

    void Serialize(CArchive& ar) override;

    friend bool operator==(const CStringArray& a, const CStringArray& b) { return a.m_items == b.m_items; }
    friend bool operator!=(const CStringArray& a, const CStringArray& b) { return !(a == b); }

private:
    size_t Checked(INT_PTR index) const {
        if (index < 0 || index >= GetSize()) throw CInvalidArgException();
        return static_cast<size_t>(index);
    }
    std::vector<CString> m_items;
};
