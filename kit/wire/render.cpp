#include "wire/render.h"

#include <algorithm>

#include "support/utf8.h"
#include "wire/catalog.h"

namespace PlenxWire {
namespace {

constexpr std::size_t kMostTextBytes = 1000;
constexpr std::size_t kMostBytes = 64;
constexpr char kDigits[] = "0123456789abcdef";

void AppendHex(std::string& out, unsigned char byte) {
    out += kDigits[byte >> 4];
    out += kDigits[byte & 15];
}

unsigned char At(std::string_view text, std::size_t position) {
    return static_cast<unsigned char>(text[position]);
}

bool IsPlain(unsigned char byte) {
    return byte >= 0x20 && byte != 0x7f && byte != '"' && byte != '\\';
}

// U+0080 to U+009F are control characters as well, some of them line ends.
bool IsControlPair(std::string_view text, std::size_t position) {
    return At(text, position) == 0xc2 && At(text, position + 1) < 0xa0;
}

bool IsLineSeparator(std::string_view character) {
    return character == "\xe2\x80\xa8" || character == "\xe2\x80\xa9";
}

void AppendEscaped(std::string& out, unsigned char byte) {
    switch (byte) {
    case '"':
        out += "\\\"";
        break;
    case '\\':
        out += "\\\\";
        break;
    case '\n':
        out += "\\n";
        break;
    case '\r':
        out += "\\r";
        break;
    case '\t':
        out += "\\t";
        break;
    default:
        out += "\\x";
        AppendHex(out, byte);
    }
}

// Appends the character at the position and returns its length.
std::size_t AppendCharacter(std::string& out, std::string_view text, std::size_t position) {
    const std::size_t length = PlenxSupport::CharacterLength(text.substr(position));
    const std::string_view character = text.substr(position, std::max<std::size_t>(length, 1));
    const bool plain = length == 1   ? IsPlain(At(text, position))
                       : length == 2 ? !IsControlPair(text, position)
                                     : length > 2 && !IsLineSeparator(character);
    if (plain) {
        out.append(character);
    } else {
        for (const char byte : character) {
            AppendEscaped(out, static_cast<unsigned char>(byte));
        }
    }
    return character.size();
}

struct ArgumentRenderer {
    std::string operator()(std::int32_t value) const { return std::to_string(value); }
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(const std::string& value) const { return RenderText(value); }
    std::string operator()(const Bytes& value) const {
        return RenderBytes(value.data(), value.size());
    }
};

}  // namespace

std::string RenderId(std::int32_t id) {
    const MessageShape* const shape = FindMessage(id);
    return std::string(shape ? shape->name : "message") + "(" + std::to_string(id) + ")";
}

std::string RenderMessage(std::int32_t id, const Arguments& arguments) {
    const MessageShape* const shape = FindMessage(id);
    const bool named = shape && shape->arguments.size() == arguments.size();
    std::string line = RenderId(id);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        line += " ";
        line += named ? shape->arguments[i].name : std::to_string(i);
        line += ":";
        line += std::visit(ArgumentRenderer{}, arguments[i]);
    }
    return line;
}

std::string RenderMessage(std::int32_t id, const std::uint8_t* data, std::size_t size) {
    const MessageShape* const shape = FindMessage(id);
    const Decoded decoded = shape ? DecodeAs(*shape, data, size) : Decode(data, size);
    if (decoded.Ok()) {
        return RenderMessage(id, decoded.arguments);
    }
    return RenderId(id) + " broken: " + decoded.error + "; bytes " + RenderBytes(data, size);
}

std::string RenderText(std::string_view text) {
    std::string line = "\"";
    std::size_t position = 0;
    while (position < text.size() && position < kMostTextBytes) {
        position += AppendCharacter(line, text, position);
    }
    line += "\"";
    if (position < text.size()) {
        line += "... of " + std::to_string(text.size()) + " bytes";
    }
    return line;
}

std::string RenderBytes(const std::uint8_t* data, std::size_t size) {
    std::string line = "[" + std::to_string(size) + "]";
    for (std::size_t i = 0; i < std::min(size, kMostBytes); ++i) {
        line += " ";
        AppendHex(line, data[i]);
    }
    if (size > kMostBytes) {
        line += " ...";
    }
    return line;
}

}  // namespace PlenxWire
