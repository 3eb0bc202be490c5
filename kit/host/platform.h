// The few things that the system does for this program.

#ifndef PLENXKIT_HOST_PLATFORM_H
#define PLENXKIT_HOST_PLATFORM_H

#include <cstdint>
#include <string>

namespace PlenxHost {

/// The calling thread's id, as the log files show it.
std::uint32_t CurrentThreadNumber();

/// Ends the process of a service by force. The service manager tells which process it is.
/// @return 0 or a Windows error.
std::uint32_t EndServiceProcess(const std::string& service);

/// Ends the process at once, whatever its threads do. DLLs still learn of it.
[[noreturn]] void EndProcess(int exitCode);

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_PLATFORM_H
