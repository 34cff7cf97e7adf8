// The importer of each ECAD format, reached through its plug-in. Every read returns
// a new board database owned by the caller, or null when the plug-in is missing (one
// line in the API log) or read nothing. Board Designer, Mentor and CR5000 designs
// that are ODB++ jobs are read by the ODB++ reader when their plug-in is missing;
// for an Allegro board file, its IPC-2581 or ODB++ export of the same name is read.
#pragma once

#include "CPALGParamForPDB.h"
#include "CPBDParamForPDB.h"
#include "CPMentorParamForPDB.h"
#include "CPPWSParamForPDB.h"

class CPdb;

class CALGMgr {
public:
    CPdb* pReadAllegro(CPALGUIS* settings, CPALGParamForPDB* request);
};

class CBDmanager {
public:
    CPdb* ReadBoardDesigner(CPBDParamForPDB* request);
};

class CMentorManager {
public:
    // extractMode 1 for an extraction; readMode 0 (/S), 1 (/A) or 2 (/AF).
    CPdb* ReadMentor(CPMentorParamForPDB* request, int extractMode, int readMode);
};

class CZPWSmanager {
public:
    // extractMode 1 for an extraction; readMode 0 (/A) or 1 (/W).
    CPdb* GetPDB(CPPWSParamForPDB* request, CPPWSUis* settings, int extractMode, int readMode);
};
