// The extraction drivers: each fills its importer's records from a checked argument
// list, calls the importer and sets the output path. The exported functions
// (KPCBAPIExtract.h) run them and save the result.
#pragma once

#include "CEP_Parameter.h"
#include "CString.h"

class CPdb;

namespace extract_pdb {

// Each returns the board database read (owned by the caller) or null.
CPdb* ExtractFromAllegro(const CEP_Parameter& param);
CPdb* ExtractFromBoardDesigner(const CEP_Parameter& param);
CPdb* ExtractFromMentor(const CEP_Parameter& param);
CPdb* ExtractFromZuken(const CEP_Parameter& param);

// The .pdbb file that the last driver chose (set even when its read failed).
CString GetOutputPath();
// Sets that file (for drivers outside this source).
void SetOutputPath(const CString& path);
// Sets that file to argument 3 (the save folder) joined with argument 4 + ".pdbb", as
// the drivers of the exchange formats (ODB++, IPC-2581) name it.
void SetOutputPathFromSaveName(const CEP_Parameter& param);

}  // namespace extract_pdb
