// Launch, liveness and exit of viewer processes, and the viewer window table.
#include <mutex>
#include <unordered_map>

#include "FrameReader.h"
#include "CUniversalLogger.h"
#include "GCUtility.h"
#include "KPCBAPI.hpp"
#include "KapiFrame.h"
#include "SlotNames.h"
#include "platform.h"

namespace {

// Process id to the viewer's main window, for the viewers this process launched.
class ViewerWindowTable {
public:
    void Add(int pid, intptr_t window) {
        std::lock_guard<std::mutex> hold(m_lock);
        m_windows[pid] = window;
    }
    bool Take(int pid, intptr_t& window) {
        std::lock_guard<std::mutex> hold(m_lock);
        const auto found = m_windows.find(pid);
        if (found == m_windows.end()) return false;
        window = found->second;
        m_windows.erase(found);
        return true;
    }

private:
    std::mutex m_lock;
    std::unordered_map<int, intptr_t> m_windows;
};

ViewerWindowTable& WindowTable() {
    static ViewerWindowTable table;
    return table;
}

void OpenApiLog() {
    GCUtility& util = GCUtility::GetInstance();
    GetUniversalLogger().Init(util.GCPathCombine(util.GetDataPath(), "\\Log\\KAPI.log", __FILE__, __LINE__), 1);
}

const char* const kViewerNames[] = {"KorbinPCB", "KorbinPCB_l", "KorbinPCB_n"};

}  // namespace

CString FindViewerExecutable() {
    try {
        GCUtility& util = GCUtility::GetInstance();
        const CString dir = util.GetModuleDir("KPCBAPIDLL");
        for (const char* name : kViewerNames) {
            const CString path = util.GCPathCombine(dir, CString(name) + platform::ExecutableSuffix(), __FILE__, __LINE__);
            if (util.DoesFileOrDirExist(path, __FILE__, __LINE__)) return path;
        }
    } catch (...) {
    }
    return CString();
}

int KPCB_Launch(CString file, int hide) {
    return kapi::Guarded([&]() -> int {
        OpenApiLog();
        GCUtility& util = GCUtility::GetInstance();
        if (!util.DoesFileOrDirExist(file, __FILE__, __LINE__)) return KPCB_ERR_200;
        const CString exe = FindViewerExecutable();
        const CString moduleDir = util.GetModuleDir("KPCBAPIDLL") + CString(platform::PathSeparator());
        if (util.DoesFileOrDirExist(moduleDir, __FILE__, __LINE__) && exe.IsEmpty()) return KPCB_ERR_201;

        const char* launchSwitch = hide ? " -LAUNCH-FROM-KAPI-HIDE " : " -LAUNCH-FROM-KAPI ";
        const CString commandLine = CString("\"") + exe + "\"" + launchSwitch + "\"" + file + "\"";
        GetUniversalLogger().LogLine("Launch : %s", commandLine.GetString());
        platform::Status why;
        const int pid = platform::StartProcess(exe.str(), commandLine.str(),
                                               {CString(launchSwitch).Trim().str(), file.str()}, &why);
        if (pid <= 0) {
            GetUniversalLogger().LogLine("Launch Fail : %s", why.Text());
            return KPCB_ERR_202;
        }

        // A viewer that cannot be heard is asked to close rather than left behind.
        CMailslot returnSlot(0, ReturnSlotName());
        if (!returnSlot.Open()) {
            platform::AbandonProcess(pid);
            return KPCB_SLOT_UNAVAILABLE;
        }
        int hello = -1;
        if (!kapi::AwaitAnswer(returnSlot, pid) || !ReceiveLeadingInt(returnSlot, &hello)) {
            platform::AbandonProcess(pid);
            return KPCB_NO_REPLY;
        }
        if (hello < 0) return hello;
        WindowTable().Add(pid, static_cast<intptr_t>(hello));
        return pid;
    });
}

extern "C" {

int KPCB_Launch(const wchar_t* designFile) {
    return kapi::Guarded([&] { return KPCB_Launch(kapi::WideToCString(designFile), 0); });
}

int KPCB_Launch_HideMode(const wchar_t* designFile) {
    return kapi::Guarded([&] { return KPCB_Launch(kapi::WideToCString(designFile), 1); });
}

int KPCB_IsRunning(int pid) {
    return kapi::Guarded([&] { return kapi::ViewerRunning(pid) ? 1 : 0; }, 0);
}

int KPCB_Exit(int pid, int wait) {
    return kapi::Guarded([&]() -> int {
        KPCB_RedMark_OnOff(pid, 0);
        if (!KPCB_IsRunning(pid)) return KPCB_NOT_RUNNING;
        intptr_t window = 0;
        if (!WindowTable().Take(pid, window)) return KPCB_NOT_RUNNING;
        kapi::ForgetViewer(pid);
        platform::RequestClose(pid, window);
        if (!wait) return KPCB_EXIT_NOT_WAITED;
        platform::WaitProcessExit(pid, -1);
        return KPCB_OK;
    });
}

void KPCB_FreeString(wchar_t* text) { platform::FreeSysString(text); }

void KPCB_SetReplyTimeout(int milliseconds) { kapi::SetReplyTimeout(milliseconds); }

int KPCB_KeepConnections(int keep) {
    return kapi::Guarded([&] { return kapi::SetKeepConnections(keep != 0) ? 1 : 0; }, 0);
}

}  // extern "C"
