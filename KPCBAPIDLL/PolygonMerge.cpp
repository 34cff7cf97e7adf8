// Polygon merge: the viewer merges a net's copper on chosen layers; the caller
// reads the clockwise outlines and their counter-clockwise holes back.
#include <algorithm>

#include "CUniversalLogger.h"
#include "KPCBAPI.hpp"
#include "KapiFrame.h"
#include "PolygonMergeRecords.h"
#include "platform.h"

namespace {

enum Mode {
    Create = 1, Run = 2, CWCount = 3, CCWCount = 4, CWPointCount = 5, CCWPointCount = 6,
    CWPoint = 7, CCWPoint = 8, CWPoints = 9, CCWPoints = 10, Destroy = 11
};

// Liveness test, then the mode's request with the given indexes; read takes the reply
// (whatever its error code) and gives the function's value.
template <class Read>
int Ask(int pid, int mode, int cw, int ccw, int point, Read&& read) {
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) -> int {
        CKPRCI_PolygonMerge request(mode);
        if (mode >= CCWCount && mode <= CCWPoints) request.SetCWIndex(cw);
        if (mode == CCWPointCount || mode == CCWPoint || mode == CCWPoints) request.SetCCWIndex(ccw);
        if (mode == CWPoint || mode == CCWPoint) request.SetPointIndex(point);
        CKPRCI_PolygonMerge_RV reply;
        const int status = call.Query(request, reply);
        return status != KPCB_OK ? status : read(reply);
    });
}

int StorePoint(const CKPRCI_PolygonMerge_RV& reply, double* x, double* y) {
    if (x) *x = reply.GetPointX();
    if (y) *y = reply.GetPointY();
    return KPCB_OK;
}

// The reply's arrays become the caller's (their old contents go with the reply):
// the points loaded from the frame are not copied again.
int TakeArrays(CKPRCI_PolygonMerge_RV& reply, void (CKPRCI_PolygonMerge_RV::*swap)(CArrayD&, CArrayD&),
               CArrayD* outX, CArrayD* outY) {
    CArrayD unusedX, unusedY;
    (reply.*swap)(outX ? *outX : unusedX, outY ? *outY : unusedY);
    return KPCB_OK;
}

}  // namespace

extern "C" {

int KPCB_PolygonMergeCreate(int pid) {
    return Ask(pid, Create, 0, 0, 0, [](const CKPRCI_PolygonMerge_RV&) { return KPCB_OK; });
}

int KPCB_PolygonMergeRun(int pid, const wchar_t** layerNames, int count, const wchar_t* netName, double division) {
    return kapi::Guarded([&]() -> int {
        platform::DebugOutput("---------- saLayerNameList Convert Start -----------------");
        CStringArray layers;
        for (int i = 0; i < count && layerNames; ++i) {
            const CString name = kapi::WideToCString(layerNames[i]);
            layers.Add(name);
            platform::DebugOutput(name);
        }
        platform::DebugOutput("---------- saLayerNameList Convert End -----------------");
        if (layers.IsEmpty()) return KPCB_ERR_202;
        if (!netName) return KPCB_ERR_201;
        kapi::ViewerCall call(pid);
        if (!call.ViewerRunning()) return KPCB_NOT_RUNNING;

        const CString net = kapi::WideToCString(netName);
        CKPRCI_PolygonMerge request(Run);
        CUniversalLogger& log = GetUniversalLogger();
        log.LogLine("Net : %s     ", net.GetString());
        for (INT_PTR i = 0; i < layers.GetSize(); ++i) log.LogLine("Layer%d : %s", static_cast<int>(i), layers[i].GetString());
        log.LogLine("Division : %f", division);
        request.SetRun(layers, net, division);

        CKPRCI_PolygonMerge_RV reply;
        const int status = call.Query(request, reply);
        if (status != KPCB_OK) return status;
        const int code = reply.GetErrorCode();
        return code == KPCB_ERR_202 || code == KPCB_ERR_201 ? code : KPCB_OK;
    });
}

int KPCB_PolygonMergeDestroy(int pid) {
    return kapi::Guarded([&]() -> int {
        platform::DebugOutput("Call KPCB_PolygonMergeDestroy");
        GetUniversalLogger().LogLine("Call KPCB_PolygonMergeDestroy");
        CKPRCI_PolygonMerge request(Destroy);
        return kapi::OneWay(pid, request);
    });
}

int KPCB_GetCWPolygonCount(int pid) {
    return Ask(pid, CWCount, -1, 0, 0, [](const CKPRCI_PolygonMerge_RV& r) { return r.GetCWPolygonCount(); });
}

int KPCB_GetCCWPolygonCount(int pid, int cw) {
    return Ask(pid, CCWCount, cw, 0, 0, [](const CKPRCI_PolygonMerge_RV& r) { return r.GetCCWPolygonCount(); });
}

int KPCB_GetCWPolygonPointCount(int pid, int cw) {
    return Ask(pid, CWPointCount, cw, 0, 0, [](const CKPRCI_PolygonMerge_RV& r) { return r.GetCWPointCount(); });
}

int KPCB_GetCCWPolygonPointCount(int pid, int cw, int ccw) {
    return Ask(pid, CCWPointCount, cw, ccw, 0, [](const CKPRCI_PolygonMerge_RV& r) { return r.GetCCWPointCount(); });
}

int KPCB_GetCWPolygonPointData(int pid, int cw, int point, double* x, double* y) {
    return Ask(pid, CWPoint, cw, 0, point, [&](const CKPRCI_PolygonMerge_RV& r) { return StorePoint(r, x, y); });
}

int KPCB_GetCCWPolygonPointData(int pid, int cw, int ccw, int point, double* x, double* y) {
    return Ask(pid, CCWPoint, cw, ccw, point, [&](const CKPRCI_PolygonMerge_RV& r) { return StorePoint(r, x, y); });
}

int KPCB_GetCWPolygonPointDataArray(int pid, int cw, CArrayD* xs, CArrayD* ys) {
    return Ask(pid, CWPoints, cw, 0, 0, [&](CKPRCI_PolygonMerge_RV& r) {
        return TakeArrays(r, &CKPRCI_PolygonMerge_RV::SwapCWPoints, xs, ys);
    });
}

int KPCB_GetCCWPolygonPointDataArray(int pid, int cw, int ccw, CArrayD* xs, CArrayD* ys) {
    return Ask(pid, CCWPoints, cw, ccw, 0, [&](CKPRCI_PolygonMerge_RV& r) {
        return TakeArrays(r, &CKPRCI_PolygonMerge_RV::SwapCCWPoints, xs, ys);
    });
}

CArrayD* KPCB_ArrayD_Create(void) {
    try {
        return new CArrayD();
    } catch (...) {
        return nullptr;
    }
}

void KPCB_ArrayD_Free(CArrayD* array) { delete array; }

int KPCB_ArrayD_GetSize(const CArrayD* array) { return array ? static_cast<int>(array->GetSize()) : 0; }

int KPCB_ArrayD_GetData(const CArrayD* array, double* values, int capacity) {
    if (!array || !values || capacity <= 0) return 0;
    const int n = static_cast<int>(std::min<INT_PTR>(array->GetSize(), capacity));
    for (int i = 0; i < n; ++i) values[i] = array->GetData()[i];
    return n;
}

}  // extern "C"
