#include "ExplorerList.h"

#include <fstream>

#include "BoardQueries.h"

namespace viewer {

std::string ExplorerList::Describe() const {
    if (!readable) return "list not readable";
    std::string out = std::to_string(found.size()) + " of " + std::to_string(found.size() + unknown.size()) + " found";
    if (!unknown.empty()) {
        out += "; unknown:";
        for (const std::string& name : unknown) out += " " + name;
    }
    return out;
}

ExplorerList ReadExplorerList(const CPdb& pdb, int selectionType, const std::string& path) {
    ExplorerList list;
    std::ifstream file(path, std::ios::binary);
    list.readable = file.is_open();
    const char* blanks = " \t\r\v\f";
    for (std::string line; std::getline(file, line);) {
        const size_t first = line.find_first_not_of(blanks);
        if (first == std::string::npos || line[first] == '#') continue;
        const std::string name = line.substr(first, line.find_last_not_of(blanks) - first + 1);
        (board::ObjectExists(pdb, selectionType, name) ? list.found : list.unknown).push_back(name);
    }
    return list;
}

}  // namespace viewer
