// A scratch API log for the extraction tests: the logger is pointed at a fresh file
// and the tests read back the text of each line (time stamp and pid cut off).
#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "CUniversalLogger.h"
#include "TestPaths.h"

namespace extract_test {

inline std::vector<std::string> ReadLogLines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
        const size_t cut = line.find("] ");
        lines.push_back(cut == std::string::npos ? line : line.substr(cut + 2));
    }
    return lines;
}

inline int CountLines(const std::vector<std::string>& lines, const std::string& text) {
    int n = 0;
    for (const auto& line : lines) n += line == text ? 1 : 0;
    return n;
}

// Lines that are not the argument dump.
inline std::vector<std::string> Messages(const std::vector<std::string>& lines) {
    std::vector<std::string> out;
    for (const auto& line : lines)
        if (line.rfind("   - Parameter ", 0) != 0) out.push_back(line);
    return out;
}

class ScratchLog {
public:
    ScratchLog() : m_path(m_dir / "KAPI.log") { GetUniversalLogger().Init(m_path.c_str(), 1); }
    std::vector<std::string> Lines() const { return ReadLogLines(m_path); }
    std::vector<std::string> Messages() const { return extract_test::Messages(Lines()); }
    const testing_support::TempDir& Dir() const { return m_dir; }

private:
    testing_support::TempDir m_dir;
    std::string m_path;
};

}  // namespace extract_test
