"""kpcb: drive a KorbinPCB viewer from Python through the KPCBAPI library.

    from kpcb import Viewer
    with Viewer.launch("board.pdbb") as viewer:
        viewer.zoom_fit()
        viewer.highlight(0, ["GND", "VCC"])

The library is found through KPCB_LIBRARY, beside the package, or in the build
tree of the source checkout (see kpcb._library.find_library).
"""

from ._library import LIBRARY_ENV, LibraryNotFoundError, find_library, library
from .errors import (KpcbError, NoReplyError, NotRunningError, SlotUnavailableError, ViewerRefusedError,
                     error_for)
from .viewer import NetPins, PlaceCounts, Polygon, Viewer, is_running, keep_connections, set_reply_timeout
from .extraction import (ExtractionError, extract, extract_allegro, extract_board_designer, extract_ipc2581,
                         extract_mentor, extract_odb, extract_zuken)

__all__ = [
    "Viewer", "is_running", "keep_connections", "set_reply_timeout", "PlaceCounts", "NetPins", "Polygon",
    "KpcbError", "NotRunningError", "SlotUnavailableError", "NoReplyError", "ViewerRefusedError", "error_for",
    "LibraryNotFoundError", "find_library", "library", "LIBRARY_ENV",
    "ExtractionError", "extract", "extract_allegro", "extract_board_designer", "extract_ipc2581", "extract_mentor",
    "extract_odb", "extract_zuken",
]

__version__ = "0.1.0"
