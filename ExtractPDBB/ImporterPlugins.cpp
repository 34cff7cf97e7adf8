#include "ImporterPlugins.h"

#include <map>
#include <mutex>
#include <string>

#include "CUniversalLogger.h"
#include "GCUtility.h"
#include "KPCBImporterPlugin.h"
#include "platform.h"

namespace importer_plugins {
namespace {

// Plug-ins loaded so far, by full path. Never unloaded: boards they created may
// still be alive, and their destructors live in the plug-in.
std::mutex g_lock;
std::map<std::string, void*> g_loaded;

// Loads path and checks its interface version; null (logged) on failure.
void* LoadChecked(const CString& path) {
    platform::Status why;
    void* module = platform::LoadModule(path.str(), &why);
    if (!module) {
        GetUniversalLogger().LogLine("Importer plug-in cannot be loaded (%s) : %s", why.Text(), path.GetString());
        return nullptr;
    }
    const auto version =
        reinterpret_cast<KPCBImporterInterfaceVersionFn>(platform::ModuleSymbol(module, KPCB_IMPORTER_VERSION_ENTRY));
    const int found = version ? version() : -1;
    if (found != KPCB_IMPORTER_INTERFACE_VERSION) {
        GetUniversalLogger().LogLine("Importer plug-in has interface version %d, not %d : %s", found,
                                     KPCB_IMPORTER_INTERFACE_VERSION, path.GetString());
        platform::UnloadModule(module);
        return nullptr;
    }
    return module;
}

}  // namespace

std::vector<CString> SearchFolders() {
    std::vector<CString> folders;
    const std::string configured = platform::GetEnv("KPCB_IMPORTER_DIR");
    if (!configured.empty()) folders.push_back(CString(configured));
    folders.push_back(CString(platform::ModuleDirectory()));
    return folders;
}

void* FindEntry(const char* fileName, const char* symbol) {
    GCUtility& util = GCUtility::GetInstance();
    CString path, searched;
    for (const CString& folder : SearchFolders()) {
        const CString candidate = util.GCPathCombine(folder, fileName, __FILE__, __LINE__);
        if (util.DoesFileOrDirExist(candidate, __FILE__, __LINE__)) {
            path = candidate;
            break;
        }
        searched += searched.IsEmpty() ? folder : CString(", ") + folder;
    }
    if (path.IsEmpty()) {
        GetUniversalLogger().LogLine("Importer plug-in %s not found in : %s", fileName, searched.GetString());
        return nullptr;
    }

    void* module = nullptr;
    {
        std::lock_guard<std::mutex> hold(g_lock);
        const auto known = g_loaded.find(path.str());
        if (known != g_loaded.end()) {
            module = known->second;
        } else {
            module = LoadChecked(path);
            if (!module) return nullptr;
            g_loaded[path.str()] = module;
        }
    }
    void* entry = platform::ModuleSymbol(module, symbol);
    if (!entry) GetUniversalLogger().LogLine("Importer plug-in lacks its entry point %s : %s", symbol, path.GetString());
    return entry;
}

}  // namespace importer_plugins
