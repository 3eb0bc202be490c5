// Checks the rights, and the working folder that Init makes and deletes.

#include <string>

#include "doctor/checks.h"
#include "doctor/facts.h"

namespace PlenxHost {
namespace {

constexpr int kNumberedFolders = 100;

// Returns whether Init could take the name; if not, the findings say why.
bool CanBeTaken(const std::string& folder, const std::string& name, System& system,
                Findings& findings) {
    switch (system.Look(folder)) {
    case PathKind::kAbsent:
        return true;
    case PathKind::kFile:
        findings.Note(name + " is a file, which Init does not remove", "Delete " + folder + ".");
        return false;
    case PathKind::kFolder:
        break;
    }
    if (const auto held = system.FirstHeld(folder)) {
        findings.Note(
            name + " cannot be removed: " + *held + " is in use",
            "End the program that has it open, such as a service that was left running, a "
            "window or a command prompt. Until then Init takes the next name.");
        return false;
    }
    findings.Note(name + " was left by a host that was ended by force",
                  "The next Init DELETES it with everything in it.");
    return true;
}

void CheckWritable(const std::string& folder, const std::string& need, System& system,
                   Findings& findings) {
    if (system.Look(folder) != PathKind::kFolder) {
        return;  // the check of that folder reports it
    }
    const std::uint32_t error = system.WriteError(folder);
    if (error == kNoError) {
        findings.Ok(folder + " may be written to");
    } else {
        findings.Problem(folder + " may not be written to: " + ErrorText(error),
                         need + " Run the host as administrator, or correct the folder's rights.");
    }
}

void CheckCommonWriters(const std::string& folder, System& system, Findings& findings) {
    for (const std::string& group : system.CommonWriters(folder)) {
        findings.Problem(folder + " may be written to by " + group,
                         "Let only administrators write there, because whoever can replace "
                         "plenxservice.exe or the driver can run code as LocalSystem.");
    }
}

void CheckCandidates(const Patient& patient, System& system, Findings& findings) {
    for (int n = -1; n != kNumberedFolders; ++n) {
        const std::string name = n < 0 ? "plenx" : "plenx" + std::to_string(n);
        if (CanBeTaken(patient.data + "\\" + name, name, system, findings)) {
            findings.Ok("the next Init works in " + patient.data + "\\" + name);
            return;
        }
    }
    findings.Problem("Init can take no name for a working folder",
                     "Empty the data folder. Until then Init fails, and every Start with it.");
}

}  // namespace

void CheckRights(const Patient& patient, System& system, Findings& findings) {
    if (system.IsElevated()) {
        findings.Ok("this program runs as administrator");
    } else {
        findings.Problem("this program does not run as administrator",
                         "Run the host as administrator, because Init registers services, and run "
                         "the doctor as the host is run.");
    }
    const std::uint32_t error = system.ServiceManagerError();
    if (error == kNoError) {
        findings.Ok("the service manager may be opened with all access");
    } else {
        findings.Problem(
            "the service manager may not be opened with all access: " + ErrorText(error),
            "Run the host as administrator. Otherwise no service can be registered, "
            "started or stopped.");
    }
    CheckWritable(patient.install, "Init writes desktop.ini files and upgrades the driver there.",
                  system, findings);
    CheckWritable(patient.install + "\\upgrade", "Init moves the driver's files out of it.", system,
                  findings);
    CheckWritable(patient.data, "Init makes its working folder there.", system, findings);
    CheckCommonWriters(patient.install, system, findings);
    CheckCommonWriters(patient.install + "\\upgrade", system, findings);
}

void CheckWorkingFolder(const Patient& patient, System& system, Findings& findings) {
    if (system.Look(patient.data) != PathKind::kFolder) {
        findings.Problem(patient.data + " is not a folder",
                         "Make it before Init. Init makes its working folder in it, but not the "
                         "data folder itself.");
        return;
    }
    const std::string first = patient.data + "\\plenx";
    if (IsWithin(patient.install, first)) {
        findings.Problem("the install folder lies in " + first + ", which Init DELETES",
                         "Use a data folder that holds nothing but the library's working folder.");
        return;
    }
    if (system.IsServed(kManagerEndpoint)) {
        // The host has its files in use, which is no fault.
        findings.Ok("a host is running, so its working folder is left alone");
        return;
    }
    CheckCandidates(patient, system, findings);
}

}  // namespace PlenxHost
