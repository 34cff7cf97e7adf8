"""Launch failures: each one raised with its code and what it means at launch."""

import os
import stat
import tempfile
import unittest

import support
from support import kpcb

# Launches through a copy of the library in a folder of its own, in a fresh
# interpreter (the library looks for the viewer beside itself).
LAUNCH = """
import kpcb
try:
    kpcb.Viewer.launch({board!r})
except kpcb.KpcbError as error:
    print(type(error).__name__, error.code, error.meaning, sep="|")
"""


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

    def launch_beside(self, folder):
        support.copy_library(folder)
        out = support.run_python(LAUNCH.format(board=support.board_file()), {"KPCB_LIBRARY": folder})
        return out.split("|")

    def test_no_viewer_beside_the_library(self):
        folder = tempfile.mkdtemp(dir=support.WORK_DIR)
        self.assertEqual(self.launch_beside(folder),
                         ["ViewerRefusedError", "-201", "no viewer executable was found beside the library"])

    def test_viewer_that_cannot_be_started(self):
        folder = tempfile.mkdtemp(dir=support.WORK_DIR)
        viewer = os.path.join(folder, "KorbinPCB")
        with open(viewer, "w") as out:
            out.write("not a program\n")
        os.chmod(viewer, stat.S_IRUSR | stat.S_IWUSR)
        self.assertEqual(self.launch_beside(folder),
                         ["ViewerRefusedError", "-202", "the viewer process could not be created"])


if __name__ == "__main__":
    unittest.main()
