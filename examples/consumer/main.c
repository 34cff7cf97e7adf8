/* An application of the installed library: launches the reference viewer on a board,
 * asks it one question and closes it.   consumer <board file> */
#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>

#include <KPCBAPI.h>

int main(int argc, char** argv) {
    wchar_t board[4096];
    if (argc != 2 || mbstowcs(board, argv[1], 4096) == (size_t)-1) {
        fprintf(stderr, "usage: consumer <board file>\n");
        return 2;
    }
    int pid = KPCB_Launch_HideMode(board);
    if (pid <= 0) {
        fprintf(stderr, "launch: %d: %s\n", pid, KPCB_GetStatusText(pid));
        return 1;
    }
    int pins = 0;
    int status = KPCB_GetPinCountFromReference(pid, L"U1", &pins);
    printf("U1 has %d pins (%s)\n", pins, KPCB_GetStatusText(status));
    int closed = KPCB_Exit(pid, 1);
    if (closed != KPCB_OK) fprintf(stderr, "exit: %s\n", KPCB_GetStatusText(closed));
    return status == KPCB_OK && closed == KPCB_OK ? 0 : 1;
}
