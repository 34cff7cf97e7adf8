// Information queries: pin counts, pin pitch, placement, the pins of a net.
#include "InformationRecords.h"
#include "KPCBAPI.hpp"
#include "KapiFrame.h"

namespace {

// The query; on success deliver copies the reply's values to the caller.
template <class Deliver>
int Query(int pid, CKPRCI__Base& request, CKPRCI__BaseRV& reply, Deliver&& deliver) {
    const int status = kapi::Query(pid, request, reply);
    return status != KPCB_OK ? status : kapi::Guarded(deliver);
}

template <class T>
void Put(T* out, T value) {
    if (out) *out = value;
}

int PinCount(int pid, int functionType, const wchar_t* name, int* count) {
    CKPRCI_Information_GetCompPinCount request;
    request.SetFunctionType(functionType);
    request.SetObjectName(kapi::WideToCString(name));
    CKPRCI_Information_GetCompPinCount_RV reply;
    return Query(pid, request, reply, [&] {
        Put(count, reply.GetPinCount());
        return KPCB_OK;
    });
}

int PinPitch(int pid, int functionType, const wchar_t* ref, int unit, double* pitch) {
    CKPRCI_Information_GetPinPitch request;
    request.SetFunctionType(functionType);
    request.SetRefName(kapi::WideToCString(ref));
    request.SetUnit(unit);
    CKPRCI_Information_GetPinPitch_RV reply;
    return Query(pid, request, reply, [&] {
        Put(pitch, reply.GetPinPitch());
        return KPCB_OK;
    });
}

template <class Request, class Reply, class SetList>
int PlaceCounts(int pid, const wchar_t* names, const wchar_t* delimiter, int* top, int* bottom, int* other,
                int highlight, SetList&& setList) {
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) -> int {
        Request request;
        setList(request, kapi::SplitNames(kapi::WideToCString(names), kapi::WideToCString(delimiter)));
        request.SetHighlight(highlight);
        Reply reply;
        const int status = call.Query(request, reply);
        if (status != KPCB_OK) return status;
        Put(top, reply.GetTopCount());
        Put(bottom, reply.GetBtmCount());
        Put(other, reply.GetElseCount());
        return KPCB_OK;
    });
}

}  // namespace

extern "C" {

int KPCB_GetPinCountFromPart(int pid, const wchar_t* part, int* count) { return PinCount(pid, 1, part, count); }
int KPCB_GetPinCountFromReference(int pid, const wchar_t* ref, int* count) { return PinCount(pid, 0, ref, count); }

int KPCB_GetPinPitch(int pid, const wchar_t* ref, int unit, double* pitch) { return PinPitch(pid, 0, ref, unit, pitch); }
int KPCB_GetPinPitchFrom2PinComponent(int pid, const wchar_t* ref, int unit, double* pitch) {
    return PinPitch(pid, 1, ref, unit, pitch);
}

int KPCB_GetReferencePlaceStatus(int pid, const wchar_t* ref, int* status, int highlight) {
    CKPRCI_Information_GetReferencePlaceStatus request;
    request.SetRefName(kapi::WideToCString(ref));
    request.SetHighlight(highlight);
    CKPRCI_Information_GetReferencePlaceStatus_RV reply;
    return Query(pid, request, reply, [&] {
        Put(status, reply.GetStatusOfPlace());
        return KPCB_OK;
    });
}

int KPCB_GetReferenceCountForPlace(int pid, const wchar_t* refs, const wchar_t* delimiter, int* top, int* bottom,
                                   int* other, int highlight) {
    return PlaceCounts<CKPRCI_Information_GetReferenceCountForPlace, CKPRCI_Information_GetReferenceCountForPlace_RV>(
        pid, refs, delimiter, top, bottom, other, highlight,
        [](auto& request, const CStringArray& list) { request.SetRefNames(list); });
}

int KPCB_GetReferenceCountForPlaceOfPart(int pid, const wchar_t* parts, const wchar_t* delimiter, int* top,
                                         int* bottom, int* other, int highlight) {
    return PlaceCounts<CKPRCI_Information_GetReferenceCountForPlaceOfPart,
                       CKPRCI_Information_GetReferenceCountForPlaceOfPart_RV>(
        pid, parts, delimiter, top, bottom, other, highlight,
        [](auto& request, const CStringArray& list) { request.SetPartNames(list); });
}

int KPCB_GetPinListInfoOfNet_RefPin(int pid, const wchar_t* ref, const wchar_t* pin, wchar_t** net, wchar_t** pins,
                                    const wchar_t* delimiter) {
    CKPRCI_Information_GetPinListInfoOfNet_RefPin request;
    request.SetRefName(kapi::WideToCString(ref));
    request.SetPinName(kapi::WideToCString(pin));
    CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV reply;
    return Query(pid, request, reply, [&]() -> int {
        if (reply.GetErrorCode() == KPCB_ERR_200) return KPCB_ERR_200;
        CString netName = reply.GetNetName();
        netName.TrimRight();
        kapi::DeliverString(netName, net);
        kapi::DeliverString(reply.GetRefPinNames(kapi::WideToCString(delimiter)), pins);
        return KPCB_OK;
    });
}

}  // extern "C"
