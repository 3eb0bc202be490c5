"""Shows that the files in a language's package are those of the SDK, and that the DLLs load there."""

import re

from conftest import APP_FILES, TRIPLE, run, windows_path

# Loads the DLL as the bindings let Windows load it: by its absolute path, without PATH and without
# the current folder. Ends with 7 when a call came back.
LOADER = """#include <windows.h>
#include <stdint.h>
int main(int count, char** arguments) {
    (void)count;
    HMODULE dll = LoadLibraryExA(arguments[1], NULL, 0x100 | 0x1000);
    if (dll == NULL) return 1;
    int32_t (*open)(uint32_t) = (int32_t (*)(uint32_t))(void*)GetProcAddress(dll, "plenx_open");
    return open != NULL && open(1) == 0 ? 7 : 2;
}
"""
# Every Windows has these DLLs.
SYSTEM = {"kernel32.dll", "ntdll.dll", "msvcrt.dll", "advapi32.dll", "rpcrt4.dll", "shell32.dll",
          "user32.dll", "ole32.dll"}


def imports(dll):
    told = run(f"{TRIPLE}-objdump", "-p", dll).stdout
    return {name.lower() for name in re.findall(r"DLL Name: (\S+)", told)}


def expect_those_of_the_sdk(folder, package):
    dlls = sorted(folder.glob("*.dll"))
    assert "plenxsdk_c.dll" in [dll.name for dll in dlls]
    for dll in dlls:
        assert dll.read_bytes() == (package / "bin" / dll.name).read_bytes(), dll.name
    needed = set().union(*(imports(dll) for dll in dlls)) - SYSTEM
    assert needed | {"plenxsdk_c.dll"} == {dll.name.lower() for dll in dlls}


def expect_development_files(folder, package):
    assert sorted(path.name for path in folder.iterdir()) == sorted(APP_FILES)
    for name in APP_FILES:
        assert (folder / name).read_bytes() == (package / "bin" / name).read_bytes(), name


def expect_all_licences(folder, package):
    told = {path.name: path.read_bytes() for path in folder.iterdir()}
    assert told == {path.name: path.read_bytes() for path in (package / "licenses").iterdir()}


def expect_loads(folder, tmp_path):
    (tmp_path / "loader.c").write_text(LOADER)
    built = run(f"{TRIPLE}-gcc", "-Wall", "-Wextra", "-Werror", "loader.c", "-o", "loader.exe",
                cwd=tmp_path)
    assert built.returncode == 0, built.stdout
    dll = windows_path(folder / "plenxsdk_c.dll")
    assert run("wine", "loader.exe", dll, cwd=tmp_path).returncode == 7
