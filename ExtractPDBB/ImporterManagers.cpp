#include "ImporterManagers.h"

#include "ImporterPlugins.h"
#include "KPCBImporterPlugin.h"
#include "OdbExtraction.h"

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

// Calls the plug-in's entry point; a missing plug-in gives null.
template <class Entry, class... Args>
CPdb* CallImporter(const char* fileName, const char* symbol, Args... args) {
    void* entry = importer_plugins::FindEntry(fileName, symbol);
    return entry ? CallEntry<Entry>(entry, args...) : nullptr;
}

// The tools of these formats also write ODB++: without the format's own plug-in, a
// design that is an ODB++ job (folder or archive) is read by the ODB++ reader.
template <class Entry, class... Args>
CPdb* CallImporterOrOdb(const CString& design, const char* fileName, const char* symbol, Args... args) {
    void* entry = importer_plugins::FindEntry(fileName, symbol);
    if (entry) return CallEntry<Entry>(entry, args...);
    return extract_pdb::HoldsOdbJob(design) ? extract_pdb::ReadOdbJobWithDefaults(design) : nullptr;
}
}  // namespace

CPdb* CALGMgr::pReadAllegro(CPALGUIS* settings, CPALGParamForPDB* request) {
    return CallImporter<KPCBImporterReadAllegroFn>(KPCB_IMPORTER_ALLEGRO_FILE, KPCB_IMPORTER_ALLEGRO_ENTRY, settings,
                                                   request);
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
