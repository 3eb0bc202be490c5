#include "doctor/doctor.h"

#include "doctor/checks.h"

namespace PlenxHost {

const char* NameOf(Level level) {
    switch (level) {
    case Level::kOk:
        return "ok";
    case Level::kNote:
        return "note";
    case Level::kProblem:
        return "problem";
    }
    return "";
}

const std::vector<Check>& Checks() {
    static const std::vector<Check> checks = {
        {"library", "The library beside the host's program", CheckLibrary},
        {"install", "The install folder", CheckInstallFolder},
        {"upgrade", "The driver's upgrade", CheckUpgrade},
        {"rights", "Rights", CheckRights},
        {"services", "Services", CheckServices},
        {"driver", "Driver", CheckDriver},
        {"endpoints", "Endpoints", CheckEndpoints},
        {"data", "The data folder and the working folder in it", CheckWorkingFolder},
    };
    return checks;
}

const std::vector<std::string>& NotLookedAt() {
    static const std::vector<std::string> texts = {
        "the driver's signature, and whether Windows is in test mode",
        "what the services need beyond plenxservice.exe and the DLLs that Windows loads with it",
    };
    return texts;
}

Diagnosis Examine(const Patient& patient, System& system,
                  const std::function<void(const Check&, const std::vector<Finding>&)>& tell) {
    Diagnosis diagnosis;
    for (const Check& check : Checks()) {
        Findings findings;
        check.run(patient, system, findings);
        for (const Finding& finding : findings.All()) {
            diagnosis.problems += finding.level == Level::kProblem ? 1 : 0;
            diagnosis.notes += finding.level == Level::kNote ? 1 : 0;
        }
        tell(check, findings.All());
    }
    return diagnosis;
}

}  // namespace PlenxHost
