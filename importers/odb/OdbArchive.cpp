#include "OdbArchive.h"

#include <archive.h>
#include <archive_entry.h>

#include <memory>

namespace odb {

namespace {
struct ArchiveFree {
    void operator()(archive* a) const { archive_read_free(a); }
};
using ArchivePtr = std::unique_ptr<archive, ArchiveFree>;

ArchivePtr OpenArchive(const std::string& path) {
    ArchivePtr a(archive_read_new());
    if (!a) return nullptr;
    archive_read_support_filter_all(a.get());
    archive_read_support_format_tar(a.get());
    archive_read_support_format_zip(a.get());
    archive_read_support_format_gnutar(a.get());
    if (archive_read_open_filename(a.get(), path.c_str(), 1 << 16) != ARCHIVE_OK) return nullptr;
    return a;
}

// A member whose size the archive gives is read straight into its place in data;
// what is left over (or all of a member of unknown size) is appended in blocks.
bool ReadData(archive* a, std::string& data, la_int64_t sizeHint) {
    data.clear();
    if (sizeHint > 0) {
        data.resize(static_cast<size_t>(sizeHint));
        size_t got = 0;
        while (got < data.size()) {
            const la_ssize_t n = archive_read_data(a, &data[got], data.size() - got);
            if (n < 0) return false;
            if (n == 0) {
                data.resize(got);
                return true;
            }
            got += static_cast<size_t>(n);
        }
    }
    char buffer[1 << 16];
    for (;;) {
        const la_ssize_t n = archive_read_data(a, buffer, sizeof buffer);
        if (n < 0) return false;
        if (n == 0) return true;
        data.append(buffer, static_cast<size_t>(n));
    }
}
}  // namespace

bool ReadArchive(const std::string& path, const std::function<bool(std::string_view)>& wanted,
                 const std::function<void(std::string&&, std::string&&)>& take, std::string& error) {
    ArchivePtr a = OpenArchive(path);
    if (!a) {
        error = path + ": not an archive that can be read";
        return false;
    }
    archive_entry* entry = nullptr;
    for (;;) {
        const int status = archive_read_next_header(a.get(), &entry);
        if (status == ARCHIVE_EOF) return true;
        if (status < ARCHIVE_WARN) {
            error = path + ": " + (archive_error_string(a.get()) ? archive_error_string(a.get()) : "damaged archive");
            return false;
        }
        if (archive_entry_filetype(entry) != AE_IFREG) continue;
        const char* name = archive_entry_pathname(entry);
        if (!name || !wanted(name)) continue;
        std::string data;
        if (!ReadData(a.get(), data, archive_entry_size(entry))) {
            error = path + ": " + name + ": " +
                    (archive_error_string(a.get()) ? archive_error_string(a.get()) : "damaged archive");
            return false;
        }
        take(std::string(name), std::move(data));
    }
}

bool Uncompress(std::string& data, std::string& error) {
    ArchivePtr a(archive_read_new());
    archive_read_support_filter_compress(a.get());
    archive_read_support_filter_gzip(a.get());
    archive_read_support_format_raw(a.get());
    archive_entry* entry = nullptr;
    if (archive_read_open_memory(a.get(), data.data(), data.size()) != ARCHIVE_OK ||
        archive_read_next_header(a.get(), &entry) != ARCHIVE_OK || archive_filter_count(a.get()) < 2) {
        error = "not a compressed file";
        return false;
    }
    std::string out;
    if (!ReadData(a.get(), out, 0)) {
        error = archive_error_string(a.get()) ? archive_error_string(a.get()) : "damaged compressed file";
        return false;
    }
    data = std::move(out);
    return true;
}

bool ScanArchive(const std::string& path, const std::function<bool(std::string_view)>& visit) {
    ArchivePtr a = OpenArchive(path);
    if (!a) return false;
    archive_entry* entry = nullptr;
    while (archive_read_next_header(a.get(), &entry) == ARCHIVE_OK) {
        const char* name = archive_entry_pathname(entry);
        if (name && visit(name)) return true;
    }
    return false;
}

}  // namespace odb
