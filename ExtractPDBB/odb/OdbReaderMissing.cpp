// Built instead of OdbExtraction.cpp when the ODB++ reader is not part of the build:
// ODB++ jobs are then never recognised and the ODB++ key reads nothing.
#include "CUniversalLogger.h"
#include "OdbExtraction.h"

namespace extract_pdb {

CPdb* ExtractFromOdb(const CEP_Parameter&) {
    GetUniversalLogger().LogLine("This build has no ODB++ reader");
    return nullptr;
}

bool HoldsOdbJob(const CString&) { return false; }

CPdb* ReadOdbJobWithDefaults(const CString&) { return nullptr; }

}  // namespace extract_pdb
