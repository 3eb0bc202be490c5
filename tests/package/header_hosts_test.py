"""The hosts on the first screens of the headers are built as they stand there, and run under Wine."""

import re

import pytest

from conftest import TRIPLE, run, windows_path

CPP_FRAME = """#include <plenxsdk/plenx.hpp>
#include <iostream>
int main() {
%s}
"""


def example(header):
    (code,) = re.findall(r"^/// @code\n(.*?)^/// @endcode", header.read_text(),
                         re.MULTILINE | re.DOTALL)
    return re.sub(r"^///(?:     )?", "", code, flags=re.MULTILINE)


def literal(path):
    return windows_path(path).replace("\\", "\\\\")


def in_folders(code, stage):
    """The same code with folders of this test's own in place of those that it names."""
    code = code.replace(r"C:\\Plenx\\App", literal(stage / "app"))
    code = code.replace(r"C:\\Plenx\\Data", literal(stage / "data"))
    assert "Plenx" not in code
    return code


@pytest.mark.parametrize("name, compiler, heard", [
    ("plenx.h", ["gcc-posix", "-std=c99"], "kind 14, service 1: home"),
    ("plenx.hpp", ["g++-posix", "-std=c++17"], "14 home")])
def test_the_headers_host_starts_a_service(package, stage, name, compiler, heard):
    code = example(package / "include" / "plenxsdk" / name)
    if name == "plenx.hpp":
        code = CPP_FRAME % code.replace("next(60000)", "next(5000)")
    source = stage / ("host.c" if name == "plenx.h" else "host.cpp")
    source.write_text(in_folders(code, stage))
    result = run(f"{TRIPLE}-{compiler[0]}", *compiler[1:], "-Wall", "-Wextra", "-Wpedantic", "-Werror",
                 "-I", package / "include", source, "-L", package / "lib", "-lplenxsdk_c",
                 "-o", stage / "host" / "host.exe")
    assert result.returncode == 0, result.stdout
    result = run("wine", stage / "host" / "host.exe")
    assert result.returncode == 0, result.stdout
    assert heard in result.stdout.splitlines()
