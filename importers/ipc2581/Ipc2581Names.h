// Names a writer changed to keep them apart from names of another kind.
#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

using NameSet = std::unordered_set<std::string>;

// A writer that draws every name from one pool (KiCad 9 does so for component
// references and pin names alike) gives a name already taken a suffix "_1", "_2", ...:
// component C8 becomes C8_1 where a pin C8 came first. Returns the names of own that
// read so, each mapped to its stem: those whose stem is a name of other and of none
// of own, and no other name of own claims the same stem.
std::unordered_map<std::string, std::string> PoolSuffixedNames(const NameSet& own, const NameSet& other);
