"""Launch failures: each one raised with its code and what it means at launch."""

import os
import tempfile
import unittest

import support
from support import kpcb


class LaunchFailureTest(unittest.TestCase):
    def test_missing_board_file(self):
        missing = os.path.join(support.WORK_DIR, "no such board.pdbb")
        with self.assertRaises(kpcb.ViewerRefusedError) as caught:
            kpcb.Viewer.launch(missing)
        self.assertEqual(caught.exception.code, -200)
        self.assertEqual(caught.exception.function, "KPCB_Launch")
        self.assertIn("board file does not exist", str(caught.exception))

    def test_viewer_refusing_the_board_in_its_hello(self):
        # A folder exists but cannot be read as a board: the viewer says -3.
        with self.assertRaises(kpcb.KpcbError) as caught:
            kpcb.Viewer.launch(tempfile.mkdtemp(dir=support.WORK_DIR), hide=True)
        self.assertIs(type(caught.exception), kpcb.KpcbError)
        self.assertEqual(caught.exception.code, -3)
        self.assertEqual(caught.exception.function, "KPCB_Launch_HideMode")
        self.assertIn("could not read the board", caught.exception.meaning)



if __name__ == "__main__":
    unittest.main()
