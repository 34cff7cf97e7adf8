"""Finding and loading the KPCBAPI shared library, with the prototype of every
exported C function declared for ctypes."""

import ctypes
import ctypes.util
import glob
import mmap
import os
import sys
import threading

LIBRARY_ENV = "KPCB_LIBRARY"

if sys.platform == "win32":
    LIBRARY_NAME = "KPCBAPIDLL.dll"
elif sys.platform == "darwin":
    LIBRARY_NAME = "libKPCBAPIDLL.dylib"
else:
    LIBRARY_NAME = "libKPCBAPIDLL.so"

PACKAGE_DIR = os.path.dirname(os.path.abspath(__file__))


class LibraryNotFoundError(OSError):
    """The KPCBAPI library could not be found or loaded."""


# ---- Prototypes -------------------------------------------------------------

c_int = ctypes.c_int
c_double = ctypes.c_double
c_ubyte = ctypes.c_ubyte
c_void_p = ctypes.c_void_p
c_char = ctypes.c_char  # one narrow character
c_char_p = ctypes.c_char_p  # narrow text, encoded by the caller
c_wchar_p = ctypes.c_wchar_p  # wide text
p_int = ctypes.POINTER(c_int)
p_double = ctypes.POINTER(c_double)
# wchar_t** results are read as raw pointers so that they can be freed.
p_wide_out = ctypes.POINTER(c_void_p)
p_wide_list = ctypes.POINTER(c_wchar_p)  # const wchar_t**
p_array = c_void_p  # CArrayD*, opaque

_RGB = [c_ubyte, c_ubyte, c_ubyte]

# name: (result type, argument types). Every extern "C" function of KPCBAPI.h.
PROTOTYPES = {
    # launch, liveness, exit
    "KPCB_Launch": (c_int, [c_wchar_p]),
    "KPCB_Launch_HideMode": (c_int, [c_wchar_p]),
    "KPCB_IsRunning": (c_int, [c_int]),
    "KPCB_Exit": (c_int, [c_int, c_int]),
    # view control
    "KPCB_ZoomIn": (c_int, [c_int]),
    "KPCB_ZoomOut": (c_int, [c_int]),
    "KPCB_ZoomFitSize": (c_int, [c_int]),
    "KPCB_ViewLayer_Top": (c_int, [c_int]),
    "KPCB_ViewLayer_Btm": (c_int, [c_int]),
    "KPCB_ViewLayer_All": (c_int, [c_int]),
    "KPCB_ViewMirror": (c_int, [c_int]),
    "KPCB_ViewMirror_Clear": (c_int, [c_int]),
    "KPCB_ZoomArea": (c_int, [c_int, p_double, p_double, p_double, p_double]),
    "KPCB_RotateBoard": (c_int, [c_int, p_double]),
    "KPCB_SetWindowPosition": (c_int, [c_int, c_int, c_int, c_int, c_int]),
    "KPCB_SetMainTitle": (c_int, [c_int, c_char_p]),
    "KPCB_Component_OnOff": (c_int, [c_int, c_int]),
    "KPCB_Route_OnOff": (c_int, [c_int, c_int]),
    "KPCB_PickingTool_OnOff": (c_int, [c_int, c_int]),
    "KPCB_RedMark_OnOff": (c_int, [c_int, c_int]),
    "KPCB_MiniMap_OnOff": (c_int, [c_int, c_int]),
    # highlight
    "KPCB_Highlight": (c_int, [c_int, c_int, c_char_p, c_char_p, c_int]),
    "KPCB_Highlight_DependentColor": (c_int, [c_int, c_int, c_char_p, c_char_p] + _RGB + [c_int, c_int]),
    "KPCB_Highlight_DependentColor_AllLayer": (c_int, [c_int, c_int, c_char_p, c_char_p] + _RGB + [c_int, c_int]),
    "KPCB_Highlight_SpecificLayer": (
        c_int, [c_int, c_int, c_char_p, c_char_p] + _RGB + [c_int, c_int, c_int, c_char_p, c_char_p]),
    "KPCB_Highlight_RefPin": (c_int, [c_int, c_char_p, c_char_p, c_char_p] + _RGB + [c_int]),
    "KPCB_Highlight_RefPin_Zoom": (c_int, [c_int, c_char_p, c_char_p, c_char_p] + _RGB + [c_int]),
    "KPCB_ZoomHighlightForSection_NetRefPin": (c_int, [c_int, c_char_p, c_char_p, c_char_p, c_char_p, c_char_p]),
    "KPCB_Highlight_SetCurrentColor": (c_int, [c_int] + _RGB),
    "KPCB_Highlight_Clear": (c_int, [c_int]),
    # layer visibility
    "KPCB_Visible_Layers": (c_int, [c_int, c_char_p, c_char_p, c_int]),
    "KPCB_Visible_Layers_Only": (c_int, [c_int, c_char_p, c_char_p]),
    "KPCB_Visible_ECAD_Layers": (c_int, [c_int, c_char_p, c_char_p, c_int]),
    "KPCB_Visible_ECAD_Layers_Only": (c_int, [c_int, c_char_p, c_char_p]),
    # red marks
    "KPCB_RedMarkSave": (c_int, [c_int, c_wchar_p, c_int]),
    "KPCB_RedMarkLoad": (c_int, [c_int, c_wchar_p, p_wide_out, c_wchar_p, c_int]),
    "KPCB_CallSelectedItemFromRedMark": (c_int, [c_int, c_wchar_p, p_wide_out]),
    "KPCB_RemoveItemFromRedMarkList": (c_int, [c_int, c_wchar_p]),
    "KPCB_SetStatusForCallingRedMark": (c_int, [c_int, c_int]),
    "KPCB_GetStatusForCallingRedMark": (c_int, [c_int, p_int]),
    # information queries
    "KPCB_GetPinCountFromPart": (c_int, [c_int, c_wchar_p, p_int]),
    "KPCB_GetPinCountFromReference": (c_int, [c_int, c_wchar_p, p_int]),
    "KPCB_GetPinPitch": (c_int, [c_int, c_wchar_p, c_int, p_double]),
    "KPCB_GetPinPitchFrom2PinComponent": (c_int, [c_int, c_wchar_p, c_int, p_double]),
    "KPCB_GetReferencePlaceStatus": (c_int, [c_int, c_wchar_p, p_int, c_int]),
    "KPCB_GetReferenceCountForPlace": (c_int, [c_int, c_wchar_p, c_wchar_p, p_int, p_int, p_int, c_int]),
    "KPCB_GetReferenceCountForPlaceOfPart": (c_int, [c_int, c_wchar_p, c_wchar_p, p_int, p_int, p_int, c_int]),
    "KPCB_GetPinListInfoOfNet_RefPin": (c_int, [c_int, c_wchar_p, c_wchar_p, p_wide_out, p_wide_out, c_wchar_p]),
    # polygon merge
    "KPCB_PolygonMergeCreate": (c_int, [c_int]),
    "KPCB_PolygonMergeRun": (c_int, [c_int, p_wide_list, c_int, c_wchar_p, c_double]),
    "KPCB_PolygonMergeDestroy": (c_int, [c_int]),
    "KPCB_GetCWPolygonCount": (c_int, [c_int]),
    "KPCB_GetCCWPolygonCount": (c_int, [c_int, c_int]),
    "KPCB_GetCWPolygonPointCount": (c_int, [c_int, c_int]),
    "KPCB_GetCCWPolygonPointCount": (c_int, [c_int, c_int, c_int]),
    "KPCB_GetCWPolygonPointData": (c_int, [c_int, c_int, c_int, p_double, p_double]),
    "KPCB_GetCCWPolygonPointData": (c_int, [c_int, c_int, c_int, c_int, p_double, p_double]),
    "KPCB_GetCWPolygonPointDataArray": (c_int, [c_int, c_int, p_array, p_array]),
    "KPCB_GetCCWPolygonPointDataArray": (c_int, [c_int, c_int, c_int, p_array, p_array]),
    "KPCB_ArrayD_Create": (p_array, []),
    "KPCB_ArrayD_Free": (None, [p_array]),
    "KPCB_ArrayD_GetSize": (c_int, [p_array]),
    "KPCB_ArrayD_GetData": (c_int, [p_array, p_double, c_int]),
    # capture and export
    "KPCB_ExportBitmap_CurrentImage": (c_int, [c_int, c_char_p]),
    "KPCB_ExportPDBAscii": (c_int, [c_int, c_char_p]),
    # status text and freeing results
    "KPCB_GetStatusText": (c_char_p, [c_int]),
    "KPCB_FreeString": (None, [c_void_p]),
    # waiting for answers
    "KPCB_SetReplyTimeout": (None, [c_int]),
    "KPCB_KeepConnections": (c_int, [c_int]),
    # design extraction
    "KPCB_ExtractPdbbFromAllegro": (c_int, [c_wchar_p, c_wchar_p, c_char, c_wchar_p, c_wchar_p]),
    "KPCB_ExtractPdbbFromBoardDesigner": (c_int, [c_wchar_p, c_wchar_p, c_char, c_char, c_wchar_p, c_wchar_p,
                                                  c_wchar_p, c_wchar_p]),
    "KPCB_ExtractPdbbFromMentor": (c_int, [c_wchar_p, c_wchar_p, c_int, c_wchar_p]),
    "KPCB_ExtractPdbbFromZuken": (c_int, [c_wchar_p, c_wchar_p, c_char, c_wchar_p]),
    "ExtractPdbbFromArgumentList": (c_int, [c_int, ctypes.POINTER(c_char_p)]),
}


# ---- Finding the library ----------------------------------------------------

def _repo_root(package_dir):
    """The source tree that holds this package (bindings/python/kpcb), or None."""
    root = os.path.dirname(os.path.dirname(os.path.dirname(package_dir)))
    if os.path.isfile(os.path.join(root, "include", "KPCBAPI.h")):
        return root
    return None


def _needs_missing_sanitizer(path):
    """True for a library built with AddressSanitizer when this process does not
    run the sanitizer's runtime: loading it would end the process."""
    try:
        with open(path, "rb") as f, mmap.mmap(f.fileno(), 0, access=mmap.ACCESS_READ) as data:
            if data.find(b"__asan_init") < 0:
                return False
    except (OSError, ValueError):
        return False
    return not hasattr(ctypes.CDLL(None), "__asan_init")


def find_library(environ=None, package_dir=PACKAGE_DIR):
    """The path of the KPCBAPI library, looked for in this order:

    1. the environment variable KPCB_LIBRARY: the library file itself, or a
       folder that holds it (an error when it names neither);
    2. beside the package: in the package folder, then in the folder above it;
    3. in the build tree of the source checkout: build/*/bin/, the most
       recently built first, passing over sanitizer builds (they load only into
       a process that runs the sanitizer's runtime);
    4. where an installation puts it: the lib (Windows: bin) folder of this
       Python's prefix, of /usr/local and of /usr, then wherever the system's
       loader finds it by name.
    """
    environ = os.environ if environ is None else environ
    named = environ.get(LIBRARY_ENV)
    if named:
        if os.path.isdir(named):
            candidate = os.path.join(named, LIBRARY_NAME)
            if os.path.isfile(candidate):
                return os.path.abspath(candidate)
            raise LibraryNotFoundError("%s=%s: the folder holds no %s" % (LIBRARY_ENV, named, LIBRARY_NAME))
        if os.path.isfile(named):
            return os.path.abspath(named)
        raise LibraryNotFoundError("%s=%s: no such file or folder" % (LIBRARY_ENV, named))

    for folder in (package_dir, os.path.dirname(package_dir)):
        candidate = os.path.join(folder, LIBRARY_NAME)
        if os.path.isfile(candidate):
            return candidate

    root = _repo_root(package_dir)
    if root:
        built = glob.glob(os.path.join(root, "build", "*", "bin", LIBRARY_NAME))
        for candidate in sorted(built, key=os.path.getmtime, reverse=True):
            if not _needs_missing_sanitizer(candidate):
                return candidate

    for prefix in (sys.prefix, "/usr/local", "/usr"):
        candidate = os.path.join(prefix, "bin" if sys.platform == "win32" else "lib", LIBRARY_NAME)
        if os.path.isfile(candidate):
            return candidate
    found = ctypes.util.find_library("KPCBAPIDLL")
    if found:
        return found

    raise LibraryNotFoundError(
        "%s not found: set %s to the library (or its folder), put it beside the kpcb package, "
        "install it, or build it in build/<dir>/bin of the source tree" % (LIBRARY_NAME, LIBRARY_ENV))


def declare(dll):
    """Declares the prototypes on a loaded library. A missing function is an error."""
    missing = [name for name in PROTOTYPES if not hasattr(dll, name)]
    if missing:
        raise LibraryNotFoundError("%s lacks %s" % (getattr(dll, "_name", "the library"), ", ".join(missing)))
    for name, (restype, argtypes) in PROTOTYPES.items():
        function = getattr(dll, name)
        function.restype = restype
        function.argtypes = argtypes


def load(path):
    """Loads the library at path and declares its prototypes."""
    if _needs_missing_sanitizer(path):
        raise LibraryNotFoundError("%s is built with AddressSanitizer: load it only in a process that runs "
                                   "the sanitizer's runtime (LD_PRELOAD it)" % path)
    try:
        dll = ctypes.CDLL(path)
    except OSError as error:
        raise LibraryNotFoundError("cannot load %s: %s" % (path, error)) from error
    declare(dll)
    return dll


_lock = threading.Lock()
_dll = None


def library():
    """The process-wide loaded library, loaded on first use."""
    global _dll
    with _lock:
        if _dll is None:
            _dll = load(find_library())
        return _dll
