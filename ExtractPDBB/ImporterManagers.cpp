#include "ImporterManagers.h"

#include "ImporterPlugins.h"
#include "KPCBImporterPlugin.h"

namespace {
// Calls the plug-in's entry point; a missing plug-in or anything thrown gives null.
template <class Entry, class... Args>
CPdb* CallImporter(const char* fileName, const char* symbol, Args... args) {
    const auto entry = reinterpret_cast<Entry>(importer_plugins::FindEntry(fileName, symbol));
    if (!entry) return nullptr;
    try {
        return entry(args...);
    } catch (...) {
        return nullptr;
    }
}
}  // namespace

CPdb* CALGMgr::pReadAllegro(CPALGUIS* settings, CPALGParamForPDB* request) {
    return CallImporter<KPCBImporterReadAllegroFn>(KPCB_IMPORTER_ALLEGRO_FILE, KPCB_IMPORTER_ALLEGRO_ENTRY, settings,
                                                   request);
}

CPdb* CBDmanager::ReadBoardDesigner(CPBDParamForPDB* request) {
    return CallImporter<KPCBImporterReadBoardDesignerFn>(KPCB_IMPORTER_BOARDDESIGNER_FILE,
                                                         KPCB_IMPORTER_BOARDDESIGNER_ENTRY, request);
}

CPdb* CMentorManager::ReadMentor(CPMentorParamForPDB* request, int extractMode, int readMode) {
    return CallImporter<KPCBImporterReadMentorFn>(KPCB_IMPORTER_MENTOR_FILE, KPCB_IMPORTER_MENTOR_ENTRY, request,
                                                  extractMode, readMode);
}

CPdb* CZPWSmanager::GetPDB(CPPWSParamForPDB* request, CPPWSUis* settings, int extractMode, int readMode) {
    return CallImporter<KPCBImporterGetPDBFn>(KPCB_IMPORTER_CR5000PWS_FILE, KPCB_IMPORTER_CR5000PWS_ENTRY, request,
                                              settings, extractMode, readMode);
}
