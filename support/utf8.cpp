#include "support/utf8.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>

namespace PlenxSupport {

bool IsUtf8(std::string_view text) {
    return utf8::is_valid(text.begin(), text.end());
}

std::size_t WellFormedLength(std::string_view text) {
    return static_cast<std::size_t>(utf8::find_invalid(text.begin(), text.end()) - text.begin());
}

std::size_t CharacterLength(std::string_view text) {
    constexpr std::size_t kLongest = 4;
    for (std::size_t length = 1; length <= std::min(kLongest, text.size()); ++length) {
        if (IsUtf8(text.substr(0, length))) {
            return length;
        }
    }
    return 0;
}

std::string WellFormed(std::string_view text) {
    std::string wellFormed;
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(wellFormed));
    return wellFormed;
}

std::optional<std::u16string> Utf8ToUtf16(std::string_view text) {
    try {
        std::u16string units;
        utf8::utf8to16(text.begin(), text.end(), std::back_inserter(units));
        return units;
    } catch (const utf8::exception&) {
        return std::nullopt;
    }
}

std::optional<std::string> Utf16ToUtf8(std::u16string_view text) {
    try {
        std::string bytes;
        utf8::utf16to8(text.begin(), text.end(), std::back_inserter(bytes));
        return bytes;
    } catch (const utf8::exception&) {
        return std::nullopt;
    }
}

}  // namespace PlenxSupport
