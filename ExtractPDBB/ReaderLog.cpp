#include "ReaderLog.h"

#include "CPdb.h"
#include "CUniversalLogger.h"

namespace extract_pdb {

CPdb* LoggedRead(std::unique_ptr<CPdb> pdb, const char* format, const char* what, const CString& path,
                 const std::vector<std::string>& warnings, const std::string& error) {
    for (const std::string& warning : warnings) GetUniversalLogger().LogLine("%s : %s", format, warning.c_str());
    if (!pdb) GetUniversalLogger().LogLine("Cannot read %s. : %s : %s", what, path.GetString(), error.c_str());
    return pdb.release();
}

}  // namespace extract_pdb
