// What the doctor says in the end depends on the test and on the system that it runs on.

#ifndef PLENXSDK_TESTS_WINDOWS_KIT_HOST_DIAGNOSIS_H
#define PLENXSDK_TESTS_WINDOWS_KIT_HOST_DIAGNOSIS_H

#include "support/system_habits.h"

namespace PlenxTest {

/// What the doctor says about the rights of a program that the tests start.
inline const char* LineAboutElevation() {
    return HabitsOfThisSystem().hasAllRightsWithoutElevation
               ? "  problem  this program does not run as administrator\n"
               : "  ok       this program runs as administrator\n";
}

/// Counts the problems that the doctor reports for a test that gives it this many.
inline int ReportedProblems(int ofTheTest) {
    return HabitsOfThisSystem().hasAllRightsWithoutElevation ? ofTheTest + 1 : ofTheTest;
}

inline int DoctorsExitCode(int problemsOfTheTest) {
    return ReportedProblems(problemsOfTheTest) == 0 ? 0 : 1;
}

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_KIT_HOST_DIAGNOSIS_H
