#include "scenario_message.h"

#include <limits>
#include <string>

#include "hex_bytes.h"
#include "support/utf8.h"

namespace PlenxService {
namespace {

using PlenxWire::Argument;
using PlenxWire::Arguments;
using PlenxWire::ArgumentShape;
using PlenxWire::ArgumentType;
using PlenxWire::Bytes;
using PlenxWire::MessageShape;

// Paths travel as UTF-16 with a NUL. TOML has made sure that the text is UTF-8.
Bytes Utf16WithNul(const std::string& text) {
    Bytes bytes;
    for (const char16_t unit : PlenxSupport::Utf8ToUtf16(text).value_or(u"") + u'\0') {
        bytes.push_back(static_cast<std::uint8_t>(unit));
        bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
    }
    return bytes;
}

// Returns whether the argument says how long the next one is.
bool IsLength(const ArgumentShape& argument) {
    const std::string name = argument.name;
    return name == "msgLen" || name == "length";
}

Argument NumberOf(Section& section, const char* key) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        section.Integer(key, Limits::min(), Limits::max()).value_or(0));
}

Argument ArgumentOf(Section& section, const MessageShape& shape, const ArgumentShape& argument) {
    const bool isNumber = argument.type == ArgumentType::kInt32;
    if (!section.Has(argument.name) && !IsLength(argument)) {
        section.Refuse(std::string("has no ") + argument.name + ", which " + shape.name +
                       " needs: " + (isNumber ? "an integer" : "a text in quotes"));
    }
    if (isNumber) {
        return NumberOf(section, argument.name);
    }
    const std::string text = section.Text(argument.name).value_or("");
    return argument.type == ArgumentType::kString ? Argument(text) : Argument(Utf16WithNul(text));
}

std::int32_t LengthOf(const Argument& argument) {
    const auto* const text = std::get_if<std::string>(&argument);
    return static_cast<std::int32_t>(text ? text->size() : std::get<Bytes>(argument).size());
}

}  // namespace

Notification NotificationOf(Section& section, const MessageShape& shape) {
    Arguments arguments;
    for (const ArgumentShape& argument : shape.arguments) {
        arguments.push_back(ArgumentOf(section, shape, argument));
    }
    for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
        const ArgumentShape& argument = shape.arguments[i];
        if (IsLength(argument) && !section.Has(argument.name)) {
            arguments[i] = LengthOf(arguments[i + 1]);
        }
    }
    return {shape.id, PlenxWire::Encode(arguments), {}, 0};
}

Notification RawNotificationOf(Section& section, std::int32_t id) {
    Bytes bytes;
    const std::optional<std::string> text = section.Text("hex");
    if (!section.Has("hex")) {
        section.Refuse("sends a number and has no hex, the bytes of the message");
    } else if (text && !ParseBytes(*text, bytes)) {
        section.Refuse("hex", "pairs of hexadecimal digits");
    }
    return {id, bytes, {}, 0};
}

}  // namespace PlenxService
