// Reading an IPC-2581 file (revision B or C) into a board database.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "CPdb.h"

struct Ipc2581ImportOptions {
    std::string step;  // empty: the first Step
};

// Reads the IPC-2581 file at path into a new board database. Null when it cannot be read at
// all, with the reason in error ("line N: element: what"); warnings gets one line for each
// thing skipped. The caller owns the board. Never throws.
std::unique_ptr<CPdb> ImportIpc2581File(const std::string& path, const Ipc2581ImportOptions& options,
                                        std::vector<std::string>& warnings, std::string& error);

// The same for a document held in memory.
std::unique_ptr<CPdb> ImportIpc2581Buffer(const char* data, size_t size, const Ipc2581ImportOptions& options,
                                          std::vector<std::string>& warnings, std::string& error);

// Whether path is an IPC-2581 file (an XML document whose root is IPC-2581). Never throws.
bool IsIpc2581File(const std::string& path);
