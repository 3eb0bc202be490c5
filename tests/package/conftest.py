"""What the tests of the package share: the ZIP, unpacked into a folder of its own."""

import os
import pathlib
import shutil
import subprocess
import zipfile

import pytest

TRIPLE = "x86_64-w64-mingw32"
LIMIT = 300  # seconds, for a single command
APP_FILES = ("plenxservice.exe", "dokan1.sys", "dokan1.dll", "dokanfuse1.dll")


def run(*command, **options):
    """The finished command, whatever it ended with; its output as text."""
    options.setdefault("timeout", LIMIT)
    return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, encoding="utf-8", errors="replace", **options)


def windows_path(path):
    return subprocess.run(["winepath", "-w", path], capture_output=True, check=True,
                          encoding="utf-8").stdout.strip()


def unpack_into(archive, folder):
    with zipfile.ZipFile(archive) as file:
        file.extractall(folder)
    return folder


def unpack(archive, folder):
    """Unpacks as a user does, and names the package's one folder."""
    (inner,) = unpack_into(archive, folder).iterdir()
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


@pytest.fixture(scope="session")
def hello(package, tmp_path_factory):
    """The service of the example, built from the package alone."""
    folder = tmp_path_factory.mktemp("hello")
    result = run("cmake", "-G", "Ninja", "-S", package / "examples" / "hello-service", "-B", folder,
                 "--toolchain", package / "cmake" / "mingw-w64-x86-64.cmake")
    assert result.returncode == 0, result.stdout
    result = run("cmake", "--build", folder)
    assert result.returncode == 0, result.stdout
    return folder / "hello_service.exe"


@pytest.fixture
def stage(package, tmp_path):
    """The DLLs in a folder for the host's program, an install folder and a data folder."""
    shutil.copytree(package / "bin", tmp_path / "host",
                    ignore=shutil.ignore_patterns("*.exe", "*.sys", "dokan*", "upgrade"))
    for category in ("archive", "file", "audio", "picture", "video"):
        (tmp_path / "app" / "res" / "plenx" / "icon" / category).mkdir(parents=True)
    for name in APP_FILES:
        shutil.copy(package / "bin" / name, tmp_path / "app")
    (tmp_path / "data").mkdir()
    return tmp_path
