#include "message/description.h"

#include <charconv>
#include <nlohmann/json.hpp>
#include <system_error>

#include "message/argument_list.h"
#include "message/hex.h"
#include "message/usage.h"
#include "message/utf16.h"

namespace PlenxMessage {
namespace {

using nlohmann::json;
using PlenxWire::Argument;
using PlenxWire::ArgumentType;

constexpr std::string_view kUtf16 = "utf16:";

std::string WithArticle(ArgumentType type) {
    return (type == ArgumentType::kString ? "a " : "an ") + std::string(PlenxWire::NameOf(type));
}

template <class Number>
Number NumberOf(const std::string& text, ArgumentType type) {
    Number value{};
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || last != end) {
        throw UsageError("\"" + text + "\" is not " + WithArticle(type));
    }
    return value;
}

PlenxWire::Bytes BytesOf(const std::string& text) {
    return text.compare(0, kUtf16.size(), kUtf16) == 0 ? ToUtf16(text.substr(kUtf16.size()))
                                                       : FromHex(text);
}

Argument ValueOf(const std::string& text, ArgumentType type) {
    switch (type) {
    case ArgumentType::kInt32:
        return NumberOf<std::int32_t>(text, type);
    case ArgumentType::kInt64:
        return NumberOf<std::int64_t>(text, type);
    case ArgumentType::kInt8Array:
        return BytesOf(text);
    case ArgumentType::kString:
        break;
    }
    return text;
}

[[noreturn]] void RefuseJson(const json& value, ArgumentType type) {
    throw UsageError(value.dump() + " is not " + WithArticle(type));
}

// Numbers are passed on as digits, so that the limits are checked in one place.
Argument ValueOf(const json& value, ArgumentType type) {
    const bool isText = type == ArgumentType::kString || type == ArgumentType::kInt8Array;
    if (!isText) {
        if (!value.is_number_integer()) {
            RefuseJson(value, type);
        }
        return ValueOf(value.dump(), type);
    }
    if (value.is_string()) {
        return ValueOf(value.get<std::string>(), type);
    }
    if (!value.is_object() || value.size() != 1 || !value.contains("hex") ||
        !value["hex"].is_string()) {
        RefuseJson(value, type);
    }
    PlenxWire::Bytes bytes = FromHex(value["hex"].get<std::string>());
    if (type == ArgumentType::kString) {
        return std::string(bytes.begin(), bytes.end());
    }
    return bytes;
}

template <class Value>
void Fill(ArgumentList& list, const std::string& name, const Value& value) {
    const ArgumentType type = list.Expect(name);
    try {
        list.Set(name, ValueOf(value, type));
    } catch (const UsageError& error) {
        throw UsageError(name + ": " + error.what());
    }
}

json Parsed(const std::string& text) {
    try {
        return json::parse(text);
    } catch (const json::exception& error) {
        throw UsageError(std::string("the JSON cannot be read: ") + error.what());
    }
}

const json& Member(const json& object, const char* name) {
    if (!object.is_object() || !object.contains(name)) {
        throw UsageError(std::string("the JSON lacks \"") + name + "\"");
    }
    return object[name];
}

std::string TextMember(const json& object, const char* name) {
    const json& member = Member(object, name);
    if (!member.is_string()) {
        throw UsageError(std::string("\"") + name + "\" in the JSON is not a text");
    }
    return member.get<std::string>();
}

}  // namespace

Message MessageFromWords(const std::string& name, const std::vector<std::string>& words) {
    ArgumentList list(SubjectOf(name));
    for (const std::string& word : words) {
        const std::size_t equals = word.find('=');
        if (equals == std::string::npos) {
            throw UsageError("\"" + word + "\" is not of the form field=value");
        }
        Fill(list, word.substr(0, equals), word.substr(equals + 1));
    }
    return list.Built();
}

Message MessageFromJson(const std::string& text) {
    const json description = Parsed(text);
    ArgumentList list(SubjectOf(TextMember(description, "message")));
    const json& arguments = Member(description, "arguments");
    if (arguments.is_object()) {
        for (const auto& [name, value] : arguments.items()) {
            Fill(list, name, value);
        }
    } else if (arguments.is_array()) {
        for (const json& argument : arguments) {
            Fill(list, TextMember(argument, "name"), Member(argument, "value"));
        }
    } else {
        throw UsageError("\"arguments\" in the JSON is neither an object nor an array");
    }
    return list.Built();
}

}  // namespace PlenxMessage
