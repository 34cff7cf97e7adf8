// In-memory file: the body of every frame. Length and contents live in one
// growable buffer; GetBufferPtr hands out that buffer for direct reads and writes.
//
// Frames reach many megabytes, so the buffer is plain heap memory: it grows with
// realloc (the system can move large blocks without copying them) and is never
// zero-filled ahead of use. Bytes that SetLength or a write past the end expose are
// zeros, as always; a fresh block comes zeroed from the allocator (calloc), and the
// file remembers from where on its block is still untouched, so those bytes are not
// written twice.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "KPCBAPIExport.h"
#include "WinTypes.h"

class CFile {
public:
    enum SeekPosition { begin = 0, current = 1, end = 2 };
    enum BufferCommand { bufferRead = 0, bufferWrite = 1, bufferCommit = 2, bufferCheck = 3 };

    virtual ~CFile() = default;
    virtual UINT Read(void* buffer, UINT count) = 0;
    virtual void Write(const void* buffer, UINT count) = 0;
    virtual ULONGLONG Seek(int64_t offset, UINT from) = 0;
    virtual ULONGLONG GetLength() const = 0;
    virtual void SetLength(ULONGLONG length) = 0;
    virtual ULONGLONG GetPosition() const = 0;
    virtual void Close() {}
    void SeekToBegin() { Seek(0, begin); }
};

class KPCBAPI_EXPORT CMemFile : public CFile {
public:
    explicit CMemFile(UINT growBytes = 1024) : m_growBytes(growBytes ? growBytes : 1024) {}
    ~CMemFile() override;
    CMemFile(const CMemFile&) = delete;
    CMemFile& operator=(const CMemFile&) = delete;

    UINT Read(void* buffer, UINT count) override;
    void Write(const void* buffer, UINT count) override;
    // Seeking before the start raises CInvalidArgException; past the end is allowed.
    ULONGLONG Seek(int64_t offset, UINT from) override;
    ULONGLONG GetLength() const override { return m_length; }
    // Growing fills the new bytes with zeros; the position is kept (clamped to the new length).
    void SetLength(ULONGLONG length) override;
    // As SetLength, but the bytes it exposes are left as they are, for a caller that
    // is about to overwrite every one of them (a frame whose payload is all there).
    void SetLengthForOverwrite(ULONGLONG length);
    ULONGLONG GetPosition() const override { return m_position; }

    // bufferRead: *start = current position, *max = start + min(count, bytes left); the
    // position advances by that amount, which is returned. bufferCheck returns 1.
    UINT GetBufferPtr(UINT command, UINT count = 0, void** start = nullptr, void** max = nullptr);

private:
    // zeroed: a fresh block is to come zeroed (else its contents do not matter).
    void Reserve(ULONGLONG length, bool zeroed = true);
    // Makes [from, to) zeros, skipping what is still untouched.
    void ZeroRange(ULONGLONG from, ULONGLONG to);

    BYTE* m_buffer = nullptr;
    size_t m_capacity = 0;
    size_t m_untouched = 0;  // every byte from here to m_capacity is zero
    ULONGLONG m_length = 0;
    ULONGLONG m_position = 0;
    UINT m_growBytes;
};
