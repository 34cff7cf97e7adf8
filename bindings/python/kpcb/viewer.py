"""The Viewer class: one running KorbinPCB viewer, driven through KPCBAPI."""

import collections
import ctypes
import os
import sys
import threading

from . import _library
from .errors import (ERR_200, ERR_201, ERR_202, EXIT_NOT_WAITED, LAUNCH_MEANINGS, NOT_RUNNING, NotRunningError,
                     check, error_for)

# Narrow text goes to the library in the system's ANSI code page: UTF-8 on POSIX.
NARROW_ENCODING = "mbcs" if sys.platform == "win32" else "utf-8"

# Lists cross the boundary as one text: names joined with this separator on the way
# in, results joined with it on the way out.
LIST_SEPARATOR = "\n"
_NARROW_SEPARATOR = LIST_SEPARATOR.encode("ascii")

PlaceCounts = collections.namedtuple("PlaceCounts", "top bottom other")
PlaceCounts.__doc__ = "How many of the asked components are placed on top, on the bottom, and neither."
NetPins = collections.namedtuple("NetPins", "net pins")
NetPins.__doc__ = "The net of a pin and every component pin on it."
Polygon = collections.namedtuple("Polygon", "outline holes")
Polygon.__doc__ = "A merged copper polygon: its outline and its holes, each a list of (x, y) points."

_EXIT_MEANINGS = {NOT_RUNNING: "the viewer is not running or was not launched by this process"}
_MARK_MEANINGS = {ERR_200: "no red mark has that title"}
_HIGHLIGHT_MEANINGS = {ERR_200: "the object kind is not 0, 1 or 2", ERR_201: "the viewer refused the highlight (-201)"}
_SECTION_MEANINGS = {ERR_200: "the viewer refused the net section (-200)",
                     ERR_201: "the viewer refused the net section (-201)"}
_MERGE_RUN_MEANINGS = {ERR_202: "no layer to merge on (or the viewer's -202)",
                       ERR_201: "no net to merge (or the viewer's -201)"}
_TITLE_MEANINGS = {ERR_201: "the viewer refused the title (-201)"}
_NET_PINS_MEANINGS = {ERR_200: "the viewer knows no such pin", ERR_201: "the pin is on no net"}
# The library copies an information value out whatever the viewer's error code; the
# viewer then puts its failure code into the value itself.
_VALUE_MEANINGS = {ERR_200: "no such reference, part, net or pin on the board",
                   ERR_201: "the object exists but the question has no answer for it",
                   ERR_202: "unknown unit or function code"}

# Calls to one viewer are serialised (two queries at once would collide on its reply
# slot), and so are launches (they share one return slot).
_registry_lock = threading.Lock()
_pid_locks = {}
_launch_lock = threading.Lock()


def _lock_for(pid):
    with _registry_lock:
        return _pid_locks.setdefault(pid, threading.RLock())


def _text(value, what):
    if isinstance(value, os.PathLike):
        value = os.fspath(value)
    if not isinstance(value, str):
        raise TypeError("%s must be a string, not %s" % (what, type(value).__name__))
    if "\0" in value:
        raise ValueError("%s must not contain NUL" % what)
    return value


def _narrow(value, what):
    return _text(value, what).encode(NARROW_ENCODING)


def _names_text(names, what):
    """A list of names as one text for the library. A single string is one name."""
    if isinstance(names, (str, os.PathLike)):
        names = [names]
    out = []
    for name in names:
        name = _text(name, what)
        if LIST_SEPARATOR in name:
            raise ValueError("%s must not contain a line break: %r" % (what, name))
        out.append(name)
    return LIST_SEPARATOR.join(out)


def _narrow_names(names, what):
    return _names_text(names, what).encode(NARROW_ENCODING)


def _split(text):
    return text.split(LIST_SEPARATOR) if text else []


def _color(color):
    """(r, g, b), each 0 to 255."""
    try:
        r, g, b = color
    except (TypeError, ValueError):
        raise TypeError("a color is an (r, g, b) tuple, not %r" % (color,)) from None
    for part in (r, g, b):
        if not isinstance(part, int) or not 0 <= part <= 255:
            raise ValueError("color components are whole numbers from 0 to 255, not %r" % (color,))
    return r, g, b


class _WideResult:
    """A wchar_t* result slot: null on the way in, so that the library allocates
    the string; the string is freed with KPCB_FreeString."""

    def __init__(self, dll):
        self._dll = dll
        self.pointer = ctypes.c_void_p()

    def text(self):
        return ctypes.wstring_at(self.pointer.value) if self.pointer.value else ""

    def free(self):
        if self.pointer.value:
            self._dll.KPCB_FreeString(self.pointer)
            self.pointer.value = None


def _read_array(dll, array):
    size = dll.KPCB_ArrayD_GetSize(array)
    if size <= 0:
        return []
    values = (ctypes.c_double * size)()
    count = dll.KPCB_ArrayD_GetData(array, values, size)
    return list(values[:count])


def _value(value, function):
    """An information value, or the viewer's refusal carried in it raised."""
    if value in (ERR_200, ERR_201, ERR_202):
        raise error_for(int(value), function, _VALUE_MEANINGS)
    return value


def is_running(pid):
    """True when a process with this id runs."""
    return _library.library().KPCB_IsRunning(int(pid)) == 1


def set_reply_timeout(seconds):
    """Limits every wait for a viewer's answer (query replies, the launch hello)
    to seconds, for the whole process; None or 0 waits for ever (the default).
    With a limit, a wait ends with NoReplyError when it passes or as soon as the
    viewer's process has ended."""
    if seconds is not None and seconds < 0:
        raise ValueError("a time limit is not negative")
    milliseconds = 0 if not seconds else max(1, int(round(seconds * 1000)))
    _library.library().KPCB_SetReplyTimeout(min(milliseconds, 2 ** 31 - 1))


def keep_connections(keep=True):
    """Keeps the connections to viewers (command slot, reply slot, a watch on the
    process) open from one call to the next, for the whole process, so that calls
    cost a fraction of what they cost otherwise; False goes back to opening them
    for every call and lets go of what was kept. While this process keeps the reply
    slot of a viewer, queries of other processes to it fail with SlotUnavailableError.
    Returns the previous setting."""
    return _library.library().KPCB_KeepConnections(1 if keep else 0) == 1


class Viewer:
    """A running viewer, addressed by its process id.

    Make one with Viewer.launch(board), or Viewer(pid) for a viewer that this
    process launched earlier. As a context manager it closes the viewer at the end
    of the block. Every method raises a KpcbError subclass when the library
    reports a failure. Calls block until the viewer has the command (and, for
    queries, until it answers).
    """

    def __init__(self, pid):
        self._pid = int(pid)
        self._dll = _library.library()
        self._lock = _lock_for(self._pid)

    # ---- launch, liveness, exit ------------------------------------------------

    @classmethod
    def launch(cls, path, hide=False):
        """Starts the viewer beside the library on a board file and returns it.
        hide: start with the viewer's window hidden. A relative path is taken from
        the current folder."""
        dll = _library.library()
        path = os.path.abspath(_text(path, "board path"))
        function = "KPCB_Launch_HideMode" if hide else "KPCB_Launch"
        with _launch_lock:
            result = getattr(dll, function)(path)
        if result <= 0:
            raise error_for(result, function, LAUNCH_MEANINGS)
        return cls(result)

    @property
    def pid(self):
        """The viewer's process id (the instance number the library uses)."""
        return self._pid

    def is_running(self):
        """True while the viewer process runs."""
        return self._dll.KPCB_IsRunning(self._pid) == 1

    def exit(self, wait=True):
        """Switches the red-mark tool off and asks the viewer to close; with wait,
        returns once the process has ended."""
        with self._lock:
            result = self._dll.KPCB_Exit(self._pid, 1 if wait else 0)
        if result == EXIT_NOT_WAITED and not wait:
            return
        check(result, "KPCB_Exit", _EXIT_MEANINGS)

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        try:
            self.exit(wait=True)
        except NotRunningError:
            pass  # already gone: nothing to close
        return False

    def __repr__(self):
        return "Viewer(pid=%d)" % self._pid

    def _call(self, name, *args, meanings=None):
        with self._lock:
            result = getattr(self._dll, name)(self._pid, *args)
        return check(result, name, meanings)

    # ---- view control -----------------------------------------------------------

    def zoom_in(self):
        self._call("KPCB_ZoomIn")

    def zoom_out(self):
        self._call("KPCB_ZoomOut")

    def zoom_fit(self):
        """Zooms so that the whole board fits."""
        self._call("KPCB_ZoomFitSize")

    def view_top(self):
        """Shows the top side of the board."""
        self._call("KPCB_ViewLayer_Top")

    def view_bottom(self):
        """Shows the bottom side of the board."""
        self._call("KPCB_ViewLayer_Btm")

    def view_all(self):
        """Shows both sides of the board."""
        self._call("KPCB_ViewLayer_All")

    def mirror(self):
        """Mirrors the view."""
        self._call("KPCB_ViewMirror")

    def clear_mirror(self):
        """Cancels mirroring."""
        self._call("KPCB_ViewMirror_Clear")

    def zoom_area(self, x1, y1, x2, y2):
        """Shows the area between two corners, in board coordinates."""
        corners = [ctypes.c_double(v) for v in (x1, y1, x2, y2)]
        self._call("KPCB_ZoomArea", *[ctypes.byref(c) for c in corners])

    def rotate(self, angle):
        """Rotates the board view to angle (degrees, counter-clockwise)."""
        self._call("KPCB_RotateBoard", ctypes.byref(ctypes.c_double(angle)))

    def set_window_position(self, left, top, width, height):
        """Places the viewer's main window."""
        self._call("KPCB_SetWindowPosition", int(left), int(top), int(width), int(height))

    def set_title(self, title):
        """Sets the main window's title; waits for the viewer."""
        self._call("KPCB_SetMainTitle", _narrow(title, "title"), meanings=_TITLE_MEANINGS)

    def show_components(self, on=True):
        self._call("KPCB_Component_OnOff", 1 if on else 0)

    def show_routes(self, on=True):
        self._call("KPCB_Route_OnOff", 1 if on else 0)

    def picking_tool(self, on=True):
        """Switches the picking tool on or off."""
        self._call("KPCB_PickingTool_OnOff", 1 if on else 0)

    def red_mark_tool(self, on=True):
        """Switches the red-mark tool on or off."""
        self._call("KPCB_RedMark_OnOff", 1 if on else 0)

    def show_minimap(self, on=True):
        self._call("KPCB_MiniMap_OnOff", 1 if on else 0)

    # ---- highlight ----------------------------------------------------------------
    # kind: the kind of the named objects, 0, 1 or 2. color: (r, g, b).
    # layer_color_from_api: use the given color on the layers rather than the
    # viewer's own layer colors.

    def highlight(self, kind, names, contrast=0):
        """Highlights the named objects in red; waits for the viewer."""
        self._call("KPCB_Highlight", int(kind), _narrow_names(names, "name"), _NARROW_SEPARATOR,
                   int(contrast), meanings=_HIGHLIGHT_MEANINGS)

    def highlight_color(self, kind, names, color, contrast=0, layer_color_from_api=False):
        """Highlights the named objects in a color; waits for the viewer."""
        self._named_highlight("KPCB_Highlight_DependentColor", kind, names, color, contrast, layer_color_from_api)

    def highlight_color_all_layers(self, kind, names, color, contrast=0, layer_color_from_api=False):
        """As highlight_color, on all layers."""
        self._named_highlight("KPCB_Highlight_DependentColor_AllLayer", kind, names, color, contrast,
                              layer_color_from_api)

    def highlight_on_layers(self, kind, names, color, layers, layer_name_type=0, contrast=0,
                            layer_color_from_api=False):
        """As highlight_color, on the named layers only; layer_name_type says how
        the layers are named."""
        self._named_highlight("KPCB_Highlight_SpecificLayer", kind, names, color, contrast, layer_color_from_api,
                              int(layer_name_type), _narrow_names(layers, "layer name"), _NARROW_SEPARATOR)

    def _named_highlight(self, function, kind, names, color, contrast, layer_color_from_api, *more):
        self._call(function, int(kind), _narrow_names(names, "name"), _NARROW_SEPARATOR, *_color(color),
                   int(contrast), 1 if layer_color_from_api else 0, *more, meanings=_HIGHLIGHT_MEANINGS)

    def highlight_pins(self, ref, pins, color, layer_color_from_api=False, zoom=False):
        """Highlights pins of one component (and with zoom, zooms to them); waits
        for the viewer and raises for any answer but 0."""
        function = "KPCB_Highlight_RefPin_Zoom" if zoom else "KPCB_Highlight_RefPin"
        with self._lock:
            result = getattr(self._dll, function)(self._pid, _narrow(ref, "reference"),
                                                  _narrow_names(pins, "pin name"), _NARROW_SEPARATOR,
                                                  *_color(color), 1 if layer_color_from_api else 0)
        if result != 0:
            raise error_for(result, function)

    def zoom_highlight_section(self, net, ref1, pin1, ref2, pin2):
        """Highlights and zooms to the section of net between two pins."""
        self._call("KPCB_ZoomHighlightForSection_NetRefPin", _narrow(net, "net"), _narrow(ref1, "reference"),
                   _narrow(pin1, "pin"), _narrow(ref2, "reference"), _narrow(pin2, "pin"),
                   meanings=_SECTION_MEANINGS)

    def set_highlight_color(self, color):
        """Sets the viewer's current highlight color."""
        self._call("KPCB_Highlight_SetCurrentColor", *_color(color))

    def clear_highlight(self):
        self._call("KPCB_Highlight_Clear")

    # ---- layer visibility ---------------------------------------------------------

    def show_layers(self, names, visible=True):
        """Shows (or hides) the named layers; the others stay as they are."""
        self._call("KPCB_Visible_Layers", _narrow_names(names, "layer name"), _NARROW_SEPARATOR,
                   1 if visible else 0)

    def show_only_layers(self, names):
        """Shows only the named layers."""
        self._call("KPCB_Visible_Layers_Only", _narrow_names(names, "layer name"), _NARROW_SEPARATOR)

    def show_ecad_layers(self, names, visible=True):
        """As show_layers, with the ECAD system's layer names."""
        self._call("KPCB_Visible_ECAD_Layers", _narrow_names(names, "layer name"), _NARROW_SEPARATOR,
                   1 if visible else 0)

    def show_only_ecad_layers(self, names):
        """As show_only_layers, with the ECAD system's layer names."""
        self._call("KPCB_Visible_ECAD_Layers_Only", _narrow_names(names, "layer name"), _NARROW_SEPARATOR)

    # ---- red marks ----------------------------------------------------------------

    def save_red_marks(self, path, text=True):
        """Asks the viewer to save its red marks to path, as text or (text=False)
        in the binary form. Does not wait for the file."""
        self._call("KPCB_RedMarkSave", _text(path, "path"), 1 if text else 0)

    def load_red_marks(self, path, text=True):
        """Loads red marks from path and returns their titles."""
        titles = _WideResult(self._dll)
        try:
            self._call("KPCB_RedMarkLoad", _text(path, "path"), ctypes.byref(titles.pointer), LIST_SEPARATOR,
                       1 if text else 0, meanings={ERR_200: "the red-mark file does not exist"})
            return _split(titles.text())
        finally:
            titles.free()

    def red_mark_contents(self, title):
        """Calls up the red mark with that title and returns its contents."""
        contents = _WideResult(self._dll)
        try:
            self._call("KPCB_CallSelectedItemFromRedMark", _text(title, "title"), ctypes.byref(contents.pointer),
                       meanings=_MARK_MEANINGS)
            return contents.text()
        finally:
            contents.free()

    def remove_red_mark(self, title):
        """Removes the red mark with that title."""
        self._call("KPCB_RemoveItemFromRedMarkList", _text(title, "title"), meanings=_MARK_MEANINGS)

    def set_red_mark_call_status(self, status):
        """Sets the viewer's calling status for red marks."""
        self._call("KPCB_SetStatusForCallingRedMark", int(status))

    def red_mark_call_status(self):
        """The viewer's calling status for red marks."""
        status = ctypes.c_int()
        self._call("KPCB_GetStatusForCallingRedMark", ctypes.byref(status))
        return status.value

    # ---- information queries ----------------------------------------------------

    def _int_query(self, function, *args):
        value = ctypes.c_int()
        self._call(function, *args[:1], ctypes.byref(value), *args[1:])
        return _value(value.value, function)

    def _pitch_query(self, function, ref, unit):
        pitch = ctypes.c_double()
        self._call(function, _text(ref, "reference"), int(unit), ctypes.byref(pitch))
        return _value(pitch.value, function)

    def pin_count_of_part(self, part):
        """The pin count of a part, by part name."""
        return self._int_query("KPCB_GetPinCountFromPart", _text(part, "part"))

    def pin_count_of_reference(self, ref):
        """The pin count of a placed component, by reference."""
        return self._int_query("KPCB_GetPinCountFromReference", _text(ref, "reference"))

    def pin_pitch(self, ref, unit=0):
        """The pin pitch of a component (the smallest distance between two of its
        pins) in the viewer's unit code unit."""
        return self._pitch_query("KPCB_GetPinPitch", ref, unit)

    def pin_pitch_two_pin(self, ref, unit=0):
        """The pin pitch of a two-pin component."""
        return self._pitch_query("KPCB_GetPinPitchFrom2PinComponent", ref, unit)

    def place_status(self, ref, highlight=False):
        """The placement status of one component."""
        return self._int_query("KPCB_GetReferencePlaceStatus", _text(ref, "reference"), 1 if highlight else 0)

    def place_counts(self, refs, highlight=False):
        """Of the listed references: PlaceCounts(top, bottom, other)."""
        return self._counts("KPCB_GetReferenceCountForPlace", refs, "reference", highlight)

    def place_counts_of_parts(self, parts, highlight=False):
        """The same for the components of the listed parts."""
        return self._counts("KPCB_GetReferenceCountForPlaceOfPart", parts, "part", highlight)

    def _counts(self, function, names, what, highlight):
        top, bottom, other = ctypes.c_int(), ctypes.c_int(), ctypes.c_int()
        self._call(function, _names_text(names, what), LIST_SEPARATOR, ctypes.byref(top), ctypes.byref(bottom),
                   ctypes.byref(other), 1 if highlight else 0)
        return PlaceCounts(top.value, bottom.value, other.value)

    def net_pins(self, ref, pin):
        """The net of a component pin and every component pin on it:
        NetPins(net, [pin names])."""
        net, pins = _WideResult(self._dll), _WideResult(self._dll)
        try:
            self._call("KPCB_GetPinListInfoOfNet_RefPin", _text(ref, "reference"), _text(pin, "pin"),
                       ctypes.byref(net.pointer), ctypes.byref(pins.pointer), LIST_SEPARATOR,
                       meanings=_NET_PINS_MEANINGS)
            return NetPins(net.text(), _split(pins.text()))
        finally:
            net.free()
            pins.free()

    # ---- polygon merge --------------------------------------------------------------
    # Order: merge_create, merge_run, the reads, merge_destroy. cw indexes the
    # clockwise outlines, ccw the counter-clockwise holes of one outline.

    def merge_create(self):
        self._call("KPCB_PolygonMergeCreate")

    def merge_run(self, layers, net, division):
        """Merges the copper of net on the given layers."""
        if isinstance(layers, (str, os.PathLike)):
            layers = [layers]
        names = [_text(layer, "layer name") for layer in layers]
        array = (ctypes.c_wchar_p * max(len(names), 1))(*names)
        self._call("KPCB_PolygonMergeRun", array, len(names), _text(net, "net"), float(division),
                   meanings=_MERGE_RUN_MEANINGS)

    def merge_destroy(self):
        """Releases the merge result; does not wait for the viewer."""
        self._call("KPCB_PolygonMergeDestroy")

    def cw_polygon_count(self):
        """How many outlines the merge gave."""
        return self._call("KPCB_GetCWPolygonCount")

    def ccw_polygon_count(self, cw):
        """How many holes outline cw has."""
        return self._call("KPCB_GetCCWPolygonCount", int(cw))

    def cw_point_count(self, cw):
        return self._call("KPCB_GetCWPolygonPointCount", int(cw))

    def ccw_point_count(self, cw, ccw):
        return self._call("KPCB_GetCCWPolygonPointCount", int(cw), int(ccw))

    def cw_point(self, cw, index):
        """Point index of outline cw, as (x, y)."""
        x, y = ctypes.c_double(), ctypes.c_double()
        self._call("KPCB_GetCWPolygonPointData", int(cw), int(index), ctypes.byref(x), ctypes.byref(y))
        return x.value, y.value

    def ccw_point(self, cw, ccw, index):
        """Point index of hole ccw of outline cw, as (x, y)."""
        x, y = ctypes.c_double(), ctypes.c_double()
        self._call("KPCB_GetCCWPolygonPointData", int(cw), int(ccw), int(index), ctypes.byref(x), ctypes.byref(y))
        return x.value, y.value

    def cw_points(self, cw):
        """Every point of outline cw, as a list of (x, y)."""
        return self._points("KPCB_GetCWPolygonPointDataArray", int(cw))

    def ccw_points(self, cw, ccw):
        """Every point of hole ccw of outline cw, as a list of (x, y)."""
        return self._points("KPCB_GetCCWPolygonPointDataArray", int(cw), int(ccw))

    def _points(self, function, *indexes):
        dll = self._dll
        xs = dll.KPCB_ArrayD_Create()
        ys = dll.KPCB_ArrayD_Create()
        try:
            if not xs or not ys:
                raise MemoryError("KPCB_ArrayD_Create")
            self._call(function, *indexes, xs, ys)
            return list(zip(_read_array(dll, xs), _read_array(dll, ys)))
        finally:
            dll.KPCB_ArrayD_Free(xs)
            dll.KPCB_ArrayD_Free(ys)

    def merged_polygons(self, layers, net, division):
        """The whole merge in one call: creates, runs, reads every outline with its
        holes and destroys. Returns a list of Polygon(outline, holes)."""
        with self._lock:
            self.merge_create()
            try:
                self.merge_run(layers, net, division)
                polygons = []
                for cw in range(self.cw_polygon_count()):
                    holes = [self.ccw_points(cw, ccw) for ccw in range(self.ccw_polygon_count(cw))]
                    polygons.append(Polygon(self.cw_points(cw), holes))
                return polygons
            finally:
                self.merge_destroy()

    # ---- capture and export -----------------------------------------------------------

    def export_bitmap(self, path):
        """Asks the viewer to save its current picture as a bitmap file. Does not
        wait for the file."""
        self._call("KPCB_ExportBitmap_CurrentImage", _narrow(path, "path"))

    def export_text(self, path):
        """Asks the viewer to write the board's text form to path; waits for it."""
        self._call("KPCB_ExportPDBAscii", _narrow(path, "path"))
