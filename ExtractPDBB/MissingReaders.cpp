// The exchange-format readers that this build lacks (their libraries were not found,
// as libxml2 in the cross build): files of their format are never recognised, and
// their key reads nothing after one line in the API log.
#include "CUniversalLogger.h"
#include "ExchangeExtraction.h"

namespace extract_pdb {
namespace {
[[maybe_unused]] CPdb* NoReader(const char* format) {
    GetUniversalLogger().LogLine("This build has no %s reader", format);
    return nullptr;
}
}  // namespace

#ifndef KPCB_ODB_READER
CPdb* ExtractFromOdb(const CEP_Parameter&, CString&) { return NoReader("ODB++"); }
bool HoldsOdbJob(const CString&) { return false; }
CPdb* ReadOdbJobWithDefaults(const CString&) { return nullptr; }
#endif

#ifndef KPCB_IPC2581_READER
CPdb* ExtractFromIpc2581(const CEP_Parameter&, CString&) { return NoReader("IPC-2581"); }
bool HoldsIpc2581File(const CString&) { return false; }
CPdb* ReadIpc2581WithDefaults(const CString&) { return nullptr; }
#endif

}  // namespace extract_pdb
