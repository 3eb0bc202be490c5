#include "message/utf16.h"

#include <codecvt>
#include <locale>
#include <stdexcept>

#include "message/usage.h"

namespace PlenxMessage {
namespace {

// Deprecated without a successor; it is strict in both directions, which is what is needed.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif
using Converter = std::wstring_convert<std::codecvt_utf8_utf16<char16_t>, char16_t>;
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace

PlenxWire::Bytes ToUtf16(const std::string& text) {
    try {
        PlenxWire::Bytes bytes;
        for (const char16_t unit : Converter().from_bytes(text) + char16_t{0}) {
            bytes.push_back(static_cast<std::uint8_t>(unit & 0xff));
            bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
        }
        return bytes;
    } catch (const std::range_error&) {
        throw UsageError("the text after utf16: is not UTF-8");
    }
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
    try {
        return Converter().to_bytes(units);
    } catch (const std::range_error&) {
        return std::nullopt;
    }
}

}  // namespace PlenxMessage
