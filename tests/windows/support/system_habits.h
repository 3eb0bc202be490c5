// Tells how the system that the tests run on differs from Windows. Each Wine that Debian brings has
// one row in the table. Tests ask the table, and nothing else in them asks for a version.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_SYSTEM_HABITS_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_SYSTEM_HABITS_H

namespace PlenxTest {

struct SystemHabits {
    /// The first Wine that has these habits; 0 is Windows.
    int wineVersion;
    /// A service goes on "running" after somebody has ended its process.
    bool endedProcessLeavesItsServiceRunning;
    /// StartServiceW takes a service that is marked for deletion.
    bool startsServicesMarkedForDeletion;
    /// _wrmdir(L"") fails with 123 and EINVAL rather than with 3 and ENOENT.
    bool emptyFolderNameIsInvalid;
    /// A service handle shows in the heap as a record with Wine's mark of a context handle.
    bool serviceHandlesShowInTheHeap;
    /// A program may do everything although its token is not elevated.
    bool hasAllRightsWithoutElevation;
};

/// The rows go from the newest to the oldest.
inline constexpr SystemHabits kSystemHabits[] = {
    {10, false, true, true, false, true},  // Debian 13
    {8, true, true, true, true, false},    // Debian 12
    {0, false, false, false, false, false},
};

constexpr const SystemHabits& HabitsOfWine(int version) {
    const SystemHabits* habits = kSystemHabits;
    while (habits->wineVersion > version) {
        ++habits;
    }
    return *habits;
}

#ifdef _WIN32
const SystemHabits& HabitsOfThisSystem();
#endif

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_SYSTEM_HABITS_H
