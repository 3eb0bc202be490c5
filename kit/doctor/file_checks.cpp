// Checks the files of the library, of the install folder and of a driver upgrade.

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "doctor/checks.h"
#include "doctor/facts.h"
#include "doctor/needed_dlls.h"

namespace PlenxHost {
namespace {

constexpr const char* kLibraryFiles[] = {
    "plenxsdk.dll",
    "LogHelper.dll",
    "distributedfile.dll",
};
constexpr const char* kCategories[] = {"archive", "file", "audio", "picture", "video"};

std::string WithVersion(const std::string& name, const std::optional<std::string>& version) {
    return name + (version ? " " + *version : ", which has no version");
}

void CheckFile(const std::string& folder, const std::string& name, const std::string& advice,
               System& system, Findings& findings) {
    const std::string path = folder + "\\" + name;
    switch (system.Look(path)) {
    case PathKind::kFile:
        findings.Ok(WithVersion(name, system.VersionOf(path)));
        break;
    case PathKind::kFolder:
        findings.Problem(name + " is a folder", advice);
        break;
    case PathKind::kAbsent:
        findings.Problem(name + " is missing", advice);
        break;
    }
}

bool HasBlank(const std::string& path) {
    return path.find(' ') != std::string::npos;
}

bool IsAscii(const std::string& path) {
    for (const char byte : path) {
        if (static_cast<unsigned char>(byte) >= 0x80) {
            return false;
        }
    }
    return true;
}

bool IsFullPath(const std::string& path) {
    const bool onDrive = path.size() > 2 && path[1] == ':' && (path[2] == '\\' || path[2] == '/');
    return onDrive || path.compare(0, 2, "\\\\") == 0;
}

// The separator of C:\ belongs to the path.
bool EndsInSeparator(const std::string& path) {
    const bool isDrive = path.size() == 3 && path[1] == ':';
    return !path.empty() && !isDrive && (path.back() == '\\' || path.back() == '/');
}

// The system tries each part of an unquoted path that ends before a blank as a program.
std::optional<std::string> ProgramInTheWay(const std::string& path, System& system) {
    for (std::size_t blank = path.find(' '); blank != std::string::npos;
         blank = path.find(' ', blank + 1)) {
        for (const char* ending : {"", ".exe"}) {
            std::string program = path.substr(0, blank) + ending;
            if (system.Look(program) == PathKind::kFile) {
                return program;
            }
        }
    }
    return std::nullopt;
}

void CheckPath(const std::string& install, System& system, Findings& findings) {
    if (!IsFullPath(install)) {
        findings.Problem(install + " is not a full path",
                         "Give Init a path that begins with a drive, because services are "
                         "registered with it and start in another folder.");
    }
    if (EndsInSeparator(install)) {
        findings.Note(install + " ends in a separator", "Give Init the path without it.");
    }
    if (!IsAscii(install)) {
        findings.Note(install + " has letters beyond ASCII",
                      "Use a path of ASCII letters, because not all programs can handle others.");
    }
    if (!HasBlank(install)) {
        return;
    }
    if (const auto program = ProgramInTheWay(install + "\\" + kServiceProgram, system)) {
        findings.Problem(
            *program + " would be started as LocalSystem instead of the service program",
            "Remove it, and find out who put it there. Service paths are registered without "
            "quotes, so use an install folder without blanks.");
    } else {
        findings.Note(install + " has blanks",
                      "Use a path without blanks. Service paths are registered without quotes, so "
                      "a program planted at a blank would be started as LocalSystem.");
    }
}

std::string InstallRedistributable(const std::string& consequence) {
    return "Install Microsoft's Visual C++ Redistributable for x64; without it " + consequence;
}

void CheckDllsOfServices(const std::string& install, System& system, Findings& findings) {
    for (const NeededDll& dll : NeededDlls(install, kServiceProgram, system)) {
        if (!dll.isThere) {
            const std::string consequence = "Windows cannot start the services.";
            findings.Problem(dll.name + " is missing: " + dll.neededBy + " needs it",
                             IsOfVisualCpp(dll.name)
                                 ? InstallRedistributable(consequence)
                                 : "Install it beside " + std::string(kServiceProgram) +
                                       "; without it " + consequence);
        }
    }
}

void CheckIconFolders(const std::string& install, System& system, Findings& findings) {
    std::string missing;
    for (const std::string category : kCategories) {
        if (system.Look(install + "\\res\\plenx\\icon\\" + category) != PathKind::kFolder) {
            missing += (missing.empty() ? "" : ", ") + category;
        }
    }
    if (missing.empty()) {
        findings.Ok("res\\plenx\\icon has its five folders");
    } else {
        findings.Note("res\\plenx\\icon has no folder for: " + missing,
                      "Install the icon folders. Without them these categories show no icon of "
                      "their own. Nothing else depends on them.");
    }
}

}  // namespace

// Each compiler has its own C++ run time, so the check reads from the library's imports what it
// needs.
void CheckLibrary(const Patient& patient, System& system, Findings& findings) {
    std::vector<std::string> names(std::begin(kLibraryFiles), std::end(kLibraryFiles));
    for (const NeededDll& dll : NeededDlls(patient.program, names[0], system)) {
        if (std::find(names.begin(), names.end(), dll.name) == names.end()) {
            names.push_back(dll.name);
        }
    }
    for (const std::string& name : names) {
        CheckFile(patient.program, name,
                  IsOfVisualCpp(name) ? InstallRedistributable("no host starts.")
                                      : "Copy it from the package's bin folder to " +
                                            patient.program + "; without it no host starts.",
                  system, findings);
    }
}

void CheckInstallFolder(const Patient& patient, System& system, Findings& findings) {
    CheckPath(patient.install, system, findings);
    if (system.Look(patient.install) != PathKind::kFolder) {
        findings.Problem(patient.install + " is not a folder",
                         "Install the product there, or give --install the folder that the host "
                         "gives Init as its first argument.");
        return;
    }
    CheckFile(patient.install, kServiceProgram,
              "Install it; without it every Start of the PC or phone service fails.", system,
              findings);
    CheckDllsOfServices(patient.install, system, findings);
    for (const char* name : kDriverFiles) {
        CheckFile(patient.install, name,
                  "Install the driver's three files; without them no disk can be mounted.", system,
                  findings);
    }
    CheckIconFolders(patient.install, system, findings);
}

void CheckUpgrade(const Patient& patient, System& system, Findings& findings) {
    const std::string folder = patient.install + "\\upgrade";
    bool waits = false;
    for (const std::string name : kDriverFiles) {
        const std::string newer = folder + "\\" + name;
        if (system.Look(newer) == PathKind::kFile) {
            waits = true;
            findings.Note(WithVersion(name, system.VersionOf(newer)) + " waits in upgrade",
                          "The next Init moves it over the installed one. If it "
                          "still waits after that, the old one is in use.");
        }
        if (system.Look(patient.install + "\\" + name + ".old") == PathKind::kFile) {
            findings.Note(name + ".old is left from an upgrade",
                          "It was in use then. Delete it once Windows has been restarted, or "
                          "leave it: the next upgrade takes its place.");
        }
    }
    if (!waits) {
        findings.Ok("no driver file waits in upgrade");
    }
}

}  // namespace PlenxHost
