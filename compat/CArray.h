// MFC-style dynamic array. Checked access raises CInvalidArgException, as the
// framework's array does; Serialize writes the count and the raw element bytes.
#pragma once

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <utility>
#include <vector>

#include "CArchive.h"
#include "CException.h"
#include "CObject.h"
#include "WinTypes.h"

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray : public CObject {
public:
    CArray() = default;
    CArray(const CArray&) = default;
    CArray& operator=(const CArray&) = default;
    CArray(CArray&&) noexcept = default;
    CArray& operator=(CArray&&) noexcept = default;
    ~CArray() override = default;

    const char* GetRuntimeClassName() const override { return "CArray"; }

    INT_PTR GetSize() const { return static_cast<INT_PTR>(m_data.size()); }
    INT_PTR GetCount() const { return GetSize(); }
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    bool IsEmpty() const { return m_data.empty(); }

    void SetSize(INT_PTR newSize, INT_PTR growBy = -1) {
        if (newSize < 0) throw CInvalidArgException();
        if (growBy >= 0) m_growBy = growBy;
        m_data.resize(static_cast<size_t>(newSize));
    }
    void RemoveAll() { m_data.clear(); }
    void FreeExtra() { m_data.shrink_to_fit(); }

    TYPE GetAt(INT_PTR index) const { return m_data[Checked(index)]; }
    void SetAt(INT_PTR index, ARG_TYPE element) { m_data[Checked(index)] = element; }
    TYPE& ElementAt(INT_PTR index) { return m_data[Checked(index)]; }
    const TYPE& ElementAt(INT_PTR index) const { return m_data[Checked(index)]; }
    TYPE& operator[](INT_PTR index) { return ElementAt(index); }
    const TYPE& operator[](INT_PTR index) const { return ElementAt(index); }
    TYPE* GetData() { return m_data.data(); }
    const TYPE* GetData() const { return m_data.data(); }

    INT_PTR Add(ARG_TYPE element) {
        m_data.push_back(element);
        return GetSize() - 1;
    }
    INT_PTR Append(const CArray& other) {
        const INT_PTR first = GetSize();
        m_data.insert(m_data.end(), other.m_data.begin(), other.m_data.end());
        return first;
    }
    void Copy(const CArray& other) {
        if (this != &other) m_data = other.m_data;
    }

    // Inserting past the end grows the array first, as the framework does.
    void InsertAt(INT_PTR index, ARG_TYPE element, INT_PTR count = 1) {
        if (index < 0 || count < 0) throw CInvalidArgException();
        if (static_cast<size_t>(index) > m_data.size()) m_data.resize(static_cast<size_t>(index));
        m_data.insert(m_data.begin() + index, static_cast<size_t>(count), element);
    }
    void RemoveAt(INT_PTR index, INT_PTR count = 1) {
        if (index < 0 || count < 0 || index + count > GetSize()) throw CInvalidArgException();
        m_data.erase(m_data.begin() + index, m_data.begin() + index + count);
    }

    void Serialize(CArchive& ar) override {
        static_assert(std::is_trivially_copyable<TYPE>::value, "raw serialisation needs plain elements");
        if (ar.IsStoring()) {
            ar.WriteCount(m_data.size());
            if (!m_data.empty()) ar.Write(m_data.data(), m_data.size() * sizeof(TYPE));
        } else {
            const size_t count = ar.ReadCount();
            ar.EnsureAvailable(count, sizeof(TYPE));
            if (count * sizeof(TYPE) <= kLoadChunk) {
                m_data.resize(count);
                if (count) ar.Read(m_data.data(), count * sizeof(TYPE));
                return;
            }
            // Large arrays (a merged outline has millions of points) are appended a
            // chunk at a time instead of being zero-filled first and then overwritten.
            m_data.clear();
            m_data.reserve(count);
            constexpr size_t perChunk = sizeof(TYPE) < kLoadChunk ? kLoadChunk / sizeof(TYPE) : 1;
            TYPE chunk[perChunk];
            for (size_t left = count; left;) {
                const size_t n = std::min(left, perChunk);
                ar.Read(chunk, n * sizeof(TYPE));
                m_data.insert(m_data.end(), chunk, chunk + n);
                left -= n;
            }
        }
    }

    friend bool operator==(const CArray& a, const CArray& b) { return a.m_data == b.m_data; }

protected:
    static constexpr size_t kLoadChunk = 16384;  // bytes

    size_t Checked(INT_PTR index) const {
        if (index < 0 || index >= GetSize()) throw CInvalidArgException();
        return static_cast<size_t>(index);
    }

    std::vector<TYPE> m_data;
    INT_PTR m_growBy = 0;
};
