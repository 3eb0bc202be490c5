"""A host is built from the unpacked package alone, in a clean folder, and run."""

import os
import re
import shutil

import pytest

from conftest import TRIPLE, run, unpack

COMPILER = f"{TRIPLE}-g++-posix"
PAGE = os.path.join(os.path.dirname(__file__), "..", "..", "docs", "getting-started.md")

HOST = """cmake_minimum_required(VERSION 3.20)
project(host CXX)
find_package(plenxsdk %s CONFIG REQUIRED)
add_executable(host host.cpp)
target_link_libraries(host PRIVATE plenxsdk::plenxsdk)
plenxsdk_deploy(host STAND_INS)
"""

# Ends with 7 when the DLL and all that it needs were found and a call came back.
PROGRAM = """#include <plenxsdk/plenx_manager.h>
int main() {
    using namespace DistributedFs;
    PLENXManager::GetInstance().SetConfig(kPcService, kLocaleConfig, std::string("en_GB"));
    return 7;
}
"""


def configure(package, folder, version="", options=()):
    """A small host of its own, configured against the package."""
    (folder / "CMakeLists.txt").write_text(HOST % version)
    (folder / "host.cpp").write_text(PROGRAM)
    return run("cmake", "-G", "Ninja", "-S", folder, "-B", folder / "build",
               "--toolchain", package / "cmake" / "mingw-w64-host.cmake", *options)


def told(result):
    """What CMake printed, without its line breaks."""
    return " ".join(result.stdout.split())


def build(folder):
    result = run("cmake", "--build", folder / "build")
    assert result.returncode == 0, result.stdout


def test_find_package_builds_a_host_that_runs_from_its_own_folder(package, tmp_path):
    result = configure(package, tmp_path, "1.0")
    assert result.returncode == 0, result.stdout
    build(tmp_path)
    beside = {path.name for path in (tmp_path / "build").glob("*.dll")}
    assert beside == {"plenxsdk.dll", "libstdc++-6.dll", "libgcc_s_seh-1.dll",
                      "libwinpthread-1.dll", "LogHelper.dll", "distributedfile.dll"}
    assert run("wine", "host.exe", cwd=tmp_path / "build").returncode == 7


def test_without_stand_ins_exactly_the_files_to_ship_are_deployed(package, tmp_path):
    (tmp_path / "project").mkdir()
    configure(package, tmp_path / "project")
    project = (tmp_path / "project" / "CMakeLists.txt")
    project.write_text(project.read_text().replace(" STAND_INS", ""))
    build(tmp_path / "project")
    rows = re.findall(r"^\| `([^`]+)` \| ship,", (package / "SHIP.md").read_text(), re.MULTILINE)
    beside = {path.name for path in (tmp_path / "project" / "build").glob("*.dll")}
    assert beside == set(rows)


def test_pkg_config_builds_a_host_that_imports_the_library(package, tmp_path):
    (tmp_path / "host.cpp").write_text(PROGRAM)
    flags = run("pkg-config", "--cflags", "--libs", "plenxsdk", env={
        **os.environ, "PKG_CONFIG_PATH": str(package / "lib" / "pkgconfig")})
    assert flags.returncode == 0, flags.stdout
    result = run("sh", "-c", f'{COMPILER} -std=c++17 -o host.exe host.cpp {flags.stdout.strip()}',
                 cwd=tmp_path)
    assert result.returncode == 0, result.stdout
    assert "DLL Name: plenxsdk.dll" in run(f"{TRIPLE}-objdump", "-p", tmp_path / "host.exe").stdout


@pytest.mark.parametrize("version, fits", [("1.0", True), ("1.0.0", True), ("2.0", False),
                                           ("1.999", False), ("0.9", False)])
def test_a_version_fits_within_its_major_number(package, tmp_path, version, fits):
    result = configure(package, tmp_path, version)
    assert (result.returncode == 0) == fits, result.stdout
    if not fits:
        assert f'compatible with requested version "{version}"' in told(result)


@pytest.mark.parametrize("flag, reason", [
    ("-D_UCRT", "this compiler uses the C run time ucrtbase.dll"),
    ("-U__SEH__", "this compiler does not unwind by SEH"),
    ("-D_GLIBCXX_USE_CXX11_ABI=0", "gives std::string another layout than in plenxsdk.dll"),
])
def test_another_kind_of_compiler_is_refused_with_the_reason(package, tmp_path, flag, reason):
    result = configure(package, tmp_path, options=[f"-DCMAKE_CXX_FLAGS={flag}"])
    assert result.returncode != 0
    assert reason in told(result)
    assert f"(the compiler is {shutil.which(COMPILER)})" in told(result)


def test_a_compiler_for_another_system_is_refused(package, tmp_path):
    configure(package, tmp_path)
    result = run("cmake", "-G", "Ninja", "-S", tmp_path, "-B", tmp_path / "native",
                 f"-DCMAKE_PREFIX_PATH={package}", "-DCMAKE_CXX_COMPILER=g++")
    assert result.returncode != 0
    assert "plenxsdk: this compiler builds for another system" in told(result)
    assert "--toolchain cmake/mingw-w64-host.cmake of the package" in told(result)


@pytest.mark.parametrize("where", ["CMAKE_EXE_LINKER_FLAGS", "CMAKE_CXX_FLAGS"])
@pytest.mark.parametrize("flag", ["-static", "-static-libstdc++", "-static-libgcc -s"])
def test_a_run_time_of_its_own_is_refused(package, tmp_path, where, flag):
    result = configure(package, tmp_path, options=[f"-D{where}=-O2 {flag}"])
    assert result.returncode != 0
    assert "-static gives the host a C++ run time of its own" in told(result)


@pytest.mark.parametrize("command", ["target_link_libraries(host PRIVATE -static)",
                                     "target_link_options(host PRIVATE -static-libstdc++)"])
def test_a_run_time_of_its_own_for_a_deployed_target_is_refused(package, tmp_path, command):
    configure(package, tmp_path)
    project = tmp_path / "CMakeLists.txt"
    project.write_text(project.read_text() + command + "\n")
    result = run("cmake", tmp_path / "build")
    assert result.returncode != 0
    assert "-static gives the host a C++ run time of its own" in told(result)


def test_a_host_in_c_and_cpp_is_built_with_the_packages_tool_chain(package, tmp_path):
    configure(package, tmp_path)
    shutil.rmtree(tmp_path / "build")
    project = tmp_path / "CMakeLists.txt"
    project.write_text(project.read_text().replace("project(host CXX)", "project(host)"))
    result = run("cmake", "-G", "Ninja", "-S", tmp_path, "-B", tmp_path / "build",
                 "--toolchain", package / "cmake" / "mingw-w64-host.cmake")
    assert result.returncode == 0, result.stdout
    build(tmp_path)


def test_the_page_of_your_own_project_shows_a_host_that_is_built(package, tmp_path):
    page = os.path.join(os.path.dirname(PAGE), "your-project.md")
    with open(page, encoding="utf-8") as file:
        text = file.read()
    configure(package, tmp_path)
    shutil.rmtree(tmp_path / "build")
    (tmp_path / "main.cpp").write_text(PROGRAM)
    (shown,) = re.findall(r"^```cmake\n(.*?)^```", text, re.MULTILINE | re.DOTALL)
    (tmp_path / "CMakeLists.txt").write_text(shown)
    commands = re.findall(r"^    ((?:cmake|export|x86_64).*(?:\n {8}.*)*)", text, re.MULTILINE)
    assert len(commands) == 4
    sdk = tmp_path / "sdk"  # pkg-config in a shell takes no blanks
    sdk.symlink_to(package)
    result = run("bash", "-e", "-c", "\n".join(commands).replace("PACKAGE", str(sdk)), cwd=tmp_path)
    assert result.returncode == 0, result.stdout
    assert (tmp_path / "build" / "myhost.exe").is_file() and (tmp_path / "myhost.exe").is_file()


def test_a_compiler_without_the_shared_run_time_is_refused(package, tmp_path):
    result = configure(package, tmp_path, options=["-DCMAKE_CXX_FLAGS=-nostdinc++"])
    assert result.returncode != 0
    assert "has no libstdc++, the C++ run time that plenxsdk.dll shares with its host" in told(
        result)


def test_a_newer_run_time_is_refused_until_it_is_named(archive, tmp_path):
    package = unpack(archive, tmp_path)
    config = package / "lib" / "cmake" / "plenxsdk" / "plenxsdkConfig.cmake"
    text = config.read_text()
    (release,) = re.findall(r"PLENXSDK_LIBSTDCXX=(\d+)", text)
    config.write_text(text.replace(f"LIBSTDCXX={release}", f"LIBSTDCXX={int(release) - 1}"))
    host = tmp_path / "host"
    host.mkdir()
    result = configure(package, host)
    assert result.returncode != 0
    assert "this compiler's libstdc++ is newer than the one in the package; set" in told(result)
    result = configure(package, host, options=[f"-Dplenxsdk_CXX_RUNTIME_DIR={package / 'bin'}"])
    assert result.returncode == 0, result.stdout
    build(host)


def test_getting_started_works_as_its_page_says(archive, tmp_path):
    with open(PAGE, encoding="utf-8") as file:
        page = file.read()
    commands = re.findall(r"^```sh\n(.*?)^```", page, re.MULTILINE | re.DOTALL)
    (printed,) = re.findall(r"^```text\n(NotifyStatus.*?)^```", page, re.MULTILINE | re.DOTALL)
    shutil.copy(archive, tmp_path)
    result = run("bash", "-e", "-c", "\n".join(commands), cwd=tmp_path)
    assert result.returncode == 0, result.stdout
    # the service's own lines come on threads of their own
    lines = [line.rstrip() for line in result.stdout.splitlines()]
    assert sorted(line for line in lines if line.startswith(("Notify", "The "))) == sorted(
        printed.splitlines())


def test_the_service_example_is_built_from_the_package_alone(hello):
    assert list(hello.parent.glob("*.exe")) == [hello]
