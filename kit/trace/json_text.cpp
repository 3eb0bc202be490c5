#include "trace/json_text.h"

#include "support/utf8.h"

namespace PlenxTrace {
namespace {

constexpr std::string_view kEllipsis = "\xE2\x80\xA6";
constexpr std::size_t kEscapeBytes = 6;  // \u003c

// These could end the element or begin another one.
bool IsMarkup(char letter) {
    return letter == '<' || letter == '>' || letter == '&';
}

bool IsEscaped(char letter) {
    return IsMarkup(letter) || letter == '"' || letter == '\\' || (letter >= 0 && letter < ' ');
}

bool ContinuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::string_view MarkupEscape(char letter) {
    return letter == '<' ? "\\u003c" : letter == '>' ? "\\u003e" : "\\u0026";
}

}  // namespace

// Outside its strings, JSON has none of the letters that are escaped here.
std::string ScriptJson(const Json& value) {
    const std::string json = value.dump(-1, ' ', false, Json::error_handler_t::replace);
    std::string out;
    out.reserve(json.size());
    for (const char letter : json) {
        IsMarkup(letter) ? out.append(MarkupEscape(letter)) : out.append(1, letter);
    }
    return out;
}

std::string Shortened(std::string_view text, std::size_t mostBytes) {
    std::size_t bytes = 0;
    std::size_t character = 0;
    for (std::size_t i = 0; i != text.size(); ++i) {
        character = ContinuesCharacter(text[i]) ? character : i;
        bytes += IsEscaped(text[i]) ? kEscapeBytes : 1;
        if (bytes > mostBytes) {
            return std::string(text.substr(0, character)).append(kEllipsis);
        }
    }
    return std::string(text);
}

std::string HtmlText(std::string_view text) {
    std::string out;
    for (const char letter : PlenxSupport::WellFormed(text)) {
        letter == '<'                 ? out.append("&lt;")
        : letter == '>'               ? out.append("&gt;")
        : letter == '&'               ? out.append("&amp;")
        : letter == '"'               ? out.append("&quot;")
        : letter >= 0 && letter < ' ' ? out.append(" ")
                                      : out.append(1, letter);
    }
    return out;
}

}  // namespace PlenxTrace
