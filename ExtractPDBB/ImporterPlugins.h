// Finding and loading the importer plug-ins (see KPCBImporterPlugin.h).
#pragma once

#include <vector>

#include "CString.h"

namespace importer_plugins {

// The folders searched, in order: KPCB_IMPORTER_DIR when set, then the library's own.
std::vector<CString> SearchFolders();

// The entry point named symbol of the plug-in fileName. The plug-in is loaded on the
// first request and stays loaded. Null, after one line in the API log, when the
// plug-in is missing, cannot be loaded, has another interface version or lacks
// the entry point.
void* FindEntry(const char* fileName, const char* symbol);

}  // namespace importer_plugins
