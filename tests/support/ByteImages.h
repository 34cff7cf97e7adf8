// Byte images in and out of memory files, and their readable form in failure output.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "CArchive.h"
#include "CMemFile.h"

using Bytes = std::vector<uint8_t>;

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

// The whole file, its position left at the start.
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

// Runs write against a storing archive as the client makes it (a memory file that
// grows by 1024, a 4096-byte buffer, closed before use) and returns the image.
template <class Writer>
Bytes Image(Writer write) {
    CMemFile file(1024);
    CArchive ar(&file, CArchive::store, 4096);
    write(ar);
    ar.Close();
    return FileBytes(file);
}

inline Bytes Prefix(const Bytes& bytes, size_t n) {
    return Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(std::min(n, bytes.size())));
}
