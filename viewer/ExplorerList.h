// The explorer's object list file, read and resolved against the loaded board.
//
// Format: one object name per line, in the naming of the selection type (0 net
// names, 1 references, 2 pins as "REF-PIN"). Blanks at either end of a line and a
// carriage return before the line end are dropped; empty lines and lines whose
// first character is '#' are skipped.
#pragma once

#include <string>
#include <vector>

#include "CPdb.h"

namespace viewer {

struct ExplorerList {
    bool readable = false;               // the file could be opened
    std::vector<std::string> found;      // names of objects on the board, in file order
    std::vector<std::string> unknown;    // names that are not (or selection type outside 0-2)

    // "3 of 4 found; unknown: X9" for the journal.
    std::string Describe() const;
};

ExplorerList ReadExplorerList(const CPdb& pdb, int selectionType, const std::string& path);

}  // namespace viewer
