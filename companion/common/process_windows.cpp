#include "common/process.h"

#include <windows.h>

#include "support/wide_text.h"

// Every ntdll since Windows XP exports this, but no header of the toolchain declares it.
extern "C" BOOLEAN NTAPI RtlDllShutdownInProgress(void);

namespace Companion {
namespace {

std::wstring Variable(const char* name) {
    const std::wstring wideName(name, name + std::char_traits<char>::length(name));
    std::wstring value;
    DWORD size = GetEnvironmentVariableW(wideName.c_str(), nullptr, 0);
    // The variable may grow between two calls.
    while (size > value.size()) {
        value.resize(size);
        size = GetEnvironmentVariableW(wideName.c_str(), value.data(), size);
    }
    value.resize(size);
    return value;
}

}  // namespace

std::filesystem::path PathVariable(const char* name) {
    return Variable(name);
}

std::string TextVariable(const char* name) {
    return PlenxSupport::ToUtf8(Variable(name));
}

unsigned long ProcessId() noexcept {
    return GetCurrentProcessId();
}

unsigned long ThreadId() noexcept {
    return GetCurrentThreadId();
}

bool ProcessIsEnding() noexcept {
    return RtlDllShutdownInProgress() != FALSE;
}

}  // namespace Companion
