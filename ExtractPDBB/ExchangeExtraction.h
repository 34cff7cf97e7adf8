// The exchange-format readers (ODB++, IPC-2581) as the extraction uses them: the
// drivers of their format keys, and the reading of the exports that the other ECAD
// tools write when their own importer plug-in is not installed.
//
// Each driver reads the design of argument 2 and sets its output path to argument 3
// joined with argument 4 + ".pdbb". Holds* tells whether a path is of the format.
// Read*WithDefaults reads with the reader's defaults. The reader's warnings, and its
// reason when nothing could be read, go to the API log one line each. Every board
// returned is owned by the caller; null when nothing was read. A build without a
// reader recognises none of its files, and its driver logs that it has no reader.
#pragma once

#include "CEP_Parameter.h"
#include "CString.h"

class CPdb;

namespace extract_pdb {

// ODB++ jobs, a folder or an archive. The driver takes the options of the checked slot
// list (step, layer filter, threads, MISC layers, drills to vias).
CPdb* ExtractFromOdb(const CEP_Parameter& param, CString& outputPath);
bool HoldsOdbJob(const CString& path);
CPdb* ReadOdbJobWithDefaults(const CString& path);

// IPC-2581 files, revision B or C; the first step is read.
CPdb* ExtractFromIpc2581(const CEP_Parameter& param, CString& outputPath);
bool HoldsIpc2581File(const CString& path);
CPdb* ReadIpc2581WithDefaults(const CString& path);

}  // namespace extract_pdb
