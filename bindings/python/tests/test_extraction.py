"""Design extraction through the test importer plug-in that the C++ test build makes
(<build>/test-importers): results, files written and the errors raised."""

import os
import tempfile
import unittest

import support  # noqa: F401  (sets up the environment and the import path)
import kpcb

IMPORTERS = os.path.join(os.path.dirname(support.library_dir()), "test-importers")


@unittest.skipUnless(os.path.isdir(IMPORTERS), "needs the test importer plug-ins of the C++ test build")
class ExtractionTest(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.mkdtemp(prefix="extract-", dir=support.WORK_DIR)
        self.record = os.path.join(self.dir, "record.txt")
        os.environ["KPCB_IMPORTER_DIR"] = IMPORTERS
        os.environ["KPCB_TEST_IMPORTER_RECORD"] = self.record
        os.environ.pop("KPCB_TEST_IMPORTER_RESULT", None)
        self.design = os.path.join(self.dir, "board.pcb")
        with open(self.design, "w") as f:
            f.write("design")

    def tearDown(self):
        for name in ("KPCB_IMPORTER_DIR", "KPCB_TEST_IMPORTER_RECORD", "KPCB_TEST_IMPORTER_RESULT"):
            os.environ.pop(name, None)

    def received(self):
        with open(self.record) as f:
            return dict(line.rstrip("\n").split("=", 1) for line in f if "=" in line)

    def test_zuken_writes_a_board_named_after_the_design(self):
        kpcb.extract_zuken(os.path.join(self.dir, "out.pdbb"), self.design, "w")
        self.assertTrue(os.path.exists(os.path.join(self.dir, "board.pdbb")))
        record = self.received()
        self.assertEqual(record["Design"], self.design)
        self.assertEqual(record["ReadMode"], "1")

    def test_results_become_extraction_errors(self):
        with self.assertRaises(kpcb.ExtractionError) as refused:
            kpcb.extract_mentor(os.path.join(self.dir, "out.pdbb"), os.path.join(self.dir, "missing"))
        self.assertEqual(refused.exception.code, 2)
        self.assertIsInstance(refused.exception, kpcb.KpcbError)
        os.environ["KPCB_TEST_IMPORTER_RESULT"] = "null"
        with self.assertRaises(kpcb.ExtractionError) as nothing:
            kpcb.extract_zuken(os.path.join(self.dir, "out.pdbb"), self.design, "a")
        self.assertEqual(nothing.exception.code, 3)
        self.assertIn("importer", str(nothing.exception))

    def test_argument_list_reaches_the_importer_of_its_key(self):
        kpcb.extract("m", self.dir, self.dir, "from-list")
        self.assertEqual(self.received()["entry"], "ReadMentor")
        self.assertTrue(os.path.exists(os.path.join(self.dir, "from-list.pdbb")))
        with self.assertRaises(kpcb.ExtractionError) as not_a_job:
            kpcb.extract_odb(self.design, self.dir, "board", unit="inch", layers=["top"])
        self.assertEqual(not_a_job.exception.code, 3)
        with self.assertRaises(kpcb.ExtractionError) as not_ipc2581:
            kpcb.extract_ipc2581(self.design, self.dir, "board")
        self.assertEqual(not_ipc2581.exception.code, 3)

    def test_letters_are_checked_before_the_call(self):
        with self.assertRaises(ValueError):
            kpcb.extract_allegro(self.dir, self.design, "ab")
        with self.assertRaises(ValueError):
            kpcb.extract_board_designer(self.dir, self.design, "a", "s", "1", "2", "3", "4", "5")


if __name__ == "__main__":
    unittest.main()
