// The archive image of one record (command or reply) as bytes: what a frame's
// payload holds for it.
#pragma once

#include <vector>

#include "CArchive.h"

namespace records {

// A write-only file appending to a byte vector: the archive writes a record's image
// straight into the bytes that are sent, large arrays in one copy.
class ByteVectorFile : public CFile {
public:
    explicit ByteVectorFile(std::vector<unsigned char>& bytes) : m_bytes(bytes) {}
    UINT Read(void*, UINT) override { return 0; }
    void Write(const void* buffer, UINT count) override {
        const unsigned char* from = static_cast<const unsigned char*>(buffer);
        m_bytes.insert(m_bytes.end(), from, from + count);
    }
    ULONGLONG Seek(int64_t, UINT) override { return m_bytes.size(); }
    ULONGLONG GetLength() const override { return m_bytes.size(); }
    void SetLength(ULONGLONG length) override { m_bytes.resize(static_cast<size_t>(length)); }
    ULONGLONG GetPosition() const override { return m_bytes.size(); }

private:
    std::vector<unsigned char>& m_bytes;
};

// Replaces bytes with the image of record, keeping the vector's capacity: a buffer
// kept between images is written without growing or touching fresh memory.
template <class Record>
void ImageInto(Record& record, std::vector<unsigned char>& bytes) {
    bytes.clear();
    ByteVectorFile file(bytes);
    CArchive ar(&file, CArchive::store, 4096);
    record.Serialize(ar);
    ar.Close();
}

template <class Record>
std::vector<unsigned char> Image(Record& record) {
    std::vector<unsigned char> bytes;
    ImageInto(record, bytes);
    return bytes;
}

}  // namespace records
