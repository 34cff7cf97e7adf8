// C++ entry points of KPCBAPI that take MFC-style types (CString, CStringArray,
// CArrayN), and the design extraction functions. Include after the compat headers
// are on the include path.
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

// The viewer's executable beside this library ("KorbinPCB", then "_l", then "_n"),
// or an empty string when none is there.
KPCBAPI_EXPORT CString FindViewerExecutable();
