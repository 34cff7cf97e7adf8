/* A C caller built for the MSVC ABI, with no C library: it declares the few functions
 * it calls (KPCBAPI.h wants <wchar.h>, which a bare compiler lacks) and links against
 * the import library only. */
__declspec(dllimport) int KPCB_IsRunning(int pid);
__declspec(dllimport) int KPCB_Launch(const unsigned short* designFile);
__declspec(dllimport) int KPCB_Exit(int pid, int wait);
__declspec(dllimport) const char* KPCB_GetStatusText(int status);

int start(void) {
    static const unsigned short board[] = {'b', '.', 'p', 'd', 'b', 'b', 0};
    int pid = KPCB_Launch(board);
    if (pid > 0 && KPCB_IsRunning(pid)) return KPCB_Exit(pid, 1);
    return KPCB_GetStatusText(pid)[0] != 0 ? 1 : 2;
}
