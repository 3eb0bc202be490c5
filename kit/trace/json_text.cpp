#include "trace/json_text.h"

#include <cstdint>

namespace PlenxTrace {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr std::string_view kEllipsis = "\xE2\x80\xA6";

struct Lead {
    unsigned char mask;
    unsigned char mark;
    std::size_t length;
    std::uint32_t least;  // less is an overlong form
};

constexpr Lead kLeads[] = {{0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}};

bool IsScalar(std::uint32_t point, std::uint32_t least) {
    return point >= least && point <= 0x10FFFF && (point < 0xD800 || point > 0xDFFF);
}

// The length of the character of several bytes at the front; 0 if it is none.
std::size_t CharacterLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    for (const Lead& lead : kLeads) {
        if ((first & lead.mask) != lead.mark || text.size() < lead.length) {
            continue;
        }
        std::uint32_t point = first & static_cast<unsigned char>(~lead.mask);
        for (std::size_t i = 1; i != lead.length; ++i) {
            const auto next = static_cast<unsigned char>(text[i]);
            if ((next & 0xC0) != 0x80) {
                return 0;
            }
            point = (point << 6) | (next & 0x3Fu);
        }
        return IsScalar(point, lead.least) ? lead.length : 0;
    }
    return 0;
}

// < > & could end the element or begin another one.
bool IsPlain(unsigned char letter) {
    return letter >= 0x20 && letter < 0x7F && letter != '"' && letter != '\\' && letter != '<' &&
           letter != '>' && letter != '&';
}

void AppendEscape(std::string& out, unsigned char letter) {
    constexpr char kDigits[] = "0123456789abcdef";
    out += "\\u00";
    out.push_back(kDigits[letter >> 4]);
    out.push_back(kDigits[letter & 15]);
}

}  // namespace

void AppendJsonString(std::string& out, std::string_view text, std::size_t mostBytes) {
    out.push_back('"');
    const std::size_t start = out.size();
    while (!text.empty()) {
        const std::size_t before = out.size();
        const auto letter = static_cast<unsigned char>(text[0]);
        std::size_t length = 1;
        if (IsPlain(letter)) {
            out.push_back(text[0]);
        } else if (letter < 0x80) {
            AppendEscape(out, letter);
        } else if ((length = CharacterLength(text)) != 0) {
            out.append(text.substr(0, length));
        } else {
            out.append(kReplacement);
            length = 1;
        }
        if (out.size() - start > mostBytes) {
            out.resize(before);
            out.append(kEllipsis);
            break;
        }
        text.remove_prefix(length);
    }
    out.push_back('"');
}

std::string HtmlText(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const auto letter = static_cast<unsigned char>(text[0]);
        std::size_t length = 1;
        if (letter < 0x80) {
            letter == '<'   ? out.append("&lt;")
            : letter == '>' ? out.append("&gt;")
            : letter == '&' ? out.append("&amp;")
            : letter == '"' ? out.append("&quot;")
            : letter < 0x20 ? out.append(" ")
                            : out.append(1, text[0]);
        } else if ((length = CharacterLength(text)) != 0) {
            out.append(text.substr(0, length));
        } else {
            out.append(kReplacement);
            length = 1;
        }
        text.remove_prefix(length);
    }
    return out;
}

}  // namespace PlenxTrace
