"""Every command and query group against the reference viewer. The viewer's
journal shows what reached it, so each test checks that a method sent the right
command with its arguments converted as they should be."""

import os
import unittest

import support
from support import ViewerTestCase, kpcb


class LaunchAndExitTest(unittest.TestCase):
    def test_context_manager_closes_the_viewer(self):
        with kpcb.Viewer.launch(support.board_file(), hide=True) as viewer:
            self.assertGreater(viewer.pid, 0)
            self.assertTrue(viewer.is_running())
            self.assertTrue(kpcb.is_running(viewer.pid))
        self.assertFalse(viewer.is_running())

    def test_context_manager_closes_the_viewer_when_the_block_raises(self):
        with self.assertRaises(ZeroDivisionError):
            with kpcb.Viewer.launch(support.board_file(), hide=True) as viewer:
                1 / 0
        self.assertFalse(viewer.is_running())

    def test_visible_launch_and_exit_without_waiting(self):
        viewer = kpcb.Viewer.launch(support.board_file())
        viewer.exit(wait=False)  # the library's -2 is no failure here
        self.assertTrue(support.wait_for(lambda: not viewer.is_running()))

    def test_exit_twice_reports_not_running_and_leaving_the_block_tolerates_it(self):
        with kpcb.Viewer.launch(support.board_file(), hide=True) as viewer:
            viewer.exit()
            with self.assertRaises(kpcb.NotRunningError) as caught:
                viewer.exit()
            self.assertEqual(caught.exception.code, -4)
            self.assertEqual(caught.exception.function, "KPCB_Exit")

    def test_two_viewers_side_by_side_are_addressed_by_their_own_pid(self):
        with kpcb.Viewer.launch(support.board_file(), hide=True) as first, \
                kpcb.Viewer.launch(support.board_file(), hide=True) as second:
            self.assertNotEqual(first.pid, second.pid)
            first.set_red_mark_call_status(11)
            second.set_red_mark_call_status(22)
            self.assertEqual(first.red_mark_call_status(), 11)
            self.assertEqual(second.red_mark_call_status(), 22)

    def test_launch_accepts_a_path_object(self):
        import pathlib
        with kpcb.Viewer.launch(pathlib.Path(support.board_file()), hide=True) as viewer:
            self.assertTrue(viewer.is_running())


class ViewControlTest(ViewerTestCase):
    def test_simple_commands(self):
        v = self.viewer
        notes = self.notes_of(lambda: [v.zoom_in(), v.zoom_out(), v.zoom_fit(), v.view_top(), v.view_bottom(),
                                       v.view_all(), v.mirror(), v.clear_mirror()])
        self.assertEqual(notes, ["zoom in", "zoom out", "fit", "side top", "side bottom", "side all", "mirror",
                                 "mirror clear"])

    def test_area_rotation_and_window(self):
        v = self.viewer
        notes = self.notes_of(lambda: [v.zoom_area(1, 2.5, -3, 4e3), v.rotate(-90.5),
                                       v.set_window_position(10, 20, 800, 600)])
        self.assertEqual(notes, ["zoom area 1 2.5 -3 4000", "rotate -90.5", "window 10 20 800 600"])

    def test_title_reaches_the_viewer_in_utf8(self):
        notes = self.notes_of(lambda: self.viewer.set_title("Board – Prüfung"))
        self.assertEqual(notes, ["title Board – Prüfung"])

    def test_switches_send_one_and_zero(self):
        v = self.viewer
        notes = self.notes_of(lambda: [v.show_components(False), v.show_routes(), v.picking_tool(True),
                                       v.red_mark_tool(False), v.show_minimap(on=1)])
        self.assertEqual(notes, ["object 1 on 0", "object 2 on 1", "tool 1 on 1", "tool 2 on 0", "tool 3 on 1"])


class HighlightTest(ViewerTestCase):
    def test_names_become_a_list(self):
        entries = self.entries_of(lambda: self.viewer.highlight(1, ["GND", "NET,WITH,COMMAS", "  VCC  "]))
        _, payload, _ = entries[0]
        record = support.Reader(payload)
        self.assertEqual([record.i32() for _ in range(3)], [3, 0, 1])  # class id, plain highlight, kind
        # Commas are no separators for the binding; blanks round a name are trimmed.
        self.assertEqual(record.strings(), ["GND", "NET,WITH,COMMAS", "VCC"])

    def test_one_string_is_one_name(self):
        notes = self.notes_of(lambda: self.viewer.highlight_color(0, "U 1", (1, 2, 3)))
        self.assertEqual(notes[0], "highlight kind 0 U 1")

    def test_color_variants(self):
        v = self.viewer
        notes = self.notes_of(lambda: [v.highlight_color(0, ["A"], (255, 0, 0), contrast=3),
                                       v.highlight_color_all_layers(2, ["B"], (0, 255, 0)),
                                       v.highlight_on_layers(1, ["C"], (0, 0, 255), ["TOP", "L2"], 1)])
        self.assertEqual([n for n in notes if n != "second copy answered"],
                         ["highlight kind 0 A", "highlight kind 2 B", "highlight kind 1 C"])

    def test_pins_section_color_and_clear(self):
        v = self.viewer
        notes = self.notes_of(lambda: [v.highlight_pins("U1", ["1", "A2"], (0, 128, 0)),
                                       v.highlight_pins("U2", "7", (0, 128, 0), zoom=True),
                                       v.zoom_highlight_section("GND", "U1", "1", "U2", "2"),
                                       v.set_highlight_color((0x10, 0x20, 0x40)),
                                       v.clear_highlight()])
        self.assertEqual([n for n in notes if n != "second copy answered"],
                         ["highlight pins U1 1,A2", "highlight pins U2 7", "highlight section GND,U1,1,U2,2",
                          "highlight colour %d" % (0x10 | 0x20 << 8 | 0x40 << 16), "highlight clear 0"])

    def test_kind_outside_range_is_refused_before_sending(self):
        error, sent = self.refused(lambda: self.viewer.highlight(3, ["A"]), kpcb.ViewerRefusedError)
        self.assertEqual(error.code, -200)
        self.assertIn("kind", error.meaning)
        self.assertEqual(sent, [])

    def test_names_and_colors_are_checked_before_anything_is_sent(self):
        with self.assertRaises(ValueError):
            self.viewer.highlight(0, ["A\nB"])
        with self.assertRaises(ValueError):
            self.viewer.highlight(0, ["A\0B"])
        with self.assertRaises(TypeError):
            self.viewer.highlight(0, [1])
        with self.assertRaises(ValueError):
            self.viewer.set_highlight_color((256, 0, 0))
        with self.assertRaises(TypeError):
            self.viewer.set_highlight_color(0xFF)


class LayersTest(ViewerTestCase):
    def test_every_layer_command(self):
        v = self.viewer
        notes = self.notes_of(lambda: [v.show_layers(["TOP", "BOTTOM"], visible=False), v.show_only_layers("TOP"),
                                       v.show_ecad_layers(["E 1"]), v.show_only_ecad_layers(["E2", "E3"])])
        self.assertEqual(notes, ["layers type 2 visible 0 TOP,BOTTOM", "layers type 1 visible 1 TOP",
                                 "layers type 4 visible 1 E 1", "layers type 3 visible 0 E2,E3"])


class RedMarkTest(ViewerTestCase):
    def write_marks(self, name, marks):
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="utf-8") as out:
            out.write("KPCB RED MARKS 1\n")
            for title, contents in marks:
                out.write("TITLE %s\nCONTENTS %s\n" % (title, contents))
        return path

    def test_load_call_up_remove_and_save(self):
        v = self.viewer
        path = self.write_marks("marks.txt", [("First", "check C12"), ("Zweite Prüfung", "R7, R8 ✓")])
        self.assertEqual(v.load_red_marks(path), ["First", "Zweite Prüfung"])
        self.assertEqual(v.red_mark_contents("Zweite Prüfung"), "R7, R8 ✓")

        v.remove_red_mark("First")
        with self.assertRaises(kpcb.ViewerRefusedError) as caught:
            v.red_mark_contents("First")
        self.assertEqual(caught.exception.code, -200)
        with self.assertRaises(kpcb.ViewerRefusedError):
            v.remove_red_mark("First")

        for text in (True, False):
            saved = os.path.join(self.folder, "saved-%s" % text)
            v.save_red_marks(saved, text=text)
            v.red_mark_call_status()  # served in order: the file is written by now
            with open(saved, "rb") as f:
                self.assertEqual(f.read(16) == b"KPCB RED MARKS 1", text)
            self.assertEqual(v.load_red_marks(saved, text=text), ["Zweite Prüfung"])

    def test_loading_a_missing_file_is_refused(self):
        with self.assertRaises(kpcb.ViewerRefusedError) as caught:
            self.viewer.load_red_marks(os.path.join(self.folder, "no such file"))
        self.assertEqual(caught.exception.code, -200)
        self.assertIn("does not exist", str(caught.exception))

    def test_calling_status_round_trip(self):
        for status in (7, 0, -3):
            self.viewer.set_red_mark_call_status(status)
            self.assertEqual(self.viewer.red_mark_call_status(), status)


class InformationTest(ViewerTestCase):
    # The reference viewer answers zero values for now; the conversions of real
    # values are tested against a fake viewer in test_results.
    def test_every_query_answers_with_python_types(self):
        v = self.viewer
        self.assertEqual(v.pin_count_of_part("P1"), 0)
        self.assertEqual(v.pin_count_of_reference("U1"), 0)
        self.assertIsInstance(v.pin_pitch("U1", unit=1), float)
        self.assertIsInstance(v.pin_pitch_two_pin("R1"), float)
        self.assertEqual(v.place_status("U1", highlight=True), 0)
        counts = v.place_counts(["U1", "U2"])
        self.assertEqual(counts, (0, 0, 0))
        self.assertEqual(counts._fields, ("top", "bottom", "other"))
        self.assertEqual(v.place_counts_of_parts("P1"), (0, 0, 0))
        self.assertEqual(v.net_pins("U1", "1"), ("", []))

    def test_queries_carry_their_arguments(self):
        (_, counts, _), (_, pitch, _) = self.entries_of(lambda: [
            self.viewer.place_counts_of_parts(["P1", "P 2,3"], highlight=True),
            self.viewer.pin_pitch_two_pin("Q9", unit=1)])
        counts, pitch = support.Reader(counts), support.Reader(pitch)
        self.assertEqual((counts.i32(), counts.strings(), counts.i32()), (16, ["P1", "P 2,3"], 1))
        self.assertEqual((pitch.i32(), pitch.i32(), pitch.cstring(), pitch.i32()), (17, 1, "Q9", 1))


class PolygonMergeTest(ViewerTestCase):
    def test_session_of_the_reference_viewer(self):
        v = self.viewer
        notes = self.notes_of(lambda: [v.merge_create(), v.merge_run(["L1", "L2"], "GND", 0.5)])
        self.assertEqual(notes, ["merge created", "merge run on GND: L1,L2"])
        self.assertEqual(v.cw_polygon_count(), 0)  # this viewer merges nothing
        self.assertEqual(v.cw_points(0), [])
        self.assertEqual(v.ccw_points(0, 0), [])
        self.assertEqual(v.cw_point(0, 0), (0.0, 0.0))
        v.merge_destroy()
        self.assertEqual(v.merged_polygons("L1", "GND", 1.0), [])

    def test_run_without_layers_is_refused_without_contact(self):
        error, sent = self.refused(lambda: self.viewer.merge_run([], "GND", 0.5), kpcb.ViewerRefusedError)
        self.assertEqual(error.code, -202)
        self.assertEqual(sent, [])


class CaptureTest(ViewerTestCase):
    def test_bitmap_and_text_export(self):
        bitmap = os.path.join(self.folder, "view.bmp")
        text = os.path.join(self.folder, "board.txt")
        notes = self.notes_of(lambda: [self.viewer.export_bitmap(bitmap), self.viewer.export_text(text)])
        self.assertEqual(notes, ["capture asked for " + bitmap, "text export asked for " + text])


if __name__ == "__main__":
    unittest.main()
