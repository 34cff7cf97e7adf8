#include "ExchangeExtraction.h"

#include <string>
#include <utility>
#include <vector>

#include "CPdb.h"
#include "CUniversalLogger.h"
#include "Extract_PDB_From_ECAD.h"
#include "Ipc2581Import.h"
#include "ReaderLog.h"

namespace extract_pdb {
namespace {

CPdb* Read(const CString& path) {
    std::vector<std::string> warnings;
    std::string error;
    std::unique_ptr<CPdb> pdb = ImportIpc2581File(path.str(), Ipc2581ImportOptions(), warnings, error);
    return LoggedRead(std::move(pdb), "IPC-2581", "IPC-2581 file", path, warnings, error);
}

}  // namespace

CPdb* ExtractFromIpc2581(const CEP_Parameter& param, CString& outputPath) {
    CPdb* pdb = Read(param.GetAt(2));
    outputPath = OutputPathFromSaveName(param);
    return pdb;
}

bool HoldsIpc2581File(const CString& path) { return !path.IsEmpty() && IsIpc2581File(path.str()); }

CPdb* ReadIpc2581WithDefaults(const CString& path) {
    GetUniversalLogger().LogLine("Reading the design as an IPC-2581 file. : %s", path.GetString());
    return Read(path);
}

}  // namespace extract_pdb
