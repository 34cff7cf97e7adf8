// Layer visibility by viewer names and by ECAD names; backup and restore.
#include "KPCBAPI.hpp"
#include "KapiFrame.h"
#include "LayerRecords.h"
#include "ViewRecords.h"

namespace {

enum LayerControl { ShowOnly = 1, SetVisible = 2, EcadShowOnly = 3, EcadSetVisible = 4 };

CStringArray Names(const char* text, const char* separators) {
    return kapi::SplitNames(CString(text), CString(separators));
}

// The liveness test, then the layer record sent one-way.
int SendLayers(int pid, int controlType, const CStringArray& names, const int* visible) {
    return kapi::Guarded([&]() -> int {
        CKPRCI_VisibleLayer record;
        record.SetLayerControlType(controlType);
        record.SetLayerNames(names);
        if (visible) record.SetVisible(*visible);
        return kapi::OneWay(pid, record);
    });
}

int EcadLayers(int pid, const char* names, const char* separators, int controlType, const int* visible) {
    return kapi::Guarded([&] { return SendLayers(pid, controlType, Names(names, separators), visible); });
}

int LayerSnapshot(int pid, int code) {
    return kapi::Guarded([&]() -> int {
        CKPRCI_SimpleCMD record(code);
        return kapi::OneWay(pid, record);
    });
}

}  // namespace

int KPCB_Visible_Layers(int pid, CStringArray& names, int visible, int only) {
    return SendLayers(pid, only ? ShowOnly : SetVisible, names, &visible);
}

int KPCB_Backup_Current_Layers(int pid) { return LayerSnapshot(pid, CKPRCI_SimpleCMD::BackupLayers); }
int KPCB_Restore_Current_Layers(int pid) { return LayerSnapshot(pid, CKPRCI_SimpleCMD::RestoreLayers); }

extern "C" {

int KPCB_Visible_Layers(int pid, const char* names, const char* separators, int visible) {
    return kapi::Guarded([&]() -> int {
        CStringArray list = Names(names, separators);
        return KPCB_Visible_Layers(pid, list, visible, 0);
    });
}

int KPCB_Visible_Layers_Only(int pid, const char* names, const char* separators) {
    return kapi::Guarded([&]() -> int {
        CStringArray list = Names(names, separators);
        return KPCB_Visible_Layers(pid, list, 1, 1);
    });
}

int KPCB_Visible_ECAD_Layers(int pid, const char* names, const char* separators, int visible) {
    return EcadLayers(pid, names, separators, EcadSetVisible, &visible);
}

int KPCB_Visible_ECAD_Layers_Only(int pid, const char* names, const char* separators) {
    return EcadLayers(pid, names, separators, EcadShowOnly, nullptr);
}

}  // extern "C"
