// Bitmap capture of the current view, text export of the board, and the explorer.
#include "CaptureRecords.h"
#include "GCUtility.h"
#include "KPCBAPI.hpp"
#include "KapiFrame.h"

int KPCB_Explorer(const int& pid, const int& selectionType, const CString& listFile) {
    return kapi::WithViewer(pid, [&](kapi::ViewerCall& call) -> int {
        if (selectionType < 0 || selectionType > 2) return KPCB_ERR_200;
        if (!GCUtility::GetInstance().DoesFileOrDirExist(listFile, __FILE__, __LINE__)) return KPCB_ERR_201;
        CKPRCI_Explorer record;
        record.SetSelectionTypeA(selectionType);
        record.SetObjectListFilePath(listFile);
        return call.Acknowledged(record);
    });
}

extern "C" {

int KPCB_ExportBitmap_CurrentImage(int pid, const char* path) {
    return kapi::Guarded([&]() -> int {
        CKPRCI_Capture_ExportBitmap record;
        record.SetExport_FilePath(CString(path));
        return kapi::OneWay(pid, record);
    });
}

int KPCB_ExportPDBAscii(int pid, const char* path) {
    return kapi::Guarded([&]() -> int {
        CKPRCI_Export_PDBBAscii record;
        record.SetPdbbaFilePath(CString(path));
        CKPRCI__BaseRV reply;
        return kapi::ViewerCall(pid).Query(record, reply);  // no liveness test; any reply counts as done
    });
}

}  // extern "C"
