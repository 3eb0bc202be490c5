"""The wheel for Python: what is in it, that pip installs it, and that its DLLs load under Wine. No
Windows Python runs here, so nobody has imported it on Windows."""

import base64
import csv
import hashlib
import os
import re
import shutil
import zipfile

import pytest

from binding_files import (expect_all_licences, expect_development_files, expect_loads,
                           expect_those_of_the_sdk)
from conftest import run
from contents_test import SOURCES

README = os.path.join(SOURCES, "bindings", "python", "README.md")


@pytest.fixture(scope="module")
def wheel(bindings):
    (wheel,) = bindings.glob("*.whl")
    return wheel


@pytest.fixture(scope="module")
def installed(wheel, tmp_path_factory):
    """The wheel, installed as pip installs it on a PC."""
    folder = tmp_path_factory.mktemp("site packages")
    result = run("/usr/bin/python3", "-m", "pip", "install", "--no-index", "--no-deps",
                 "--disable-pip-version-check", "--platform", "win_amd64", "--python-version",
                 "3.9", "--only-binary=:all:", "--target", folder, wheel)
    assert result.returncode == 0, result.stdout
    return folder


def test_the_name_has_the_version_of_the_sdk_and_the_platform(wheel, archive):
    version = archive.name.split("-")[1]
    assert wheel.name == f"plenxsdk-{version}-py3-none-win_amd64.whl"


def test_the_checksum_beside_the_wheel_holds(wheel):
    result = run("sha256sum", "--check", "--strict", wheel.name + ".sha256", cwd=wheel.parent)
    assert result.returncode == 0, result.stdout


def test_the_record_has_the_hash_and_the_size_of_every_file(wheel):
    with zipfile.ZipFile(wheel) as file:
        assert file.testzip() is None
        names = file.namelist()
        (record,) = [name for name in names if name.endswith(".dist-info/RECORD")]
        rows = list(csv.reader(file.read(record).decode().splitlines()))
        assert [name for name, _, _ in rows] == names
        for name, told, size in rows:
            digest = base64.urlsafe_b64encode(hashlib.sha256(file.read(name)).digest())
            expected = ("", "") if name == record else (
                "sha256=" + digest.decode().rstrip("="), str(file.getinfo(name).file_size))
            assert (told, size) == expected, name


def test_the_installed_files_are_those_of_the_sources_and_of_the_sdk(installed, package):
    folder = installed / "plenxsdk"
    sources = os.path.join(SOURCES, "bindings", "python", "plenxsdk")
    for name in ("__init__.py", "native.py", "py.typed"):
        with open(os.path.join(sources, name), "rb") as file:
            assert (folder / name).read_bytes() == file.read()
    expect_those_of_the_sdk(folder, package)


def test_all_licences_are_there(installed, package):
    (folder,) = installed.glob("plenxsdk-*.dist-info/licenses")
    expect_all_licences(folder, package)


def test_the_command_of_the_readme_makes_an_install_folder(installed, package, tmp_path):
    with open(README, encoding="utf-8") as file:
        (program,) = re.findall(r'python -c "(.*)"', file.read())
    program = program.replace("C:/Plenx/App", str(tmp_path / "App"))
    result = run("/usr/bin/python3", "-c", program, env={"PYTHONPATH": str(installed)})
    assert result.returncode == 0, result.stdout
    expect_development_files(tmp_path / "App", package)


def test_the_page_of_the_package_is_its_readme(wheel):
    with zipfile.ZipFile(wheel) as file:
        (name,) = [name for name in file.namelist() if name.endswith("/METADATA")]
        page = file.read(name).decode()
    with open(README, encoding="utf-8") as file:
        readme = file.read()
    assert page.split("\n\n", 1)[1] == readme
    assert not re.search(r"\]\((?!https?://)", readme), "a link that leads nowhere from there"


def test_the_dlls_load_from_the_installed_folder(installed, tmp_path):
    expect_loads(installed / "plenxsdk", tmp_path)


def test_without_one_dll_nothing_loads(installed, tmp_path):
    """This shows that the test above can fail."""
    folder = tmp_path / "plenxsdk"
    shutil.copytree(installed / "plenxsdk", folder)
    (folder / "distributedfile.dll").unlink()
    with pytest.raises(AssertionError):
        expect_loads(folder, tmp_path)


def test_the_installed_module_says_on_this_system_that_it_needs_windows(installed):
    result = run("/usr/bin/python3", "-c", "import plenxsdk; plenxsdk.load()",
                 env={"PYTHONPATH": str(installed), "PYTHONDONTWRITEBYTECODE": "1"})
    assert "LoadError: plenxsdk runs on 64-bit Windows only, and this system is linux." in (
        result.stdout)


def test_the_types_are_seen_by_those_who_install_it(installed, tmp_path):
    host = tmp_path / "host.py"
    host.write_text("import plenxsdk\nreveal_type(plenxsdk.load().open_queue().next(1))\n")
    result = run("/usr/bin/mypy", "--cache-dir", tmp_path / "cache", host,
                 env={"MYPYPATH": str(installed)})
    assert re.search('Revealed type is .*plenxsdk.Event.*None', result.stdout), result.stdout


def test_two_packings_are_the_same_bytes(package, tmp_path):
    packed = []
    for umask in (0o022, 0o077):
        folder = tmp_path / oct(umask)
        folder.mkdir()
        result = run("/usr/bin/python3", os.path.join(SOURCES, "package", "wheel.py"), package, "1.2",
                     "1700000000", folder, umask=umask, env={"PYTHONDONTWRITEBYTECODE": "1"})
        assert result.returncode == 0, result.stdout
        packed.append((folder / "plenxsdk-1.2-py3-none-win_amd64.whl").read_bytes())
    assert packed[0] == packed[1]
