"""Shared pieces of the binding's tests: the environment, a board file, and a
reference viewer launched on it whose journal shows what reached it."""

import atexit
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
PACKAGE_ROOT = os.path.dirname(HERE)  # bindings/python
REPO_ROOT = os.path.dirname(os.path.dirname(PACKAGE_ROOT))
# KPCB_TEST_INSTALLED=1 tests the package that pip installed instead of the sources.
if os.environ.get("KPCB_TEST_INSTALLED") != "1" and PACKAGE_ROOT not in sys.path:
    sys.path.insert(0, PACKAGE_ROOT)

import kpcb  # noqa: E402

# Every test run keeps the API log and its files in its own folder.
WORK_DIR = tempfile.mkdtemp(prefix="kpcb-python-tests-")
atexit.register(shutil.rmtree, WORK_DIR, True)
os.environ.setdefault("KPCB_DATA_DIR", os.path.join(WORK_DIR, "data"))

# A viewer that stops answering fails its test instead of hanging the run.
kpcb.set_reply_timeout(60)


def library_dir():
    return os.path.dirname(kpcb.find_library())


_board = None


def board_file():
    """The board the tests run on, in the text form: KPCB_TEST_BOARD, the sample
    board, or one made by kpcb_boardgen beside the library."""
    global _board
    if _board:
        return _board
    named = os.environ.get("KPCB_TEST_BOARD")
    sample = os.path.join(REPO_ROOT, "samples", "demo_board.pdbba")
    generator = os.path.join(library_dir(), "kpcb_boardgen")
    if named:
        _board = named
    elif os.path.exists(sample):
        _board = sample
    elif os.access(generator, os.X_OK):
        _board = os.path.join(WORK_DIR, "board.pdbba")
        subprocess.run([generator, "12", _board], check=True, stdout=subprocess.DEVNULL)
    else:
        raise unittest.SkipTest("no board: set KPCB_TEST_BOARD to a board in the text form")
    return _board


def board_pins():
    """{(reference, pin): net} of the board's text form ("" for a pin on no net)."""
    pins, ref = {}, None
    with open(board_file(), encoding="utf-8") as f:
        for line in f:
            words = line.split()
            if words[:1] == ["COMP"]:
                ref = words[1]
            elif words[:1] == ["PIN"] and ref:
                pins[(ref, words[1])] = words[-1].strip('"')
            elif not words:
                ref = None
    return pins


def wait_for(predicate, timeout=10.0):
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline:
        value = predicate()
        if value:
            return value
        time.sleep(0.02)
    return predicate()


class Reader:
    """Reads the fields of a record's payload (little-endian, short forms only)."""

    def __init__(self, payload):
        self.data, self.at = payload, 0

    def take(self, n):
        chunk = self.data[self.at:self.at + n]
        if len(chunk) != n:
            raise ValueError("payload too short")
        self.at += n
        return chunk

    def number(self, form, size):
        return struct.unpack(form, self.take(size))[0]

    def cstring(self):
        n = self.take(1)[0]
        assert n != 0xFF, "long string"
        return self.take(n).decode("utf-8")

    def fields(self, layout):
        """Reads fields by letter: i int, u unsigned, d double, s string, l list of
        strings; the whole payload must be used."""
        read = {"i": lambda: self.number("<i", 4), "u": lambda: self.number("<I", 4),
                "d": lambda: self.number("<d", 8), "s": self.cstring,
                "l": lambda: [self.cstring() for _ in range(self.number("<H", 2))]}
        values = tuple(read[letter]() for letter in layout)
        if self.at != len(self.data):
            raise ValueError("%d bytes left after the fields %r" % (len(self.data) - self.at, layout))
        return values


class LiveViewerTestCase(unittest.TestCase):
    """Runs its tests against one reference viewer, launched hidden on the board
    with its journal on."""

    @classmethod
    def setUpClass(cls):
        cls.journal = os.path.join(tempfile.mkdtemp(dir=WORK_DIR), "journal.txt")
        os.environ["KPCB_VIEWER_JOURNAL"] = cls.journal
        try:
            cls.viewer = kpcb.Viewer.launch(board_file(), hide=True)
        finally:
            del os.environ["KPCB_VIEWER_JOURNAL"]

    @classmethod
    def tearDownClass(cls):
        cls.viewer.exit()

    def journal_records(self):
        """(class name, payload after the class id) of every record received; the
        second copy of a record sent twice is left out."""
        with open(self.journal, encoding="utf-8") as f:
            lines = [line.rstrip("\n").split("\t") for line in f]
        return [(fields[2], bytes.fromhex(fields[3])[4:]) for fields in lines
                if fields[1] != "-" and fields[4:] != ["second copy answered"]]

    def sent_by(self, action, *layouts):
        """Runs action and returns what it sent, as (class name, fields) per record,
        the fields of each read by the matching layout of Reader.fields."""
        before = len(self.journal_records())
        action()
        # The viewer serves in order: once a query is answered, all is in.
        self.viewer.red_mark_call_status()
        records = self.journal_records()[before:-1]
        self.assertEqual(len(records), len(layouts), [name for name, _ in records])
        return [(name, Reader(payload).fields(layout)) for (name, payload), layout in zip(records, layouts)]
