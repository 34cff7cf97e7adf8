// The extraction drivers: each fills its importer's records from a checked argument
// list, calls the importer and names the .pdbb file to save to. The exported
// functions (KPCBAPIExtract.h) run them and save the result.
#pragma once

#include "CEP_Parameter.h"
#include "CString.h"

class CPdb;

namespace extract_pdb {

// Each returns the board database read (owned by the caller) or null, and sets
// outputPath to the .pdbb file to save it to (set even when the read failed).
CPdb* ExtractFromAllegro(const CEP_Parameter& param, CString& outputPath);
CPdb* ExtractFromBoardDesigner(const CEP_Parameter& param, CString& outputPath);
CPdb* ExtractFromMentor(const CEP_Parameter& param, CString& outputPath);
CPdb* ExtractFromZuken(const CEP_Parameter& param, CString& outputPath);

// Argument 3 (the save folder) joined with argument 4 + ".pdbb", as the drivers of
// the exchange formats (ODB++, IPC-2581) and of Mentor name the output.
CString OutputPathFromSaveName(const CEP_Parameter& param);

}  // namespace extract_pdb
