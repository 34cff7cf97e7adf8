// C++ entry points of KPCBAPI that take MFC-style types (CString, CStringArray,
// CArrayN). Their headers come from compat/ and common/ in the source tree and are
// installed beside this one; the library exports the classes' code.
#pragma once

#include "KPCBAPI.h"

#include "CArrayD.h"
#include "CArrayN.h"
#include "CString.h"
#include "CStringArray.h"

// Starts the viewer on file; hide non-zero hides its window. Results as KPCB_Launch.
KPCBAPI_EXPORT int KPCB_Launch(CString file, int hide);
// Shows the area between two corners; the same message as KPCB_ZoomArea.
KPCBAPI_EXPORT int KPCB_SetZoomArea(int pid, const double& x1, const double& y1, const double& x2, const double& y2);

// Highlights pins of one component with the names already split; no liveness
// test (a dead instance shows as -5). Returns the viewer's answer as it stands.
KPCBAPI_EXPORT int KPCB_Highlight_RefPin(int pid, CString& ref, CStringArray& pins, DWORD color, int zoom,
                                         int layerColorFromApi);
// Clears highlighting: all of it / the explorer's (CommonValue 1) / the picking tool's (0).
KPCBAPI_EXPORT int KPCB_Highlight_Clear_Basic(int pid);
KPCBAPI_EXPORT int KPCB_Highlight_Clear_Explorer(int pid);
KPCBAPI_EXPORT int KPCB_Highlight_Clear_Picking(int pid);
// Shows or hides the named layers; only non-zero shows only them (the others hidden).
KPCBAPI_EXPORT int KPCB_Visible_Layers(int pid, CStringArray& names, int visible, int only);
// Makes the viewer remember / restore its current layer visibility (one-way).
KPCBAPI_EXPORT int KPCB_Backup_Current_Layers(int pid);
KPCBAPI_EXPORT int KPCB_Restore_Current_Layers(int pid);

// Opens the viewer's explorer on the objects listed in listFile (selection type 0, 1
// or 2) and waits for its 4-byte acknowledgement: 0, -4, -200 (bad type), -201 (no
// such file), -5, -7.
KPCBAPI_EXPORT int KPCB_Explorer(const int& pid, const int& selectionType, const CString& listFile);

extern "C" {
// Highlights and zooms to chosen segments of a net; no liveness test (a dead
// instance shows as -5). 0, -5, -7, or the viewer's -200 / -201. Exported under its
// plain name.
KPCBAPI_EXPORT int KPCB_Highlight_ZoomNetSegment(int pid, const CString& net, const CArrayN& segments, DWORD color);
}

// The viewer's executable beside this library ("KorbinPCB", then "_l", then "_n"),
// or an empty string when none is there.
KPCBAPI_EXPORT CString FindViewerExecutable();
