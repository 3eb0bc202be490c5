#include "wire/render.h"

#include <algorithm>

#include "support/escape.h"
#include "wire/catalog.h"

namespace PlenxWire {
namespace {

constexpr std::size_t kMostTextBytes = 1000;
constexpr std::size_t kMostBytes = 64;

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
        const std::string_view character = PlenxSupport::FirstCharacter(text.substr(position));
        PlenxSupport::AppendQuotedCharacter(line, character);
        position += character.size();
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
        PlenxSupport::AppendHexByte(line, static_cast<char>(data[i]));
    }
    if (size > kMostBytes) {
        line += " ...";
    }
    return line;
}

}  // namespace PlenxWire
