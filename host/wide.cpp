#include "wide.h"

#include <windows.h>

namespace PlenxHost {

std::string WideToUtf8(const std::wstring& wide) {
    const int units = static_cast<int>(wide.size());
    const int bytes =
        WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, text.data(), bytes, nullptr, nullptr);
    return text;
}

}  // namespace PlenxHost
