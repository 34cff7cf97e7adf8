#include "CArchive.h"

#include <algorithm>

#include "../platform/platform.h"

CArchive::CArchive(CFile* file, UINT mode, int bufferSize)
    : m_file(file),
      m_loading((mode & load) != 0),
      m_buffer(new BYTE[static_cast<size_t>(std::max(bufferSize, 128))]),
      m_bufferSize(static_cast<size_t>(std::max(bufferSize, 128))) {}

CArchive::~CArchive() {
    try {
        if (!m_closed) Close();
    } catch (...) {
    }
}

void CArchive::FlushStore() {
    if (m_cursor) m_file->Write(m_buffer.get(), static_cast<UINT>(m_cursor));
    m_cursor = 0;
}

void CArchive::Flush() {
    if (m_loading) {
        // Give back to the file what was read ahead but not used.
        if (m_filled > m_cursor) m_file->Seek(-static_cast<int64_t>(m_filled - m_cursor), CFile::current);
        m_cursor = m_filled = 0;
    } else {
        FlushStore();
    }
}

void CArchive::Close() {
    if (m_closed) return;
    m_closed = true;
    Flush();
}

void CArchive::Write(const void* data, size_t count) {
    if (m_loading) throw CArchiveException(CArchiveException::badIndex);
    const BYTE* bytes = static_cast<const BYTE*>(data);
    if (count >= m_bufferSize) {  // large blocks go straight to the file
        FlushStore();
        while (count) {
            const UINT chunk = static_cast<UINT>(std::min<size_t>(count, 0x40000000));
            m_file->Write(bytes, chunk);
            bytes += chunk;
            count -= chunk;
        }
        return;
    }
    if (m_cursor + count > m_bufferSize) FlushStore();
    std::memcpy(m_buffer.get() + m_cursor, bytes, count);
    m_cursor += count;
}

void CArchive::Read(void* data, size_t count) {
    if (!m_loading) throw CArchiveException(CArchiveException::badIndex);
    BYTE* out = static_cast<BYTE*>(data);
    const size_t buffered = std::min(count, m_filled - m_cursor);
    if (buffered) {
        std::memcpy(out, m_buffer.get() + m_cursor, buffered);
        m_cursor += buffered;
        out += buffered;
        count -= buffered;
    }
    if (!count) return;
    if (count >= m_bufferSize) {  // large blocks come straight from the file
        while (count) {
            const UINT chunk = static_cast<UINT>(std::min<size_t>(count, 0x40000000));
            const UINT got = m_file->Read(out, chunk);
            if (got == 0) throw CArchiveException(CArchiveException::endOfFile);
            out += got;
            count -= got;
        }
        return;
    }
    m_filled = m_file->Read(m_buffer.get(), static_cast<UINT>(m_bufferSize));
    m_cursor = 0;
    if (m_filled < count) {
        m_cursor = m_filled;
        throw CArchiveException(CArchiveException::endOfFile);
    }
    std::memcpy(out, m_buffer.get(), count);
    m_cursor = count;
}

void CArchive::WriteCount(size_t count) {
    if (count < 0xFFFF) {
        *this << static_cast<WORD>(count);
    } else {
        *this << static_cast<WORD>(0xFFFF) << static_cast<uint32_t>(count);
    }
}

size_t CArchive::ReadCount() {
    WORD shortCount = 0;
    *this >> shortCount;
    if (shortCount != 0xFFFF) return shortCount;
    uint32_t longCount = 0;
    *this >> longCount;
    return longCount;
}

ULONGLONG CArchive::Remaining() const {
    const ULONGLONG length = m_file->GetLength(), position = m_file->GetPosition();
    return (m_filled - m_cursor) + (length > position ? length - position : 0);
}

void CArchive::EnsureAvailable(size_t count, size_t elementSize) const {
    if (elementSize && count > Remaining() / elementSize) throw CArchiveException(CArchiveException::endOfFile);
}

CArchive& operator<<(CArchive& ar, const CString& text) {
    const size_t n = static_cast<size_t>(text.GetLength());
    if (n < 0xFF) {
        ar << static_cast<BYTE>(n);
    } else if (n < 0xFFFE) {
        ar << static_cast<BYTE>(0xFF) << static_cast<WORD>(n);
    } else {
        ar << static_cast<BYTE>(0xFF) << static_cast<WORD>(0xFFFF) << static_cast<uint32_t>(n);
    }
    if (n) ar.Write(text.GetString(), n);
    return ar;
}

namespace {
// Reads a string length prefix; a wide-string marker (FF FE FF) sets wide and reads the prefix that follows.
size_t ReadStringLength(CArchive& ar, bool& wide) {
    wide = false;
    BYTE byteLength = 0;
    ar >> byteLength;
    if (byteLength < 0xFF) return byteLength;
    WORD wordLength = 0;
    ar >> wordLength;
    if (wordLength == 0xFFFE) {
        wide = true;
        ar >> byteLength;
        if (byteLength < 0xFF) return byteLength;
        ar >> wordLength;
    }
    if (wordLength < 0xFFFF) return wordLength;
    uint32_t longLength = 0;
    ar >> longLength;
    if (longLength == 0xFFFFFFFFu) throw CArchiveException(CArchiveException::badIndex);
    return longLength;
}
}  // namespace

CArchive& operator>>(CArchive& ar, CString& text) {
    bool wide = false;
    const size_t n = ReadStringLength(ar, wide);
    ar.EnsureAvailable(n, wide ? 2 : 1);
    if (wide) {
        std::vector<char16_t> units(n);
        if (n) ar.Read(units.data(), n * 2);
        text = CString(platform::Utf16ToAnsi(units.data(), units.size()));
    } else {
        std::string bytes(n, '\0');
        if (n) ar.Read(&bytes[0], n);
        text = CString(std::move(bytes));
    }
    return ar;
}
