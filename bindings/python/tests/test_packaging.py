"""The package builds and installs without network access."""

import base64
import hashlib
import os
import subprocess
import sys
import tarfile
import tempfile
import types
import unittest
import zipfile

import support

BACKEND = os.path.join(support.PACKAGE_ROOT, "build_backend", "kpcb_backend.py")
PACKAGE_FILES = sorted("kpcb/" + name for name in os.listdir(os.path.join(support.PACKAGE_ROOT, "kpcb"))
                       if name.endswith(".py"))


def load_backend():
    module = types.ModuleType("kpcb_backend_under_test")
    module.__file__ = BACKEND
    with open(BACKEND, encoding="utf-8") as f:
        exec(compile(f.read(), BACKEND, "exec"), module.__dict__)
    return module


class BuildWithoutSetuptoolsTest(unittest.TestCase):
    def setUp(self):
        self.backend = load_backend()
        self.out = tempfile.mkdtemp(dir=support.WORK_DIR)
        os.environ["KPCB_BUILD_WITHOUT_SETUPTOOLS"] = "1"
        self.addCleanup(os.environ.pop, "KPCB_BUILD_WITHOUT_SETUPTOOLS")

    def test_wheel_holds_the_package_with_a_true_record(self):
        name = self.backend.build_wheel(self.out)
        self.assertEqual(name, "kpcb-0.1.0-py3-none-any.whl")
        with zipfile.ZipFile(os.path.join(self.out, name)) as wheel:
            names = wheel.namelist()
            self.assertEqual(sorted(n for n in names if n.startswith("kpcb/")), PACKAGE_FILES)
            metadata = wheel.read("kpcb-0.1.0.dist-info/METADATA").decode()
            self.assertIn("Name: kpcb\nVersion: 0.1.0\n", metadata)
            record = wheel.read("kpcb-0.1.0.dist-info/RECORD").decode().splitlines()
            self.assertEqual(sorted(line.split(",")[0] for line in record), sorted(names))
            for line in record:
                path, digest, size = line.split(",")
                if digest:
                    data = wheel.read(path)
                    expected = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
                    self.assertEqual((digest, int(size)), ("sha256=" + expected, len(data)), path)

    def test_sdist_and_editable(self):
        sdist = self.backend.build_sdist(self.out)
        with tarfile.open(os.path.join(self.out, sdist)) as archive:
            names = set(archive.getnames())
        self.assertTrue({"kpcb-0.1.0/pyproject.toml", "kpcb-0.1.0/PKG-INFO",
                         "kpcb-0.1.0/build_backend/kpcb_backend.py"} <= names)
        self.assertTrue({"kpcb-0.1.0/" + f for f in PACKAGE_FILES} <= names)
        editable = self.backend.build_editable(self.out)
        with zipfile.ZipFile(os.path.join(self.out, editable)) as wheel:
            self.assertEqual(wheel.read("__editable__.kpcb.pth").decode().strip(), support.PACKAGE_ROOT)

    def test_no_build_requirements_are_asked_for(self):
        self.assertEqual(self.backend.get_requires_for_build_wheel(), [])
        self.assertEqual(self.backend.get_requires_for_build_sdist(), [])


class PipInstallTest(unittest.TestCase):
    def test_pip_installs_offline(self):
        if subprocess.run([sys.executable, "-m", "pip", "--version"], capture_output=True).returncode != 0:
            self.skipTest("pip is not installed")
        target = tempfile.mkdtemp(dir=support.WORK_DIR)
        env = dict(os.environ, PIP_NO_INDEX="1", PIP_DISABLE_PIP_VERSION_CHECK="1")
        done = subprocess.run([sys.executable, "-m", "pip", "install", "--no-deps", "--target", target,
                               support.PACKAGE_ROOT], capture_output=True, text=True, env=env, timeout=300)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertEqual(sorted("kpcb/" + n for n in os.listdir(os.path.join(target, "kpcb")) if n.endswith(".py")),
                         PACKAGE_FILES)


if __name__ == "__main__":
    unittest.main()
