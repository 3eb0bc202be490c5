// Measures what a process holds.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_PROCESS_SIZE_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_PROCESS_SIZE_H

#include <windows.h>

#include <cstdint>

namespace PlenxTest {

/// Measures this process; 0 where the system does not tell.
std::uint64_t PrivateBytes();
/// Measures any process; 0 where the system does not tell.
std::uint64_t HandlesOf(DWORD processId);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_PROCESS_SIZE_H
