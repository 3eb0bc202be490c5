#include "common/process.h"

#include <windows.h>

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
    const std::wstring value = Variable(name);
    const int length = static_cast<int>(value.size());
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, value.data(), length, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, value.data(), length, text.data(), size, nullptr, nullptr);
    return text;
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
