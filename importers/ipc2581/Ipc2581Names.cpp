#include <iterator>

#include "Ipc2581Names.h"

namespace {

// The stem of name<underscore><number>, the number without leading zeros; empty
// for any other name.
std::string SuffixedStem(const std::string& name) {
    const size_t underscore = name.rfind('_');
    if (underscore == std::string::npos || underscore == 0 || underscore + 1 == name.size() ||
        name[underscore + 1] == '0')
        return {};
    for (size_t i = underscore + 1; i < name.size(); ++i)
        if (name[i] < '0' || name[i] > '9') return {};
    return name.substr(0, underscore);
}

}  // namespace

std::unordered_map<std::string, std::string> PoolSuffixedNames(const NameSet& own, const NameSet& other) {
    std::unordered_map<std::string, std::string> renamed;
    std::unordered_map<std::string, int> claims;
    for (const std::string& name : own) {
        const std::string stem = SuffixedStem(name);
        if (stem.empty() || !other.count(stem) || own.count(stem)) continue;
        renamed.emplace(name, stem);
        ++claims[stem];
    }
    for (auto it = renamed.begin(); it != renamed.end();)
        it = claims[it->second] > 1 ? renamed.erase(it) : std::next(it);
    return renamed;
}
