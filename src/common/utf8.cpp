#include "common/utf8.h"

#include <array>
#include <codecvt>
#include <cstddef>
#include <cstring>
#include <locale>
#include <stdexcept>

namespace DistributedFs {
namespace {

constexpr char32_t kMalformed = 0xFFFFFFFF;
constexpr wchar_t kReplacement = 0xFFFD;

// The standard converter accepts surrogates that were encoded one by one.
bool HoldsEncodedSurrogate(const std::string& text) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (static_cast<unsigned char>(text[i]) == 0xED &&
            static_cast<unsigned char>(text[i + 1]) >= 0xA0) {
            return true;
        }
    }
    return false;
}

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// This is the fast path: nearly all text is ASCII. Returns false when the text is not. The copy of
// a block tells the compiler that writing cannot change the text, so it widens the block at once.
bool WidenAscii(wchar_t* out, std::string_view text) noexcept {
    std::array<unsigned char, 8> block;
    unsigned char bits = 0;
    for (; text.size() >= block.size(); text.remove_prefix(block.size())) {
        std::memcpy(block.data(), text.data(), block.size());
        for (const unsigned char byte : block) {
            *out++ = byte;
            bits |= byte;
        }
    }
    for (const char character : text) {
        *out++ = static_cast<unsigned char>(character);
        bits |= static_cast<unsigned char>(character);
    }
    return bits < 0x80;
}

// Decodes the code point at the front of text and sets length to its number of bytes. Returns
// kMalformed when there is none.
char32_t DecodeFront(std::string_view text, std::size_t& length) {
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) {
        length = 1;
        return lead;
    }
    char32_t least = 0;
    char32_t point = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        least = 0x80;
        point = lead & 0x1FU;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        least = 0x800;
        point = lead & 0x0FU;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        least = 0x10000;
        point = lead & 0x07U;
    } else {
        return kMalformed;
    }
    if (text.size() < length) {
        return kMalformed;
    }
    for (std::size_t i = 1; i != length; ++i) {
        if (!IsContinuation(text[i])) {
            return kMalformed;
        }
        point = (point << 6) | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    const bool surrogate = point >= 0xD800 && point <= 0xDFFF;
    return point < least || point > 0x10FFFF || surrogate ? kMalformed : point;
}

}  // namespace

std::wstring Utf8ToWide(const std::string& text) {
    using Converter = std::codecvt_utf8_utf16<wchar_t>;
    // With a text to return on failure, the converter does not throw. The converters of some
    // libraries accept surrogates and a sequence that is cut off at the end; the count reveals
    // both.
    std::wstring_convert<Converter, wchar_t> convert{std::string(), std::wstring()};
    std::wstring wide = convert.from_bytes(text);
    if (HoldsEncodedSurrogate(text) || convert.converted() != text.size()) {
        throw std::range_error("Utf8ToWide: malformed UTF-8");
    }
    return wide;
}

wchar_t* WriteLenientUtf8(wchar_t* out, std::string_view text) noexcept {
    if (WidenAscii(out, text)) {
        return out + text.size();
    }
    while (!text.empty()) {
        std::size_t length = 1;
        const char32_t point = DecodeFront(text, length);
        if (point == kMalformed) {
            *out++ = kReplacement;
            length = 1;
        } else if (point < 0x10000) {
            *out++ = static_cast<wchar_t>(point);
        } else {
            *out++ = static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
            *out++ = static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
        }
        text.remove_prefix(length);
    }
    return out;
}

}  // namespace DistributedFs
