// Helpers of the record tests: archive images in and out of memory files, and
// readable failure output for byte images and string lists.
#pragma once

#include <cstdint>
#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include "CArchive.h"
#include "CMemFile.h"
#include "CStringArray.h"

using Bytes = std::vector<uint8_t>;

inline void PrintTo(const CStringArray& list, std::ostream* os) {
    *os << "{";
    for (INT_PTR i = 0; i < list.GetSize(); ++i) *os << (i ? ", \"" : "\"") << list.GetAt(i).GetString() << "\"";
    *os << "}";
}

inline std::string Hex(const Bytes& bytes) {
    std::string out;
    char cell[4];
    for (uint8_t b : bytes) {
        std::snprintf(cell, sizeof cell, "%02X ", b);
        out += cell;
    }
    if (!out.empty()) out.pop_back();
    return out;
}

inline Bytes FileBytes(CMemFile& file) {
    Bytes bytes(static_cast<size_t>(file.GetLength()));
    file.SeekToBegin();
    if (!bytes.empty()) file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    file.SeekToBegin();
    return bytes;
}

inline void FillFile(CMemFile& file, const Bytes& bytes) {
    if (!bytes.empty()) file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
    file.SeekToBegin();
}

// The archive image of a record, written as the client writes it: a memory file that
// grows by 1024, a storing archive with a 4096-byte buffer, closed before use.
template <class Record>
Bytes Store(Record& record) {
    CMemFile file(1024);
    CArchive ar(&file, CArchive::store, 4096);
    record.Serialize(ar);
    ar.Close();
    return FileBytes(file);
}

// Loads an image into record; raises what the archive raises. Returns the bytes the
// load left unread.
template <class Record>
ULONGLONG Load(const Bytes& image, Record& record) {
    CMemFile file(1024);
    FillFile(file, image);
    CArchive ar(&file, CArchive::load, 4096);
    record.Serialize(ar);
    const ULONGLONG left = ar.Remaining();
    ar.Close();
    return left;
}

inline Bytes Concat(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}
