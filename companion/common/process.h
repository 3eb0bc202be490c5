// What the stand-ins ask of their process. Any thread may call.

#ifndef COMPANION_COMMON_PROCESS_H
#define COMPANION_COMMON_PROCESS_H

#include <filesystem>
#include <string>

namespace Companion {

/// The value of an environment variable, empty when it is not set. As a path it may hold
/// any character; as text it is UTF-8.
std::filesystem::path PathVariable(const char* name);
std::string TextVariable(const char* name);

unsigned long ProcessId() noexcept;
unsigned long ThreadId() noexcept;

/// True once the system has ended all other threads and unloads the DLLs: any lock may
/// belong to a thread that is gone, and what it guards may be half changed. Always false
/// where processes do not end like this.
bool ProcessIsEnding() noexcept;

}  // namespace Companion

#endif  // COMPANION_COMMON_PROCESS_H
