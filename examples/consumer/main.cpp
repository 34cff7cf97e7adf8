// The same application in C++, through the overloads that take the MFC-style types:
// launches the viewer on a board, highlights pins named in a CStringArray, merges a
// net's copper and reads its first outline into CArrayD arrays, then closes the viewer.
//   consumer_cxx <board file>
#include <cstdio>

#include <KPCBAPI.hpp>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: consumer_cxx <board file>\n");
        return 2;
    }
    const int pid = KPCB_Launch(CString(argv[1]), 1);
    if (pid <= 0) {
        std::fprintf(stderr, "launch: %d: %s\n", pid, KPCB_GetStatusText(pid));
        return 1;
    }
    CString ref("U1");
    CStringArray pins{"1", "14"};
    const int highlighted = KPCB_Highlight_RefPin(pid, ref, pins, 0x00ff8c00, 0, 0);

    const wchar_t* layers[] = {L"GND"};
    CArrayD xs, ys;
    int merged = KPCB_PolygonMergeCreate(pid);
    if (merged == KPCB_OK) merged = KPCB_PolygonMergeRun(pid, layers, 1, L"GND", 32);
    if (merged == KPCB_OK) merged = KPCB_GetCWPolygonPointDataArray(pid, 0, &xs, &ys);
    KPCB_PolygonMergeDestroy(pid);

    CString report;
    report.Format("%s pins %s, %s highlighted (%s); GND's first outline has %d points (%s)", ref.GetString(),
                  pins[0].GetString(), pins[1].GetString(), KPCB_GetStatusText(highlighted),
                  static_cast<int>(xs.GetSize()), KPCB_GetStatusText(merged));
    std::printf("%s\n", report.GetString());
    const int closed = KPCB_Exit(pid, 1);
    if (closed != KPCB_OK) std::fprintf(stderr, "exit: %s\n", KPCB_GetStatusText(closed));
    const bool ok = highlighted == KPCB_OK && merged == KPCB_OK && xs.GetSize() > 2 && xs.GetSize() == ys.GetSize();
    return ok && closed == KPCB_OK ? 0 : 1;
}
