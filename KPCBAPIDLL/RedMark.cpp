// Red marks: save, load (titles), call up (contents), remove, calling status.
#include "GCUtility.h"
#include "KPCBAPI.hpp"
#include "KapiFrame.h"
#include "RedMarkRecords.h"

extern "C" {

int KPCB_RedMarkSave(int pid, const wchar_t* path, int ascii) {
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) {
        CKPRCI_RedMark_SaveLoad record;
        record.SetReadState(0);
        record.SetAsciiData(ascii);
        record.SetRedMarkFilePath(kapi::WideToCString(path));
        return call.OneWay(record);
    });
}

int KPCB_RedMarkLoad(int pid, const wchar_t* path, wchar_t** titles, const wchar_t* delimiter, int ascii) {
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) -> int {
        const CString file = kapi::WideToCString(path);
        if (!GCUtility::GetInstance().DoesFileOrDirExist(file, "KPCBAPIDLL/KAPI", __LINE__)) return KPCB_ERR_200;
        const CString separator = kapi::WideToCString(delimiter);
        CKPRCI_RedMark_SaveLoad record;
        record.SetReadState(1);
        record.SetAsciiData(ascii);
        record.SetRedMarkFilePath(file);
        record.SetTitleName_Delimiter(separator);
        CKPRCI_RedMark_Load_RV reply;
        const int status = call.Query(record, reply);
        if (status != KPCB_OK) return status;
        kapi::DeliverString(reply.GetTitleNames(separator), titles);
        return KPCB_OK;
    });
}

int KPCB_CallSelectedItemFromRedMark(int pid, const wchar_t* title, wchar_t** contents) {
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) -> int {
        CKPRCI_RedMark_SelectedItem record;
        record.SetTitle(kapi::WideToCString(title));
        CKPRCI_RedMark_SelectedItem_RV reply;
        const int status = call.Query(record, reply);
        if (status != KPCB_OK) return status;
        if (reply.GetErrorCode() == KPCB_ERR_200) return KPCB_ERR_200;
        kapi::DeliverString(reply.GetContents(), contents);
        return KPCB_OK;
    });
}

int KPCB_RemoveItemFromRedMarkList(int pid, const wchar_t* title) {
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) -> int {
        CKPRCI_RedMark_RemoveItem record;
        record.SetTitle(kapi::WideToCString(title));
        CKPRCI__BaseRV reply;
        const int status = call.Query(record, reply);
        if (status != KPCB_OK) return status;
        return reply.GetErrorCode() == KPCB_ERR_200 ? KPCB_ERR_200 : KPCB_OK;
    });
}

int KPCB_SetStatusForCallingRedMark(int pid, int status) {
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) {
        CKPRCI_RedMark_SetStatusForCalling record;
        record.SetCallStatus(status);
        return call.OneWay(record);
    });
}

int KPCB_GetStatusForCallingRedMark(int pid, int* status) {
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) -> int {
        CKPRCI_RedMark_SetStatusForCalling record;
        record.SetReturnMode(1);
        CKPRCI_RedMark_SetStatusForCalling_RV reply;
        const int result = call.Query(record, reply);
        if (result != KPCB_OK) return result;
        if (status) *status = reply.GetCallStatus();
        return KPCB_OK;
    });
}

}  // extern "C"
