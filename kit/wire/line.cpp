#include "wire/line.h"

#include <charconv>
#include <limits>
#include <optional>
#include <system_error>

#include "wire/catalog.h"

namespace PlenxWire {
namespace {

constexpr std::string_view kBroken = " broken: ";
constexpr std::string_view kBytes = "; bytes ";

// Says which part of the line could not be read.
struct LineError {
    std::string text;
};

class Scanner {
public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    bool AtEnd() const { return rest_.empty(); }

    bool Skip(std::string_view expected) {
        const bool found = rest_.substr(0, expected.size()) == expected;
        rest_.remove_prefix(found ? expected.size() : 0);
        return found;
    }

    std::string_view Until(char end) {
        const std::string_view word = rest_.substr(0, rest_.find(end));
        rest_.remove_prefix(word.size());
        return word;
    }

    std::optional<std::int64_t> Integer() {
        std::int64_t value = 0;
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
        if (error != std::errc()) {
            return std::nullopt;
        }
        rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
        return value;
    }

    std::optional<std::uint8_t> HexByte() {
        if (rest_.size() < 2) {
            return std::nullopt;
        }
        unsigned value = 0;
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + 2, value, 16);
        if (error != std::errc() || end != rest_.data() + 2) {
            return std::nullopt;
        }
        rest_.remove_prefix(2);
        return static_cast<std::uint8_t>(value);
    }

    char Take() {
        const char next = rest_.front();
        rest_.remove_prefix(1);
        return next;
    }

private:
    std::string_view rest_;
};

[[noreturn]] void Refuse(const std::string& text) {
    throw LineError{text};
}

char EscapedCharacter(Scanner& line) {
    const char kind = line.AtEnd() ? '\0' : line.Take();
    switch (kind) {
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case 'x':
        if (const auto byte = line.HexByte()) {
            return static_cast<char>(*byte);
        }
        break;
    case '"':
    case '\\':
        return kind;
    default:
        break;
    }
    Refuse("a text has an invalid escape");
}

// The opening quote has been taken.
std::string TextOf(Scanner& line, const std::string& name) {
    std::string text;
    while (!line.AtEnd()) {
        const char next = line.Take();
        if (next == '"') {
            if (line.Skip("...")) {
                throw LineError{name + ": the line shows only the first " +
                                std::to_string(text.size()) + " bytes"};
            }
            return text;
        }
        text += next == '\\' ? EscapedCharacter(line) : next;
    }
    throw LineError{name + ": the line ends within the text"};
}

// The opening bracket has been taken.
Bytes BytesOf(Scanner& line, const std::string& name) {
    const auto size = line.Integer();
    if (!size || *size < 0 || !line.Skip("]")) {
        Refuse(name + ": the number of bytes is missing or invalid");
    }
    Bytes bytes;
    while (bytes.size() < static_cast<std::uint64_t>(*size)) {
        if (line.Skip(" ...") || line.AtEnd()) {
            throw LineError{name + ": the line shows only the first " +
                            std::to_string(bytes.size()) + " of " + std::to_string(*size) +
                            " bytes"};
        }
        const auto byte = line.Skip(" ") ? line.HexByte() : std::nullopt;
        if (!byte) {
            Refuse(name + ": a byte is invalid");
        }
        bytes.push_back(*byte);
    }
    return bytes;
}

bool FitsInt32(std::int64_t value) {
    return value >= std::numeric_limits<std::int32_t>::min() &&
           value <= std::numeric_limits<std::int32_t>::max();
}

// The catalog knows the integers' types; the text does not show them.
Argument NumberOf(Scanner& line, const std::string& name, std::optional<ArgumentType> type) {
    const auto value = line.Integer();
    if (!value) {
        Refuse(name + ": it has no value");
    }
    if (type == ArgumentType::kInt64 || !FitsInt32(*value)) {
        return *value;
    }
    return static_cast<std::int32_t>(*value);
}

Arguments ArgumentsOf(Scanner& line, const MessageShape* shape) {
    Arguments arguments;
    while (line.Skip(" ")) {
        const std::string name(line.Until(':'));
        if (!line.Skip(":")) {
            Refuse("\"" + name + "\" is not an argument");
        }
        if (line.Skip("\"")) {
            arguments.emplace_back(TextOf(line, name));
        } else if (line.Skip("[")) {
            arguments.emplace_back(BytesOf(line, name));
        } else {
            const std::size_t index = arguments.size();
            const bool known = shape && index < shape->arguments.size();
            arguments.push_back(NumberOf(
                line, name, known ? std::optional(shape->arguments[index].type) : std::nullopt));
        }
    }
    if (!line.AtEnd()) {
        Refuse("something follows the last argument");
    }
    return arguments;
}

bool ReadId(Scanner& line, std::int32_t& id) {
    line.Until('(');
    const auto number = line.Skip("(") ? line.Integer() : std::nullopt;
    if (!number || !FitsInt32(*number) || !line.Skip(")")) {
        return false;
    }
    id = static_cast<std::int32_t>(*number);
    return true;
}

bool IsNamedRight(std::string_view text, std::int32_t id) {
    const MessageShape* const shape = FindMessage(id);
    return text.substr(0, text.find('(')) == (shape ? shape->name : "message");
}

void ReadBroken(std::string_view text, ParsedLine& parsed) {
    const std::size_t bytes = text.rfind(kBytes);
    parsed.error = text.substr(0, bytes);
    if (bytes == std::string_view::npos) {
        parsed.kind = ParsedLine::Kind::kTold;
        return;
    }
    Scanner line(text.substr(bytes + kBytes.size()));
    if (!line.Skip("[")) {
        Refuse("no bytes follow");
    }
    parsed.bytes = BytesOf(line, parsed.error);
    parsed.error.clear();
    parsed.kind = ParsedLine::Kind::kWhole;
}

}  // namespace

ParsedLine ParseMessageLine(std::string_view text) {
    ParsedLine parsed;
    Scanner line(text);
    if (!ReadId(line, parsed.id) || !IsNamedRight(text, parsed.id)) {
        return parsed;
    }
    const bool broken = line.Skip(kBroken);
    try {
        if (broken) {
            ReadBroken(text.substr(text.find(kBroken) + kBroken.size()), parsed);
        } else {
            parsed.bytes = Encode(ArgumentsOf(line, FindMessage(parsed.id)));
            parsed.kind = ParsedLine::Kind::kWhole;
        }
    } catch (const LineError& error) {
        parsed.kind = broken ? ParsedLine::Kind::kTold : ParsedLine::Kind::kPartial;
        parsed.bytes.clear();
        parsed.error = error.text;
    }
    return parsed;
}

}  // namespace PlenxWire
