"""Build backend of the kpcb package.

The package is built by setuptools (setuptools.build_meta) wherever setuptools can
build a wheel. pip builds in an isolated environment into which it first installs
the build requirements from a package index; with no network that step fails even
when setuptools is installed. So this backend asks pip for nothing, takes setuptools
from the installing interpreter when the isolated environment lacks it, and when no
setuptools able to build wheels is there at all (setuptools before 70.1 needs the
wheel package too), writes the wheel itself: the package is pure Python.
"""

import base64
import hashlib
import importlib
import io
import os
import re
import site
import sys
import tarfile
import zipfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PACKAGE = "kpcb"


def _setuptools_backend():
    """setuptools.build_meta when a setuptools that can build wheels is reachable,
    else None. KPCB_BUILD_WITHOUT_SETUPTOOLS=1 forces None."""
    if os.environ.get("KPCB_BUILD_WITHOUT_SETUPTOOLS") == "1":
        return None
    for attempt in range(2):
        try:
            setuptools = importlib.import_module("setuptools")
            version = tuple(int(part) for part in re.findall(r"\d+", setuptools.__version__)[:2])
            if version < (70, 1):
                importlib.import_module("wheel")
            return importlib.import_module("setuptools.build_meta")
        except ImportError:
            if attempt:
                return None
            # The isolated build environment hides the interpreter's own packages.
            for path in site.getsitepackages() + [site.getusersitepackages()]:
                if os.path.isdir(path) and path not in sys.path:
                    sys.path.append(path)
            importlib.invalidate_caches()
    return None


# ---- what setuptools would otherwise be asked for ----------------------------

def get_requires_for_build_wheel(config_settings=None):
    return []


def get_requires_for_build_sdist(config_settings=None):
    return []


def get_requires_for_build_editable(config_settings=None):
    return []


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    backend = _setuptools_backend()
    if backend:
        return backend.build_wheel(wheel_directory, config_settings, metadata_directory)
    return _write_wheel(wheel_directory, _package_files())


def build_editable(wheel_directory, config_settings=None, metadata_directory=None):
    backend = _setuptools_backend()
    if backend and hasattr(backend, "build_editable"):
        return backend.build_editable(wheel_directory, config_settings, metadata_directory)
    pth = (os.path.abspath(ROOT) + "\n").encode()
    return _write_wheel(wheel_directory, [("__editable__.%s.pth" % PACKAGE, pth)])


def build_sdist(sdist_directory, config_settings=None):
    backend = _setuptools_backend()
    if backend:
        return backend.build_sdist(sdist_directory, config_settings)
    return _write_sdist(sdist_directory)


# ---- the package written without setuptools ---------------------------------

def _metadata():
    """name, version, description and requires-python from pyproject.toml's [project]."""
    with open(os.path.join(ROOT, "pyproject.toml"), encoding="utf-8") as f:
        text = f.read()
    project = text.split("[project]", 1)[1].split("\n[", 1)[0]
    values = dict(re.findall(r'^\s*([\w-]+)\s*=\s*"([^"]*)"', project, re.M))
    return values["name"], values["version"], values.get("description", ""), values.get("requires-python", "")


def _metadata_text():
    name, version, description, python = _metadata()
    lines = ["Metadata-Version: 2.1", "Name: " + name, "Version: " + version, "Summary: " + description]
    if python:
        lines.append("Requires-Python: " + python)
    return "\n".join(lines) + "\n"


def _package_files():
    files = []
    folder = os.path.join(ROOT, PACKAGE)
    for name in sorted(os.listdir(folder)):
        if name.endswith(".py"):
            with open(os.path.join(folder, name), "rb") as f:
                files.append((PACKAGE + "/" + name, f.read()))
    return files


def _record_line(path, data):
    digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
    return "%s,sha256=%s,%d" % (path, digest, len(data))


def _write_wheel(directory, files):
    name, version, _, _ = _metadata()
    dist_info = "%s-%s.dist-info" % (name, version)
    files = files + [
        (dist_info + "/METADATA", _metadata_text().encode()),
        (dist_info + "/WHEEL", b"Wheel-Version: 1.0\nGenerator: kpcb_backend\nRoot-Is-Purelib: true\n"
                               b"Tag: py3-none-any\n"),
    ]
    record = "".join(_record_line(path, data) + "\n" for path, data in files) + dist_info + "/RECORD,,\n"
    wheel_name = "%s-%s-py3-none-any.whl" % (name, version)
    with zipfile.ZipFile(os.path.join(directory, wheel_name), "w", zipfile.ZIP_DEFLATED) as wheel:
        for path, data in files + [(dist_info + "/RECORD", record.encode())]:
            wheel.writestr(path, data)
    return wheel_name


def _write_sdist(directory):
    name, version, _, _ = _metadata()
    base = "%s-%s" % (name, version)
    sources = [("pyproject.toml", None), ("build_backend/kpcb_backend.py", None)]
    sources += [(path, data) for path, data in _package_files()]
    sdist_name = base + ".tar.gz"
    with tarfile.open(os.path.join(directory, sdist_name), "w:gz") as sdist:
        for path, data in sources + [("PKG-INFO", _metadata_text().encode())]:
            if data is None:
                with open(os.path.join(ROOT, path), "rb") as f:
                    data = f.read()
            info = tarfile.TarInfo(base + "/" + path)
            info.size = len(data)
            info.mode = 0o644
            sdist.addfile(info, io.BytesIO(data))
    return sdist_name
