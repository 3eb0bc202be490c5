"""A service is built and judged with the unpacked package alone, as its author's build server does it."""

import os
import shutil
import xml.etree.ElementTree

from conftest import run, windows_path


def judge(package, folder, program, only, known=""):
    """The author's copy of the script, as it is called on a build server."""
    shutil.copy(package / "examples" / "hello-service" / "judge.cmd", folder)
    (folder / "known.txt").write_text(known)
    return run("wine", "cmd", "/c", "judge.cmd", windows_path(program), "results", cwd=folder,
               env={**os.environ, "PLENXSDK": windows_path(package),
                    "PLENX_JUDGE_OPTIONS": f"--only {only}"})


def test_the_example_passes_its_own_script(package, hello, tmp_path):
    result = judge(package, tmp_path, hello, "start,reply,create-group,ping,stop,folder,restart")
    assert result.returncode == 0, result.stdout
    assert "failed" not in result.stdout
    assert {path.name for path in (tmp_path / "results").iterdir()} == {
        "judge.html", "judge.json", "judge.xml"}


def test_a_known_failure_that_has_gone_fails_the_script(package, hello, tmp_path):
    result = judge(package, tmp_path, hello, "ping", known="ping/1  # mended long ago\n")
    assert result.returncode == 1, result.stdout
    assert "GONE ping/1" in result.stdout
    suite = xml.etree.ElementTree.parse(tmp_path / "results" / "judge.xml").getroot()
    assert [case.get("name") for case in suite.iter("testcase")
            if case.find("failure") is not None] == ["ping/1"]


def test_the_script_without_a_program_tells_its_usage(package, tmp_path):
    shutil.copy(package / "examples" / "hello-service" / "judge.cmd", tmp_path)
    result = run("wine", "cmd", "/c", "judge.cmd", cwd=tmp_path)
    assert result.returncode == 2
    assert "usage: judge.cmd PROGRAM [FOLDER]" in result.stdout


def test_the_development_service_passes(package, tmp_path):
    shutil.copy(package / "bin" / "plenxservice.exe", tmp_path)  # the package is in a path with blanks
    result = run("wine", package / "bin" / "plenxkit.exe", "judge", "--strict", "--only",
                 "start,reply,ping,notify,stop", "--service",
                 windows_path(tmp_path / "plenxservice.exe"))
    assert result.returncode == 0, result.stdout
