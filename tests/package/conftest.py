"""What the tests of the package share: the ZIP, unpacked into a folder of its own."""

import os
import pathlib
import subprocess
import zipfile

import pytest

TRIPLE = "x86_64-w64-mingw32"
LIMIT = 300  # seconds, for a single command


def run(*command, **options):
    """The finished command, whatever it ended with; its output as text."""
    options.setdefault("timeout", LIMIT)
    return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, encoding="utf-8", errors="replace", **options)


def unpack(archive, folder):
    """Unpacks as a user does, and names the package's one folder."""
    with zipfile.ZipFile(archive) as file:
        file.extractall(folder)
    (inner,) = folder.iterdir()
    return inner


@pytest.fixture(scope="session")
def archive():
    return pathlib.Path(os.environ["PLENX_PACKAGE"])


@pytest.fixture(scope="session")
def bindings():
    """The folder with the packages of the languages."""
    return pathlib.Path(os.environ["PLENX_BINDINGS"])


@pytest.fixture(scope="session")
def package(archive, tmp_path_factory):
    """The unpacked package, far from the sources, in a folder with a blank in its name."""
    return unpack(archive, tmp_path_factory.mktemp("a host folder"))
