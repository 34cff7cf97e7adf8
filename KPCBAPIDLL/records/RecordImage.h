// The archive image of one record (command or reply) as bytes: what a frame's
// payload holds for it.
#pragma once

#include <vector>

#include "CArchive.h"

namespace records {

template <class Record>
std::vector<unsigned char> Image(Record& record) {
    CMemFile file(1024);
    {
        CArchive ar(&file, CArchive::store, 4096);
        record.Serialize(ar);
        ar.Close();
    }
    std::vector<unsigned char> bytes(static_cast<size_t>(file.GetLength()));
    file.SeekToBegin();
    if (!bytes.empty()) file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

}  // namespace records
