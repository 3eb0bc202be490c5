// What a process holds.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_PROCESS_SIZE_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_PROCESS_SIZE_H

#include <windows.h>

#include <cstdint>

namespace PlenxTest {

/// Of this process; 0 where the system does not tell.
std::uint64_t PrivateBytes();
/// Of any process; 0 where the system does not tell.
std::uint64_t HandlesOf(DWORD processId);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_PROCESS_SIZE_H
