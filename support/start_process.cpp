#include "support/start_process.h"

namespace PlenxSupport {

// Under Wine, one new process in some thousands disappears before it has begun, with this error.
bool StartProcess(std::wstring& commandLine, bool inheritsHandles, DWORD flags,
                  STARTUPINFOW& startup, PROCESS_INFORMATION& process, const wchar_t* folder) {
    constexpr int kMostStarts = 3;
    for (int i = 0; i != kMostStarts; ++i) {
        if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, inheritsHandles, flags,
                           nullptr, folder, &startup, &process)) {
            return true;
        }
        if (GetLastError() != ERROR_INTERNAL_ERROR) {
            break;
        }
    }
    return false;
}

}  // namespace PlenxSupport
