#include "CMemFile.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include "CException.h"

CMemFile::~CMemFile() { std::free(m_buffer); }

void CMemFile::Reserve(ULONGLONG length, bool zeroed) {
    if (length <= m_capacity) return;
    if (length > std::numeric_limits<size_t>::max() / 2) throw std::bad_alloc();
    // Grow in whole steps, doubling for large files so that a stream of writes stays linear.
    ULONGLONG target = std::max<ULONGLONG>(length, static_cast<ULONGLONG>(m_capacity) * 2);
    target = (target + m_growBytes - 1) / m_growBytes * m_growBytes;
    const size_t size = static_cast<size_t>(target);
    if (m_length == 0) {
        // Nothing to keep: a fresh block, zeroed when asked (large ones arrive zeroed
        // from the system without a write).
        BYTE* fresh = static_cast<BYTE*>(zeroed ? std::calloc(size, 1) : std::malloc(size));
        if (!fresh) throw std::bad_alloc();
        std::free(m_buffer);
        m_buffer = fresh;
        m_untouched = zeroed ? 0 : size;
    } else {
        BYTE* grown = static_cast<BYTE*>(std::realloc(m_buffer, size));
        if (!grown) throw std::bad_alloc();
        m_buffer = grown;
        m_untouched = size;  // the new part holds whatever realloc left there
    }
    m_capacity = size;
}

void CMemFile::ZeroRange(ULONGLONG from, ULONGLONG to) {
    const ULONGLONG end = std::min<ULONGLONG>(to, m_untouched);
    if (end > from) std::memset(m_buffer + from, 0, static_cast<size_t>(end - from));
}

UINT CMemFile::Read(void* buffer, UINT count) {
    if (m_position >= m_length || count == 0) return 0;
    const UINT n = static_cast<UINT>(std::min<ULONGLONG>(count, m_length - m_position));
    std::memcpy(buffer, m_buffer + m_position, n);
    m_position += n;
    return n;
}

void CMemFile::Write(const void* buffer, UINT count) {
    if (count == 0) return;
    const ULONGLONG end = m_position + count;
    Reserve(end);
    if (m_position > m_length) ZeroRange(m_length, m_position);
    std::memcpy(m_buffer + m_position, buffer, count);
    m_untouched = std::max<size_t>(m_untouched, static_cast<size_t>(end));
    m_position = end;
    m_length = std::max(m_length, end);
}

ULONGLONG CMemFile::Seek(int64_t offset, UINT from) {
    int64_t base = 0;
    if (from == current) base = static_cast<int64_t>(m_position);
    else if (from == end) base = static_cast<int64_t>(m_length);
    const int64_t target = base + offset;
    if (target < 0) throw CInvalidArgException();
    m_position = static_cast<ULONGLONG>(target);
    return m_position;
}

void CMemFile::SetLength(ULONGLONG length) {
    Reserve(length);
    if (length > m_length) ZeroRange(m_length, length);
    m_length = length;
    m_position = std::min(m_position, m_length);
}

void CMemFile::SetLengthForOverwrite(ULONGLONG length) {
    Reserve(length, false);
    if (length > m_length) m_untouched = std::max<size_t>(m_untouched, static_cast<size_t>(length));
    m_length = length;
    m_position = std::min(m_position, m_length);
}

UINT CMemFile::GetBufferPtr(UINT command, UINT count, void** start, void** max) {
    if (command == bufferCheck) return 1;
    if (command != bufferRead && command != bufferWrite) return 0;
    const UINT n = static_cast<UINT>(std::min<ULONGLONG>(count, m_length > m_position ? m_length - m_position : 0));
    // Past the end (after a seek) there is nothing to hand out: point at the end.
    BYTE* at = m_capacity == 0 ? nullptr : m_buffer + std::min(m_position, m_length);
    if (start) *start = at;
    if (max) *max = at + n;
    // The caller may write into what it was handed.
    if (n) m_untouched = std::max<size_t>(m_untouched, static_cast<size_t>(std::min(m_position, m_length) + n));
    m_position += n;
    return n;
}
