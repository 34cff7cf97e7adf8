#include "OdbJobFiles.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "OdbArchive.h"
#include "OdbText.h"

namespace odb {

namespace fs = std::filesystem;

namespace {
bool EndsWith(std::string_view text, std::string_view suffix) {
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

std::string Normalize(std::string_view name) {
    std::string key = ToLower(name);
    std::replace(key.begin(), key.end(), '\\', '/');
    while (key.compare(0, 2, "./") == 0) key.erase(0, 2);
    return key;
}

// Only the files the import reads are kept (attribute lists, drill tools and the CAD
// netlist are not, and they are a tenth of a big job); fonts, wheels and the writer's
// own folders carry nothing the board needs.
bool Wanted(std::string_view name) {
    const std::string key = Normalize(name);
    const size_t slash = key.rfind('/');
    std::string_view base = std::string_view(key).substr(slash == std::string::npos ? 0 : slash + 1);
    for (std::string_view suffix : {".z", ".gz"}) {
        if (EndsWith(base, suffix)) base.remove_suffix(suffix.size());
    }
    bool read = false;
    for (const char* file : {"matrix", "info", "stephdr", "profile", "data", "features", "components"}) {
        read = read || base == file;
    }
    if (!read) return false;
    for (const char* skip : {"fonts/", "wheels/", "user/", "input/", "output/", "extension/"}) {
        const size_t at = key.find(skip);
        if (at != std::string::npos && (at == 0 || key[at - 1] == '/')) return false;
    }
    return true;
}

// The matrix file's key: "matrix/matrix" at the root or below one folder.
bool IsMatrixKey(std::string_view key, size_t& rootLength) {
    for (std::string_view tail : {std::string_view("matrix/matrix"), std::string_view("matrix/matrix.z"),
                                  std::string_view("matrix/matrix.gz")}) {
        if (!EndsWith(key, tail)) continue;
        const std::string_view root = key.substr(0, key.size() - tail.size());
        if (root.empty() || (root.back() == '/' && root.find('/') == root.size() - 1)) {
            rootLength = root.size();
            return true;
        }
    }
    return false;
}

bool ReadWholeFile(const fs::path& path, std::string& data) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::ostringstream buffer;
    buffer << in.rdbuf();
    data = buffer.str();
    return !in.bad();
}

// The job folder of a folder: itself, or its one sub-folder holding matrix/matrix.
bool FindJobFolder(const fs::path& folder, fs::path& job) {
    std::error_code ec;
    for (const char* name : {"matrix/matrix", "matrix/matrix.Z", "matrix/matrix.z", "matrix/matrix.gz"}) {
        if (fs::is_regular_file(folder / name, ec)) {
            job = folder;
            return true;
        }
    }
    fs::path only;
    int count = 0;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        if (it->is_directory(ec)) {
            only = it->path();
            ++count;
        }
    }
    if (count != 1) return false;
    for (const char* name : {"matrix/matrix", "matrix/matrix.Z", "matrix/matrix.z", "matrix/matrix.gz"}) {
        if (fs::is_regular_file(only / name, ec)) {
            job = only;
            return true;
        }
    }
    return false;
}
}  // namespace

bool JobFiles::Load(const std::string& path, std::string& error) {
    m_Path = path;
    m_Files.clear();
    std::vector<std::pair<std::string, std::string>> raw;
    std::error_code ec;
    const fs::path root = fs::u8path(path);
    if (fs::is_directory(root, ec)) {
        fs::path job;
        if (!FindJobFolder(root, job)) {
            error = path + ": no matrix/matrix in this folder or in its one sub-folder";
            return false;
        }
        for (fs::recursive_directory_iterator it(job, ec), end; !ec && it != end; it.increment(ec)) {
            if (!it->is_regular_file(ec)) continue;
            const std::string name = fs::relative(it->path(), job, ec).generic_u8string();
            if (!Wanted(name)) continue;
            std::string data;
            if (!ReadWholeFile(it->path(), data)) {
                error = it->path().u8string() + ": cannot be read";
                return false;
            }
            raw.emplace_back(name, std::move(data));
        }
    } else if (fs::is_regular_file(root, ec)) {
        if (!ReadArchive(path, Wanted,
                         [&](std::string&& name, std::string&& data) { raw.emplace_back(std::move(name), std::move(data)); },
                         error)) {
            return false;
        }
    } else {
        error = path + ": no such file or folder";
        return false;
    }
    return Settle(raw, error);
}

bool JobFiles::LoadFromMemory(std::vector<std::pair<std::string, std::string>> files, std::string& error) {
    m_Path = "(memory)";
    m_Files.clear();
    return Settle(files, error);
}

bool JobFiles::Settle(std::vector<std::pair<std::string, std::string>>& raw, std::string& error) {
    size_t rootLength = std::string::npos;
    for (auto& file : raw) {
        file.first = Normalize(file.first);
        size_t length = 0;
        if (IsMatrixKey(file.first, length) && length < rootLength) rootLength = length;
    }
    if (rootLength == std::string::npos) {
        error = m_Path + ": no matrix/matrix: not an ODB++ job";
        return false;
    }
    std::string prefix;
    for (auto& file : raw) {
        size_t length = 0;
        if (IsMatrixKey(file.first, length) && length == rootLength) {
            prefix = file.first.substr(0, rootLength);
            break;
        }
    }
    for (auto& file : raw) {
        if (file.first.compare(0, prefix.size(), prefix) != 0) continue;
        std::string key = file.first.substr(prefix.size());
        std::string data = std::move(file.second);
        for (std::string_view suffix : {".z", ".gz"}) {
            if (!EndsWith(key, suffix)) continue;
            std::string why;
            if (!Uncompress(data, why)) {
                error = m_Path + ": " + key + ": " + why;
                return false;
            }
            key.resize(key.size() - suffix.size());
        }
        m_Files[key] = std::move(data);
    }
    return true;
}

const std::string* JobFiles::Find(std::string_view key) const {
    auto it = m_Files.find(std::string(key));
    return it == m_Files.end() ? nullptr : &it->second;
}

std::string JobFiles::Take(std::string_view key) {
    auto it = m_Files.find(std::string(key));
    if (it == m_Files.end()) return std::string();
    std::string data = std::move(it->second);
    m_Files.erase(it);
    return data;
}

std::vector<std::string> JobFiles::KeysUnder(std::string_view folder) const {
    std::vector<std::string> keys;
    for (const auto& file : m_Files) {
        if (file.first.compare(0, folder.size(), folder) == 0) keys.push_back(file.first);
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

std::string JobFiles::DisplayName(std::string_view key) const { return m_Path + "/" + std::string(key); }

bool HoldsJob(const std::string& path) {
    std::error_code ec;
    const fs::path root = fs::u8path(path);
    if (fs::is_directory(root, ec)) {
        fs::path job;
        return FindJobFolder(root, job);
    }
    if (!fs::is_regular_file(root, ec)) return false;
    return ScanArchive(path, [](std::string_view name) {
        size_t length = 0;
        return IsMatrixKey(Normalize(name), length);
    });
}

}  // namespace odb
