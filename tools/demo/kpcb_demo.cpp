// A short tour of KPCBAPI: the bytes of one command frame, then a reference viewer
// launched on a board, driven, and closed.
#include <cstdio>
#include <string>

#include "CArchive.h"
#include "KPCBAPI.h"
#include "ViewRecords.h"

namespace {

void PrintFrameOfZoomIn() {
    CKPRCI_SimpleCMD record(CKPRCI_SimpleCMD::ZoomIn);
    CMemFile file(1024);
    CArchive ar(&file, CArchive::store, 4096);
    record.Serialize(ar);
    ar.Close();
    const uint32_t length = static_cast<uint32_t>(file.GetLength());
    std::printf("Frame of KPCB_ZoomIn:\n  length message : %02x %02x %02x %02x\n  payload        :",
                length & 0xFF, (length >> 8) & 0xFF, (length >> 16) & 0xFF, length >> 24);
    file.SeekToBegin();
    unsigned char byte;
    while (file.Read(&byte, 1) == 1) std::printf(" %02x", byte);
    std::printf("\n\n");
}

int Report(const char* what, int status) {
    std::printf("  %-34s -> %d\n", what, status);
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    PrintFrameOfZoomIn();

    std::string board = argc > 1 ? argv[1] : "";
    if (board.empty()) {
        board = std::string(KPCB_SOURCE_DIR) + "/samples/demo_board.pdbba";
    }
    std::printf("Launching the reference viewer on %s\n", board.c_str());
    const std::wstring wideBoard(board.begin(), board.end());
    const int pid = KPCB_Launch_HideMode(wideBoard.c_str());
    if (pid <= 0) {
        std::printf("  launch failed: %d\n", pid);
        return 1;
    }
    std::printf("  viewer instance                    -> %d\n", pid);
    Report("KPCB_IsRunning", KPCB_IsRunning(pid));
    Report("KPCB_SetMainTitle", KPCB_SetMainTitle(pid, "KPCBAPI demo"));
    Report("KPCB_SetWindowPosition", KPCB_SetWindowPosition(pid, 0, 0, 1280, 960));
    Report("KPCB_ZoomFitSize", KPCB_ZoomFitSize(pid));
    const double x1 = 10, y1 = 10, x2 = 60, y2 = 45, angle = 90;
    Report("KPCB_ZoomArea", KPCB_ZoomArea(pid, &x1, &y1, &x2, &y2));
    Report("KPCB_RotateBoard", KPCB_RotateBoard(pid, &angle));
    Report("KPCB_ViewMirror", KPCB_ViewMirror(pid));
    Report("KPCB_ViewLayer_Top", KPCB_ViewLayer_Top(pid));
    Report("KPCB_Component_OnOff", KPCB_Component_OnOff(pid, 1));
    const int exitStatus = Report("KPCB_Exit (wait)", KPCB_Exit(pid, 1));
    Report("KPCB_IsRunning after exit", KPCB_IsRunning(pid));
    return exitStatus == 0 ? 0 : 1;
}
