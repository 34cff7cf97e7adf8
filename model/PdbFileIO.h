// Byte-level helpers of the board files: an in-memory CFile for the archives, the
// checksum, and whole-file reads and writes.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "CMemFile.h"
#include "CString.h"

// A CFile over a byte vector. Either it owns a growable vector (for writing) or it
// reads a range that the caller keeps alive (for loading without a copy).
class CByteFile : public CFile {
public:
    CByteFile() = default;
    CByteFile(const void* data, size_t size) : m_view(static_cast<const BYTE*>(data)), m_viewSize(size) {}

    UINT Read(void* buffer, UINT count) override;
    // Raises CInvalidArgException on a read-only range.
    void Write(const void* buffer, UINT count) override;
    ULONGLONG Seek(int64_t offset, UINT from) override;
    ULONGLONG GetLength() const override { return m_view ? m_viewSize : m_bytes.size(); }
    void SetLength(ULONGLONG length) override;
    ULONGLONG GetPosition() const override { return m_position; }

    const BYTE* Data() const { return m_view ? m_view : m_bytes.data(); }
    std::vector<BYTE>& Bytes() { return m_bytes; }

private:
    std::vector<BYTE> m_bytes;
    const BYTE* m_view = nullptr;
    size_t m_viewSize = 0;
    ULONGLONG m_position = 0;
};

// CRC-32 (IEEE 802.3, reflected, as zip and PNG use it).
uint32_t Crc32(const void* data, size_t size, uint32_t crc = 0);

namespace pdbfile {
// Reads the whole file; false with a message naming the path on failure.
bool ReadAll(const CString& path, std::string& bytes, CString& error);
// Writes the bytes to a temporary file beside path and renames it over path, so that
// a failed write never leaves a partial file. overwrite 0 refuses an existing file.
bool WriteAll(const CString& path, const void* data, size_t size, bool overwrite, CString& error);
// As WriteAll, but write puts the bytes into the temporary file itself (a write-only
// CFile that can seek back over what was written), so that a large file needs no
// image in memory. An exception from write removes the temporary file and passes on.
bool WriteThrough(const CString& path, bool overwrite, const std::function<void(CFile&)>& write, CString& error);

// Reads the whole file and hands its bytes to parse(bytes, problem), which returns
// the board or null with its reason in problem; a failure's error names the path.
template <class Board, class Parse>
std::unique_ptr<Board> ReadBoard(const CString& path, CString& error, Parse parse) {
    std::string bytes;
    if (!ReadAll(path, bytes, error)) return nullptr;
    CString problem;
    std::unique_ptr<Board> board = parse(bytes, problem);
    if (!board) error.Format("%s: %s", path.GetString(), problem.GetString());
    return board;
}
}  // namespace pdbfile
