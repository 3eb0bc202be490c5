// plenxkit doctor: looks at an install folder and at the system, explains each problem in words,
// and says how to cure it. It changes nothing.

#ifndef PLENXKIT_DOCTOR_DOCTOR_H
#define PLENXKIT_DOCTOR_DOCTOR_H

#include <functional>
#include <string>
#include <vector>

#include "doctor/finding.h"
#include "doctor/system.h"

namespace PlenxHost {

/// The folders that the host gives to Init, and the folder of its program and our DLLs.
struct Patient {
    std::string install;
    std::string data;
    std::string program;
};

struct Check {
    const char* name;  ///< Programs read this name.
    const char* title;
    void (*run)(const Patient& patient, System& system, Findings& findings);
};

/// The checks in the order in which they are run and shown.
const std::vector<Check>& Checks();

/// The things that no check can see.
const std::vector<std::string>& NotLookedAt();

struct Diagnosis {
    int problems = 0;
    int notes = 0;
};

/// Runs all checks. As soon as a check has ended, its findings are passed to tell.
Diagnosis Examine(const Patient& patient, System& system,
                  const std::function<void(const Check&, const std::vector<Finding>&)>& tell);

}  // namespace PlenxHost

#endif  // PLENXKIT_DOCTOR_DOCTOR_H
