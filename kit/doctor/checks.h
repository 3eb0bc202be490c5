// The checks, one for each thing that a host needs. doctor.cpp has the table of them.

#ifndef PLENXKIT_DOCTOR_CHECKS_H
#define PLENXKIT_DOCTOR_CHECKS_H

#include "doctor/doctor.h"

namespace PlenxHost {

void CheckLibrary(const Patient& patient, System& system, Findings& findings);
void CheckInstallFolder(const Patient& patient, System& system, Findings& findings);
void CheckUpgrade(const Patient& patient, System& system, Findings& findings);
void CheckRights(const Patient& patient, System& system, Findings& findings);
void CheckServices(const Patient& patient, System& system, Findings& findings);
void CheckDriver(const Patient& patient, System& system, Findings& findings);
void CheckEndpoints(const Patient& patient, System& system, Findings& findings);
void CheckWorkingFolder(const Patient& patient, System& system, Findings& findings);

}  // namespace PlenxHost

#endif  // PLENXKIT_DOCTOR_CHECKS_H
