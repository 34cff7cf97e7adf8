// Importer plug-ins: the ECAD readers that the design extraction functions call.
//
// Each ECAD format has its own plug-in, a shared library with a fixed file name
// (the same on every platform) that exports two C functions:
//
//   KPCBImporter_Allegro.kpi        KPCBImporter_ReadAllegro
//   KPCBImporter_BoardDesigner.kpi  KPCBImporter_ReadBoardDesigner
//   KPCBImporter_Mentor.kpi         KPCBImporter_ReadMentor
//   KPCBImporter_CR5000PWS.kpi      KPCBImporter_GetPDB
//   every plug-in                   KPCBImporter_InterfaceVersion
//
// The library looks for a plug-in first in the folder named by the environment
// variable KPCB_IMPORTER_DIR (when it is set), then in the folder that holds the
// library itself. A plug-in is loaded when its format is first extracted and stays
// loaded until the process ends. When it is missing, cannot be loaded, reports
// another interface version or lacks its entry point, the library writes one line
// to the API log and the extraction ends with result 3.
//
// Rules for a plug-in:
// - C++ objects cross the boundary, so a plug-in is built with the same compiler and
//   standard library as the client library, against the same headers: this one,
//   the parameter records (beside this one), the compat strings (compat/) and the
//   board database (model/, whose library it links statically).
// - The records are the library's; the plug-in reads them during the call and keeps
//   no pointer to them.
// - The result is a board database created with new, or null when nothing could be
//   read. The library owns the board from then on: it saves it and destroys it with
//   delete through CPdb's virtual destructor (which is why a plug-in stays loaded).
// - An entry point should not throw; anything thrown is caught and counts as null.
#pragma once

#include "CPALGParamForPDB.h"
#include "CPBDParamForPDB.h"
#include "CPMentorParamForPDB.h"
#include "CPPWSParamForPDB.h"

class CPdb;

// Changes whenever a record, a settings class or an entry point changes shape.
#define KPCB_IMPORTER_INTERFACE_VERSION 1

#if defined(_WIN32)
#  define KPCB_IMPORTER_EXPORT __declspec(dllexport)
#else
#  define KPCB_IMPORTER_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {
// Returns KPCB_IMPORTER_INTERFACE_VERSION as the plug-in was built with it.
typedef int (*KPCBImporterInterfaceVersionFn)();
// Allegro: the Allegro settings and the files to read (see CPALGParamForPDB).
typedef CPdb* (*KPCBImporterReadAllegroFn)(CPALGUIS* settings, CPALGParamForPDB* request);
// Zuken Board Designer.
typedef CPdb* (*KPCBImporterReadBoardDesignerFn)(CPBDParamForPDB* request);
// Mentor BoardStation. extractMode is 1 for an extraction; readMode 0 (/S), 1 (/A) or 2 (/AF).
typedef CPdb* (*KPCBImporterReadMentorFn)(CPMentorParamForPDB* request, int extractMode, int readMode);
// Zuken CR5000 PWS. extractMode is 1 for an extraction; readMode 0 (/A) or 1 (/W).
typedef CPdb* (*KPCBImporterGetPDBFn)(CPPWSParamForPDB* request, CPPWSUis* settings, int extractMode, int readMode);
}

// Plug-in file names and entry point names.
#define KPCB_IMPORTER_ALLEGRO_FILE "KPCBImporter_Allegro.kpi"
#define KPCB_IMPORTER_BOARDDESIGNER_FILE "KPCBImporter_BoardDesigner.kpi"
#define KPCB_IMPORTER_MENTOR_FILE "KPCBImporter_Mentor.kpi"
#define KPCB_IMPORTER_CR5000PWS_FILE "KPCBImporter_CR5000PWS.kpi"
#define KPCB_IMPORTER_VERSION_ENTRY "KPCBImporter_InterfaceVersion"
#define KPCB_IMPORTER_ALLEGRO_ENTRY "KPCBImporter_ReadAllegro"
#define KPCB_IMPORTER_BOARDDESIGNER_ENTRY "KPCBImporter_ReadBoardDesigner"
#define KPCB_IMPORTER_MENTOR_ENTRY "KPCBImporter_ReadMentor"
#define KPCB_IMPORTER_CR5000PWS_ENTRY "KPCBImporter_GetPDB"
