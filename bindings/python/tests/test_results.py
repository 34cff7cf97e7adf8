"""What queries hand back from the reference viewer: numbers, strings and lists,
points and polygons, the viewer's refusals raised; and the library's allocations
freed."""

import os
import unittest

import support
from support import Reader, kpcb


class CountingLibrary:
    """Stands in for the loaded library: counts the frees, and makes the functions
    named in fail answer -7 (no valid reply)."""

    def __init__(self, dll):
        self._dll = dll
        self.fail = set()
        self.freed_strings = []
        self.created_arrays = []
        self.freed_arrays = []

    def __getattr__(self, name):
        if name in self.fail:
            return lambda *args: -7
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


class ResultsTestCase(support.LiveViewerTestCase):
    def setUp(self):
        self.dll = CountingLibrary(self.viewer._dll)
        self.viewer._dll = self.dll
        self.addCleanup(setattr, self.viewer, "_dll", self.dll._dll)


class BoardResultsTest(ResultsTestCase):
    def test_numbers(self):
        v = self.viewer
        u1_pins = sum(1 for ref, _ in support.board_pins() if ref == "U1")
        self.assertEqual(v.pin_count_of_reference("U1"), u1_pins)
        self.assertEqual(v.pin_count_of_part("ATTINY84A-SSU"), u1_pins)  # U1 is its only component
        self.assertAlmostEqual(v.pin_pitch("U1"), 1.27)
        self.assertAlmostEqual(v.pin_pitch("U1", unit=1), 1.27 / 0.0254)
        self.assertGreater(v.pin_pitch_two_pin("R1", unit=3), 100.0)  # micrometres
        self.assertEqual(v.place_counts(["U1", "U3", "NO SUCH, REF"]), kpcb.PlaceCounts(1, 1, 1))
        self.assertEqual(v.place_counts_of_parts("RES-100K-0603").bottom, 2)
        v.set_red_mark_call_status(42)
        self.assertEqual(v.red_mark_call_status(), 42)

    def test_failure_code_carried_in_a_value_is_raised(self):
        for call, code in [(lambda: self.viewer.pin_count_of_reference("NO_SUCH_REF"), -200),
                           (lambda: self.viewer.pin_pitch_two_pin("U1"), -201),
                           (lambda: self.viewer.pin_pitch("U1", unit=9), -202)]:
            with self.subTest(code=code):
                with self.assertRaises(kpcb.ViewerRefusedError) as caught:
                    call()
                self.assertEqual(caught.exception.code, code)
        with self.assertRaises(kpcb.ViewerRefusedError) as caught:  # with the call's own words
            self.viewer.net_pins("U1", "99")
        self.assertIn("no such pin", caught.exception.meaning)

    def test_texts_and_lists(self):
        v = self.viewer
        ground = sorted("%s-%s" % pin for pin, net in support.board_pins().items() if net == "GND")
        net, pins = v.net_pins("U1", "14")
        self.assertEqual((net, sorted(pins)), ("GND", ground))
        marks = os.path.join(support.WORK_DIR, "marks Ünïcode.txt")
        with open(marks, "w", encoding="utf-8") as f:
            f.write("KPCB RED MARKS 1\nTITLE α short\nCONTENTS U1-14 Δ GND\\nsecond line\n"
                    "TITLE second, with comma\nCONTENTS x\n")
        self.assertEqual(v.load_red_marks(marks), ["α short", "second, with comma"])
        self.assertEqual(v.red_mark_contents("α short"), "U1-14 Δ GND\nsecond line")

    def merge_modes(self):
        return [Reader(payload).number("<i", 4) for name, payload in self.journal_records()
                if name == "CKPRCI_PolygonMerge"]

    def test_polygons_whole_and_point_by_point_agree(self):
        v = self.viewer
        polygons = v.merged_polygons(["TOP"], "GND", 0.1)
        self.assertGreater(len(polygons), 0)
        self.assertTrue(support.wait_for(lambda: self.merge_modes()[-1] == 11), "not destroyed")
        v.merge_create()
        v.merge_run(["TOP"], "GND", 0.1)
        self.assertEqual(v.cw_polygon_count(), len(polygons))
        for cw, (outline, holes) in enumerate(polygons):
            self.assertEqual(v.ccw_polygon_count(cw), len(holes))
            self.assertEqual([v.cw_point(cw, i) for i in range(v.cw_point_count(cw))], outline)
            for ccw, hole in enumerate(holes):
                self.assertEqual([v.ccw_point(cw, ccw, i) for i in range(v.ccw_point_count(cw, ccw))], hole)
        v.merge_destroy()

    def test_merged_polygons_destroys_the_session_when_a_read_fails(self):
        self.dll.fail.add("KPCB_GetCWPolygonPointDataArray")
        with self.assertRaises(kpcb.NoReplyError):
            self.viewer.merged_polygons(["TOP"], "GND", 0.1)
        self.assertTrue(support.wait_for(lambda: self.merge_modes()[-1] == 11), "not destroyed")


class FreeingTest(ResultsTestCase):
    def test_every_string_result_is_freed_once(self):
        self.viewer.net_pins("U1", "14")
        net_and_pins = list(self.dll.freed_strings)
        self.assertEqual(len(net_and_pins), 2)
        self.assertNotIn(None, net_and_pins)
        self.assertNotEqual(net_and_pins[0], net_and_pins[1])
        with self.assertRaises(kpcb.ViewerRefusedError):  # a refused query frees nothing
            self.viewer.red_mark_contents("no such mark")
        self.assertEqual(len(self.dll.freed_strings), 2)

    def test_point_arrays_are_freed_on_success_and_failure(self):
        v = self.viewer
        v.merge_create()
        v.merge_run(["TOP"], "GND", 0.1)
        v.cw_points(0)
        self.dll.fail.add("KPCB_GetCWPolygonPointDataArray")
        with self.assertRaises(kpcb.NoReplyError):
            v.cw_points(0)
        v.merge_destroy()
        self.assertEqual(len(self.dll.created_arrays), 4)
        self.assertEqual(sorted(self.dll.freed_arrays), sorted(self.dll.created_arrays))


if __name__ == "__main__":
    unittest.main()
