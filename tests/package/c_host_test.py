"""Hosts of the plain C interface are built from the unpacked package alone: by MinGW, and by a
compiler with Visual C++'s ABI."""

import pytest

from conftest import run

PROJECT = """cmake_minimum_required(VERSION 3.20)
project(host %(languages)s)
find_package(plenxsdk 1.0 CONFIG REQUIRED)
add_executable(host %(source)s)
target_link_libraries(host PRIVATE %(target)s)
plenxsdk_deploy(host C STAND_INS)
"""

# Ends with 7 when the DLL and all that it needs were found and a call came back.
C_PROGRAM = """#include <plenxsdk/plenx.h>
int main(void) {
    return plenx_open(PLENX_ABI) == 0 && plenx_set_int64(PLENX_PC, 0, 1) == 0 ? 7 : 1;
}
"""
CPP_PROGRAM = """#include <plenxsdk/plenx.hpp>
int main() {
    return plenx::Library::linked().open_queue(5) ? 7 : 1;
}
"""
CLASS_PROGRAM = "#include <plenxsdk/plenx_manager.h>\nint main() {}\n"

# clang in the role of Visual C++, without Microsoft's files, which the programs here do not need. It
# stands in for Visual C++ itself, which Debian does not have.
VISUAL_CPP = """set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
foreach(language C CXX)
  set(CMAKE_${language}_COMPILER_TARGET x86_64-pc-windows-msvc)
  set(CMAKE_${language}_COMPILER_WORKS TRUE)
  set(CMAKE_${language}_FLAGS_INIT "-ffreestanding -fuse-ld=lld")
endforeach()
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_RC_COMPILER llvm-rc)
set(CMAKE_SIZEOF_VOID_P 8)
set(CMAKE_MSVC_RUNTIME_LIBRARY "")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-nostdlib -Wl,/entry:main -Wl,/subsystem:console")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
"""


def told(result):
    return " ".join(result.stdout.split())


def write(folder, source, program, languages="C CXX", target="plenxsdk::c"):
    (folder / "CMakeLists.txt").write_text(PROJECT % {
        "languages": languages, "source": source, "target": target})
    (folder / source).write_text(program)


def configure(package, folder, *options):
    return run("cmake", "-G", "Ninja", "-S", folder, "-B", folder / "build",
               "-DCMAKE_BUILD_TYPE=Release", *options)


def configure_mingw(package, folder, *options):
    return configure(package, folder, "--toolchain", package / "cmake" / "mingw-w64-host.cmake",
                     *options)


def configure_visual_cpp(package, folder):
    (folder / "visual_cpp.cmake").write_text(VISUAL_CPP)
    return configure(package, folder, "--toolchain", folder / "visual_cpp.cmake",
                     f"-DCMAKE_PREFIX_PATH={package}", "-DCMAKE_C_STANDARD_LIBRARIES=",
                     "-DCMAKE_CXX_STANDARD_LIBRARIES=")


def expect_runs(configured, folder):
    assert configured.returncode == 0, configured.stdout
    built = run("cmake", "--build", folder / "build")
    assert built.returncode == 0, built.stdout
    assert (folder / "build" / "plenxsdk_c.dll").is_file()
    assert run("wine", "host.exe", cwd=folder / "build").returncode == 7


@pytest.mark.parametrize("source, program, languages", [
    ("host.c", C_PROGRAM, "C"), ("host.c", C_PROGRAM, "C CXX"), ("host.cpp", CPP_PROGRAM, "CXX")])
def test_mingw_builds_a_host_of_the_c_interface_that_runs(package, tmp_path, source, program,
                                                          languages):
    write(tmp_path, source, program, languages)
    expect_runs(configure_mingw(package, tmp_path), tmp_path)


def test_a_host_of_the_c_interface_may_have_a_run_time_of_its_own(package, tmp_path):
    write(tmp_path, "host.cpp", CPP_PROGRAM)
    expect_runs(configure_mingw(package, tmp_path, "-DCMAKE_EXE_LINKER_FLAGS=-static"), tmp_path)


def test_a_compiler_of_visual_cpps_kind_builds_a_host_that_runs(package, tmp_path):
    write(tmp_path, "host.c", C_PROGRAM)
    expect_runs(configure_visual_cpp(package, tmp_path), tmp_path)


def test_a_compiler_of_visual_cpps_kind_cannot_link_the_class(package, tmp_path):
    write(tmp_path, "host.cpp", CLASS_PROGRAM, target="plenxsdk::plenxsdk")
    result = configure_visual_cpp(package, tmp_path)
    assert result.returncode != 0
    assert "plenxsdk: this package is for MinGW-w64" in told(result)
    assert "Link plenxsdk::c instead" in told(result)


def test_a_project_without_cpp_cannot_link_the_class(package, tmp_path):
    write(tmp_path, "host.c", C_PROGRAM, "C", "plenxsdk::plenxsdk")
    result = configure_mingw(package, tmp_path)
    assert result.returncode != 0
    assert "plenxsdk: the project has no C++; it can link plenxsdk::c" in told(result)


def test_a_compiler_for_another_system_cannot_link_the_c_interface(package, tmp_path):
    write(tmp_path, "host.c", C_PROGRAM)
    result = configure(package, tmp_path, f"-DCMAKE_PREFIX_PATH={package}")
    assert result.returncode != 0
    assert "does not build for 64-bit Windows, as plenxsdk_c.dll does" in told(result)


def test_the_header_of_the_class_stops_visual_cpp_and_names_the_other_one(package, tmp_path):
    (tmp_path / "host.cpp").write_text(CLASS_PROGRAM)
    compile_it = ["clang++", "--target=x86_64-pc-windows-msvc", "-ffreestanding", "-fsyntax-only",
                  "-I", package / "include", tmp_path / "host.cpp"]
    result = run(*compile_it)
    assert result.returncode != 0
    assert "include plenxsdk/plenx.h or plenxsdk/plenx.hpp and link plenxsdk_c.lib" in told(result)
    # A build of the whole project by Visual C++ defines this.
    result = run(*compile_it, "-DPLENXSDK_BUILT_BY_VISUAL_CPP")
    assert "plenxsdk_c.lib" not in told(result)


@pytest.mark.parametrize("compiler", [
    ["gcc", "-std=c99", "-x", "c"], ["g++", "-std=c++98", "-x", "c++"],
    ["clang", "--target=x86_64-pc-windows-msvc", "-ffreestanding", "-std=c99", "-x", "c"],
    ["clang", "--target=x86_64-pc-windows-msvc", "-ffreestanding", "-std=c++98", "-x", "c++"]])
def test_the_c_header_stands_alone_for_old_languages_too(package, compiler):
    result = run(*compiler, "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only",
                 package / "include" / "plenxsdk" / "plenx.h")
    assert result.returncode == 0, result.stdout
