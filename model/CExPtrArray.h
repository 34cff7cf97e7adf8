// CExPtrArray: the list of heap objects used throughout the board model and the
// record arrays, on top of CArray<T*, T*>.
//
// Elements are pointers compared by address; null elements are allowed.
// The array does not own its elements: its destructor and every Remove* operation,
// MoveElementTo and Subtract leave the objects alive. Only Delete, DeleteAt,
// DeleteLastElement and DeleteAll destroy elements, through their virtual destructor.
// Whoever fills an array decides whether to empty it with DeleteAll or RemoveAll.
//
// GetAt, SetAt, GetLastElement and IsValidIndex are lenient: an index outside the
// array gives null, no effect or false. DeleteAt past the end and MoveElementTo with
// indexes outside the array raise CInvalidArgException from the base's RemoveAt.
// Searches are linear from index 0; Serialize is the base's (count, then the raw
// pointer values; nothing of the objects is written).
#pragma once

#include <type_traits>

#include "CArray.h"

template <class TYPE, class ARG_TYPE>
class CExPtrArray : public CArray<TYPE, ARG_TYPE> {
    static_assert(std::is_pointer<TYPE>::value, "CExPtrArray holds pointers: use CExPtrArray<T*, T*>");
    using Base = CArray<TYPE, ARG_TYPE>;

public:
    // Written out rather than defaulted, so that the exported instantiations are the
    // only copies of them in the library.
    CExPtrArray();
    CExPtrArray(const CExPtrArray& other);
    CExPtrArray& operator=(const CExPtrArray& other);
    // Frees the pointer storage only.
    ~CExPtrArray() override;

    const char* GetRuntimeClassName() const override;

    // The element at index, or null when index is outside the array.
    TYPE GetAt(INT_PTR index) const;
    // Stores element at index when 0 <= index < size; otherwise does nothing. The
    // element that was there is not destroyed.
    void SetAt(INT_PTR index, ARG_TYPE element);

    INT_PTR GetLastIndex() const;
    TYPE GetLastElement() const;
    bool IsValidIndex(const int& index) const;

    // Index of the first element equal to element, or -1.
    int FindIndex(ARG_TYPE element) const;
    bool Exists(ARG_TYPE element) const;

    // Appends element unless it is present already: its new index, or -1.
    INT_PTR Add_if_only_do_not_exists(ARG_TYPE element);

    // Takes the first occurrence out; false when absent. Never destroys.
    bool Remove(ARG_TYPE element);
    // Takes the last element out and hands it to the caller; null when empty.
    TYPE RemoveLastElement();
    void RemoveNullElement();
    // Keeps the first occurrence of each pointer, in order; removes later ones.
    void RemoveDuplicatedElements();

    // Destroys the first occurrence (if non-null) and removes its slot; false when absent.
    bool Delete(ARG_TYPE element);
    // count times: destroys the element at index (if any) and removes that slot, so the
    // following elements slide into it. An index past the end raises from RemoveAt.
    void DeleteAt(int index, int count);
    bool DeleteLastElement();
    // Destroys every non-null element in index order, then empties the array.
    void DeleteAll();

    // Moves elements first..last (inclusive) to the end of dest, in their order, and
    // removes them here. false, and nothing moves, when last < first. The insertion
    // point is dest's size at the start; the elements are taken from last down to
    // first, each read leniently, inserted there, then removed here, so an index outside
    // this array raises CInvalidArgException part-way (dest may already hold what was
    // inserted before the raise). dest must be another array.
    bool MoveElementTo(CExPtrArray& dest, const int& first, const int& last);

    // For each entry of other, in its order, removes that pointer's first occurrence
    // here. Nothing is destroyed.
    void Subtract(const CExPtrArray& other);

    // Same size and the same pointers at the same indexes.
    bool IsElementEqual(const CExPtrArray& other) const;

    void Reverse();

private:
    static void Destroy(TYPE element) {
        using Element = std::remove_pointer_t<TYPE>;
        static_assert(std::has_virtual_destructor<Element>::value,
                      "elements are destroyed through their virtual destructor");
        delete element;
    }
};

// The members are defined outside the class, not inline: the instantiations that the
// library exports (ExPtrArrayInstances.h) then carry every member with them, also
// where the export is a Windows DLL export, which leaves inline members out.

template <class TYPE, class ARG_TYPE>
CExPtrArray<TYPE, ARG_TYPE>::CExPtrArray() {}

template <class TYPE, class ARG_TYPE>
CExPtrArray<TYPE, ARG_TYPE>::CExPtrArray(const CExPtrArray& other) : Base(other) {}

template <class TYPE, class ARG_TYPE>
CExPtrArray<TYPE, ARG_TYPE>& CExPtrArray<TYPE, ARG_TYPE>::operator=(const CExPtrArray& other) {
    Base::operator=(other);
    return *this;
}

template <class TYPE, class ARG_TYPE>
CExPtrArray<TYPE, ARG_TYPE>::~CExPtrArray() {}

template <class TYPE, class ARG_TYPE>
const char* CExPtrArray<TYPE, ARG_TYPE>::GetRuntimeClassName() const {
    return "CExPtrArray";
}

template <class TYPE, class ARG_TYPE>
TYPE CExPtrArray<TYPE, ARG_TYPE>::GetAt(INT_PTR index) const {
    return index >= 0 && index < this->GetSize() ? this->m_data[static_cast<size_t>(index)] : nullptr;
}

template <class TYPE, class ARG_TYPE>
void CExPtrArray<TYPE, ARG_TYPE>::SetAt(INT_PTR index, ARG_TYPE element) {
    if (index >= 0 && index < this->GetSize()) this->m_data[static_cast<size_t>(index)] = element;
}

template <class TYPE, class ARG_TYPE>
INT_PTR CExPtrArray<TYPE, ARG_TYPE>::GetLastIndex() const {
    return this->GetSize() - 1;
}

template <class TYPE, class ARG_TYPE>
TYPE CExPtrArray<TYPE, ARG_TYPE>::GetLastElement() const {
    return GetAt(GetLastIndex());
}

template <class TYPE, class ARG_TYPE>
bool CExPtrArray<TYPE, ARG_TYPE>::IsValidIndex(const int& index) const {
    return index >= 0 && index < this->GetSize();
}

template <class TYPE, class ARG_TYPE>
int CExPtrArray<TYPE, ARG_TYPE>::FindIndex(ARG_TYPE element) const {
    const INT_PTR size = this->GetSize();
    for (INT_PTR i = 0; i < size; ++i) {
        if (GetAt(i) == element) return static_cast<int>(i);
    }
    return -1;
}

template <class TYPE, class ARG_TYPE>
bool CExPtrArray<TYPE, ARG_TYPE>::Exists(ARG_TYPE element) const {
    return FindIndex(element) != -1;
}

template <class TYPE, class ARG_TYPE>
INT_PTR CExPtrArray<TYPE, ARG_TYPE>::Add_if_only_do_not_exists(ARG_TYPE element) {
    if (Exists(element)) return -1;
    return this->Add(element);
}

template <class TYPE, class ARG_TYPE>
bool CExPtrArray<TYPE, ARG_TYPE>::Remove(ARG_TYPE element) {
    if (this->IsEmpty()) return false;
    const int index = FindIndex(element);
    if (index == -1) return false;
    this->RemoveAt(index);
    return true;
}

template <class TYPE, class ARG_TYPE>
TYPE CExPtrArray<TYPE, ARG_TYPE>::RemoveLastElement() {
    if (this->IsEmpty()) return nullptr;
    TYPE last = GetLastElement();
    this->RemoveAt(GetLastIndex());
    return last;
}

template <class TYPE, class ARG_TYPE>
void CExPtrArray<TYPE, ARG_TYPE>::RemoveNullElement() {
    for (INT_PTR i = GetLastIndex(); i >= 0; --i) {
        if (GetAt(i) == nullptr) this->RemoveAt(i);
    }
}

template <class TYPE, class ARG_TYPE>
void CExPtrArray<TYPE, ARG_TYPE>::RemoveDuplicatedElements() {
    for (INT_PTR i = 0; i < this->GetSize(); ++i) {
        const TYPE element = GetAt(i);
        for (INT_PTR j = i + 1; j < this->GetSize();) {
            if (GetAt(j) == element) {
                this->RemoveAt(j);
            } else {
                ++j;
            }
        }
    }
}

template <class TYPE, class ARG_TYPE>
bool CExPtrArray<TYPE, ARG_TYPE>::Delete(ARG_TYPE element) {
    const int index = FindIndex(element);
    if (index == -1) return false;
    Destroy(element);
    this->RemoveAt(index);
    return true;
}

template <class TYPE, class ARG_TYPE>
void CExPtrArray<TYPE, ARG_TYPE>::DeleteAt(int index, int count) {
    for (int n = 0; n < count; ++n) {
        Destroy(GetAt(index));
        this->RemoveAt(index);
    }
}

template <class TYPE, class ARG_TYPE>
bool CExPtrArray<TYPE, ARG_TYPE>::DeleteLastElement() {
    if (this->IsEmpty()) return false;
    Destroy(GetLastElement());
    this->RemoveAt(GetLastIndex());
    return true;
}

template <class TYPE, class ARG_TYPE>
void CExPtrArray<TYPE, ARG_TYPE>::DeleteAll() {
    for (TYPE element : this->m_data) Destroy(element);
    this->RemoveAll();
}

template <class TYPE, class ARG_TYPE>
bool CExPtrArray<TYPE, ARG_TYPE>::MoveElementTo(CExPtrArray& dest, const int& first, const int& last) {
    if (last < first) return false;
    const INT_PTR insertAt = dest.GetSize();
    for (int i = last; i >= first; --i) {
        dest.InsertAt(insertAt, GetAt(i));
        this->RemoveAt(i);
    }
    return true;
}

template <class TYPE, class ARG_TYPE>
void CExPtrArray<TYPE, ARG_TYPE>::Subtract(const CExPtrArray& other) {
    for (INT_PTR i = 0; i < other.GetSize(); ++i) Remove(other.GetAt(i));
}

template <class TYPE, class ARG_TYPE>
bool CExPtrArray<TYPE, ARG_TYPE>::IsElementEqual(const CExPtrArray& other) const {
    return this->m_data == other.m_data;
}

template <class TYPE, class ARG_TYPE>
void CExPtrArray<TYPE, ARG_TYPE>::Reverse() {
    const INT_PTR size = this->GetSize();
    for (INT_PTR i = 0; i < size / 2; ++i) std::swap(this->m_data[i], this->m_data[size - 1 - i]);
}

#include "ExPtrArrayInstances.h"
