// Reads and writes board database files (.pdbb).
//
// A .pdbb file is a 24-byte header followed by the board data written through
// CArchive (little-endian numbers, length-prefixed strings, 16/32-bit counts):
//   "KPCBPDBB"  8 bytes, the magic
//   version     uint32 (this program writes 2 and reads 1 and 2)
//   data size   uint64, the number of bytes after the header
//   data CRC    uint32, CRC-32 of those bytes
// A file that is empty, truncated, longer than announced, of another version or
// whose checksum or contents do not hold together is refused with a message; the
// loader never reads outside the file and never crashes on what it reads.
// docs/board-database.md describes the data part.
#pragma once

#include <memory>
#include <vector>

#include "CPdb.h"
#include "CString.h"

class CPdbbProcessor {
public:
    // The version written, and the oldest one still read.
    static constexpr int kFormatVersion = 2;
    static constexpr int kOldestFormatVersion = 1;
    static constexpr size_t kHeaderSize = 24;

    CPdbbProcessor() = default;
    virtual ~CPdbbProcessor() = default;

    // Writes pdb to path. overwrite: 1 replaces an existing file, 0 refuses it.
    // textCopy: non-zero also writes the text form beside it (the path with its
    // extension replaced by .pdbba, or .pdbba appended). makeFolders: 1 creates the
    // missing folders of path. Non-zero on success; GetLastError tells why not. The
    // file appears whole or not at all.
    int SavePDB(const CString& path, CPdb* pdb, int overwrite, int textCopy, int makeFolders);
    const CString& GetLastError() const { return m_LastError; }

    // Reads a .pdbb file. Null, with a message that names the path, when it cannot.
    static std::unique_ptr<CPdb> LoadPDB(const CString& path, CString& error);
    // Reads the image of a .pdbb file from memory.
    static std::unique_ptr<CPdb> LoadPDBFromMemory(const void* data, size_t size, CString& error);
    // The image of pdb as a .pdbb file of the given format version (an older one for
    // older readers). false, with the problem, for a board that does not pass
    // CPdb::Validate or holds what that version cannot.
    static bool SavePDBToMemory(const CPdb& pdb, std::vector<unsigned char>& image, CString& error,
                                int version = kFormatVersion);

    // Reads either form: the text form when the name ends in .pdbba (any case), a
    // .pdbb file otherwise.
    static std::unique_ptr<CPdb> LoadBoardFile(const CString& path, CString& error);
    // Writes either form, chosen by the name as LoadBoardFile does; replaces an existing file.
    static bool SaveBoardFile(const CString& path, const CPdb& pdb, CString& error);

private:
    CString m_LastError;
};
