/* KPCBAPI: drive a KorbinPCB viewer process from any program.
 *
 * Every function takes the viewer instance number (the process id that KPCB_Launch
 * returned) first and returns a status code. Strings are NUL-terminated; a null
 * string pointer counts as an empty string. String results come back through a
 * wchar_t** out-argument: when it holds null the library allocates the string and
 * the caller frees it with KPCB_FreeString; when it holds a buffer the text is
 * copied into it without a length check, so pass null unless the buffer is surely
 * large enough. No function throws; every call blocks until its work is done, and
 * queries wait for the viewer's answer without a time limit unless
 * KPCB_SetReplyTimeout says otherwise. Callers serialise queries to one viewer and
 * serialise launches. */
#ifndef KPCBAPI_H
#define KPCBAPI_H

#include <wchar.h>

#if defined(_WIN32)
#  if defined(KPCBAPI_BUILDING)
#    define KPCBAPI_EXPORT __declspec(dllexport)
#  else
#    define KPCBAPI_EXPORT __declspec(dllimport)
#  endif
#else
#  define KPCBAPI_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
class CArrayD;
extern "C" {
#else
typedef struct CArrayD CArrayD;
#endif

/* Status codes. */
#define KPCB_OK 0
#define KPCB_EXIT_NOT_WAITED (-2)      /* KPCB_Exit: close requested, not waited for */
#define KPCB_NOT_RUNNING (-4)          /* no such running process (or, for exit, not launched here) */
#define KPCB_SLOT_UNAVAILABLE (-5)     /* a mailslot could not be opened or created */
#define KPCB_NO_REPLY (-7)             /* no valid reply (or hello) was read */
#define KPCB_ERR_200 (-200)            /* launch: file missing; queries: the viewer's -200 */
#define KPCB_ERR_201 (-201)            /* launch: no viewer executable; queries: the viewer's -201 */
#define KPCB_ERR_202 (-202)            /* launch: process not created; merge run: no layers */

/* ---- Launch, liveness, exit ---------------------------------------------- */

/* Starts the viewer beside this library on a board file and waits for its hello.
 * Returns the new viewer's process id, or -200 (file missing), -201 (no viewer
 * executable), -202 (process not created), -5 (return slot busy: another launch),
 * -7 (no hello), or the viewer's own negative failure code. */
KPCBAPI_EXPORT int KPCB_Launch(const wchar_t* designFile);
/* As KPCB_Launch, with the viewer's window hidden. */
KPCBAPI_EXPORT int KPCB_Launch_HideMode(const wchar_t* designFile);
/* 1 when a process with this id runs, else 0. */
KPCBAPI_EXPORT int KPCB_IsRunning(int pid);
/* Switches the red-mark tool off, asks the viewer to close and forgets it. wait 0:
 * returns -2 at once; wait non-zero: returns 0 once the process has ended. -4 when
 * the process does not run or was not launched by this process. */
KPCBAPI_EXPORT int KPCB_Exit(int pid, int wait);

/* ---- View control (one-way unless said): 0, -4 not running, -5 no slot ---- */

KPCBAPI_EXPORT int KPCB_ZoomIn(int pid);
KPCBAPI_EXPORT int KPCB_ZoomOut(int pid);
/* Zooms so that the whole board fits. */
KPCBAPI_EXPORT int KPCB_ZoomFitSize(int pid);
/* Shows the top side, the bottom side, or both. */
KPCBAPI_EXPORT int KPCB_ViewLayer_Top(int pid);
KPCBAPI_EXPORT int KPCB_ViewLayer_Btm(int pid);
KPCBAPI_EXPORT int KPCB_ViewLayer_All(int pid);
/* Mirrors the view / cancels mirroring. */
KPCBAPI_EXPORT int KPCB_ViewMirror(int pid);
KPCBAPI_EXPORT int KPCB_ViewMirror_Clear(int pid);
/* Shows the area between two corners (board coordinates), sent as given. */
KPCBAPI_EXPORT int KPCB_ZoomArea(int pid, const double* x1, const double* y1, const double* x2, const double* y2);
/* Rotates the board view to *angle (degrees, counter-clockwise). */
KPCBAPI_EXPORT int KPCB_RotateBoard(int pid, const double* angle);
/* Places the viewer's main window: left, top, width, height. */
KPCBAPI_EXPORT int KPCB_SetWindowPosition(int pid, int left, int top, int width, int height);
/* Sets the main window's title and waits for the viewer: 0, -4, -5, -7, or -201. */
KPCBAPI_EXPORT int KPCB_SetMainTitle(int pid, const char* title);
/* On/off switches: the value is sent as given (non-zero on, 0 off). */
KPCBAPI_EXPORT int KPCB_Component_OnOff(int pid, int onOff);
KPCBAPI_EXPORT int KPCB_Route_OnOff(int pid, int onOff);
KPCBAPI_EXPORT int KPCB_PickingTool_OnOff(int pid, int onOff);
KPCBAPI_EXPORT int KPCB_RedMark_OnOff(int pid, int onOff);
KPCBAPI_EXPORT int KPCB_MiniMap_OnOff(int pid, int onOff);

/* ---- Freeing results ----------------------------------------------------- */

/* Frees a string that the library allocated for a wchar_t** result. Null is ignored. */
KPCBAPI_EXPORT void KPCB_FreeString(wchar_t* text);

#ifdef __cplusplus
}
#endif

#endif
