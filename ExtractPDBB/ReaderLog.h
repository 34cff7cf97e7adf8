// What the exchange-format readers (ODB++, IPC-2581) report, written to the API log.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "CString.h"

class CPdb;

namespace extract_pdb {

// Hands on a reader's result: each warning goes to the API log as "<format> : <warning>",
// and when nothing was read, "Cannot read <what>. : <path> : <error>". The board (now
// owned by the caller) or null.
CPdb* LoggedRead(std::unique_ptr<CPdb> pdb, const char* format, const char* what, const CString& path,
                 const std::vector<std::string>& warnings, const std::string& error);

}  // namespace extract_pdb
