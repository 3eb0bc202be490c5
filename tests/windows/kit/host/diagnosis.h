// What the doctor says in the end depends on the test and on the system that it runs on.

#ifndef PLENXSDK_TESTS_WINDOWS_KIT_HOST_DIAGNOSIS_H
#define PLENXSDK_TESTS_WINDOWS_KIT_HOST_DIAGNOSIS_H

#include "support/system_habits.h"

namespace PlenxTest {

/// Returns whether the doctor misses the rights of an administrator. It has the rights that the
/// tests have.
inline bool MissesElevation() {
    return IsUsual(Habits::kElevation, "all, not elevated");
}

/// Counts the problems that the doctor reports for a test that gives it this many.
inline int ReportedProblems(int ofTheTest) {
    return MissesElevation() ? ofTheTest + 1 : ofTheTest;
}

inline int DoctorsExitCode(int problemsOfTheTest) {
    return ReportedProblems(problemsOfTheTest) == 0 ? 0 : 1;
}

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_KIT_HOST_DIAGNOSIS_H
