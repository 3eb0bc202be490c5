// Measures what a process holds.

#ifndef PLENXSUPPORT_PROCESS_SIZE_H
#define PLENXSUPPORT_PROCESS_SIZE_H

#include <windows.h>

#include <cstdint>

namespace PlenxSupport {

// All of these functions return 0 when the system does not give the number.

/// Returns the size of a process's private memory. The handle must allow queries.
std::uint64_t PrivateBytesOf(HANDLE process);
/// Does the same for this process.
std::uint64_t PrivateBytes();
std::uint64_t HandlesOf(DWORD processId);

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_PROCESS_SIZE_H
