// Design extraction: turns the design data of an ECAD tool into a board database file
// (.pdbb) inside the calling process, through the format's importer plug-in
// (KPCBImporterPlugin.h). No viewer is involved.
//
// Every function writes to the API log and returns:
//   0  the design was read and the board database saved
//   2  the arguments were refused (the log says why)
//   3  the importer returned no board database (or its plug-in is missing)
//   4  saving the board database failed
// Extractions in one process run one after the other.
#pragma once

#include "KPCBAPI.h"
#include "CString.h"

// Allegro. kind 'a'/'A': the design comes as .brd, .pad, .rte and .sym files beside
// designFilePath; 'b'/'B': one .brd file, with extra1 and extra2 passed to the
// importer. Any other kind adds no switch, so the later arguments move one place
// forward. Writes <saveFolder>/<design name>.pdbb.
KPCBAPI_EXPORT int ExtractPdbbFromAllegro(const CString& saveFolder, const CString& designFilePath, const char& kind,
                                          const CString& extra1, const CString& extra2);

// Zuken Board Designer. firstLetter 'a'/'A' or 'b'/'B'; secondLetter 's' or 'a'/'A' (an
// uppercase 'S' adds no switch: the first of the four strings then stands in its
// place). The strings may carry /VD:<path>, /UH:<path>, /ZUKENROOT:<path>,
// /UH_POLYGON and /1. Writes <saveFolder>/<design name>.pdbb.
KPCBAPI_EXPORT int ExtractPdbbFromBoardDesigner(const CString& saveFolder, const CString& designPath,
                                                const char& firstLetter, const char& secondLetter,
                                                const CString& option1, const CString& option2,
                                                const CString& option3, const CString& option4);

// Mentor BoardStation: reads the design folder and writes outputFilePath's folder /
// its name + ".pdbb". flag non-zero asks for the /A read mode. unused is
// accepted and not used.
KPCBAPI_EXPORT int ExtractPdbbFromMentor(const CString& outputFilePath, const CString& designFolder,
                                         const int& flag, const CString& unused);

// Zuken CR5000 PWS. letter 'a'/'A' or 'w'/'W' selects the read mode; zlsFilePath is
// passed on only when that file exists. Writes <folder of outputFilePath>/<design
// name>.pdbb.
KPCBAPI_EXPORT int ExtractPdbbFromZuken(const CString& outputFilePath, const CString& designPath, const char& letter,
                                        const CString& zlsFilePath);

// Any format, from the argument list exactly as a command line gives it (UTF-8): the
// caller tag first, the format switch second, then the format's own arguments; for
// ODB++: From_KAPI /ODB <job folder or archive> <save folder> <name> [/S:<step>]
// [/U:mm|inch|mil] [/LAY_FILTER:<layer>,...] [/THREAD:<n>] [/SKIP_MISC]
// [/DRILL_TO_VIA:yes|no], written to <save folder>/<name>.pdbb (docs/extraction.md
// lists the switches). A format key without an importer gives 3 and one log line.
extern "C" KPCBAPI_EXPORT int ExtractPdbbFromArgumentList(int count, const char* const* arguments);
