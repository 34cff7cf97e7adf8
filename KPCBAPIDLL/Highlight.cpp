// Highlighting by name, by reference pins, by net section and net segments; the
// current highlight colour; clearing.
#include "HighlightRecords.h"
#include "KPCBAPI.hpp"
#include "KapiFrame.h"
#include "ViewRecords.h"

namespace {

COLORREF Rgb(unsigned char r, unsigned char g, unsigned char b) {
    return static_cast<COLORREF>(r) | (static_cast<COLORREF>(g) << 8) | (static_cast<COLORREF>(b) << 16);
}

CStringArray Names(const char* text, const char* separators) {
    return kapi::SplitNames(CString(text), CString(separators));
}

// The shared sender of the four named highlights: the record goes out twice,
// before and after the reply slot exists; only -201 is passed back.
int NamedHighlight(int pid, int functionType, int kind, const char* names, const char* separators, COLORREF color,
                   int contrast, int layerColorFromApi, int layerNameType, const char* layerNames,
                   const char* layerSeparators) {
    return kapi::Guarded([&]() -> int {
        const CStringArray objects = Names(names, separators);
        CStringArray layers;
        if (functionType == 3) layers = Names(layerNames, layerSeparators);
        kapi::ViewerCall call(pid);
        if (!call.ViewerRunning()) return KPCB_NOT_RUNNING;
        if (static_cast<unsigned>(kind) > 2) return KPCB_ERR_200;
        CKPRCI_Highlight record;
        record.SetFunctionType(functionType);
        record.SetHighlightObjType(kind);
        record.SetObjectNameList(objects);
        record.SetLayerNameType(layerNameType);
        record.SetSpecificLayerList(layers);
        record.SetHighlightColor(color);
        record.SetContrast(contrast);
        record.SetLayerHighlightColorFromAPI(layerColorFromApi);
        CKPRCI__BaseRV reply;
        const int status = call.Query(record, reply);
        if (status != KPCB_OK) return status;
        return reply.GetErrorCode() == KPCB_ERR_201 ? KPCB_ERR_201 : KPCB_OK;
    });
}

// Sends the reference-pin highlight and returns the viewer's answer as it stands.
int RefPinHighlight(kapi::ViewerCall& call, const CString& ref, const CStringArray& pins, DWORD color, int zoom, int layerColorFromApi) {
    CKPRCI_Highlight_RefPin record;
    record.SetRefName(ref);
    record.SetPinNames(pins);
    record.SetHighlightColor(color);
    record.SetZoom(zoom);
    record.SetLayerHighlightColorFromAPI(layerColorFromApi);
    CKPRCI__BaseRV reply;
    const int status = call.Query(record, reply);
    return status != KPCB_OK ? status : reply.GetErrorCode();
}

int RefPinFromText(int pid, const char* ref, const char* pins, const char* separators, unsigned char r, unsigned char g,
                   unsigned char b, int layerColorFromApi, int zoom) {
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) {
        return RefPinHighlight(call, CString(ref), Names(pins, separators), Rgb(r, g, b), zoom, layerColorFromApi);
    });
}

// -200 and -201 from the viewer are passed back; anything else is success.
int PassBack200And201(int status, const CKPRCI__BaseRV& reply) {
    if (status != KPCB_OK) return status;
    const int code = reply.GetErrorCode();
    return code == KPCB_ERR_200 || code == KPCB_ERR_201 ? code : KPCB_OK;
}

int Clear(int pid, const int* commonValue) {
    return kapi::Guarded([&]() -> int {
        CKPRCI_SimpleCMD record(CKPRCI_SimpleCMD::HighlightClear);
        if (commonValue) record.SetCommonValue(*commonValue);
        return kapi::OneWay(pid, record);
    });
}

}  // namespace

int KPCB_Highlight_RefPin(int pid, CString& ref, CStringArray& pins, DWORD color, int zoom, int layerColorFromApi) {
    return kapi::Guarded([&] {
        kapi::ViewerCall call(pid);
        return RefPinHighlight(call, ref, pins, color, zoom, layerColorFromApi);
    });
}

int KPCB_Highlight_Clear_Basic(int pid) { return Clear(pid, nullptr); }
int KPCB_Highlight_Clear_Explorer(int pid) {
    const int explorer = 1;
    return Clear(pid, &explorer);
}
int KPCB_Highlight_Clear_Picking(int pid) {
    const int picking = 0;
    return Clear(pid, &picking);
}

extern "C" {

int KPCB_Highlight(int pid, int kind, const char* names, const char* separators, int contrast) {
    return NamedHighlight(pid, 0, kind, names, separators, 0x000000FF, contrast, 1, -1, nullptr, nullptr);
}

int KPCB_Highlight_DependentColor(int pid, int kind, const char* names, const char* separators, unsigned char r,
                                  unsigned char g, unsigned char b, int contrast, int layerColorFromApi) {
    return NamedHighlight(pid, 1, kind, names, separators, Rgb(r, g, b), contrast, layerColorFromApi, -1, nullptr, nullptr);
}

int KPCB_Highlight_DependentColor_AllLayer(int pid, int kind, const char* names, const char* separators,
                                           unsigned char r, unsigned char g, unsigned char b, int contrast,
                                           int layerColorFromApi) {
    return NamedHighlight(pid, 2, kind, names, separators, Rgb(r, g, b), contrast, layerColorFromApi, -1, nullptr, nullptr);
}

int KPCB_Highlight_SpecificLayer(int pid, int kind, const char* names, const char* separators, unsigned char r,
                                 unsigned char g, unsigned char b, int contrast, int layerColorFromApi,
                                 int layerNameType, const char* layerNames, const char* layerSeparators) {
    return NamedHighlight(pid, 3, kind, names, separators, Rgb(r, g, b), contrast, layerColorFromApi, layerNameType,
                          layerNames, layerSeparators);
}

int KPCB_Highlight_RefPin(int pid, const char* ref, const char* pins, const char* separators, unsigned char r,
                          unsigned char g, unsigned char b, int layerColorFromApi) {
    return RefPinFromText(pid, ref, pins, separators, r, g, b, layerColorFromApi, 0);
}

int KPCB_Highlight_RefPin_Zoom(int pid, const char* ref, const char* pins, const char* separators, unsigned char r,
                               unsigned char g, unsigned char b, int layerColorFromApi) {
    return RefPinFromText(pid, ref, pins, separators, r, g, b, layerColorFromApi, 1);
}

int KPCB_ZoomHighlightForSection_NetRefPin(int pid, const char* net, const char* ref1, const char* pin1,
                                           const char* ref2, const char* pin2) {
    return kapi::Guarded([&]() -> int {
        CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin record;
        record.SetNetName(CString(net));
        record.SetRef1Name(CString(ref1));
        record.SetPin1Name(CString(pin1));
        record.SetRef2Name(CString(ref2));
        record.SetPin2Name(CString(pin2));
        CKPRCI__BaseRV reply;
        return PassBack200And201(kapi::Query(pid, record, reply), reply);
    });
}

int KPCB_Highlight_ZoomNetSegment(int pid, const CString& net, const CArrayN& segments, DWORD color) {
    return kapi::Guarded([&]() -> int {
        CKPRCI_Highlight_ZoomNetSegment record;
        record.SetNetName(net);
        record.SetSegmentIndex(segments);
        record.SetColor(color);
        CKPRCI__BaseRV reply;
        return PassBack200And201(kapi::ViewerCall(pid).Query(record, reply), reply);
    });
}

int KPCB_Highlight_SetCurrentColor(int pid, unsigned char r, unsigned char g, unsigned char b) {
    return kapi::Guarded([&]() -> int {
        CKPRCI_Highlight_Color record;
        record.SetHighlightColor(Rgb(r, g, b));
        return kapi::OneWay(pid, record);
    });
}

int KPCB_Highlight_Clear(int pid) { return Clear(pid, nullptr); }

}  // extern "C"
