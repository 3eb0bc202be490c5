"""The examples in other languages are built from the unpacked package alone, and run under Wine."""

import os
import pathlib
import shutil

import pytest

from conftest import run, windows_path

RUST_TARGET = "x86_64-pc-windows-gnu"
RUST_STANDARD_LIBRARY = pathlib.Path("/usr/lib/rustlib") / RUST_TARGET
# Go compiles its standard library for Windows itself, which takes a while, so its results are kept.
GO_CACHE = pathlib.Path(__file__).parents[2] / "build" / "go"


def expect_a_whole_life(stage, program):
    """What every host hears, whatever else its service says in between."""
    result = run("wine", program, windows_path(stage / "app"), windows_path(stage / "data"))
    assert result.returncode == 0, result.stdout
    heard = [line.split(" ", 2)[1] for line in result.stdout.splitlines()
             if line.startswith("event ")]
    assert {"10:", "11:", "14:"} <= set(heard), result.stdout
    assert run("wine", program).returncode == 2
    services = run("wine", "reg", "query", r"HKLM\SYSTEM\CurrentControlSet\Services").stdout
    assert "PlenxPcSvc" not in services


@pytest.mark.skipif(not RUST_STANDARD_LIBRARY.is_dir(),
                    reason="this Debian has no standard library of Rust for Windows")
def test_the_rust_host_is_built_from_the_package_and_lives(package, stage):
    # Debian's own, whatever other Rust lies on the path.
    result = run("/usr/bin/cargo", "build", "--release", "--offline", "--target", RUST_TARGET,
                 "--target-dir", stage / "target", cwd=package / "examples" / "rust-host",
                 env={**os.environ, "RUSTC": "/usr/bin/rustc", "PLENXSDK": str(package)})
    assert result.returncode == 0, result.stdout
    assert "warning" not in result.stdout
    shutil.copy(stage / "target" / RUST_TARGET / "release" / "rust-host.exe", stage / "host")
    expect_a_whole_life(stage, stage / "host" / "rust-host.exe")


@pytest.fixture(scope="session")
def go_host(package, tmp_path_factory):
    folder = tmp_path_factory.mktemp("go")
    go = {**os.environ, "GOOS": "windows", "GOARCH": "amd64", "CGO_ENABLED": "0",
          "GOFLAGS": "-trimpath", "GOCACHE": str(GO_CACHE), "GOTOOLCHAIN": "local"}
    for command in (["go", "vet", "./..."], ["go", "build", "-o", folder / "go-host.exe"]):
        result = run(*command, cwd=package / "examples" / "go-host", env=go)
        assert result.returncode == 0, result.stdout
    return folder / "go-host.exe"


def test_the_go_host_is_built_from_the_package_and_lives(go_host, stage):
    shutil.copy(go_host, stage / "host")
    expect_a_whole_life(stage, stage / "host" / "go-host.exe")


def test_the_go_host_says_which_dll_is_missing(go_host):
    result = run("wine", go_host, "a", "b")
    assert result.returncode == 1
    assert r"\plenxsdk_c.dll, or a DLL that it needs: " in result.stdout
