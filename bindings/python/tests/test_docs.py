"""The example sessions of docs/python.md run as written, from the top of the
checkout, against the sample board."""

import doctest
import os
import re
import unittest

import support
from support import kpcb

DOC = os.path.join(support.REPO_ROOT, "docs", "python.md")
SAMPLE = os.path.join(support.REPO_ROOT, "samples", "demo_board.pdbba")


@unittest.skipUnless(os.path.exists(DOC) and os.path.exists(SAMPLE), "needs docs/python.md and the sample board")
class ExampleSessionTest(unittest.TestCase):
    def test_sessions_run_as_written(self):
        with open(DOC, encoding="utf-8") as f:
            blocks = re.findall(r"^```python\n(.*?)^```", f.read(), re.S | re.M)
        self.assertTrue(blocks)
        globs = {}
        test = doctest.DocTestParser().get_doctest("\n".join(blocks), globs, "docs/python.md", DOC, 0)
        runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS)
        here = os.getcwd()
        os.chdir(support.REPO_ROOT)
        try:
            report = []
            runner.run(test, out=report.append, clear_globs=False)
        finally:
            os.chdir(here)
            viewer = globs.get("viewer")
            if isinstance(viewer, kpcb.Viewer) and viewer.is_running():
                viewer.exit()
        self.assertEqual(runner.failures, 0, "".join(report))
        self.assertGreater(runner.tries, 10)


if __name__ == "__main__":
    unittest.main()
