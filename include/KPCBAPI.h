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

#include "KPCBAPIExport.h"

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
#define KPCB_VIEWER_BOARD_UNREADABLE (-3) /* launch: the viewer could not read the board file */
#define KPCB_VIEWER_SLOT_TAKEN (-6)    /* launch: the viewer's command slot is taken */

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

/* ---- Highlight ------------------------------------------------------------
 * Names come as one text and a set of separator characters: every separator
 * character splits, empty tokens between separators are dropped, each token is
 * trimmed of blanks. Colours are r | g << 8 | b << 16. */

/* Highlights the named objects (kind 0, 1 or 2) in red; waits for the viewer.
 * 0; -4; -200 when kind is outside 0..2 (nothing sent); -5; -7; -201 from the viewer. */
KPCBAPI_EXPORT int KPCB_Highlight(int pid, int kind, const char* names, const char* separators, int contrast);
/* As KPCB_Highlight, in the colour r, g, b (function 1: dependent colour). */
KPCBAPI_EXPORT int KPCB_Highlight_DependentColor(int pid, int kind, const char* names, const char* separators,
                                                 unsigned char r, unsigned char g, unsigned char b, int contrast,
                                                 int layerColorFromApi);
/* As KPCB_Highlight_DependentColor on all layers (function 2). */
KPCBAPI_EXPORT int KPCB_Highlight_DependentColor_AllLayer(int pid, int kind, const char* names, const char* separators,
                                                          unsigned char r, unsigned char g, unsigned char b,
                                                          int contrast, int layerColorFromApi);
/* As KPCB_Highlight_DependentColor on the named layers only (function 3). */
KPCBAPI_EXPORT int KPCB_Highlight_SpecificLayer(int pid, int kind, const char* names, const char* separators,
                                                unsigned char r, unsigned char g, unsigned char b, int contrast,
                                                int layerColorFromApi, int layerNameType, const char* layerNames,
                                                const char* layerSeparators);
/* Highlights pins of one component; returns the viewer's answer as it stands
 * (0 or its code), or -4, -5, -7. */
KPCBAPI_EXPORT int KPCB_Highlight_RefPin(int pid, const char* ref, const char* pins, const char* separators,
                                         unsigned char r, unsigned char g, unsigned char b, int layerColorFromApi);
/* As KPCB_Highlight_RefPin, and zooms to the pins. */
KPCBAPI_EXPORT int KPCB_Highlight_RefPin_Zoom(int pid, const char* ref, const char* pins, const char* separators,
                                              unsigned char r, unsigned char g, unsigned char b,
                                              int layerColorFromApi);
/* Highlights and zooms to the section of a net between two pins: 0, -4, -5, -7,
 * or the viewer's -200 / -201. */
KPCBAPI_EXPORT int KPCB_ZoomHighlightForSection_NetRefPin(int pid, const char* net, const char* ref1,
                                                          const char* pin1, const char* ref2, const char* pin2);
/* Sets the viewer's current highlight colour (one-way). */
KPCBAPI_EXPORT int KPCB_Highlight_SetCurrentColor(int pid, unsigned char r, unsigned char g, unsigned char b);
/* Clears highlighting (one-way). */
KPCBAPI_EXPORT int KPCB_Highlight_Clear(int pid);
/* KPCB_Highlight_ZoomNetSegment takes C++ objects: see KPCBAPI.hpp. */

/* ---- Layer visibility (one-way: 0, -4, -5) -------------------------------- */

/* Shows (visible non-zero) or hides the named layers; the others stay as they are. */
KPCBAPI_EXPORT int KPCB_Visible_Layers(int pid, const char* names, const char* separators, int visible);
/* Shows only the named layers. */
KPCBAPI_EXPORT int KPCB_Visible_Layers_Only(int pid, const char* names, const char* separators);
/* As KPCB_Visible_Layers with the ECAD system's layer names. */
KPCBAPI_EXPORT int KPCB_Visible_ECAD_Layers(int pid, const char* names, const char* separators, int visible);
/* As KPCB_Visible_Layers_Only with the ECAD system's layer names. */
KPCBAPI_EXPORT int KPCB_Visible_ECAD_Layers_Only(int pid, const char* names, const char* separators);

/* ---- Red marks -------------------------------------------------------------
 * Paths and titles are wide strings. String results follow the rule at the top. */

/* Asks the viewer to save its red marks to path (ascii non-zero: text). One-way. */
KPCBAPI_EXPORT int KPCB_RedMarkSave(int pid, const wchar_t* path, int ascii);
/* Loads red marks from path and returns their titles joined with delimiter.
 * -200 (nothing sent) when the file does not exist; -4, -5, -7. */
KPCBAPI_EXPORT int KPCB_RedMarkLoad(int pid, const wchar_t* path, wchar_t** titles, const wchar_t* delimiter, int ascii);
/* Calls up the red mark with that title and returns its contents; -200 for an
 * unknown title (contents untouched); -4, -5, -7. */
KPCBAPI_EXPORT int KPCB_CallSelectedItemFromRedMark(int pid, const wchar_t* title, wchar_t** contents);
/* Removes the red mark with that title; -200 for an unknown title; -4, -5, -7. */
KPCBAPI_EXPORT int KPCB_RemoveItemFromRedMarkList(int pid, const wchar_t* title);
/* Sets the viewer's calling status for red marks. One-way. */
KPCBAPI_EXPORT int KPCB_SetStatusForCallingRedMark(int pid, int status);
/* Reads the viewer's calling status for red marks into *status. */
KPCBAPI_EXPORT int KPCB_GetStatusForCallingRedMark(int pid, int* status);

/* ---- Information queries ---------------------------------------------------
 * 0 with the reply's values copied out (whatever the viewer's error code), -4, -5,
 * -7 (out-arguments untouched). Null out-pointers are skipped. */

/* Pin count of a part (by part name) or of a placed component (by reference). */
KPCBAPI_EXPORT int KPCB_GetPinCountFromPart(int pid, const wchar_t* part, int* count);
KPCBAPI_EXPORT int KPCB_GetPinCountFromReference(int pid, const wchar_t* ref, int* count);
/* Pin pitch of a component / of a two-pin component, in the viewer's unit code. */
KPCBAPI_EXPORT int KPCB_GetPinPitch(int pid, const wchar_t* ref, int unit, double* pitch);
KPCBAPI_EXPORT int KPCB_GetPinPitchFrom2PinComponent(int pid, const wchar_t* ref, int unit, double* pitch);
/* Placement status of one component. */
KPCBAPI_EXPORT int KPCB_GetReferencePlaceStatus(int pid, const wchar_t* ref, int* status, int highlight);
/* Of the listed references (split at any delimiter character, trimmed): how many
 * are placed on top, on the bottom, and neither. */
KPCBAPI_EXPORT int KPCB_GetReferenceCountForPlace(int pid, const wchar_t* refs, const wchar_t* delimiter, int* top,
                                                  int* bottom, int* other, int highlight);
/* The same for the components of the listed parts. */
KPCBAPI_EXPORT int KPCB_GetReferenceCountForPlaceOfPart(int pid, const wchar_t* parts, const wchar_t* delimiter,
                                                        int* top, int* bottom, int* other, int highlight);
/* The net of a pin and every component pin on it, joined with delimiter. -200 when
 * the viewer knows no such pin (nothing written). */
KPCBAPI_EXPORT int KPCB_GetPinListInfoOfNet_RefPin(int pid, const wchar_t* ref, const wchar_t* pin, wchar_t** net,
                                                   wchar_t** pins, const wchar_t* delimiter);

/* ---- Polygon merge -----------------------------------------------------------
 * Order: create, run, reads, destroy. Reads ignore the viewer's error code. */

KPCBAPI_EXPORT int KPCB_PolygonMergeCreate(int pid);
/* Merges the copper of netName on the count layers. -202 when no layer is given,
 * -201 for a null net (both before any contact); -4, -5, -7; the viewer's -201/-202. */
KPCBAPI_EXPORT int KPCB_PolygonMergeRun(int pid, const wchar_t** layerNames, int count, const wchar_t* netName,
                                        double division);
/* Releases the merge result; does not wait for the viewer. */
KPCBAPI_EXPORT int KPCB_PolygonMergeDestroy(int pid);
/* Counts: the count itself, or a negative status. */
KPCBAPI_EXPORT int KPCB_GetCWPolygonCount(int pid);
KPCBAPI_EXPORT int KPCB_GetCCWPolygonCount(int pid, int cw);
KPCBAPI_EXPORT int KPCB_GetCWPolygonPointCount(int pid, int cw);
KPCBAPI_EXPORT int KPCB_GetCCWPolygonPointCount(int pid, int cw, int ccw);
/* One point of an outline / of a hole. */
KPCBAPI_EXPORT int KPCB_GetCWPolygonPointData(int pid, int cw, int point, double* x, double* y);
KPCBAPI_EXPORT int KPCB_GetCCWPolygonPointData(int pid, int cw, int ccw, int point, double* x, double* y);
/* Every point of an outline / of a hole; replaces the contents of xs and ys. */
KPCBAPI_EXPORT int KPCB_GetCWPolygonPointDataArray(int pid, int cw, CArrayD* xs, CArrayD* ys);
KPCBAPI_EXPORT int KPCB_GetCCWPolygonPointDataArray(int pid, int cw, int ccw, CArrayD* xs, CArrayD* ys);

/* Arrays of doubles for callers without C++: create (free with KPCB_ArrayD_Free),
 * size, and a copy of up to capacity values (returns how many were copied). */
KPCBAPI_EXPORT CArrayD* KPCB_ArrayD_Create(void);
KPCBAPI_EXPORT void KPCB_ArrayD_Free(CArrayD* array);
KPCBAPI_EXPORT int KPCB_ArrayD_GetSize(const CArrayD* array);
KPCBAPI_EXPORT int KPCB_ArrayD_GetData(const CArrayD* array, double* values, int capacity);

/* ---- Capture and export ------------------------------------------------------ */

/* Asks the viewer to save its current picture as a bitmap file. One-way. */
KPCBAPI_EXPORT int KPCB_ExportBitmap_CurrentImage(int pid, const char* path);
/* Asks the viewer to write the board's text form to path and waits: 0 for any reply;
 * no liveness test (a dead instance shows as -5); -7. */
KPCBAPI_EXPORT int KPCB_ExportPDBAscii(int pid, const char* path);

/* ---- Design extraction ------------------------------------------------------
 * The C forms of the extraction functions of KPCBAPIExtract.h (which says what each
 * argument means): wide strings, null counting as empty. Results: 0 read and saved,
 * 2 arguments refused, 3 the importer returned no board, 4 the save failed. */
KPCBAPI_EXPORT int KPCB_ExtractPdbbFromAllegro(const wchar_t* saveFolder, const wchar_t* design, char kind,
                                               const wchar_t* extra1, const wchar_t* extra2);
KPCBAPI_EXPORT int KPCB_ExtractPdbbFromBoardDesigner(const wchar_t* saveFolder, const wchar_t* design, char firstLetter,
                                                     char secondLetter, const wchar_t* option1, const wchar_t* option2,
                                                     const wchar_t* option3, const wchar_t* option4);
KPCBAPI_EXPORT int KPCB_ExtractPdbbFromMentor(const wchar_t* outputFile, const wchar_t* designFolder, int flag,
                                              const wchar_t* unused);
KPCBAPI_EXPORT int KPCB_ExtractPdbbFromZuken(const wchar_t* outputFile, const wchar_t* design, char letter,
                                             const wchar_t* zlsFile);

/* ---- Waiting -------------------------------------------------------------- */

/* Limits every wait for a viewer's answer (query replies, the launch hello, the
 * explorer acknowledgement) to milliseconds; 0, the default, waits for ever. With
 * a limit set, a wait ends with -7 when the limit passes or as soon as the viewer's
 * process has ended. Process-wide; takes effect for calls that start afterwards. */
KPCBAPI_EXPORT void KPCB_SetReplyTimeout(int milliseconds);

/* Keeps connections to viewers open between calls when keep is non-zero: per viewer,
 * the write side of its command slot, this process's reply slot and a watch on its
 * process are made by the first call that needs them and reused by the calls after
 * it, so that a call costs a fraction of what opening and closing them costs. Off
 * (0, the default) every call opens and closes its own, as described above. While a
 * process keeps the reply slot of a viewer, queries of other processes to that viewer
 * find the name taken (-5); KPCB_Exit, a viewer found ended and switching keeping
 * off let go of what was kept. Process-wide. Returns the previous setting (0 or 1). */
KPCBAPI_EXPORT int KPCB_KeepConnections(int keep);

/* ---- Status text ---------------------------------------------------------- */

/* What a status code means, in a few words: a static string for every code that the
 * functions above return (and the viewer's hello codes -3 and -6), "unknown status N"
 * for any other. Never null; the caller frees nothing. The text of an unknown code
 * lives in a buffer of the calling thread, valid until that thread's next call. */
KPCBAPI_EXPORT const char* KPCB_GetStatusText(int status);

/* ---- Freeing results ----------------------------------------------------- */

/* Frees a string that the library allocated for a wchar_t** result. Null is ignored. */
KPCBAPI_EXPORT void KPCB_FreeString(wchar_t* text);

#ifdef __cplusplus
}
#endif

#endif
