#include "message/hex.h"

#include <algorithm>

#include "message/usage.h"
#include "wire/render.h"

namespace PlenxMessage {
namespace {

constexpr std::string_view kBetween = " \t\r\n,;:";
constexpr std::string_view kDigits = "0123456789abcdefABCDEF";

int ValueOf(char digit) {
    const std::size_t place = kDigits.find(digit);
    return static_cast<int>(place < 16 ? place : place - 6);
}

void AppendGroup(PlenxWire::Bytes& bytes, std::string_view group) {
    const std::string_view whole = group;
    if (group.substr(0, 2) == "0x" || group.substr(0, 2) == "0X") {
        group.remove_prefix(2);
    }
    if (group.empty() || group.find_first_not_of(kDigits) != std::string_view::npos) {
        throw UsageError(PlenxWire::RenderText(whole) + " is not hex");
    }
    if (group.size() % 2 != 0) {
        throw UsageError(PlenxWire::RenderText(whole) +
                         " has an odd number of digits; a byte has two");
    }
    for (std::size_t i = 0; i < group.size(); i += 2) {
        bytes.push_back(static_cast<std::uint8_t>(ValueOf(group[i]) * 16 + ValueOf(group[i + 1])));
    }
}

}  // namespace

std::string ToHex(const PlenxWire::Bytes& bytes, std::size_t bytesPerLine) {
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0) {
            text += bytesPerLine > 0 && i % bytesPerLine == 0 ? '\n' : ' ';
        }
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 15];
    }
    return text;
}

PlenxWire::Bytes FromHex(std::string_view text) {
    PlenxWire::Bytes bytes;
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(kBetween), text.size()));
        if (text.empty()) {
            return bytes;
        }
        const std::string_view group = text.substr(0, text.find_first_of(kBetween));
        AppendGroup(bytes, group);
        text.remove_prefix(group.size());
    }
}

bool LooksLikeHex(std::string_view content) {
    const std::string allowed = std::string(kDigits) + std::string(kBetween) + "xX";
    return content.find_first_not_of(allowed) == std::string_view::npos;
}

}  // namespace PlenxMessage
