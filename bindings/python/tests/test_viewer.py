"""Launch and exit, and every command group against the reference viewer: its
journal shows that each method sent the right record with its arguments
converted. What queries hand back is checked in test_results."""

import pathlib
import unittest

import support
from support import kpcb


def rgb(r, g, b):
    return r | g << 8 | b << 16


class LaunchAndExitTest(unittest.TestCase):
    def test_context_manager_closes_the_viewer_also_when_the_block_raises(self):
        with kpcb.Viewer.launch(support.board_file(), hide=True) as viewer:
            self.assertGreater(viewer.pid, 0)
            self.assertTrue(kpcb.is_running(viewer.pid))
        self.assertFalse(viewer.is_running())
        with self.assertRaises(ZeroDivisionError):
            with kpcb.Viewer.launch(support.board_file(), hide=True) as viewer:
                viewer.exit()  # leaving the block tolerates a viewer already gone
                1 / 0
        self.assertFalse(viewer.is_running())

    def test_visible_launch_and_exit_without_waiting(self):
        viewer = kpcb.Viewer.launch(pathlib.Path(support.board_file()))
        viewer.exit(wait=False)  # the library's -2 is no failure here
        self.assertTrue(support.wait_for(lambda: not viewer.is_running()))


class ViewControlTest(support.LiveViewerTestCase):
    def test_simple_commands_carry_their_codes(self):
        v = self.viewer
        sent = self.sent_by(lambda: [v.zoom_in(), v.zoom_out(), v.zoom_fit(), v.view_top(), v.view_bottom(),
                                     v.view_all(), v.mirror(), v.clear_mirror()], *["ii"] * 8)
        self.assertEqual({name for name, _ in sent}, {"CKPRCI_SimpleCMD"})
        codes = [fields[0] for _, fields in sent]
        self.assertEqual(len(set(codes)), 8, codes)

    def test_area_rotation_window_and_title(self):
        v = self.viewer
        sent = self.sent_by(lambda: [v.zoom_area(1, 2.5, -3, 4e3), v.rotate(-90.5),
                                     v.set_window_position(10, 20, 800, 600), v.set_title("Board – Prüfung")],
                            "dddd", "d", "iiii", "s")
        self.assertEqual(sent, [("CKPRCI_ZoomArea", (1.0, 2.5, -3.0, 4000.0)), ("CKPRCI_RotateBoard", (-90.5,)),
                                ("CKPRCI_SetWindowPosition", (10, 20, 800, 600)),
                                ("CKPRCI_Information_SetMainTitle", ("Board – Prüfung",))])

    def test_switches_send_one_and_zero(self):
        v = self.viewer
        sent = self.sent_by(lambda: [v.show_components(False), v.show_routes(), v.picking_tool(True),
                                     v.red_mark_tool(False), v.show_minimap(on=1)], *["ii"] * 5)
        self.assertEqual([(name[7:], fields[1]) for name, fields in sent],
                         [("ObjectOnOff", 0), ("ObjectOnOff", 1), ("ToolOnOff", 1), ("ToolOnOff", 0),
                          ("ToolOnOff", 1)])
        self.assertNotEqual(sent[0][1][0], sent[1][1][0])  # components and routes differ
        self.assertEqual(len({fields[0] for _, fields in sent[2:]}), 3)  # three tools


class HighlightTest(support.LiveViewerTestCase):
    HIGHLIGHT = "iililuii"  # function, kind, names, layer name type, layers, colour, contrast, layer colour

    def test_names_colors_and_layers_are_converted(self):
        v = self.viewer
        layers = ["TOP", "GND"]
        sent = self.sent_by(lambda: [v.highlight(0, ["GND", "  +3V3  "], contrast=4),
                                     v.highlight_color(1, "U1", (1, 2, 3)),
                                     v.highlight_color_all_layers(2, ["U1-1"], (0, 255, 0), 7, True),
                                     v.highlight_on_layers(0, ["GND"], (0, 0, 255), layers, 1)],
                            *[self.HIGHLIGHT] * 4)
        # Blanks round a name are trimmed; one string is one name; plain
        # highlights are red on the API's colour.
        self.assertEqual([fields for _, fields in sent],
                         [(0, 0, ["GND", "+3V3"], -1, [], rgb(255, 0, 0), 4, 1), (1, 1, ["U1"], -1, [], rgb(1, 2, 3), 0, 0),
                          (2, 2, ["U1-1"], -1, [], rgb(0, 255, 0), 7, 1), (3, 0, ["GND"], 1, layers, rgb(0, 0, 255), 0, 0)])

    def test_pins_section_color_and_clear(self):
        v = self.viewer
        pins = ["1", "A 2"]
        sent = self.sent_by(lambda: [v.highlight_pins("U1", pins, (0, 128, 0)),
                                     v.highlight_pins("U1", pins[0], (0, 128, 0), zoom=True),
                                     v.zoom_highlight_section("GND", "U1", "14", "C3", "2"),
                                     v.set_highlight_color((0x10, 0x20, 0x40)),
                                     v.clear_highlight()],
                            "sluii", "sluii", "sssss", "u", "ii")
        self.assertEqual(sent[:4], [
            ("CKPRCI_Highlight_RefPin", ("U1", pins, rgb(0, 128, 0), 0, 0)),
            ("CKPRCI_Highlight_RefPin", ("U1", pins[:1], rgb(0, 128, 0), 1, 0)),
            ("CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin", ("GND", "U1", "14", "C3", "2")),
            ("CKPRCI_Highlight_Color", (rgb(0x10, 0x20, 0x40),))])
        self.assertEqual(sent[4][0], "CKPRCI_SimpleCMD")

    def test_names_and_colors_are_checked_before_anything_is_sent(self):
        def bad_calls():
            for call, error in [(lambda: self.viewer.highlight(0, ["A\nB"]), ValueError),
                                (lambda: self.viewer.highlight(0, ["A\0B"]), ValueError),
                                (lambda: self.viewer.highlight(0, [1]), TypeError),
                                (lambda: self.viewer.set_highlight_color((256, 0, 0)), ValueError),
                                (lambda: self.viewer.set_highlight_color(0xFF), TypeError)]:
                with self.assertRaises(error):
                    call()

        self.sent_by(bad_calls)

    def test_every_layer_command(self):
        v = self.viewer
        sent = self.sent_by(lambda: [v.show_layers(["TOP", "BOTTOM"], visible=False), v.show_only_layers("TOP"),
                                     v.show_ecad_layers(["L1_TOP"]), v.show_only_ecad_layers(["L2_GND", "L3_PWR"])],
                            "ili", "ili", "ili", "ili")
        self.assertEqual({name for name, _ in sent}, {"CKPRCI_VisibleLayer"})
        fields = [f for _, f in sent]
        self.assertEqual([(f[1], f[2]) for f in fields],
                         [(["TOP", "BOTTOM"], 0), (["TOP"], 1), (["L1_TOP"], 1), (["L2_GND", "L3_PWR"], 0)])
        self.assertEqual(len({f[0] for f in fields}), 4)  # four kinds of layer control

    def test_queries_carry_their_arguments(self):
        v = self.viewer
        sent = self.sent_by(lambda: [v.place_counts_of_parts(["RES-10K-0603", "P 2,3"], highlight=True),
                                     v.place_counts(["R1"]), v.pin_pitch_two_pin("R1", unit=1)],
                            "li", "li", "isi")
        self.assertEqual([fields for _, fields in sent],
                         [(["RES-10K-0603", "P 2,3"], 1), (["R1"], 0), (1, "R1", 1)])


if __name__ == "__main__":
    unittest.main()
