#include "platform/call_text.h"

#include <utf8.h>

#include <cstdio>
#include <iterator>

namespace {

bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

std::string Narrow(std::wstring_view text) {
    std::string out;
    for (std::size_t i = 0; i != text.size(); ++i) {
        auto point = static_cast<char32_t>(text[i]);
        if (IsHighSurrogate(point) && i + 1 != text.size() &&
            IsLowSurrogate(static_cast<char32_t>(text[i + 1]))) {
            ++i;
            point = 0x10000 + ((point - 0xD800) << 10) + (static_cast<char32_t>(text[i]) - 0xDC00);
        }
        if (IsHighSurrogate(point) || IsLowSurrogate(point)) {
            char half[8];
            std::snprintf(half, sizeof(half), "{%04X}", static_cast<unsigned>(point & 0xFFFF));
            out += half;
        } else {
            // A message can bring any number here.
            utf8::unchecked::append(point, std::back_inserter(out));
        }
    }
    return out;
}

std::string Quoted(const wchar_t* text) {
    return text == nullptr ? "null" : '"' + Narrow(text) + '"';
}

std::string Hex(std::uint64_t number) {
    char text[24];
    std::snprintf(text, sizeof(text), "0x%llX", static_cast<unsigned long long>(number));
    return text;
}

std::wstring Folded(std::wstring_view text) {
    std::wstring folded(text);
    for (wchar_t& letter : folded) {
        if (letter >= L'A' && letter <= L'Z') {
            letter = static_cast<wchar_t>(letter - L'A' + L'a');
        }
    }
    return folded;
}
