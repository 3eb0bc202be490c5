#include "platform/call_text.h"

#include <cstdio>

namespace {

bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendUtf8(std::string& out, char32_t point) {
    const auto continuation = [&](int shift) {
        out.push_back(static_cast<char>(0x80 | ((point >> shift) & 0x3F)));
    };
    if (point < 0x80) {
        out.push_back(static_cast<char>(point));
    } else if (point < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (point >> 6)));
        continuation(0);
    } else if (point < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (point >> 12)));
        continuation(6);
        continuation(0);
    } else {
        out.push_back(static_cast<char>(0xF0 | (point >> 18)));
        continuation(12);
        continuation(6);
        continuation(0);
    }
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
        } else if (IsHighSurrogate(point) || IsLowSurrogate(point)) {
            point = 0xFFFD;
        }
        AppendUtf8(out, point);
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
