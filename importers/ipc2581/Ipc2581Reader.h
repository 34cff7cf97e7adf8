// The walk over an IPC-2581 document that fills a board database.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "CPdb.h"
#include "Ipc2581Import.h"
#include "XmlStream.h"

// Reads the whole document into a new board. Throws Ipc2581Error when it cannot be
// read; warnings gets one line for each thing skipped.
std::unique_ptr<CPdb> ReadIpc2581(XmlStream& xml, const Ipc2581ImportOptions& options,
                                  std::vector<std::string>& warnings);
