"""The port for vcpkg and the recipe for Conan are run with stand-ins for the tools' functions, because
Debian does not have the tools. A host is built from what they leave."""

import hashlib
import json
import shutil
import sys
import types
import zipfile

import pytest

from c_host_test import C_PROGRAM, PROJECT
from conftest import run, unpack

PORT_STEPS = """
set(PORT plenxsdk)
function(vcpkg_install_copyright)
  cmake_parse_arguments(arg "" "COMMENT" "FILE_LIST" ${ARGN})
  if(NOT arg_FILE_LIST OR arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "vcpkg_install_copyright has no files")
  endif()
  file(WRITE "${CURRENT_PACKAGES_DIR}/share/${PORT}/copyright" "${arg_COMMENT}")
endfunction()
include("${CURRENT_PORT_DIR}/portfile.cmake")
"""


@pytest.fixture
def port(bindings, tmp_path):
    (archive,) = bindings.glob("*-vcpkg.zip")
    (tmp_path / "port").mkdir()
    return unpack(archive, tmp_path / "port") / "plenxsdk"


@pytest.fixture
def recipe(bindings, tmp_path):
    (archive,) = bindings.glob("*-conan.zip")
    (tmp_path / "recipe").mkdir()
    return unpack(archive, tmp_path / "recipe")


def carry_out(port, folder):
    """Does with the port what vcpkg does."""
    (folder / "steps.cmake").write_text(PORT_STEPS)
    return run("cmake", f"-DCURRENT_PORT_DIR={port}", f"-DCURRENT_PACKAGES_DIR={folder / 'made'}",
               f"-DCURRENT_BUILDTREES_DIR={folder / 'trees'}", "-P", folder / "steps.cmake")


def expect_a_host_runs(package, prefix, folder):
    (folder / "host").mkdir()
    (folder / "host" / "CMakeLists.txt").write_text(PROJECT % {
        "languages": "C", "source": "host.c", "target": "plenxsdk::c"})
    (folder / "host" / "host.c").write_text(C_PROGRAM)
    result = run("cmake", "-G", "Ninja", "-S", folder / "host", "-B", folder / "build",
                 "--toolchain", package / "cmake" / "mingw-w64-host.cmake",
                 f"-Dplenxsdk_DIR={prefix}")
    assert result.returncode == 0, result.stdout
    assert run("cmake", "--build", folder / "build").returncode == 0
    assert run("wine", "host.exe", cwd=folder / "build").returncode == 7


def test_the_port_names_the_packages_version(port, archive):
    manifest = json.loads((port / "vcpkg.json").read_text())
    assert f"plenxsdk-{manifest['version']}-" in archive.name
    assert manifest["name"] == "plenxsdk"


def test_a_host_is_built_from_what_the_port_leaves(port, package, tmp_path):
    result = carry_out(port, tmp_path)
    assert result.returncode == 0, result.stdout
    made = tmp_path / "made"
    assert {path.name for path in made.iterdir()} == {"include", "lib", "bin", "tools", "share"}
    assert {"usage", "copyright", "plenxsdkConfig.cmake"} <= {
        path.name for path in (made / "share" / "plenxsdk").iterdir()}
    config = (made / "share" / "plenxsdk" / "plenxsdkConfig.cmake").read_text()
    assert "/tools/plenxsdk/bin/plenxservice.exe" in config
    assert (made / "tools" / "plenxsdk" / "bin" / "plenxservice.exe").is_file()
    expect_a_host_runs(package, made / "share" / "plenxsdk", tmp_path)


def test_the_port_refuses_another_package(port, tmp_path):
    (archive,) = port.glob("*.zip")
    with archive.open("ab") as file:
        file.write(b"x")
    result = carry_out(port, tmp_path)
    assert result.returncode != 0
    assert "is not the package that this port was made for" in " ".join(result.stdout.split())


class Settings:
    def __init__(self, system, arch):
        self.os, self.arch = system, arch


class CppInfo:
    def __init__(self):
        self.properties = {}

    def set_property(self, name, value):
        self.properties[name] = value


class Invalid(Exception):
    pass


def load(recipe, monkeypatch):
    """The recipe's class over stand-ins of what it imports."""
    def check_sha256(_, path, expected):
        with open(path, "rb") as file:
            assert hashlib.sha256(file.read()).hexdigest() == expected

    def unzip(_, path, destination, strip_root):
        assert strip_root
        with zipfile.ZipFile(path) as file:
            for entry in file.infolist():
                entry.filename = entry.filename.split("/", 1)[1]
                file.extract(entry, destination)

    def copy(_, pattern, src, dst):
        if pattern == "*":
            shutil.copytree(src, dst)
        else:
            shutil.copy(f"{src}/{pattern}", dst)

    for name, content in {
            "conan": {"ConanFile": object}, "conan.tools": {},
            "conan.errors": {"ConanInvalidConfiguration": Invalid},
            "conan.tools.files": {"check_sha256": check_sha256, "unzip": unzip, "copy": copy},
    }.items():
        module = types.ModuleType(name)
        module.__dict__.update(content)
        monkeypatch.setitem(sys.modules, name, module)
    scope = {}
    exec(compile((recipe / "conanfile.py").read_text(), "conanfile.py", "exec"), scope)
    return scope["PlenxSdk"]


def test_a_host_is_built_from_what_the_recipe_leaves(recipe, package, tmp_path, monkeypatch):
    conan = load(recipe, monkeypatch)()
    assert (recipe / conan.exports_sources).is_file()
    assert f"{conan.name}-{conan.version}-" in conan.exports_sources
    conan.source_folder, conan.build_folder = str(recipe), str(tmp_path / "unpacked")
    conan.package_folder, conan.cpp_info = str(tmp_path / "made"), CppInfo()
    conan.settings = Settings("Windows", "x86_64")
    conan.validate()
    conan.build()
    (tmp_path / "made").mkdir()
    conan.package()
    conan.package_info()
    assert conan.cpp_info.properties == {"cmake_find_mode": "none"}
    (folder,) = conan.cpp_info.builddirs
    expect_a_host_runs(package, tmp_path / "made" / folder, tmp_path)


@pytest.mark.parametrize("system, arch", [("Linux", "x86_64"), ("Windows", "armv8")])
def test_the_recipe_refuses_other_systems(recipe, monkeypatch, system, arch):
    conan = load(recipe, monkeypatch)()
    conan.settings = Settings(system, arch)
    with pytest.raises(Invalid, match="64-bit Windows only"):
        conan.validate()
