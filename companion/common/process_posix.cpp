#include "common/process.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>

namespace Companion {

std::filesystem::path PathVariable(const char* name) {
    return TextVariable(name);
}

std::string TextVariable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

unsigned long ProcessId() noexcept {
    return static_cast<unsigned long>(getpid());
}

unsigned long ThreadId() noexcept {
    thread_local const auto id = static_cast<unsigned long>(syscall(SYS_gettid));
    return id;
}

bool ProcessIsEnding() noexcept {
    return false;
}

}  // namespace Companion
