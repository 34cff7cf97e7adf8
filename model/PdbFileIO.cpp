#include "PdbFileIO.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "CException.h"
#include "GCUtility.h"

UINT CByteFile::Read(void* buffer, UINT count) {
    const ULONGLONG length = GetLength();
    if (m_position >= length) return 0;
    const UINT n = static_cast<UINT>(std::min<ULONGLONG>(count, length - m_position));
    std::memcpy(buffer, Data() + m_position, n);
    m_position += n;
    return n;
}

void CByteFile::Write(const void* buffer, UINT count) {
    if (m_view) throw CInvalidArgException();
    const size_t end = static_cast<size_t>(m_position) + count;
    if (end > m_bytes.size()) m_bytes.resize(end);
    std::memcpy(m_bytes.data() + m_position, buffer, count);
    m_position = end;
}

ULONGLONG CByteFile::Seek(int64_t offset, UINT from) {
    int64_t base = 0;
    if (from == current) base = static_cast<int64_t>(m_position);
    if (from == end) base = static_cast<int64_t>(GetLength());
    if (base + offset < 0) throw CInvalidArgException();
    m_position = static_cast<ULONGLONG>(base + offset);
    return m_position;
}

void CByteFile::SetLength(ULONGLONG length) {
    if (m_view) throw CInvalidArgException();
    m_bytes.resize(static_cast<size_t>(length));
    m_position = std::min(m_position, length);
}

namespace {
struct CrcTables {
    uint32_t t[8][256];
    CrcTables() {
        for (uint32_t i = 0; i < 256; ++i) {
            uint32_t c = i;
            for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[0][i] = c;
        }
        for (uint32_t i = 0; i < 256; ++i) {
            for (int s = 1; s < 8; ++s) t[s][i] = (t[s - 1][i] >> 8) ^ t[0][t[s - 1][i] & 0xFF];
        }
    }
};
const CrcTables& Tables() {
    static const CrcTables tables;
    return tables;
}
}  // namespace

uint32_t Crc32(const void* data, size_t size, uint32_t crc) {
    const CrcTables& T = Tables();
    const unsigned char* p = static_cast<const unsigned char*>(data);
    crc = ~crc;
    // Eight bytes per step (slicing by eight), then byte by byte.
    while (size >= 8) {
        const uint32_t lo = crc ^ (uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24);
        crc = T.t[7][lo & 0xFF] ^ T.t[6][(lo >> 8) & 0xFF] ^ T.t[5][(lo >> 16) & 0xFF] ^ T.t[4][lo >> 24] ^
              T.t[3][p[4]] ^ T.t[2][p[5]] ^ T.t[1][p[6]] ^ T.t[0][p[7]];
        p += 8;
        size -= 8;
    }
    while (size--) crc = T.t[0][(crc ^ *p++) & 0xFF] ^ (crc >> 8);
    return ~crc;
}

namespace pdbfile {

bool ReadAll(const CString& path, std::string& bytes, CString& error) {
    std::FILE* file = std::fopen(path.GetString(), "rb");
    if (!file) {
        error.Format("%s: cannot open: %s", path.GetString(), std::strerror(errno));
        return false;
    }
    bytes.clear();
    char chunk[1 << 16];
    size_t got;
    while ((got = std::fread(chunk, 1, sizeof chunk, file)) > 0) bytes.append(chunk, got);
    const bool failed = std::ferror(file) != 0;
    std::fclose(file);
    if (failed) {
        error.Format("%s: read error", path.GetString());
        return false;
    }
    return true;
}

namespace {
// A write-only CFile over an open stdio file; remembers whether any write failed.
class StdioSink : public CFile {
public:
    explicit StdioSink(std::FILE* file) : m_file(file) {}
    UINT Read(void*, UINT) override { throw CInvalidArgException(); }
    void Write(const void* buffer, UINT count) override {
        if (std::fwrite(buffer, 1, count, m_file) != count) m_failed = true;
        m_position += count;
        m_length = std::max(m_length, m_position);
    }
    ULONGLONG Seek(int64_t offset, UINT from) override {
        const int64_t base = from == current ? static_cast<int64_t>(m_position) : from == end ? static_cast<int64_t>(m_length) : 0;
        if (base + offset < 0 || base + offset > static_cast<int64_t>(m_length)) throw CInvalidArgException();
        if (std::fflush(m_file) != 0 || std::fseek(m_file, static_cast<long>(base + offset), SEEK_SET) != 0) m_failed = true;
        m_position = static_cast<ULONGLONG>(base + offset);
        return m_position;
    }
    ULONGLONG GetLength() const override { return m_length; }
    void SetLength(ULONGLONG) override { throw CInvalidArgException(); }
    ULONGLONG GetPosition() const override { return m_position; }
    bool Failed() const { return m_failed; }

private:
    std::FILE* m_file;
    ULONGLONG m_position = 0, m_length = 0;
    bool m_failed = false;
};
}  // namespace

bool WriteAll(const CString& path, const void* data, size_t size, bool overwrite, CString& error) {
    return WriteThrough(
        path, overwrite,
        [&](CFile& file) {
            for (size_t done = 0; done < size;) {  // CFile counts in UINT
                const UINT chunk = static_cast<UINT>(std::min<size_t>(size - done, 0x40000000));
                file.Write(static_cast<const BYTE*>(data) + done, chunk);
                done += chunk;
            }
        },
        error);
}

bool WriteThrough(const CString& path, bool overwrite, const std::function<void(CFile&)>& write, CString& error) {
    GCUtility& util = GCUtility::GetInstance();
    if (!overwrite && util.DoesFileOrDirExist(path, __FILE__, __LINE__)) {
        error.Format("%s: the file exists", path.GetString());
        return false;
    }
    const CString temp = path + ".tmp";
    std::FILE* file = std::fopen(temp.GetString(), "wb");
    if (!file) {
        error.Format("%s: cannot create: %s", temp.GetString(), std::strerror(errno));
        return false;
    }
    StdioSink sink(file);
    try {
        write(sink);
    } catch (...) {
        std::fclose(file);
        std::remove(temp.GetString());
        throw;
    }
    const bool closed = std::fclose(file) == 0;
    if (sink.Failed() || !closed) {
        error.Format("%s: write error", temp.GetString());
        std::remove(temp.GetString());
        return false;
    }
    std::remove(path.GetString());  // rename does not replace a file everywhere
    if (std::rename(temp.GetString(), path.GetString()) != 0) {
        error.Format("%s: cannot rename the written file into place: %s", path.GetString(), std::strerror(errno));
        std::remove(temp.GetString());
        return false;
    }
    return true;
}

}  // namespace pdbfile
