// The one place where status codes become words; the tool, the demo and the Python
// binding all ask here.
#include <cstdio>

#include "KPCBAPI.h"

namespace {

const char* KnownStatusText(int status) {
    switch (status) {
        case KPCB_OK: return "done";
        case KPCB_EXIT_NOT_WAITED: return "the viewer was asked to close and not waited for";
        case KPCB_VIEWER_BOARD_UNREADABLE: return "the viewer could not read the board file";
        case KPCB_NOT_RUNNING: return "the viewer is not running";
        case KPCB_SLOT_UNAVAILABLE:
            return "no viewer serves this process id (its command slot cannot be opened), "
                   "or another call is waiting for its answer";
        case KPCB_VIEWER_SLOT_TAKEN: return "the viewer's command slot is taken";
        case KPCB_NO_REPLY: return "no valid reply came from the viewer";
        case KPCB_ERR_200: return "the viewer refused the request (-200)";
        case KPCB_ERR_201: return "the viewer refused the request (-201)";
        case KPCB_ERR_202: return "the viewer refused the request (-202)";
        default: return nullptr;
    }
}

}  // namespace

extern "C" KPCBAPI_EXPORT const char* KPCB_GetStatusText(int status) {
    // Each thread formats its unknown codes in its own buffer, so that callers on
    // different threads never see each other's numbers.
    thread_local char unknown[32];
    try {
        if (const char* known = KnownStatusText(status)) return known;
        std::snprintf(unknown, sizeof unknown, "unknown status %d", status);
        return unknown;
    } catch (...) {
        return "unknown status";
    }
}
