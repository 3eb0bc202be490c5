#include "message/columns.h"

#include <algorithm>

#include "support/utf8.h"

namespace PlenxMessage {
namespace {

// The length in bytes of the first characters, or of all if there are fewer. A malformed byte
// counts as one character.
std::size_t BytesOfCharacters(std::string_view text, std::size_t characters) {
    std::size_t bytes = 0;
    for (; characters > 0 && bytes < text.size(); --characters) {
        bytes += std::max<std::size_t>(PlenxSupport::CharacterLength(text.substr(bytes)), 1);
    }
    return bytes;
}

std::size_t Length(std::string_view text) {
    std::size_t characters = 0;
    for (; !text.empty(); ++characters) {
        text.remove_prefix(BytesOfCharacters(text, 1));
    }
    return characters;
}

std::size_t LineEnd(std::string_view text, std::size_t width) {
    const std::size_t most = BytesOfCharacters(text, width);
    if (most == text.size()) {
        return most;
    }
    for (const std::string_view mark : {std::string_view(", "), std::string_view(" ")}) {
        const std::size_t found = text.substr(0, most).rfind(mark);
        if (found != std::string_view::npos && found >= most * 2 / 3) {
            return found + mark.size();
        }
    }
    return most;
}

}  // namespace

std::vector<std::string> Wrapped(std::string_view text, std::size_t width) {
    std::vector<std::string> lines;
    do {
        const std::size_t end = LineEnd(text, width);
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end);
    } while (!text.empty());
    return lines;
}

std::string Hanging(const std::string& label, std::string_view text) {
    const std::string indent(Length(label) + 2, ' ');
    std::string page;
    for (const std::string& line : Wrapped(text, kPageWidth - indent.size())) {
        page += page.empty() ? "  " + label : indent;
        page += line;
        page += '\n';
    }
    return page;
}

std::string PadLeft(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, Length(text)), ' ') + text;
}

std::string PadRight(const std::string& text, std::size_t width) {
    return text + std::string(width - std::min(width, Length(text)), ' ');
}

}  // namespace PlenxMessage
