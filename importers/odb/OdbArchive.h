// Archives and compressed members, through libarchive.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace odb {

// Streams the archive at path once. For each regular file whose name wanted accepts,
// reads it whole and hands name and contents to take. false with the reason in error
// (a truncated or corrupt archive, an unknown kind).
bool ReadArchive(const std::string& path, const std::function<bool(std::string_view)>& wanted,
                 const std::function<void(std::string&&, std::string&&)>& take, std::string& error);

// Replaces data (a Unix compress ".Z" or gzip file) by what it holds. false with the
// reason in error.
bool Uncompress(std::string& data, std::string& error);

// Calls visit with each file name of the archive's listing, until visit returns true.
// Whether visit returned true; false also for what is no archive.
bool ScanArchive(const std::string& path, const std::function<bool(std::string_view)>& visit);

}  // namespace odb
