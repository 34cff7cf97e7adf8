// Helpers of the record tests: record images in and out of archives, readable
// failure output for string lists.
#pragma once

#include <memory>
#include <ostream>

#include "ByteImages.h"
#include "CKPRCI__Base.h"
#include "CStringArray.h"
#include "RecordFactory.h"

inline void PrintTo(const CStringArray& list, std::ostream* os) {
    *os << "{";
    for (INT_PTR i = 0; i < list.GetSize(); ++i) *os << (i ? ", \"" : "\"") << list.GetAt(i).GetString() << "\"";
    *os << "}";
}

// The archive image of a record, written as the client writes it.
template <class Record>
Bytes Store(Record& record) {
    return Image([&](CArchive& ar) { record.Serialize(ar); });
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

// The command record that the factory builds from a payload, or null.
inline std::unique_ptr<CKPRCI__Base> LoadCommandBytes(const Bytes& payload) {
    CMemFile file(1024);
    FillFile(file, payload);
    return LoadCommandRecord(file);
}
