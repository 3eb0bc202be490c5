#include "text_file.h"

#include <windows.h>

#include "handle.h"

namespace PlenxService {
namespace {

constexpr DWORD kLargestFile = 256 * 1024;

// While a file is being replaced, it cannot be opened for a moment.
Handle OpenPatiently(const std::wstring& path) {
    for (int attempt = 0;; ++attempt) {
        Handle file(CreateFileW(path.c_str(), GENERIC_READ,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        const DWORD error = file ? NO_ERROR : GetLastError();
        const bool busy = error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
        if (!busy || attempt == 20) {
            return file;
        }
        Sleep(5);
    }
}

}  // namespace

std::optional<std::string> ReadTextFile(const std::wstring& path) {
    const Handle file = OpenPatiently(path);
    LARGE_INTEGER size = {};
    if (!file || !GetFileSizeEx(file.Get(), &size)) {
        return std::nullopt;
    }
    std::string text(
        static_cast<std::size_t>(size.QuadPart < kLargestFile ? size.QuadPart : kLargestFile),
        '\0');
    DWORD read = 0;
    if (!ReadFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &read, nullptr)) {
        return std::nullopt;
    }
    text.resize(read);
    return text;
}

}  // namespace PlenxService
