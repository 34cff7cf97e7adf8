"""Finding the library, and the declared prototypes against the C header."""

import ctypes
import os
import re
import tempfile
import time
import unittest

import support
from support import kpcb
from kpcb import _library

HEADER = os.path.join(support.REPO_ROOT, "include", "KPCBAPI.h")
# Its C functions; the extraction header's others take C++ strings and are not bound.
EXTRACT_HEADER = os.path.join(support.REPO_ROOT, "include", "KPCBAPIExtract.h")


def touch(path, mtime=None):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb"):
        pass
    if mtime is not None:
        os.utime(path, (mtime, mtime))
    return path


class FindLibraryTest(unittest.TestCase):
    name = _library.LIBRARY_NAME

    def setUp(self):
        self.root = tempfile.mkdtemp(dir=support.WORK_DIR)
        # A source tree: include/KPCBAPI.h, bindings/python/kpcb, two builds.
        touch(os.path.join(self.root, "include", "KPCBAPI.h"))
        self.package = os.path.join(self.root, "bindings", "python", "kpcb")
        os.makedirs(self.package)
        now = time.time()
        self.older = touch(os.path.join(self.root, "build", "a", "bin", self.name), now - 100)
        self.newer = touch(os.path.join(self.root, "build", "b", "bin", self.name), now)

    def find(self, environ=None):
        return _library.find_library(environ or {}, self.package)

    def test_build_tree_newest_first(self):
        self.assertEqual(self.find(), self.newer)
        os.utime(self.older, None)
        os.utime(self.newer, (time.time() - 200,) * 2)
        self.assertEqual(self.find(), self.older)

    @unittest.skipIf(hasattr(ctypes.CDLL(None), "__asan_init"), "this process runs the sanitizer runtime")
    def test_sanitizer_builds_are_passed_over_and_refused(self):
        with open(self.newer, "wb") as f:
            f.write(b"\x7fELF ... __asan_init ...")
        self.assertEqual(self.find(), self.older)
        # Loading one would end the process; named explicitly it is refused instead.
        self.assertEqual(self.find({"KPCB_LIBRARY": self.newer}), self.newer)
        with self.assertRaises(kpcb.LibraryNotFoundError) as caught:
            _library.load(self.newer)
        self.assertIn("AddressSanitizer", str(caught.exception))

    def test_beside_the_package_beats_the_build_tree_and_the_environment_everything(self):
        above = touch(os.path.join(os.path.dirname(self.package), self.name))
        self.assertEqual(self.find(), above)
        inside = touch(os.path.join(self.package, self.name))
        self.assertEqual(self.find(), inside)
        other = touch(os.path.join(self.root, "elsewhere", "custom-name.so"))
        self.assertEqual(self.find({"KPCB_LIBRARY": other}), other)
        self.assertEqual(self.find({"KPCB_LIBRARY": os.path.dirname(self.older)}), self.older)

    def test_nothing_usable_is_an_error(self):
        for value in (os.path.join(self.root, "missing"), os.path.join(self.root, "include")):
            with self.subTest(value=value):
                with self.assertRaises(kpcb.LibraryNotFoundError) as caught:
                    self.find({"KPCB_LIBRARY": value})
                self.assertIn("KPCB_LIBRARY", str(caught.exception))
        lonely = os.path.join(tempfile.mkdtemp(dir=support.WORK_DIR), "kpcb")
        os.makedirs(lonely)
        with self.assertRaises(kpcb.LibraryNotFoundError):
            _library.find_library({}, lonely)


# C parameter types of the header and the ctypes types that stand for them.
C_TYPES = {
    "int": ctypes.c_int,
    "double": ctypes.c_double,
    "unsigned char": ctypes.c_ubyte,
    "char": ctypes.c_char,
    "const char*": ctypes.c_char_p,
    "const char*const*": ctypes.POINTER(ctypes.c_char_p),
    "const wchar_t*": ctypes.c_wchar_p,
    "wchar_t*": ctypes.c_void_p,
    "wchar_t**": ctypes.POINTER(ctypes.c_void_p),
    "const wchar_t**": ctypes.POINTER(ctypes.c_wchar_p),
    "int*": ctypes.POINTER(ctypes.c_int),
    "double*": ctypes.POINTER(ctypes.c_double),
    "const double*": ctypes.POINTER(ctypes.c_double),
    "CArrayD*": ctypes.c_void_p,
    "const CArrayD*": ctypes.c_void_p,
    "void": None,
}


def header_functions(text):
    """name: (result type, [parameter types]) of every function KPCBAPI.h exports."""
    text = re.sub(r"/\*.*?\*/", " ", text, flags=re.S)
    text = re.sub(r"//[^\n]*", " ", text)
    functions = {}
    for result, name, params in re.findall(r"KPCBAPI_EXPORT\s+([\w\s\*]+?)\s*\b(\w+)\s*\(([^)]*)\)\s*;", text):
        types = []
        params = " ".join(params.split())
        if params not in ("", "void"):
            for param in params.split(","):
                param = re.sub(r"\s*\*\s*", "* ", param.strip())
                param = re.sub(r"\s*\w+$", "", param.strip())  # drop the parameter name
                types.append(param.replace("* *", "**").replace("* ", "*").strip())
        functions[name] = (" ".join(result.split()).replace(" *", "*"), types)
    return functions


@unittest.skipUnless(os.path.exists(HEADER), "needs the source tree's include/KPCBAPI.h")
class PrototypesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with open(HEADER) as header:
            cls.functions = header_functions(header.read())
        with open(EXTRACT_HEADER) as header:
            c_only = "\n".join(line[len('extern "C" '):] for line in header if line.startswith('extern "C" '))
            cls.functions.update(header_functions(c_only))

    def test_every_exported_function_is_declared_alike(self):
        declared = _library.PROTOTYPES
        self.assertEqual(sorted(set(self.functions) - set(declared)), [])
        self.assertEqual(sorted(set(declared) - set(self.functions)), [])
        for name, (result, params) in self.functions.items():
            with self.subTest(function=name):
                restype, argtypes = declared[name]
                self.assertIs(restype, C_TYPES[result])
                self.assertEqual(argtypes, [C_TYPES[p] for p in params])


if __name__ == "__main__":
    unittest.main()
