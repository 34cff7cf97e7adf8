// Reading ODB++ jobs for the extraction: the ODB++ format key, and the formats whose
// tools write ODB++ when their own importer plug-in is not installed.
#pragma once

#include "CEP_Parameter.h"
#include "CString.h"

class CPdb;

namespace extract_pdb {

// The ODB++ driver. Reads the job of argument 2 with the options of the checked slot
// list (step, layer filter, threads, MISC layers, drills to vias) and sets the output
// path to argument 3 joined with argument 4 + ".pdbb". The board (owned by the
// caller) or null.
CPdb* ExtractFromOdb(const CEP_Parameter& param);

// Whether path holds an ODB++ job (a folder or an archive).
bool HoldsOdbJob(const CString& path);

// Reads the ODB++ job at path with the reader's defaults. The reader's warnings go
// to the API log one line each, and so does its reason when nothing could be read.
// The board (owned by the caller) or null.
CPdb* ReadOdbJobWithDefaults(const CString& path);

}  // namespace extract_pdb
