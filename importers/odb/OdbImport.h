// Reading an ODB++ job (a folder or an archive) into a board database.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "CPdb.h"

struct OdbImportOptions {
    std::string step;                      // empty: the job's first step (matrix COL order)
    std::vector<std::string> layerFilter;  // matrix layer names, any case; empty: every layer
    int threads = 1;                       // layers read in parallel; below 1 means 1
    bool skipMisc = false;                 // layers of MISC context are not read
    bool drillToVia = true;                // a hole that is at no pin becomes a via
};

// Reads the ODB++ job at path (a folder or an archive) into a new board database. Null when
// the job cannot be read at all, with the reason in error ("file:line: what"); warnings gets
// one line for each thing skipped. The caller owns the board. Never throws.
std::unique_ptr<CPdb> ImportOdbJob(const std::string& path, const OdbImportOptions& options,
                                   std::vector<std::string>& warnings, std::string& error);

// Whether path holds an ODB++ job: a folder with matrix/matrix (directly or in its one
// sub-folder), or an archive of a supported kind whose listing has <job>/matrix/matrix.
// Never throws.
bool IsOdbJob(const std::string& path);
