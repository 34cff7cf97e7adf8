#include "ExchangeExtraction.h"

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "CPdb.h"
#include "CTokenizer.h"
#include "CUniversalLogger.h"
#include "Extract_PDB_From_ECAD.h"
#include "OdbImport.h"
#include "ReaderLog.h"

namespace extract_pdb {
namespace {

// Slots of the checked ODB++ list (see CEP_Parameter::CheckOdb).
constexpr int kStepSlot = 5;
constexpr int kSkipMiscSlot = 8;
constexpr int kDrillToViaSlot = 14;
constexpr int kLayerFilterSlot = 15;
constexpr int kThreadSlot = 23;

CString Slot(const CEP_Parameter& param, int index) {
    return index < param.GetParameters().GetSize() ? param.GetAt(index) : CString();
}

// The value of a "/NAME:value" slot, double quotes removed.
CString SwitchValue(const CString& slot) {
    CString value = slot.Mid(slot.Find(':') + 1);
    value.Remove('"');
    value.Trim();
    return value;
}

// "/DRILL_TO_VIA:" takes yes/no words; anything else keeps the default.
bool ParseYesNo(const CString& value, bool fallback) {
    CString word(value);
    word.MakeUpper();
    if (word == "TRUE" || word == "YES" || word == "ON" || word == "1") return true;
    if (word == "FALSE" || word == "NO" || word == "OFF" || word == "0") return false;
    return fallback;
}

OdbImportOptions OptionsFromSlots(const CEP_Parameter& param) {
    OdbImportOptions options;
    const CString step = Slot(param, kStepSlot);
    if (!step.IsEmpty()) options.step = SwitchValue(step).str();
    if (Slot(param, kSkipMiscSlot) == "TRUE") options.skipMisc = true;
    const CString drill = Slot(param, kDrillToViaSlot);
    if (!drill.IsEmpty()) options.drillToVia = ParseYesNo(SwitchValue(drill), options.drillToVia);
    const CString filter = Slot(param, kLayerFilterSlot);
    if (!filter.IsEmpty()) {
        CStringArray names;
        CTokenizer(SwitchValue(filter), ",;").GetTokenArray(names);
        for (INT_PTR i = 0; i < names.GetSize(); ++i)
            if (!names.GetAt(i).IsEmpty()) options.layerFilter.push_back(names.GetAt(i).str());
    }
    // The slot holds the argument without "/THREAD:"; a lower-case switch keeps its text.
    const CString threads = Slot(param, kThreadSlot);
    if (!threads.IsEmpty()) options.threads = std::atoi(SwitchValue(threads).GetString());
    return options;
}

CPdb* Read(const CString& path, const OdbImportOptions& options) {
    std::vector<std::string> warnings;
    std::string error;
    std::unique_ptr<CPdb> pdb = ImportOdbJob(path.str(), options, warnings, error);
    return LoggedRead(std::move(pdb), "ODB++", "ODB++ job", path, warnings, error);
}

}  // namespace

CPdb* ExtractFromOdb(const CEP_Parameter& param, CString& outputPath) {
    CPdb* pdb = Read(param.GetAt(2), OptionsFromSlots(param));
    outputPath = OutputPathFromSaveName(param);
    return pdb;
}

bool HoldsOdbJob(const CString& path) { return !path.IsEmpty() && IsOdbJob(path.str()); }

CPdb* ReadOdbJobWithDefaults(const CString& path) {
    GetUniversalLogger().LogLine("Reading the design as an ODB++ job. : %s", path.GetString());
    return Read(path, OdbImportOptions());
}

}  // namespace extract_pdb
