#include "trace/template_text.h"

#include <charconv>

namespace PlenxTrace {
namespace {

constexpr std::string_view kAnyText = "text";
constexpr std::string_view kWords[] = {"word", "name"};

std::size_t NumberLength(std::string_view text) {
    std::size_t length = !text.empty() && text[0] == '-' ? 1 : 0;
    const std::size_t sign = length;
    while (length < text.size() && IsDigit(text[length])) {
        ++length;
    }
    return length == sign ? 0 : length;
}

bool IsWord(std::string_view place) {
    return place == kWords[0] || place == kWords[1];
}

std::size_t WordLength(std::string_view text) {
    const std::size_t end = text.find(' ');
    return end == std::string_view::npos ? text.size() : end;
}

// The pattern's words between {text} and the next place mark the end of {text}. If no place
// follows, these words must end the text.
std::size_t TextLength(std::string_view text, std::string_view rest) {
    if (rest.empty()) {
        return text.size();
    }
    const std::string_view literal = rest.substr(0, rest.find('{'));
    return literal.size() == rest.size() ? text.rfind(literal) : text.find(literal);
}

}  // namespace

std::optional<std::string_view> Captures::Text(std::string_view name) const {
    for (const auto& [key, value] : values_) {
        if (key == name) {
            return value;
        }
    }
    return std::nullopt;
}

std::optional<std::int64_t> Captures::Number(std::string_view name) const {
    const auto text = Text(name);
    std::int64_t number = 0;
    if (!text ||
        std::from_chars(text->data(), text->data() + text->size(), number).ec != std::errc()) {
        return std::nullopt;
    }
    return number;
}

bool Matches(std::string_view pattern, std::string_view text, Captures& captures) {
    captures.Clear();
    while (!pattern.empty()) {
        if (pattern[0] != '{') {
            if (text.empty() || text[0] != pattern[0]) {
                return false;
            }
            pattern.remove_prefix(1);
            text.remove_prefix(1);
            continue;
        }
        const std::size_t close = pattern.find('}');
        const std::string_view name = pattern.substr(1, close - 1);
        pattern.remove_prefix(close + 1);
        const bool anything = name == kAnyText;
        const std::size_t length = anything       ? TextLength(text, pattern)
                                   : IsWord(name) ? WordLength(text)
                                                  : NumberLength(text);
        if (length == std::string_view::npos || (length == 0 && !anything)) {
            return false;
        }
        captures.Set(name, text.substr(0, length));
        text.remove_prefix(length);
    }
    return text.empty();
}

}  // namespace PlenxTrace
