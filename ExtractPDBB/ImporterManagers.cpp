#include "ImporterManagers.h"

#include "CUniversalLogger.h"
#include "ExchangeExtraction.h"
#include "GCUtility.h"
#include "ImporterPlugins.h"
#include "KPCBImporterPlugin.h"

namespace {
// Calls the entry point; anything thrown gives null.
template <class Entry, class... Args>
CPdb* CallEntry(void* symbol, Args... args) {
    try {
        return reinterpret_cast<Entry>(symbol)(args...);
    } catch (...) {
        return nullptr;
    }
}

// The tools of these formats also write ODB++: without the format's own plug-in, a
// design that is an ODB++ job (folder or archive) is read by the ODB++ reader.
template <class Entry, class... Args>
CPdb* CallImporterOrOdb(const CString& design, const char* fileName, const char* symbol, Args... args) {
    void* entry = importer_plugins::FindEntry(fileName, symbol);
    if (entry) return CallEntry<Entry>(entry, args...);
    return extract_pdb::HoldsOdbJob(design) ? extract_pdb::ReadOdbJobWithDefaults(design) : nullptr;
}

// Allegro writes IPC-2581 and ODB++ too: without its plug-in, the export that sits
// beside the board file under the same name is read instead.
CPdb* ReadAllegroExport(const CString& boardFile) {
    const GCUtility& util = GCUtility::GetInstance();
    CString base = util.GCPathCombine(util.GetSegmntFromFilePath(boardFile, 1),
                                      util.GetSegmntFromFilePath(boardFile, 3), __FILE__, __LINE__);
    util.NormalizeSeparators(base);
    for (const char* ending : {".xml", ".cvg"})
        if (extract_pdb::HoldsIpc2581File(base + ending)) return extract_pdb::ReadIpc2581WithDefaults(base + ending);
    for (const char* ending : {"", ".tgz", ".tar.gz", ".tar", ".zip"})
        if (extract_pdb::HoldsOdbJob(base + ending)) return extract_pdb::ReadOdbJobWithDefaults(base + ending);
    GetUniversalLogger().LogLine(
        "No Allegro export found: looked for an IPC-2581 file (.xml, .cvg) or an ODB++ job (folder, .tgz, "
        ".tar.gz, .tar, .zip) named as the design. : %s",
        base.GetString());
    return nullptr;
}
}  // namespace

CPdb* CALGMgr::pReadAllegro(CPALGUIS* settings, CPALGParamForPDB* request) {
    void* entry = importer_plugins::FindEntry(KPCB_IMPORTER_ALLEGRO_FILE, KPCB_IMPORTER_ALLEGRO_ENTRY);
    if (entry) return CallEntry<KPCBImporterReadAllegroFn>(entry, settings, request);
    return ReadAllegroExport(request->GetBrdFilePath());
}

CPdb* CBDmanager::ReadBoardDesigner(CPBDParamForPDB* request) {
    return CallImporterOrOdb<KPCBImporterReadBoardDesignerFn>(
        request->GetDesignFilePath(), KPCB_IMPORTER_BOARDDESIGNER_FILE, KPCB_IMPORTER_BOARDDESIGNER_ENTRY, request);
}

CPdb* CMentorManager::ReadMentor(CPMentorParamForPDB* request, int extractMode, int readMode) {
    return CallImporterOrOdb<KPCBImporterReadMentorFn>(request->GetDesignFolder(), KPCB_IMPORTER_MENTOR_FILE,
                                                       KPCB_IMPORTER_MENTOR_ENTRY, request, extractMode, readMode);
}

CPdb* CZPWSmanager::GetPDB(CPPWSParamForPDB* request, CPPWSUis* settings, int extractMode, int readMode) {
    return CallImporterOrOdb<KPCBImporterGetPDBFn>(request->GetDesignPath(), KPCB_IMPORTER_CR5000PWS_FILE,
                                                   KPCB_IMPORTER_CR5000PWS_ENTRY, request, settings, extractMode,
                                                   readMode);
}
