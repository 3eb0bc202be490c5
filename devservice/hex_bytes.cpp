#include "hex_bytes.h"

#include <string>

namespace PlenxService {

bool ParseBytes(std::string_view text, std::vector<std::uint8_t>& bytes) {
    std::string digits;
    for (const char letter : text) {
        if (letter == ' ') {
            continue;
        }
        if (std::string_view("0123456789abcdefABCDEF").find(letter) == std::string_view::npos) {
            return false;
        }
        digits += letter;
    }
    if (digits.size() % 2 != 0) {
        return false;
    }
    bytes.clear();
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    }
    return true;
}

}  // namespace PlenxService
