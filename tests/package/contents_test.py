"""What is in the package, and what is not."""

import os
import re

from conftest import TRIPLE, run, unpack

RUN_TIME = {"libstdc++-6.dll", "libgcc_s_seh-1.dll", "libwinpthread-1.dll"}
SOURCES = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))


def files(folder):
    return {str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file()}


def binaries(package):
    return sorted(path for path in (package / "bin").rglob("*") if path.is_file())


def test_the_name_of_the_zip_has_the_version_of_the_project(archive):
    with open(os.path.join(SOURCES, "CMakeLists.txt"), encoding="utf-8") as file:
        version = re.search(r"project\(plenxsdk VERSION (\S+)", file.read()).group(1)
    assert archive.name == f"plenxsdk-{version}-win64-mingw.zip"


def test_the_checksums_hold_and_name_every_file(package):
    result = run("sha256sum", "--check", "--strict", "--quiet", "SHA256SUMS", cwd=package)
    assert (result.returncode, result.stdout) == (0, "")
    named = {line.split("  ", 1)[1] for line in (package / "SHA256SUMS").read_text().splitlines()}
    assert named == files(package) - {"SHA256SUMS"}


def test_the_checksum_beside_the_zip_holds(archive):
    result = run("sha256sum", "--check", "--strict", archive.name + ".sha256", cwd=archive.parent)
    assert result.returncode == 0, result.stdout


def test_the_ship_list_names_every_file_of_bin_once(package):
    rows = re.findall(r"^\| `([^`]+)` \| (ship|replace|development only)",
                      (package / "SHIP.md").read_text(), re.MULTILINE)
    assert sorted(name for name, _ in rows) == sorted(files(package / "bin"))
    assert {name for name, what in rows if what == "ship"} == {
        "plenxsdk.dll", "plenxsdk_c.dll"} | RUN_TIME


def test_what_is_not_to_be_shipped_says_so_in_its_version(package):
    for name in ("LogHelper.dll", "distributedfile.dll", "dokan1.sys", "dokan1.dll",
                 "dokanfuse1.dll", "plenxservice.exe"):
        text = (package / "bin" / name).read_bytes().decode("utf-16-le", "replace")
        text += (package / "bin" / name).read_bytes()[1:].decode("utf-16-le", "replace")
        assert re.search("development stand-in|[Pp]laceholder|Stands in", text), name


def test_the_programs_hold_no_symbols_and_name_the_file_that_does(package):
    for path in binaries(package):
        if path.name in RUN_TIME:
            continue
        sections = run(f"{TRIPLE}-objdump", "-h", path).stdout
        assert ".debug_info" not in sections, path.name
        link = run(f"{TRIPLE}-objdump", "-s", "-j", ".gnu_debuglink", path).stdout
        assert path.name[:12] in link.replace("\n", ""), path.name
        symbols = package / "debug" / (str(path.relative_to(package / "bin")) + ".debug")
        assert symbols.is_file(), path.name


def test_the_symbols_tell_the_line_of_an_address(package):
    exports = run(f"{TRIPLE}-nm", package / "debug" / "plenxsdk.dll.debug").stdout
    address = re.search(r"^(\w+) T _ZN13DistributedFs12PLENXManager11GetInstanceEv$", exports,
                        re.MULTILINE).group(1)
    # with what is inlined there
    lines = run(f"{TRIPLE}-addr2line", "-i", "-e", package / "debug" / "plenxsdk.dll.debug", address)
    assert re.search(r"^/plenxsdk/src/facade/\w+\.cpp:[1-9]", lines.stdout, re.MULTILINE), lines.stdout


def test_no_file_names_a_folder_of_the_machine_that_built_it(package):
    for path in sorted(package.rglob("*")):
        if path.is_file():
            assert SOURCES.encode() not in path.read_bytes(), path


def test_no_link_of_a_text_leads_nowhere(package):
    for page in package.rglob("*.md"):
        for target in re.findall(r"\]\(([^)#:]+)[)#]", page.read_text()):
            assert (page.parent / target).exists(), f"{page.relative_to(package)}: {target}"


def test_every_page_and_licence_is_there(package):
    assert (package / "share" / "doc" / "plenxsdk" / "html" / "index.html").is_file()
    assert "GCC RUNTIME LIBRARY EXCEPTION" in " ".join(
        (package / "licenses" / "gcc-mingw-w64-base.txt").read_text().upper().split())
    for name in ("README.md", "CHANGELOG.md", "SHIP.md", "include/plenxsdk/plenx_manager.h",
                 "include/plenxsdk/plenx.h", "include/plenxsdk/plenx.hpp", "lib/plenxsdk_c.def",
                 "lib/plenxsdk_c.lib", "lib/libplenxsdk_c.dll.a"):
        assert (package / name).is_file(), name


def test_a_signed_package_verifies_against_its_certificate(tmp_path):
    certificate = os.environ["PLENX_TEST_CERTIFICATE"]
    package = unpack(os.environ["PLENX_SIGNED_PACKAGE"], tmp_path)
    for path in binaries(package):
        result = run("osslsigncode", "verify", "-CAfile", certificate, "-in", path)
        if path.name in RUN_TIME:
            assert "No signature found" in result.stdout, path.name
        else:
            assert result.returncode == 0 and "Signature verification: ok" in result.stdout, (
                path.name + "\n" + result.stdout)


def test_a_changed_signed_file_does_not_verify(tmp_path):
    certificate = os.environ["PLENX_TEST_CERTIFICATE"]
    path = unpack(os.environ["PLENX_SIGNED_PACKAGE"], tmp_path) / "bin" / "plenxsdk.dll"
    data = bytearray(path.read_bytes())
    data[0x1000] ^= 1
    path.write_bytes(data)
    result = run("osslsigncode", "verify", "-CAfile", certificate, "-in", path)
    assert result.returncode != 0
