#include "loghelper/log_text.h"

#include <cstddef>
#include <cstring>

#include "log_helper.h"

namespace LogHelper {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendLevel(std::string& line, int level) {
    switch (level) {
    case LOG_MESSAGE_LEVEL_INFO:
        line += "info";
        break;
    case LOG_MESSAGE_LEVEL_ERROR:
        line += "error";
        break;
    default:
        line += std::to_string(level);
        break;
    }
}

bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Many readers take U+2028 and U+2029 as line breaks.
bool IsControl(char32_t point) {
    return point < 0x20 || (point >= 0x7F && point <= 0x9F) || point == 0x2028 || point == 0x2029;
}

// Decodes the code point at the front of text and removes it. The text must not be empty.
char32_t TakeFront(std::wstring_view& text) {
    const auto first = static_cast<char32_t>(text[0]);
    const auto second = text.size() > 1 ? static_cast<char32_t>(text[1]) : 0;
    if (IsHighSurrogate(first) && IsLowSurrogate(second)) {
        text.remove_prefix(2);
        return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
    }
    text.remove_prefix(1);
    const bool isPoint = !IsHighSurrogate(first) && !IsLowSurrogate(first) && first <= 0x10FFFF;
    return isPoint ? first : kReplacement;
}

void AppendUtf8(std::string& line, char32_t point) {
    const auto tail = [&line, point](int shift) {
        line.push_back(static_cast<char>(0x80 | ((point >> shift) & 0x3F)));
    };
    if (point < 0x80) {
        line.push_back(static_cast<char>(point));
    } else if (point < 0x800) {
        line.push_back(static_cast<char>(0xC0 | (point >> 6)));
        tail(0);
    } else if (point < 0x10000) {
        line.push_back(static_cast<char>(0xE0 | (point >> 12)));
        tail(6);
        tail(0);
    } else {
        line.push_back(static_cast<char>(0xF0 | (point >> 18)));
        tail(12);
        tail(6);
        tail(0);
    }
}

void AppendEscape(std::string& line, char32_t point) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    line += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        line.push_back(kDigits[(point >> shift) & 0xF]);
    }
}

bool IsPlain(wchar_t unit) {
    return static_cast<char32_t>(unit) - 0x20 < 0x7F - 0x20;
}

constexpr std::size_t kStride = 16;

// Narrows kStride characters at once. Returns false when not all of them are plain.
bool NarrowStride(char* out, const wchar_t* in) {
    wchar_t wide[kStride];  // out cannot overlap this copy, so the compiler can vectorise
    std::memcpy(wide, in, sizeof(wide));
    char32_t odd = 0;
    for (std::size_t i = 0; i != kStride; ++i) {
        odd |= static_cast<char32_t>(!IsPlain(wide[i]));
    }
    for (std::size_t i = 0; i != kStride; ++i) {
        out[i] = static_cast<char>(wide[i]);
    }
    return odd == 0;
}

// Does the same for a text of any length.
bool Narrow(char* out, std::wstring_view text) {
    std::size_t done = 0;
    for (; done + kStride <= text.size(); done += kStride) {
        if (!NarrowStride(out + done, text.data() + done)) {
            return false;
        }
    }
    for (; done != text.size(); ++done) {
        if (!IsPlain(text[done])) {
            return false;
        }
        out[done] = static_cast<char>(text[done]);
    }
    return true;
}

// This is the fast path: nearly all lines are plain.
bool AppendPlain(std::string& line, std::wstring_view text) {
    const std::size_t before = line.size();
    line.resize(before + text.size());
    const bool isPlain = Narrow(line.data() + before, text);
    if (!isPlain) {
        line.resize(before);
    }
    return isPlain;
}

void AppendAny(std::string& line, std::wstring_view text) {
    while (!text.empty()) {
        const char32_t point = TakeFront(text);
        if (IsControl(point)) {
            AppendEscape(line, point);
        } else {
            AppendUtf8(line, point);
        }
    }
}

}  // namespace

std::string LogText(int level, unsigned long threadId, std::wstring_view text) {
    std::string line;
    line.reserve(32 + text.size());
    line.push_back('[');
    AppendLevel(line, level);
    line += "] [";
    line += std::to_string(threadId);
    line += "] ";
    if (!AppendPlain(line, text)) {
        AppendAny(line, text);
    }
    return line;
}

}  // namespace LogHelper
