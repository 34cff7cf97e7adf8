"""Results with real values, from a fake viewer that answers like one with a
board loaded: strings and lists, counts, points and polygons; and the library's
allocations freed."""

import os
import unittest

import support
from support import FakeViewer, cstring, f64, i32, kpcb, merge_reply, strings

# Two outlines: a square with a triangular hole, and a bare triangle.
OUTLINES = [
    ([(0.0, 0.0), (10.0, 0.0), (10.0, 10.0), (0.0, 10.0)], [[(2.0, 2.0), (4.0, 2.0), (3.0, 4.5)]]),
    ([(20.0, 0.0), (25.5, 0.0), (20.0, -5.25)], []),
]


def xy(points):
    return [p[0] for p in points], [p[1] for p in points]


def board_answer(class_id, reader):
    if class_id == 18:  # pin count: function type, name
        function, name = reader.i32(), reader.cstring()
        return i32(0) + i32({"P-14": 14, "U1": 8}[name] + 1000 * function)
    if class_id == 17:  # pin pitch
        function, _, unit = reader.i32(), reader.cstring(), reader.i32()
        return i32(0) + f64(1.27 if unit == 0 else 0.05 + function)
    if class_id == 14:  # place status
        return i32(0) + i32(2)
    if class_id in (15, 16):  # place counts
        names = reader.strings()
        return i32(0) + i32(len(names)) + i32(1) + i32(class_id)
    if class_id == 19:  # net pins; the library trims the net name on the right
        return i32(0) + cstring("GND  ") + strings(["U1-1", "C3-2", "J1-GND pin"])
    if class_id == 22:  # red-mark contents
        return i32(0) + cstring("Δ contents for " + reader.cstring())
    if class_id == 21:  # red-mark load
        reader.i32(), reader.i32(), reader.cstring()
        return i32(0) + strings(["α", "second, with comma", "third"])
    if class_id == 24:  # calling status
        return i32(0) + i32(42)
    if class_id == 28:
        return merge_answer(reader)
    return None


def merge_answer(reader):
    mode = reader.i32()
    reader.strings(), reader.cstring(), reader.f64()
    cw, ccw, point = reader.i32(), reader.i32(), reader.i32()
    if mode in (1, 2):
        return merge_reply(0, mode)
    if mode == 11:
        return None
    if mode == 3:
        return merge_reply(0, mode, cw_count=len(OUTLINES))
    outline, holes = OUTLINES[cw]
    fields = dict(ccw_count=len(holes), cw_points=len(outline))
    if mode == 7:
        fields["point"] = outline[point]
    if mode == 9:
        fields["cw_xy"] = xy(outline)
    if mode in (6, 8, 10):
        fields["ccw_points"] = len(holes[ccw])
    if mode == 8:
        fields["point"] = holes[ccw][point]
    if mode == 10:
        fields["ccw_xy"] = xy(holes[ccw])
    return merge_reply(0, mode, **fields)


class CountingLibrary:
    """Stands in for the loaded library and counts the frees."""

    def __init__(self, dll):
        self._dll = dll
        self.freed_strings = []
        self.created_arrays = []
        self.freed_arrays = []

    def __getattr__(self, name):
        return getattr(self._dll, name)

    def KPCB_FreeString(self, pointer):
        self.freed_strings.append(pointer.value)
        self._dll.KPCB_FreeString(pointer)

    def KPCB_ArrayD_Create(self):
        array = self._dll.KPCB_ArrayD_Create()
        self.created_arrays.append(array)
        return array

    def KPCB_ArrayD_Free(self, array):
        self.freed_arrays.append(array)
        self._dll.KPCB_ArrayD_Free(array)


class FakeBoardTestCase(unittest.TestCase):
    def setUp(self):
        self.fake = FakeViewer(board_answer)
        self.viewer = self.fake.__enter__()
        self.addCleanup(self.fake.__exit__, None, None, None)


class BoardResultsTest(FakeBoardTestCase):

    def test_numbers(self):
        v = self.viewer
        self.assertEqual(v.pin_count_of_part("P-14"), 1014)
        self.assertEqual(v.pin_count_of_reference("U1"), 8)
        self.assertEqual(v.pin_pitch("U1"), 1.27)
        self.assertEqual(v.pin_pitch_two_pin("R1", unit=1), 1.05)
        self.assertEqual(v.place_status("U1"), 2)
        self.assertEqual(v.place_counts(["U1", "U2", "U 3"]), kpcb.PlaceCounts(3, 1, 15))
        self.assertEqual(v.place_counts_of_parts("P1").other, 16)
        self.assertEqual(v.red_mark_call_status(), 42)

    def test_failure_code_carried_in_a_value_is_raised(self):
        for code in (-200, -201, -202):
            with self.subTest(code=code):
                self.fake.answer = lambda class_id, reader: i32(code) + (f64(code) if class_id == 17 else i32(code))
                with self.assertRaises(kpcb.ViewerRefusedError) as caught:
                    self.viewer.pin_pitch("U1", unit=9)
                self.assertEqual(caught.exception.code, code)
                with self.assertRaises(kpcb.ViewerRefusedError):
                    self.viewer.place_status("U1")
        self.fake.answer = lambda class_id, reader: i32(0) + i32(-1)
        self.assertEqual(self.viewer.pin_count_of_reference("U1"), -1)  # no failure code: a value

    def test_texts_and_lists(self):
        v = self.viewer
        self.assertEqual(v.net_pins("U1", "1"), kpcb.NetPins("GND", ["U1-1", "C3-2", "J1-GND pin"]))
        self.assertEqual(v.red_mark_contents("Ünïcode"), "Δ contents for Ünïcode")
        marks = os.path.join(support.WORK_DIR, "marks-for-fake")
        open(marks, "w").close()  # the library looks for the file first
        self.assertEqual(v.load_red_marks(marks), ["α", "second, with comma", "third"])

    def test_polygon_points_one_by_one_and_whole(self):
        v = self.viewer
        v.merge_create()
        v.merge_run(["TOP"], "GND", 0.1)
        self.assertEqual(v.cw_polygon_count(), 2)
        self.assertEqual([v.ccw_polygon_count(cw) for cw in range(2)], [1, 0])
        self.assertEqual(v.cw_point_count(1), 3)
        self.assertEqual(v.ccw_point_count(0, 0), 3)
        self.assertEqual(v.cw_point(1, 2), (20.0, -5.25))
        self.assertEqual(v.ccw_point(0, 0, 2), (3.0, 4.5))
        self.assertEqual(v.cw_points(0), OUTLINES[0][0])
        self.assertEqual(v.ccw_points(0, 0), OUTLINES[0][1][0])
        v.merge_destroy()

    def test_merged_polygons_reads_the_whole_session(self):
        polygons = self.viewer.merged_polygons(["TOP", "L2"], "GND", 0.1)
        self.assertEqual(polygons, [kpcb.Polygon(*o) for o in OUTLINES])
        self.assertTrue(support.wait_for(lambda: self.merge_modes()[-1] == 11), "not destroyed")
        self.assertEqual(self.merge_modes()[:2], [1, 2])

    def merge_modes(self):
        return [support.Reader(payload[4:]).i32() for class_id, payload in self.fake.requests if class_id == 28]

    def test_merged_polygons_destroys_the_session_when_a_read_fails(self):
        calls = []

        def failing(class_id, reader):
            calls.append(class_id)
            return b"" if len(calls) == 3 else board_answer(class_id, reader)

        self.fake.answer = failing
        with self.assertRaises(kpcb.NoReplyError):
            self.viewer.merged_polygons(["TOP"], "GND", 0.1)
        self.assertTrue(support.wait_for(lambda: self.merge_modes()[-1] == 11), "not destroyed")


class FreeingTest(FakeBoardTestCase):
    def setUp(self):
        super().setUp()
        self.counting = CountingLibrary(self.viewer._dll)
        self.viewer._dll = self.counting

    def test_every_string_result_is_freed_once(self):
        self.viewer.net_pins("U1", "1")
        net_and_pins = list(self.counting.freed_strings)
        self.assertEqual(len(net_and_pins), 2)
        self.assertNotIn(None, net_and_pins)
        self.assertNotEqual(net_and_pins[0], net_and_pins[1])
        self.viewer.red_mark_contents("x")
        self.assertEqual(len(self.counting.freed_strings), 3)
        # A refused query frees nothing.
        self.fake.answer = lambda class_id, reader: i32(-200) + cstring("")
        with self.assertRaises(kpcb.ViewerRefusedError):
            self.viewer.red_mark_contents("missing")
        self.assertEqual(len(self.counting.freed_strings), 3)

    def test_point_arrays_are_freed_on_success_and_failure(self):
        self.viewer.cw_points(0)
        self.fake.answer = lambda class_id, reader: b"\0"
        with self.assertRaises(kpcb.NoReplyError):
            self.viewer.ccw_points(0, 0)
        self.assertEqual(len(self.counting.created_arrays), 4)
        self.assertEqual(sorted(self.counting.freed_arrays), sorted(self.counting.created_arrays))


if __name__ == "__main__":
    unittest.main()
