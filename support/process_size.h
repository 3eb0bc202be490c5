// Measures what a process holds.

#ifndef PLENXSUPPORT_PROCESS_SIZE_H
#define PLENXSUPPORT_PROCESS_SIZE_H

#include <windows.h>

#include <cstdint>

namespace PlenxSupport {

// All of them return 0 where the system does not tell.

/// The memory of its own that a process has; the handle must allow queries.
std::uint64_t PrivateBytesOf(HANDLE process);
/// That of this process.
std::uint64_t PrivateBytes();
std::uint64_t HandlesOf(DWORD processId);

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_PROCESS_SIZE_H
