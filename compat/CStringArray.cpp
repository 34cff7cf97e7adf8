#include "CStringArray.h"

void CStringArray::SetSize(INT_PTR newSize) {
    if (newSize < 0) throw CInvalidArgException();
    m_items.resize(static_cast<size_t>(newSize));
}

INT_PTR CStringArray::Append(const CStringArray& other) {
    const INT_PTR first = GetSize();
    m_items.insert(m_items.end(), other.m_items.begin(), other.m_items.end());
    return first;
}

void CStringArray::InsertAt(INT_PTR index, const CString& text, INT_PTR count) {
    if (index < 0 || count < 0) throw CInvalidArgException();
    if (static_cast<size_t>(index) > m_items.size()) m_items.resize(static_cast<size_t>(index));
    m_items.insert(m_items.begin() + index, static_cast<size_t>(count), text);
}

void CStringArray::RemoveAt(INT_PTR index, INT_PTR count) {
    if (index < 0 || count < 0 || index + count > GetSize()) throw CInvalidArgException();
    m_items.erase(m_items.begin() + index, m_items.begin() + index + count);
}

void CStringArray::Serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        ar.WriteCount(m_items.size());
        for (const CString& item : m_items) ar << item;
    } else {
        const size_t count = ar.ReadCount();
        ar.EnsureAvailable(count, 1);  // every string takes at least its length byte
        std::vector<CString> items(count);
        for (CString& item : items) ar >> item;
        m_items = std::move(items);
    }
}
