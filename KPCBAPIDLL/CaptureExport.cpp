// Bitmap capture of the current view, text export of the board, and the explorer.
#include "CMailslot.h"
#include "CaptureRecords.h"
#include "GCUtility.h"
#include "KPCBAPI.hpp"
#include "KapiFrame.h"

int KPCB_Explorer(const int& pid, const int& selectionType, const CString& listFile) {
    return kapi::Guarded([&]() -> int {
        if (!KPCB_IsRunning(pid)) return KPCB_NOT_RUNNING;
        if (selectionType < 0 || selectionType > 2) return KPCB_ERR_200;
        if (!GCUtility::GetInstance().DoesFileOrDirExist(listFile, __FILE__, __LINE__)) return KPCB_ERR_201;
        CKPRCI_Explorer record;
        record.SetSelectionTypeA(selectionType);
        record.SetObjectListFilePath(listFile);
        CMemFile file(1024);
        kapi::SerializeRecord(record, file);
        CMailslot command(1, kapi::MakeCommandSlotName(pid));
        if (!command.Open()) return KPCB_SLOT_UNAVAILABLE;
        command.SendFrame(file);
        // The acknowledgement slot is opened only now, after the command left.
        CMailslot acknowledgement(0, kapi::ReturnSlotName());
        if (!acknowledgement.Open()) return KPCB_SLOT_UNAVAILABLE;
        int value = -1;
        if (!kapi::AwaitAnswer(acknowledgement, pid) || !acknowledgement.ReadBytes(&value, 4, 0)) return KPCB_NO_REPLY;
        return KPCB_OK;
    });
}

extern "C" {

int KPCB_ExportBitmap_CurrentImage(int pid, const char* path) {
    return kapi::Guarded([&]() -> int {
        if (!KPCB_IsRunning(pid)) return KPCB_NOT_RUNNING;
        CKPRCI_Capture_ExportBitmap record;
        record.SetExport_FilePath(CString(path));
        return kapi::SendOneWay(pid, record);
    });
}

int KPCB_ExportPDBAscii(int pid, const char* path) {
    return kapi::Guarded([&]() -> int {
        CKPRCI_Export_PDBBAscii record;
        record.SetPdbbaFilePath(CString(path));
        CKPRCI__BaseRV reply;
        return kapi::SendQuery(pid, record, reply);  // any reply counts as done
    });
}

}  // extern "C"
