"""Status codes and their exceptions: the mapping itself, and each code as it
reaches a caller through the library."""

import os
import time
import unittest

import support
from support import FakeViewer, answer_every_query, kpcb

EXPECTED = {
    -4: kpcb.NotRunningError,
    -5: kpcb.SlotUnavailableError,
    -7: kpcb.NoReplyError,
    -200: kpcb.ViewerRefusedError,
    -201: kpcb.ViewerRefusedError,
    -202: kpcb.ViewerRefusedError,
}


class MappingTest(unittest.TestCase):
    def test_other_negative_codes_are_plain_kpcb_errors(self):
        for code in (-1, -3, -6, -203, -100000):
            with self.subTest(code=code):
                error = kpcb.error_for(code)
                self.assertIs(type(error), kpcb.KpcbError)
                self.assertEqual(error.code, code)
                if code not in (-3, -6):  # the viewer's hello codes have words of their own
                    self.assertEqual(error.meaning, "unknown status %d" % code)

    def test_a_call_may_say_what_a_code_means_for_it(self):
        error = kpcb.error_for(-200, "KPCB_X", {-200: "no such red mark"})
        self.assertIsInstance(error, kpcb.ViewerRefusedError)
        self.assertEqual(error.meaning, "no such red mark")
        self.assertEqual(kpcb.error_for(-5, None, {-200: "x"}).meaning, kpcb.errors.status_text(-5))


class ThroughTheLibraryTest(unittest.TestCase):
    def test_dead_process_is_not_running(self):
        viewer = kpcb.Viewer(support.dead_pid())
        for call in (viewer.zoom_in, viewer.red_mark_call_status, viewer.cw_polygon_count,
                     lambda: viewer.net_pins("U1", "1"), lambda: viewer.exit(wait=False)):
            with self.subTest(call=call):
                with self.assertRaises(kpcb.NotRunningError) as caught:
                    call()
                self.assertEqual(caught.exception.code, -4)

    def test_exit_of_a_viewer_not_launched_here(self):
        with self.assertRaises(kpcb.NotRunningError) as caught:
            kpcb.Viewer(os.getpid()).exit(wait=False)
        self.assertIn("not launched by this process", caught.exception.meaning)

    def test_reply_time_limit(self):
        self.addCleanup(kpcb.set_reply_timeout, support.REPLY_TIMEOUT)
        kpcb.set_reply_timeout(0.2)
        with FakeViewer(lambda class_id, reader: None) as viewer:
            started = time.monotonic()
            with self.assertRaises(kpcb.NoReplyError):
                viewer.place_status("U1")
            self.assertLess(time.monotonic() - started, support.REPLY_TIMEOUT / 2)
        with self.assertRaises(ValueError):
            kpcb.set_reply_timeout(-1)

    def test_short_reply_is_no_reply(self):
        with FakeViewer(lambda class_id, reader: b"\x01\x02") as viewer:
            with self.assertRaises(kpcb.NoReplyError) as caught:
                viewer.pin_count_of_part("P1")
            self.assertEqual(caught.exception.code, -7)
            self.assertEqual(caught.exception.function, "KPCB_GetPinCountFromPart")

    def test_viewer_answer_passed_back_as_it_stands(self):
        # The pin highlight hands back whatever code the viewer answers.
        for code, cls in list(EXPECTED.items()) + [(-3, kpcb.KpcbError), (-999, kpcb.KpcbError)]:
            with self.subTest(code=code):
                with FakeViewer(answer_every_query(code)) as viewer:
                    with self.assertRaises(kpcb.KpcbError) as caught:
                        viewer.highlight_pins("U1", ["1"], (255, 0, 0))
                self.assertIs(type(caught.exception), cls)
                self.assertEqual(caught.exception.code, code)

    def test_positive_pin_highlight_answer_is_a_failure_too(self):
        with FakeViewer(answer_every_query(5)) as viewer:
            with self.assertRaises(kpcb.KpcbError) as caught:
                viewer.highlight_pins("U1", ["1"], (255, 0, 0), zoom=True)
        self.assertEqual(caught.exception.code, 5)

    def test_net_pins_unknown_pin(self):
        with FakeViewer(answer_every_query(-200, support.cstring("N"), support.strings([]))) as viewer:
            with self.assertRaises(kpcb.ViewerRefusedError) as caught:
                viewer.net_pins("U1", "99")
        self.assertIn("no such pin", caught.exception.meaning)



if __name__ == "__main__":
    unittest.main()
