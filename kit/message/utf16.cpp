#include "message/utf16.h"

#include "message/usage.h"
#include "support/utf8.h"

namespace PlenxMessage {
PlenxWire::Bytes ToUtf16(const std::string& text) {
    const std::optional<std::u16string> units = PlenxSupport::Utf8ToUtf16(text);
    if (!units) {
        throw UsageError("the text after utf16: is not UTF-8");
    }
    PlenxWire::Bytes bytes;
    for (const char16_t unit : *units + u'\0') {
        bytes.push_back(static_cast<std::uint8_t>(unit & 0xff));
        bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
    }
    return bytes;
}

std::optional<std::string> FromUtf16(const PlenxWire::Bytes& bytes) {
    std::u16string units;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        units += static_cast<char16_t>(bytes[i] | bytes[i + 1] << 8);
    }
    if (bytes.size() % 2 != 0 || units.empty() || units.find(u'\0') != units.size() - 1) {
        return std::nullopt;
    }
    units.pop_back();
    return PlenxSupport::Utf16ToUtf8(units);
}

}  // namespace PlenxMessage
