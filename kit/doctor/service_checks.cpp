// Checks the three services and the driver in the Service Control Manager.

#include <string>

#include "doctor/checks.h"
#include "doctor/facts.h"

namespace PlenxHost {
namespace {

bool HasUnquotedBlank(const std::string& program) {
    return !program.empty() && program[0] != '"' && program.find(' ') != std::string::npos;
}

std::string DeleteAdvice(const std::string& name) {
    return "Delete it with: sc delete " + name + ". The next Init registers it again.";
}

// Returns whether there is a row to check further; if not, the findings say why.
bool IsRegistered(const std::string& name, const ServiceFacts& facts, const std::string& absence,
                  Findings& findings) {
    if (facts.error == kErrorNoSuchService) {
        findings.Ok(name + " is not registered; " + absence);
        return false;
    }
    if (facts.error != kNoError) {
        findings.Problem(name + " cannot be queried: " + ErrorText(facts.error),
                         "Run the doctor as administrator.");
        return false;
    }
    findings.Ok(name + " is registered, starts " + StartTypeText(facts.startType) + ", is " +
                StateText(facts) + ": " + facts.program);
    return true;
}

void CheckRow(const std::string& name, const ServiceFacts& facts, Findings& findings) {
    if (facts.markedForDelete) {
        findings.Problem(name + " is marked for deletion",
                         "Close what holds it open (the Services window, the Task Manager, another "
                         "host), or restart Windows. Until it is gone, it cannot be registered.");
    }
    if (facts.startType == StartType::kDisabled) {
        findings.Problem(name + " is disabled", DeleteAdvice(name));
    }
}

void CheckProgram(const std::string& name, const ServiceFacts& facts, const Patient& patient,
                  System& system, Findings& findings) {
    const std::string program = PlainPath(facts.program);
    if (!SamePath(program, patient.install + "\\" + kServiceProgram)) {
        findings.Problem(
            name + " is registered with a program outside of the install folder",
            "The library leaves a registration as it is and would start that program. " +
                DeleteAdvice(name));
        if (system.Look(program) != PathKind::kFile) {
            findings.Problem(program + " is missing", DeleteAdvice(name));
        }
    }
    if (HasUnquotedBlank(facts.program)) {
        findings.Note(name + " is registered with blanks and without quotes",
                      "Use an install folder without blanks.");
    }
}

void CheckState(const std::string& name, const ServiceFacts& facts, Findings& findings) {
    switch (facts.state) {
    case ServiceState::kRunning:
        if (!facts.processIsThere) {
            findings.Problem(name + " is reported as running, but its process is gone",
                             "Restart Windows, or delete the service with: sc delete " + name +
                                 ". Then run Init.");
        }
        break;
    case ServiceState::kStopped:
        break;
    default:
        findings.Problem(
            name + " is " + StateText(facts),
            "Look again in a few seconds. If nothing has changed, the service hangs: look at "
            "its log, then end its process. A Stop of the library ends it as well.");
    }
}

}  // namespace

void CheckServices(const Patient& patient, System& system, Findings& findings) {
    const bool hostRuns = system.IsServed(kManagerEndpoint);
    for (const ServiceRow& row : kServiceRows) {
        const ServiceFacts facts = system.Service(row.name);
        if (!IsRegistered(row.name, facts,
                          row.installedByInit ? "Init registers it"
                                              : "a product's installer does that, not Init",
                          findings)) {
            continue;
        }
        CheckRow(row.name, facts, findings);
        CheckProgram(row.name, facts, patient, system, findings);
        CheckState(row.name, facts, findings);
        if (row.installedByInit && !hostRuns) {
            findings.Note(std::string(row.name) + " is left over: no host is running",
                          "The next Init stops it and takes it over. A host that ends by itself "
                          "removes its services; this one was ended by force or has crashed.");
        }
    }
}

void CheckDriver(const Patient& patient, System& system, Findings& findings) {
    const ServiceFacts facts = system.Service(kDriverName);
    if (!IsRegistered(kDriverName, facts, "Init registers it", findings)) {
        return;
    }
    CheckRow(kDriverName, facts, findings);
    if (!SamePath(PlainPath(facts.program), patient.install + "\\" + kDriverFiles[0])) {
        findings.Note(
            "Dokan1 is registered with a file outside of the install folder",
            "The library uses it as it is. Unless another product installed it, delete it "
            "with: sc delete Dokan1. Then restart Windows.");
    }
    if (facts.state != ServiceState::kRunning) {
        findings.Note("Dokan1 is not running",
                      "Init starts it. If it does not run after an Init, look for \"start dokan "
                      "service error\" in the library's log, and check the driver's signature.");
    }
}

}  // namespace PlenxHost
