// View control: zoom, fit, board side, mirror, rotation, window placement and
// title, and the on/off switches of board objects and viewer tools.
#include "KPCBAPI.hpp"
#include "KapiFrame.h"
#include "ViewRecords.h"

namespace {

// Liveness test, then the record built by make, sent one-way.
template <class Make>
int OneWay(int pid, Make&& make) {
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) {
        auto record = make();
        return call.OneWay(record);
    });
}

int SimpleCommand(int pid, int code) {
    return OneWay(pid, [&] { return CKPRCI_SimpleCMD(code); });
}

CKPRCI_ZoomArea ZoomAreaRecord(const double& x1, const double& y1, const double& x2, const double& y2) {
    CKPRCI_ZoomArea record;
    record.SetData(x1, y1, x2, y2);
    return record;
}

}  // namespace

int KPCB_SetZoomArea(int pid, const double& x1, const double& y1, const double& x2, const double& y2) {
    return OneWay(pid, [&] { return ZoomAreaRecord(x1, y1, x2, y2); });
}

extern "C" {

int KPCB_ZoomIn(int pid) { return SimpleCommand(pid, CKPRCI_SimpleCMD::ZoomIn); }
int KPCB_ZoomOut(int pid) { return SimpleCommand(pid, CKPRCI_SimpleCMD::ZoomOut); }
int KPCB_ZoomFitSize(int pid) { return SimpleCommand(pid, CKPRCI_SimpleCMD::ZoomFitSize); }
int KPCB_ViewLayer_Top(int pid) { return SimpleCommand(pid, CKPRCI_SimpleCMD::ViewLayerTop); }
int KPCB_ViewLayer_Btm(int pid) { return SimpleCommand(pid, CKPRCI_SimpleCMD::ViewLayerBtm); }
int KPCB_ViewLayer_All(int pid) { return SimpleCommand(pid, CKPRCI_SimpleCMD::ViewLayerAll); }
int KPCB_ViewMirror(int pid) { return SimpleCommand(pid, CKPRCI_SimpleCMD::ViewMirror); }
int KPCB_ViewMirror_Clear(int pid) { return SimpleCommand(pid, CKPRCI_SimpleCMD::ViewMirrorClear); }

int KPCB_ZoomArea(int pid, const double* x1, const double* y1, const double* x2, const double* y2) {
    // The pointers are read only after the liveness test; null ones are refused
    // with -7 rather than read.
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) -> int {
        if (!x1 || !y1 || !x2 || !y2) return KPCB_NO_REPLY;
        CKPRCI_ZoomArea record = ZoomAreaRecord(*x1, *y1, *x2, *y2);
        return call.OneWay(record);
    });
}

int KPCB_RotateBoard(int pid, const double* angle) {
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) -> int {
        if (!angle) return KPCB_NO_REPLY;
        CKPRCI_RotateBoard record;
        record.SetAngle(*angle);
        return call.OneWay(record);
    });
}

int KPCB_SetWindowPosition(int pid, int left, int top, int width, int height) {
    return OneWay(pid, [&] {
        CKPRCI_SetWindowPosition record;
        record.SetData(left, top, width, height);
        return record;
    });
}

int KPCB_SetMainTitle(int pid, const char* title) {
    return kapi::Guarded([&]() -> int {
        CKPRCI_Information_SetMainTitle record;
        record.SetTitle(CString(title));
        CKPRCI__BaseRV reply;
        const int status = kapi::Query(pid, record, reply);
        if (status != KPCB_OK) return status;
        return reply.GetErrorCode() == KPCB_ERR_201 ? KPCB_ERR_201 : KPCB_OK;
    });
}

int KPCB_Component_OnOff(int pid, int onOff) { return OneWay(pid, [&] { return CKPRCI_ObjectOnOff(1, onOff); }); }
int KPCB_Route_OnOff(int pid, int onOff) { return OneWay(pid, [&] { return CKPRCI_ObjectOnOff(2, onOff); }); }
int KPCB_PickingTool_OnOff(int pid, int onOff) { return OneWay(pid, [&] { return CKPRCI_ToolOnOff(1, onOff); }); }
int KPCB_RedMark_OnOff(int pid, int onOff) { return OneWay(pid, [&] { return CKPRCI_ToolOnOff(2, onOff); }); }
int KPCB_MiniMap_OnOff(int pid, int onOff) { return OneWay(pid, [&] { return CKPRCI_ToolOnOff(3, onOff); }); }

}  // extern "C"
