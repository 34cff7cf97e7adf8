// Binary archive over a CFile, writing and reading the MFC CArchive encodings:
// little-endian numbers, length-prefixed narrow strings, 16/32-bit counts.
// A load that would read past the end of the file raises CArchiveException.
#pragma once

#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

#include "CException.h"
#include "CMemFile.h"
#include "CString.h"
#include "KPCBAPIExport.h"
#include "WinTypes.h"

// Exported with the types it serialises: the arrays' inline members call it.
class CArchive;
KPCBAPI_EXPORT CArchive& operator<<(CArchive& ar, const CString& text);
KPCBAPI_EXPORT CArchive& operator>>(CArchive& ar, CString& text);

class KPCBAPI_EXPORT CArchive {
public:
    enum Mode { store = 0, load = 1 };

    CArchive(CFile* file, UINT mode, int bufferSize = 4096);
    // Flushes a storing archive that was not closed; never throws.
    ~CArchive();
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    bool IsLoading() const { return m_loading; }
    bool IsStoring() const { return !m_loading; }
    CFile* GetFile() const { return m_file; }

    // Store: writes what is buffered into the file. Load: drops what is buffered.
    void Flush();
    void Close();

    void Write(const void* data, size_t count);
    // Reads exactly count bytes or raises CArchiveException (endOfFile).
    void Read(void* data, size_t count);

    void WriteCount(size_t count);
    size_t ReadCount();

    // Bytes a load can still read.
    ULONGLONG Remaining() const;
    // Raises CArchiveException unless count elements of elementSize bytes can still be read.
    void EnsureAvailable(size_t count, size_t elementSize) const;

    template <class T, class = std::enable_if_t<std::is_arithmetic<T>::value>>
    CArchive& operator<<(T value) {
        static_assert(sizeof(T) == 1 || sizeof(T) == 2 || sizeof(T) == 4 || sizeof(T) == 8, "plain number");
        Write(&value, sizeof(T));
        return *this;
    }
    template <class T, class = std::enable_if_t<std::is_arithmetic<T>::value>>
    CArchive& operator>>(T& value) {
        static_assert(sizeof(T) == 1 || sizeof(T) == 2 || sizeof(T) == 4 || sizeof(T) == 8, "plain number");
        Read(&value, sizeof(T));
        return *this;
    }

    friend CArchive& operator<<(CArchive& ar, const CString& text);
    friend CArchive& operator>>(CArchive& ar, CString& text);

private:
    void FlushStore();

    CFile* m_file;
    bool m_loading;
    bool m_closed = false;
    // Not zero-filled: an archive lives for one record, and only bytes it has put
    // there are ever read back.
    std::unique_ptr<BYTE[]> m_buffer;
    size_t m_bufferSize;
    size_t m_cursor = 0;  // load: next byte to hand out; store: bytes held
    size_t m_filled = 0;  // load: bytes held
};
