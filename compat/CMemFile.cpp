#include "CMemFile.h"

#include <algorithm>
#include <cstring>

#include "CException.h"

void CMemFile::Reserve(ULONGLONG length) {
    if (length <= m_buffer.size()) return;
    // Grow in whole steps, doubling for large files so that a stream of writes stays linear.
    ULONGLONG target = std::max<ULONGLONG>(length, m_buffer.size() * 2);
    target = (target + m_growBytes - 1) / m_growBytes * m_growBytes;
    m_buffer.resize(static_cast<size_t>(target));
}

UINT CMemFile::Read(void* buffer, UINT count) {
    if (m_position >= m_length || count == 0) return 0;
    const UINT n = static_cast<UINT>(std::min<ULONGLONG>(count, m_length - m_position));
    std::memcpy(buffer, m_buffer.data() + m_position, n);
    m_position += n;
    return n;
}

void CMemFile::Write(const void* buffer, UINT count) {
    if (count == 0) return;
    const ULONGLONG end = m_position + count;
    Reserve(end);
    if (m_position > m_length) std::memset(m_buffer.data() + m_length, 0, static_cast<size_t>(m_position - m_length));
    std::memcpy(m_buffer.data() + m_position, buffer, count);
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
    if (length > m_length) std::memset(m_buffer.data() + m_length, 0, static_cast<size_t>(length - m_length));
    m_length = length;
    m_position = std::min(m_position, m_length);
}

UINT CMemFile::GetBufferPtr(UINT command, UINT count, void** start, void** max) {
    if (command == bufferCheck) return 1;
    if (command != bufferRead && command != bufferWrite) return 0;
    const UINT n = static_cast<UINT>(std::min<ULONGLONG>(count, m_length > m_position ? m_length - m_position : 0));
    // Past the end (after a seek) there is nothing to hand out: point at the end.
    BYTE* at = m_buffer.empty() ? nullptr : m_buffer.data() + std::min(m_position, m_length);
    if (start) *start = at;
    if (max) *max = at + n;
    m_position += n;
    return n;
}
