// plenxkit doctor: looks at an install folder and at the system, and says in words what is
// wrong and what to do. It changes nothing.

#ifndef PLENXKIT_DOCTOR_DOCTOR_H
#define PLENXKIT_DOCTOR_DOCTOR_H

#include <functional>
#include <string>
#include <vector>

#include "doctor/finding.h"
#include "doctor/system.h"

namespace PlenxHost {

/// The folders, as the host gives them to Init, and that of its program and our DLLs.
struct Patient {
    std::string install;
    std::string data;
    std::string program;
};

struct Check {
    const char* name;  ///< For programs.
    const char* title;
    void (*run)(const Patient& patient, System& system, Findings& findings);
};

/// In the order in which they are run and shown.
const std::vector<Check>& Checks();

/// What no check can see.
const std::vector<std::string>& NotLookedAt();

struct Diagnosis {
    int problems = 0;
    int notes = 0;
};

/// Runs all checks. tell gets the findings of each as soon as they are there.
Diagnosis Examine(const Patient& patient, System& system,
                  const std::function<void(const Check&, const std::vector<Finding>&)>& tell);

}  // namespace PlenxHost

#endif  // PLENXKIT_DOCTOR_DOCTOR_H
