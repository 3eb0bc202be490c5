"""plenxverify as a stranger uses it: unpacked from its ZIP, run once in a short form, interrupted, killed, and
started where it must not begin."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import time
import zipfile

import pytest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "windows" / "kit"))

from terminal import Terminal  # noqa: E402

LONGEST = 300  # seconds for anything that is waited for
PREFIX = pathlib.Path(os.environ["WINEPREFIX"])
DRIVE = PREFIX / "drive_c"
RUN_FOLDER = DRIVE / "plenxverify-run"
SERVICES = {"PlenxPcSvc", "PlenxPhoneSvc", "PlenxOfficeSvc", "PlenxDevServiceTest", "Dokan1",
            "PlenxDriverTest"}
STAGES = ["load", "c-interface", "wire", "services", "driver", "demo", "scenarios", "hostile",
          "endings", "left-behind"]
# A part of the tests of each program, and of the scenarios, is enough to see that the command works. All of
# them are run elsewhere.
SCENARIOS = ("all-is-well", "crash-in-call", "start-never-ends")
SHORT = {"PLENX_TEST_ENDINGS": "1", "PLENX_TEST_HOSTILE": "60", "GTEST_TOTAL_SHARDS": "12",
         "GTEST_SHARD_INDEX": "0"}
# A run that is to be interrupted must last long enough.
LONG = {"GTEST_TOTAL_SHARDS": "1"}


@pytest.fixture(scope="session")
def archive():
    return pathlib.Path(os.environ["PLENX_VERIFY_PACKAGE"])


@pytest.fixture(scope="session")
def folder(archive):
    """The unpacked ZIP on the machine, in a folder with a blank in its name."""
    place = DRIVE / "my downloads"
    with zipfile.ZipFile(archive) as file:
        file.extractall(place)
    (inner,) = place.iterdir()
    for path in (inner / "programs" / "scenarios").iterdir():
        if path.stem not in SCENARIOS:
            path.unlink()
    return inner


def run(folder, *command, **environment):
    finished = subprocess.run(["wine", *command], cwd=folder, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8",
                              errors="replace", timeout=LONGEST, env={**os.environ, **SHORT, **environment})
    # Wine says this now and then when a process ends while one of its threads does.
    finished.stdout = re.sub("(?m)^wine client error:.*\n?", "", finished.stdout)
    return finished


def verify(folder, *options, **environment):
    return run(folder, "programs\\plenxkit.exe", "verify", *options, **environment)


def services():
    """Our services that are registered."""
    key = "HKLM\\System\\CurrentControlSet\\Services"
    listed = subprocess.run(["wine", "reg", "query", key], capture_output=True, encoding="utf-8",
                            errors="replace", check=True).stdout
    return {line.rsplit("\\", 1)[1].strip() for line in listed.splitlines() if "\\" in line} & SERVICES


def until(condition):
    end = time.monotonic() + 60
    while not condition():
        assert time.monotonic() < end
        time.sleep(0.2)


def nothing_is_left():
    return not RUN_FOLDER.exists() and not services()


def on_a_terminal(folder, *options, **environment):
    os.environ.update({**SHORT, **environment})
    return Terminal(folder, PREFIX, ["programs\\plenxkit.exe", "verify", *options])


def answer(terminal, text):
    """Wine's console takes the Enter key for a different key until the program reads."""
    terminal.wait_for_part("Begin? [y/N]")
    terminal.type(text)
    for _ in range(3):
        time.sleep(1)
        terminal.type("\r")


def test_the_zip_has_all_that_is_needed_and_nothing_of_the_machine_that_built_it(folder, archive):
    version = re.search(r"project\(plenxsdk VERSION (\S+)",
                        (SOURCES / "CMakeLists.txt").read_text(encoding="utf-8")).group(1)
    assert archive.name == f"plenxverify-{version}-win64.zip"
    assert {path.name for path in folder.iterdir()} == {"README.txt", "verify.cmd", "programs", "licenses"}
    for path in folder.rglob("*"):
        if path.is_file():
            content = path.read_bytes()
            assert str(SOURCES).encode() not in content, path
            assert not (path.suffix == ".exe" and b".debug_info" in content), path
    lines = (folder / "verify.cmd").read_bytes().split(b"\n")
    assert all(line.endswith(b"\r") for line in lines[:-1])


def test_a_short_run_finds_all_as_expected_and_leaves_nothing(folder):
    before = {path.name for path in DRIVE.iterdir()}
    finished = run(folder, "cmd", "/c", ".\\verify.cmd", "--yes", "--out", "C:\\results", "--junit",
                   "C:\\results\\results.xml")
    assert finished.returncode == 0, finished.stdout
    lines = finished.stdout.splitlines()
    shown = [line.split()[0] for line in lines if re.match(r"  \S+ +\d+ passed", line)]
    assert shown == STAGES, finished.stdout
    assert "All is as expected." in lines
    assert {path.name for path in DRIVE.iterdir()} - before == {"results"}
    assert nothing_is_left()
    assert 'name="wire/calls/' in (DRIVE / "results" / "results.xml").read_text()


def test_the_zip_of_the_results_is_one_and_names_nobody():
    (sent,) = (DRIVE / "results").glob("plenxverify-*.zip")
    names = {os.environ.get("USER", "root"), os.uname().nodename}
    with zipfile.ZipFile(sent) as file:
        assert file.testzip() is None
        assert {"report.html", "results.json", "results.xml", "logs/wire-calls.txt"} <= set(file.namelist())
        for name in file.namelist():
            text = file.read(name).decode("utf-8", "replace")
            for person in names:
                assert not re.search(rf"(?i)(?<![a-z0-9]){re.escape(person)}(?![a-z0-9])", text), name


def test_it_refuses_to_begin_beside_a_product(folder):
    run(folder, "sc", "create", "PlenxPcSvc", "binPath=", "C:\\product\\plenxservice.exe")
    try:
        finished = verify(folder, "--yes")
        assert finished.returncode == 3
        assert "the service PlenxPcSvc, C:\\product\\plenxservice.exe" in finished.stdout
        assert verify(folder, "--clean").returncode == 3
        assert "PlenxPcSvc" in services()
    finally:
        run(folder, "sc", "delete", "PlenxPcSvc")


def test_it_needs_somebody_to_ask(folder):
    assert run(folder, "cmd", "/c", ".\\verify.cmd", "--only", "load").returncode == 2
    finished = verify(folder)
    assert (finished.returncode, finished.stdout) == (
        2, "plenxkit verify: give --yes, because there is nobody to ask\n")


def test_who_does_not_agree_gets_nothing_done(folder):
    terminal = on_a_terminal(folder, "--only", "load")
    answer(terminal, "n")
    assert terminal.exit_code() == 3
    assert nothing_is_left()


def test_ctrl_c_removes_everything_and_writes_the_report(folder):
    shutil.rmtree(folder / "plenxverify-results", ignore_errors=True)
    terminal = on_a_terminal(folder, "--only", "load,services", **LONG)
    answer(terminal, "y")
    terminal.wait_for_part("] 3/6 services/service")
    until(services)
    second = verify(folder, "--yes")
    assert second.returncode == 3
    assert "another plenxkit verify runs" in second.stdout
    terminal.type("\x03")
    terminal.wait_for_part("The run was interrupted. Everything was removed.")
    assert terminal.exit_code() == 5
    assert nothing_is_left()
    assert len(list((folder / "plenxverify-results").glob("*.zip"))) == 1


def test_a_closed_window_removes_everything(folder):
    terminal = on_a_terminal(folder, "--yes", "--only", "services", **LONG)
    terminal.wait_for_part("] 1/4 services/service")
    until(services)
    os.close(terminal.terminal)
    until(nothing_is_left)


def start_and_wait_for_a_service(folder):
    process = subprocess.Popen(["wine", "programs\\plenxkit.exe", "verify", "--yes", "--only", "services"],
                               cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               env={**os.environ, **SHORT, **LONG})
    until(services)
    return process


def test_a_run_that_is_killed_is_cleaned_up_by_its_watcher(folder):
    process = start_and_wait_for_a_service(folder)
    process.kill()
    process.wait()
    until(nothing_is_left)


def cut_the_power_while_there_is_a_service(folder):
    """Each test of a run removes its services, so some cuts come when there is none."""
    for _ in range(5):
        start_and_wait_for_a_service(folder)
        subprocess.run(["wineserver", "-k"], check=True)
        subprocess.run(["wineserver", "-w"], check=True)
        assert RUN_FOLDER.exists()
        if services():
            return
        assert verify(folder, "--clean").returncode == 0
    pytest.fail("no cut came while there was a service")


def test_what_a_power_cut_has_left_is_removed_by_clean(folder):
    cut_the_power_while_there_is_a_service(folder)
    finished = verify(folder, "--yes", "--only", "load")
    assert finished.returncode == 3
    assert "plenxkit verify --clean removes it" in finished.stdout
    cleaned = verify(folder, "--clean")
    assert (cleaned.returncode, cleaned.stdout) == (0, "Nothing of an earlier run is left.\n")
    assert nothing_is_left()
