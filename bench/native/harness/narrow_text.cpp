// What the fake platform takes from the tests' logger, which is not linked here.

#include "companion/recorded_log.h"

std::string NarrowForTest(const std::wstring& text) {
    std::string narrow;
    for (const wchar_t unit : text) {
        narrow.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    }
    return narrow;
}
