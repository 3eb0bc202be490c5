#include "platform/platform_call.h"

#include <cstdio>
#include <cstdlib>

namespace {

thread_local DWORD lastError = 0;

}  // namespace

DWORD GetLastError() {
    return lastError;
}

void SetLastError(DWORD error) {
    lastError = error;
}

void PlatformCall::Record(std::initializer_list<std::string> arguments) const {
    std::string line = function_;
    const char* separator = "(";
    for (const std::string& argument : arguments) {
        line += separator + argument;
        separator = ", ";
    }
    line += arguments.size() == 0 ? "()" : ")";
    Platform().Record(line);
}

void PlatformCall::RejectHandle(const void* handle) const {
    std::fprintf(stderr, "fake platform: %s on handle %p, which is not open. Calls so far:\n",
                 function_, handle);
    for (const std::string& line : Platform().Calls()) {
        std::fprintf(stderr, "  %s\n", line.c_str());
    }
    std::abort();
}
