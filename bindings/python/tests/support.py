"""Shared pieces of the binding's tests: the environment, a board file, and a
fake viewer that answers from inside the test process."""

import atexit
import os
import shutil
import socket
import struct
import subprocess
import sys
import tempfile
import threading
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

# A fault in a test's fake viewer fails that test instead of hanging the run.
REPLY_TIMEOUT = 60
kpcb.set_reply_timeout(REPLY_TIMEOUT)


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


def wait_for(predicate, timeout=10.0):
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline:
        value = predicate()
        if value:
            return value
        time.sleep(0.02)
    return predicate()


# ---- archive images (little-endian, as the library writes them) ---------------

def i32(value):
    return struct.pack("<i", value)


def f64(value):
    return struct.pack("<d", value)


def cstring(text):
    """A string of fewer than 255 bytes, the only length the tests use."""
    data = text.encode("utf-8")
    assert len(data) < 0xFF
    return bytes([len(data)]) + data


def count(n):
    assert n < 0xFFFF
    return struct.pack("<H", n)


def strings(items):
    return count(len(items)) + b"".join(cstring(s) for s in items)


def doubles(values):
    return count(len(values)) + b"".join(f64(v) for v in values)


class Reader:
    """Reads the fields of a command payload."""

    def __init__(self, payload):
        self.data, self.at = payload, 0

    def take(self, n):
        chunk = self.data[self.at:self.at + n]
        if len(chunk) != n:
            raise ValueError("payload too short")
        self.at += n
        return chunk

    def i32(self):
        return struct.unpack("<i", self.take(4))[0]

    def f64(self):
        return struct.unpack("<d", self.take(8))[0]

    def count(self):
        n = struct.unpack("<H", self.take(2))[0]
        assert n != 0xFFFF, "long count"
        return n

    def cstring(self):
        n = self.take(1)[0]
        assert n != 0xFF, "long string"
        return self.take(n).decode("utf-8")

    def strings(self):
        return [self.cstring() for _ in range(self.count())]

    def u32(self):
        return struct.unpack("<I", self.take(4))[0]

    def fields(self, layout):
        """Reads fields by letter: i int, u unsigned, d double, s string, l list of
        strings; the whole payload must be used."""
        read = {"i": self.i32, "u": self.u32, "d": self.f64, "s": self.cstring, "l": self.strings}
        values = tuple(read[letter]() for letter in layout)
        if self.at != len(self.data):
            raise ValueError("%d bytes left after the fields %r" % (len(self.data) - self.at, layout))
        return values


def command_slot_name(pid):
    return "\\\\.\\mailslot\\KPCB\\RCIMR\\%d" % pid


def reply_slot_name(pid):
    return "\\\\.\\mailslot\\KAPI\\RCIMR\\%d" % pid


def slot_address(name):
    return b"\0" + name.encode("ascii")


class FakeViewer:
    """Owns the command slot of this test process's own id, so that
    kpcb.Viewer(os.getpid()) talks to it (the process runs, so the library's
    liveness test passes). answer(class_id, reader) gives the reply payload to
    send back, or None for a command that is not answered; every frame received
    is kept in .requests as (class id, payload)."""

    def __init__(self, answer):
        self.answer = answer
        self.pid = os.getpid()
        self.requests = []
        self._pending = None
        self._stop = threading.Event()
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self._socket.bind(slot_address(command_slot_name(self.pid)))
        self._socket.settimeout(0.05)
        self._thread = threading.Thread(target=self._serve, daemon=True)

    def __enter__(self):
        self._thread.start()
        return kpcb.Viewer(self.pid)

    def __exit__(self, *exc):
        self._stop.set()
        self._thread.join()
        self._socket.close()
        return False

    def _receive(self):
        while not self._stop.is_set():
            try:
                return self._socket.recv(1 << 20)
            except socket.timeout:
                continue
        return None

    def _serve(self):
        while True:
            prefix = self._receive()
            if prefix is None:
                return
            if len(prefix) != 4:
                continue
            length = struct.unpack("<I", prefix)[0]
            payload = self._receive() if length else b""
            if payload is None:
                return
            class_id = struct.unpack("<i", payload[:4])[0] if len(payload) >= 4 else -1
            self.requests.append((class_id, payload))
            if arrives_twice(payload):
                # The library sends these twice, the first copy before its reply
                # slot exists: answer the second.
                first, self._pending = self._pending != payload, payload
                if first:
                    continue
                self._pending = None
            reply = self.answer(class_id, Reader(payload[4:]))
            if reply is not None:
                send_frame(reply_slot_name(self.pid), reply)


def arrives_twice(payload):
    """Highlights, net sections and the calling-status question come twice."""
    class_id = payload[:4]
    return class_id in (i32(3), i32(6)) or (class_id == i32(24) and payload[4:8] == i32(1))


def send_frame(slot, payload):
    """Sends one frame (length, then payload) to a slot; quietly nothing when the
    slot does not exist (a copy of a request sent before its reply slot was made)."""
    out = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
    try:
        out.connect(slot_address(slot))
        out.send(struct.pack("<I", len(payload)))
        if payload:
            out.send(payload)
    except OSError:
        pass
    finally:
        out.close()


def answer_every_query(code, *fields):
    """An answer function: every request gets the reply code with fields."""
    return lambda class_id, reader: i32(code) + b"".join(fields)


def merge_reply(code, mode=0, cw_count=0, ccw_count=0, cw_points=0, ccw_points=0, point=(0.0, 0.0),
                cw_xy=((), ()), ccw_xy=((), ())):
    """The image of a polygon-merge reply."""
    return (i32(code) + i32(mode) + i32(cw_count) + i32(ccw_count) + i32(cw_points) + i32(ccw_points) +
            f64(point[0]) + f64(point[1]) + doubles(cw_xy[0]) + doubles(cw_xy[1]) + doubles(ccw_xy[0]) +
            doubles(ccw_xy[1]))
