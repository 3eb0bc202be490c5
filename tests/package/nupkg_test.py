"""The package for NuGet: what is in it, and that hosts in C# run with it. They run by .NET Core for
Windows under Wine, with the development service."""

import json
import os
import pathlib
import re
import shutil
import xml.etree.ElementTree as ElementTree
import zipfile

import pytest

from binding_files import (expect_all_licences, expect_development_files, expect_loads,
                           expect_those_of_the_sdk)
from conftest import run, unpack_into, windows_path
from contents_test import SOURCES

README = os.path.join(SOURCES, "bindings", "dotnet", "README.md")
# Every .NET that takes netstandard2.0 has these three, even if only as names that lead elsewhere.
REFERENCES = {"mscorlib", "System", "System.Core"}

# Waits in each of the ways that the package has, and ends while a read and a thread still wait.
WAITING_HOST = r"""using System;
using System.Threading;
using System.Threading.Tasks;
using PlenxSdk;

class Host
{
    static void Main()
    {
        var queue = new PlenxQueue();
        Plenx.Init(@"C:\Plenx\App", @"C:\Plenx\Data");
        WaitHandle set = queue.MakeWaitHandle();
        Console.WriteLine("nothing yet: " + !set.WaitOne(0));
        Console.WriteLine("cancelled: " + IsCancelled(queue));
        Plenx.Start(PlenxService.Pc, "home", "argument");
        Console.WriteLine("set: " + set.WaitOne(60000));
        PlenxEvent started = queue.ReadAsync().Result;
        Console.WriteLine("start " + started.Value + " of " + started.Text);
        while (queue.Next(1000) != null)
        {
        }
        Console.WriteLine("reset: " + !set.WaitOne(0));
        Task<PlenxEvent> read = queue.ReadAsync();
        Plenx.Stop(PlenxService.Pc, "home");
        Console.WriteLine("stop " + read.Result.Value + " of " + read.Result.Text);
        while (queue.Next(1000) != null)
        {
        }
        read = queue.ReadAsync();
        queue.Dispose();
        Console.WriteLine("closed: " + ResultOf(read));
        var other = new PlenxQueue();
        other.ReadAsync();
        new Thread(() => other.Next()) { IsBackground = true }.Start();
        Thread.Sleep(300);
        Console.WriteLine("ends");
    }

    static bool IsCancelled(PlenxQueue queue)
    {
        using (var source = new CancellationTokenSource(100))
        {
            var read = queue.ReadAsync(source.Token);
            return ((IAsyncResult)read).AsyncWaitHandle.WaitOne(20000) && read.IsCanceled;
        }
    }

    static PlenxResult ResultOf(Task<PlenxEvent> read)
    {
        try
        {
            read.Wait(20000);
            return 0;
        }
        catch (AggregateException e)
        {
            return ((PlenxException)e.InnerException).Result;
        }
    }
}
"""


@pytest.fixture(scope="module")
def nupkg(bindings):
    (nupkg,) = bindings.glob("*.nupkg")
    return nupkg


@pytest.fixture(scope="module")
def unpacked(nupkg, version, tmp_path_factory):
    """The package where NuGet puts it: in a folder of its name and version."""
    folder = tmp_path_factory.mktemp("nuget packages") / "plenxsdk" / version
    folder.mkdir(parents=True)
    return unpack_into(nupkg, folder)


@pytest.fixture(scope="module")
def version(archive):
    return archive.name.split("-")[1]


def build(tmp_path, program, unpacked):
    """Builds a program of one file beside the assembly, and gives its path."""
    (tmp_path / "Host.cs").write_text(program)
    assembly = unpacked / "lib" / "netstandard2.0" / "plenxsdk.net.dll"
    (tmp_path / assembly.name).write_bytes(assembly.read_bytes())
    built = run("mcs", "-warnaserror", f"-r:{assembly}", "Host.cs", cwd=tmp_path)
    assert built.returncode == 0, built.stdout
    return tmp_path / "Host.exe"


def tell_dotnet_where(program, unpacked, version):
    """Writes beside the program what a build by the .NET SDK writes: which packages it uses."""
    natives = sorted(path.name for path in (unpacked / "runtimes" / "win-x64" / "native").iterdir())
    packages = unpacked.parent.parent
    framework = {"name": "Microsoft.NETCore.App", "version": "2.0.0"}
    (program.parent / "Host.runtimeconfig.json").write_text(json.dumps({"runtimeOptions": {
        "framework": framework, "additionalProbingPaths": [windows_path(packages)]}}))
    target = ".NETCoreApp,Version=v2.0"
    (program.parent / "Host.deps.json").write_text(json.dumps({
        "runtimeTarget": {"name": target, "signature": ""},
        "targets": {target: {
            "Host/1.0.0": {"dependencies": {"plenxsdk": version}, "runtime": {"Host.exe": {}}},
            f"plenxsdk/{version}": {
                "runtime": {"lib/netstandard2.0/plenxsdk.net.dll": {}},
                "runtimeTargets": {f"runtimes/win-x64/native/{name}": {
                    "rid": "win-x64", "assetType": "native"} for name in natives}}}},
        "libraries": {
            "Host/1.0.0": {"type": "project", "serviceable": False, "sha512": ""},
            f"plenxsdk/{version}": {"type": "package", "serviceable": False, "sha512": "",
                                    "path": f"plenxsdk/{version}"}}}))


def run_on_windows(tmp_path, program, unpacked, version):
    """The finished host, run by .NET Core for Windows."""
    built = build(tmp_path, program, unpacked)
    (tmp_path / "plenxsdk.net.dll").unlink()  # NuGet leaves it in its folder
    tell_dotnet_where(built, unpacked, version)
    return run("wine", os.path.join(os.environ["PLENX_WINDOWS_DOTNET"], "dotnet.exe"), built.name,
               cwd=tmp_path)


@pytest.fixture
def install_folder(unpacked):
    """What the README asks for before a host can run."""
    plenx = pathlib.Path(os.environ["WINEPREFIX"]) / "drive_c" / "Plenx"
    (plenx / "Data").mkdir(parents=True)
    shutil.copytree(unpacked / "development", plenx / "App")
    yield plenx
    shutil.rmtree(plenx)


def test_the_name_and_the_manifest_have_the_version_of_the_sdk(nupkg, unpacked, version):
    assert nupkg.name == f"plenxsdk.{version}.nupkg"
    root = ElementTree.parse(unpacked / "plenxsdk.nuspec").getroot()
    told = {element.tag.split("}")[1]: element.text for element in root.iter()}
    assert (told["id"], told["version"]) == ("plenxsdk", version)


def test_the_checksum_beside_the_package_holds(nupkg):
    result = run("sha256sum", "--check", "--strict", nupkg.name + ".sha256", cwd=nupkg.parent)
    assert result.returncode == 0, result.stdout


def test_every_file_has_a_content_type_and_the_manifest_is_found(nupkg):
    with zipfile.ZipFile(nupkg) as file:
        assert file.testzip() is None
        names = file.namelist()
        types = file.read("[Content_Types].xml").decode()
        relations = file.read("_rels/.rels").decode()
    known = set(re.findall(r'Extension="(\w+)"', types))
    assert {name.rsplit(".", 1)[1] for name in names[1:]} == known
    assert names[0] == "[Content_Types].xml"
    assert re.search(r'Target="/(\S+)"', relations).group(1) in names


def test_the_dlls_are_those_of_the_sdk(unpacked, package):
    expect_those_of_the_sdk(unpacked / "runtimes" / "win-x64" / "native", package)


def test_no_dll_has_the_name_of_the_assembly(unpacked):
    """They would lie in one folder, where Windows ignores the case of names."""
    names = [path.name.lower() for path in unpacked.rglob("*.dll")
             if path.parent.name != "development"]
    assert len(names) == len(set(names)) == 8


def test_the_dlls_load_from_their_folder(unpacked, tmp_path):
    expect_loads(unpacked / "runtimes" / "win-x64" / "native", tmp_path)


def test_the_file_for_dotnet_framework_names_the_folder_of_the_dlls(unpacked):
    folder = unpacked / "build" / "net461"
    text = (folder / "plenxsdk.targets").read_text()
    ElementTree.fromstring(text)
    (dlls,) = re.findall(r'\$\(MSBuildThisFileDirectory\)([^"]+)\\\*\.dll', text)
    assert (folder / dlls.replace("\\", "/")).resolve() == (
        unpacked / "runtimes" / "win-x64" / "native").resolve()


def test_all_licences_are_there(unpacked, package):
    expect_all_licences(unpacked / "licenses", package)


def test_the_files_for_development_are_those_of_the_sdk(unpacked, package):
    expect_development_files(unpacked / "development", package)


def test_the_page_of_the_package_is_its_readme(unpacked):
    with open(README, encoding="utf-8") as file:
        readme = file.read()
    assert (unpacked / "README.md").read_text(encoding="utf-8") == readme
    assert not re.search(r"\]\((?!https?://)", readme), "a link that leads nowhere from there"


def test_the_assembly_needs_only_what_every_dotnet_has_and_tells_the_version(unpacked, version,
                                                                             tmp_path):
    program = build(tmp_path, """using System;
class Host
{
    static void Main()
    {
        var assembly = typeof(PlenxSdk.Plenx).Assembly;
        Console.WriteLine(assembly.GetName().Version);
        foreach (var reference in assembly.GetReferencedAssemblies())
        {
            Console.WriteLine(reference.Name);
        }
    }
}
""", unpacked)
    told, *references = run("mono", program).stdout.split()
    assert told == version + ".0"
    assert set(references) <= REFERENCES


def test_every_public_member_has_its_words(unpacked):
    root = ElementTree.parse(unpacked / "lib" / "netstandard2.0" / "plenxsdk.net.xml").getroot()
    summaries = {member.get("name"): member.findtext("summary") for member in root.iter("member")}
    assert "M:PlenxSdk.PlenxQueue.ReadAsync(System.Threading.CancellationToken)" in summaries
    assert all((text or "").strip() for text in summaries.values())


def host_of_the_readme():
    with open(README, encoding="utf-8") as file:
        (host,) = re.findall(r"```csharp\n(.*?)```", file.read(), re.DOTALL)
    return host


def test_the_host_of_the_readme_starts_a_real_service(unpacked, version, install_folder, tmp_path):
    result = run_on_windows(tmp_path, host_of_the_readme(), unpacked, version)
    assert (result.returncode, result.stdout.strip()) == (
        0, "Status service Pc type 0 value 1: home")


def test_on_windows_reads_wait_handles_and_the_end_of_the_process_work(unpacked, version,
                                                                       install_folder, tmp_path):
    result = run_on_windows(tmp_path, WAITING_HOST, unpacked, version)
    assert (result.returncode, result.stdout.split("\n")) == (0, [
        "nothing yet: True", "cancelled: True", "set: True", "start 1 of home", "reset: True",
        "stop 0 of home", "closed: Handle", "ends", ""])


def test_the_host_of_the_readme_says_on_another_system_what_is_missing(unpacked, tmp_path):
    result = run("mono", build(tmp_path, host_of_the_readme(), unpacked))
    assert result.returncode != 0
    assert "DllNotFoundException: plenxsdk_c.dll, or a DLL that it needs, was not found." in (
        result.stdout)


def test_two_packings_are_the_same_bytes(unpacked, package, tmp_path):
    packed = []
    for umask in (0o022, 0o077):
        folder = tmp_path / oct(umask)
        folder.mkdir()
        result = run("/usr/bin/python3", os.path.join(SOURCES, "package", "nupkg.py"), package,
                     unpacked / "lib" / "netstandard2.0", "1.2", "1700000000", folder, umask=umask,
                     env={"PYTHONDONTWRITEBYTECODE": "1"})
        assert result.returncode == 0, result.stdout
        packed.append((folder / "plenxsdk.1.2.nupkg").read_bytes())
    assert packed[0] == packed[1]
