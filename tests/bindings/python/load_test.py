"""load finds the DLLs, or says in words why it cannot. No Windows Python runs here, so these tests
follow the way up to the system's loader, and use the loader of Linux in its place."""

import ast
import ctypes
import re
import shutil
import types

import plenxsdk
import pytest
from conftest import LINUX_BUILD, ROOT
from plenxsdk import LoadError, PlenxError, Result, native

BINDING = ROOT / "bindings" / "python"


@pytest.fixture
def windows(monkeypatch):
    """The module believes that it runs on 64-bit Windows."""
    monkeypatch.setattr(native, "sys", types.SimpleNamespace(platform="win32", maxsize=2**63 - 1))
    monkeypatch.setattr(plenxsdk, "_loaded", {})


@pytest.fixture
def folder(tmp_path):
    """A folder with the DLLs, of which the first is the one for Linux."""
    folder = tmp_path / "a folder"
    folder.mkdir()
    for name in native.DLLS:
        (folder / name).write_bytes(b"")
    shutil.copy(LINUX_BUILD, folder / native.DLLS[0])
    return folder


def test_another_system_is_told_so():
    with pytest.raises(LoadError, match="^plenxsdk runs on 64-bit Windows only, and this system is "
                                        "linux"):
        plenxsdk.load()


def test_a_python_of_32_bits_is_told_so(windows, monkeypatch):
    monkeypatch.setattr(native.sys, "maxsize", 2**31 - 1)
    with pytest.raises(LoadError, match="needs a 64-bit Python"):
        plenxsdk.load()


def test_the_dlls_are_looked_for_in_the_package_itself(windows):
    with pytest.raises(LoadError) as caught:
        plenxsdk.load()  # the sources have no DLLs
    assert f"not in {BINDING / 'plenxsdk'}. All DLLs" in str(caught.value)
    assert all(name in str(caught.value) for name in native.DLLS)


def test_a_missing_dll_is_named(windows, folder):
    (folder / "libgcc_s_seh-1.dll").unlink()
    with pytest.raises(LoadError, match=f"^libgcc_s_seh-1.dll: not in {re.escape(str(folder))}"):
        plenxsdk.load(folder)


def test_a_dll_that_the_system_refuses_is_named_with_its_reason(windows, folder):
    (folder / native.DLLS[0]).write_bytes(b"no DLL")
    with pytest.raises(LoadError, match="^Windows cannot load .*plenxsdk_c.dll: "):
        plenxsdk.load(folder)


def test_the_dll_is_opened_by_its_absolute_path_without_a_search(windows, folder, monkeypatch):
    opened = []

    def open_it(name, **options):
        opened.append((name, options))
        return CDLL(name)

    CDLL = ctypes.CDLL
    monkeypatch.setattr(native.ctypes, "CDLL", open_it)
    monkeypatch.chdir(folder.parent)
    first = plenxsdk.load("a folder")
    assert opened == [(str(folder / "plenxsdk_c.dll"), {"winmode": 0x1100})]
    assert plenxsdk.load(folder) is first and len(opened) == 1


def test_a_second_folder_is_refused(windows, folder, tmp_path):
    plenxsdk.load(folder)
    with pytest.raises(LoadError, match="has already loaded the DLLs of .*a folder"):
        plenxsdk.load(tmp_path)


def test_a_dll_that_is_too_old_raises_abi(dll, monkeypatch):
    monkeypatch.setattr(native, "ABI", native.ABI + 1)
    with pytest.raises(PlenxError, match="is newer than plenxsdk_c.dll") as caught:
        plenxsdk.Plenx(dll)
    assert caught.value.code == Result.ABI


def test_another_dll_is_refused():
    with pytest.raises(LoadError, match="is not plenxsdk_c.dll"):
        plenxsdk.Plenx(ctypes.CDLL("libm.so.6"))


def test_the_sources_are_those_of_python_3_9():
    for file in (BINDING / "plenxsdk").glob("*.py"):
        ast.parse(file.read_text(encoding="utf-8"), feature_version=(3, 9))


def test_the_host_of_the_readme_runs_and_is_that_of_the_module(plenx, dll, monkeypatch, capsys):
    dll.fake_wait_for_init()
    (host,) = re.findall(r"```python\n(import plenxsdk\n.*?)```", (BINDING / "README.md").read_text(),
                         re.DOTALL)
    assert host.strip() in re.sub("^    ", "", plenxsdk.__doc__, flags=re.MULTILINE)
    monkeypatch.setattr(plenxsdk, "load", lambda: plenx)
    exec(host, {})
    assert capsys.readouterr().out == "STATUS 1 home 1\n"
