// Red-mark files: a text form ("KPCB RED MARKS 1", then TITLE and CONTENTS lines,
// backslash and newline escaped as \\ and \n) and a binary form (the archive image:
// "KPRM", version 1, the count, then title and contents of each mark).
#pragma once

#include <string>
#include <vector>

#include "ViewerState.h"

namespace viewer {

bool SaveRedMarks(const std::string& path, const std::vector<RedMark>& marks, bool text);
// Reads either form (told apart by their first bytes); false with why on failure.
bool LoadRedMarks(const std::string& path, std::vector<RedMark>& marks, std::string& why);

}  // namespace viewer
