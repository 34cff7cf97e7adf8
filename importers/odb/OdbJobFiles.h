// The files of an ODB++ job, read into memory from a folder or an archive, keyed by
// their lower-case path below the job's folder ("steps/pcb/eda/data"). Compressed
// members (".Z", ".gz") are stored uncompressed under their plain name.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace odb {

class JobFiles {
public:
    // Reads the job at path. false with the reason in error.
    bool Load(const std::string& path, std::string& error);
    // Takes the files from memory (names relative to the job's folder or to a folder
    // holding it), as Load would store them. false with the reason in error.
    bool LoadFromMemory(std::vector<std::pair<std::string, std::string>> files, std::string& error);

    // The contents of a file, or null.
    const std::string* Find(std::string_view key) const;
    // Hands a file's contents over and forgets the file (empty when absent).
    std::string Take(std::string_view key);
    // The keys under a folder ("steps/pcb/layers/"), sorted.
    std::vector<std::string> KeysUnder(std::string_view folder) const;
    // How a file is named in messages: the job's path and the file's key.
    std::string DisplayName(std::string_view key) const;

private:
    bool Settle(std::vector<std::pair<std::string, std::string>>& raw, std::string& error);

    std::string m_Path;
    std::unordered_map<std::string, std::string> m_Files;
};

// Whether path holds an ODB++ job (see IsOdbJob).
bool HoldsJob(const std::string& path);

}  // namespace odb
