// The stand-ins ask their process through these functions. Any thread may call them.

#ifndef COMPANION_COMMON_PROCESS_H
#define COMPANION_COMMON_PROCESS_H

#include <filesystem>
#include <string>

namespace Companion {

/// Both return the value of an environment variable, or an empty one when it is not set. A path
/// may contain any character; a text is UTF-8.
std::filesystem::path PathVariable(const char* name);
std::string TextVariable(const char* name);

unsigned long ProcessId() noexcept;
unsigned long ThreadId() noexcept;

/// Returns true once the system has ended all other threads and is unloading the DLLs. From then on
/// any lock may belong to a thread that is gone, and the data behind it may be half changed. Always
/// returns false where processes do not end like this.
bool ProcessIsEnding() noexcept;

}  // namespace Companion

#endif  // COMPANION_COMMON_PROCESS_H
