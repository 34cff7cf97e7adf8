"""Status codes and their exceptions: the mapping itself, and codes as they reach
a caller through the library."""

import os
import tempfile
import unittest

import support
from support import kpcb


class AnswersEverything:
    """Stands in for the library: every function returns code."""

    def __init__(self, code):
        self.code = code

    def __getattr__(self, name):
        return lambda *args: self.code


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

    def test_pin_highlight_raises_for_any_answer_but_zero(self):
        cases = {-4: kpcb.NotRunningError, -5: kpcb.SlotUnavailableError, -7: kpcb.NoReplyError,
                 -200: kpcb.ViewerRefusedError, -201: kpcb.ViewerRefusedError, -202: kpcb.ViewerRefusedError,
                 -3: kpcb.KpcbError, 5: kpcb.KpcbError}
        viewer = kpcb.Viewer(os.getpid())
        for code, cls in cases.items():
            with self.subTest(code=code):
                viewer._dll = AnswersEverything(code)
                with self.assertRaises(kpcb.KpcbError) as caught:
                    viewer.highlight_pins("U1", ["1"], (255, 0, 0))
                self.assertIs(type(caught.exception), cls)
                self.assertEqual((caught.exception.code, caught.exception.function), (code, "KPCB_Highlight_RefPin"))


class ThroughTheLibraryTest(unittest.TestCase):
    def test_exit_of_a_viewer_not_launched_here(self):
        with self.assertRaises(kpcb.NotRunningError) as caught:
            kpcb.Viewer(os.getpid()).exit(wait=False)
        self.assertIn("not launched by this process", caught.exception.meaning)

    def test_negative_reply_time_limit_is_refused(self):
        with self.assertRaises(ValueError):
            kpcb.set_reply_timeout(-1)

    def test_codes_of_a_dead_viewer_and_of_a_process_that_is_none(self):
        # This process runs but serves no command slot.
        for pid, cls, code in [(99999999, kpcb.NotRunningError, -4), (os.getpid(), kpcb.SlotUnavailableError, -5)]:
            with self.subTest(code=code):
                with self.assertRaises(cls) as caught:
                    kpcb.Viewer(pid).zoom_in()
                self.assertEqual((caught.exception.code, caught.exception.function), (code, "KPCB_ZoomIn"))

    def test_launch_failures_say_what_they_mean_at_launch(self):
        # A folder exists but cannot be read as a board: the viewer says -3 in its hello.
        cases = [(os.path.join(support.WORK_DIR, "no such board.pdbb"), False, kpcb.ViewerRefusedError, -200,
                  "KPCB_Launch", "board file does not exist"),
                 (tempfile.mkdtemp(dir=support.WORK_DIR), True, kpcb.KpcbError, -3,
                  "KPCB_Launch_HideMode", "could not read the board")]
        for path, hide, cls, code, function, meaning in cases:
            with self.subTest(code=code):
                with self.assertRaises(kpcb.KpcbError) as caught:
                    kpcb.Viewer.launch(path, hide=hide)
                self.assertIs(type(caught.exception), cls)
                self.assertEqual((caught.exception.code, caught.exception.function), (code, function))
                self.assertIn(meaning, str(caught.exception))


if __name__ == "__main__":
    unittest.main()
