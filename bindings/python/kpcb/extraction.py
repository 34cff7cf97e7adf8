"""Design extraction: ECAD design data to a board database file (.pdbb), inside
this process, through the format's importer plug-in. No viewer is involved.

Each function returns the path of the folder or file it was asked to write to and
raises ExtractionError when the library reports a failure."""

import ctypes
import os

from . import _library
from .errors import KpcbError

REFUSED = 2
NO_BOARD = 3
SAVE_FAILED = 4

MEANINGS = {
    REFUSED: "the arguments were refused (the API log says why)",
    NO_BOARD: "the importer returned no board database (or there is no importer for the format)",
    SAVE_FAILED: "saving the board database failed",
}


class ExtractionError(KpcbError):
    """An extraction failed: code 2, 3 or 4."""

    def __init__(self, code, function=None):
        super().__init__(code, MEANINGS.get(int(code), "extraction result %d" % int(code)), function)


def _letter(value, what):
    if not isinstance(value, str) or len(value) != 1 or ord(value) > 127:
        raise ValueError("%s must be one ASCII letter" % what)
    return value.encode("ascii")


def _text(value, what):
    if value is None:
        return None
    if not isinstance(value, str):
        raise TypeError("%s must be a string" % what)
    return value


def _check(result, function):
    if result != 0:
        raise ExtractionError(result, function)


def extract_allegro(save_folder, design, kind, extra1="", extra2=""):
    """Allegro: kind "a" for .brd/.pad/.rte/.sym files beside design, "b" for one
    .brd with extra1 and extra2 for the importer. Writes <save_folder>/<name>.pdbb."""
    dll = _library.library()
    _check(dll.KPCB_ExtractPdbbFromAllegro(_text(save_folder, "save_folder"), _text(design, "design"),
                                           _letter(kind, "kind"), _text(extra1, "extra1"), _text(extra2, "extra2")),
           "KPCB_ExtractPdbbFromAllegro")
    return save_folder


def extract_board_designer(save_folder, design, first, second, *options):
    """Zuken Board Designer: first "a"/"b", second "s"/"a" (an uppercase "S" adds no
    switch), up to four option strings. Writes <save_folder>/<name>.pdbb."""
    if len(options) > 4:
        raise ValueError("at most four option strings")
    padded = [_text(o, "option") for o in options] + [""] * (4 - len(options))
    dll = _library.library()
    _check(dll.KPCB_ExtractPdbbFromBoardDesigner(_text(save_folder, "save_folder"), _text(design, "design"),
                                                 _letter(first, "first"), _letter(second, "second"), *padded),
           "KPCB_ExtractPdbbFromBoardDesigner")
    return save_folder


def extract_mentor(output_file, design_folder, all_layers=False):
    """Mentor BoardStation: reads design_folder, writes output_file's folder/name.pdbb;
    all_layers asks for the /A read mode."""
    dll = _library.library()
    _check(dll.KPCB_ExtractPdbbFromMentor(_text(output_file, "output_file"), _text(design_folder, "design_folder"),
                                          1 if all_layers else 0, ""),
           "KPCB_ExtractPdbbFromMentor")
    return output_file


def extract_zuken(output_file, design, letter, zls_file=""):
    """Zuken CR5000 PWS: letter "a" or "w" selects the read mode; zls_file is passed
    on when it exists. Writes <folder of output_file>/<design name>.pdbb."""
    dll = _library.library()
    _check(dll.KPCB_ExtractPdbbFromZuken(_text(output_file, "output_file"), _text(design, "design"),
                                         _letter(letter, "letter"), _text(zls_file, "zls_file")),
           "KPCB_ExtractPdbbFromZuken")
    return output_file


def extract(format_key, *arguments, caller="From_KAPI"):
    """Any format from its argument list, as on a command line: the format key
    ("ODB", "M", ...; a leading "/" is added when missing) and the arguments that
    follow it. For ODB++: extract("ODB", job, save_folder, name, "/S:pcb", ...)
    writes <save_folder>/<name>.pdbb. Calls ExtractPdbbFromArgumentList."""
    key = _text(format_key, "format_key")
    texts = [_text(caller, "caller"), key if key.startswith("/") else "/" + key]
    texts += [_text(a, "argument") for a in arguments]
    encoded = (ctypes.c_char_p * len(texts))(*[(t or "").encode("utf-8") for t in texts])
    _check(_library.library().ExtractPdbbFromArgumentList(len(texts), encoded), "ExtractPdbbFromArgumentList")


def extract_odb(job, save_folder, name, step=None, unit=None, layers=None, threads=None, skip_misc=False,
                drill_to_via=None):
    """An ODB++ job (folder or archive) into <save_folder>/<name>.pdbb, which is
    returned. step: the step to read (default the first); unit "mm", "inch" or
    "mil" is checked but the file is always in millimetres; layers: matrix layer
    names to read; threads: layers read in parallel; drill_to_via: whether a hole
    at no pin becomes a via."""
    switches = []
    if step:
        switches.append("/S:" + step)
    if unit:
        switches.append("/U:" + unit)
    if layers:
        switches.append("/LAY_FILTER:" + ",".join(layers))
    if threads:
        switches.append("/THREAD:%d" % int(threads))
    if skip_misc:
        switches.append("/SKIP_MISC")
    if drill_to_via is not None:
        switches.append("/DRILL_TO_VIA:" + ("yes" if drill_to_via else "no"))
    extract("ODB", job, save_folder, name, *switches)
    return os.path.join(save_folder, name + ".pdbb")


def extract_ipc2581(file, save_folder, name):
    """An IPC-2581 file (revision B or C) into <save_folder>/<name>.pdbb, which is
    returned. save_folder must exist."""
    extract("IPC", file, save_folder, name)
    return os.path.join(save_folder, name + ".pdbb")
