#include "trace/log_line.h"

#include <charconv>
#include <iterator>
#include <system_error>

#include "trace/template_text.h"

namespace PlenxTrace {
namespace {

constexpr std::string_view kTimeShape = "####-##-## ##:##:##.###";
constexpr std::string_view kTags[] = {"[PLENXSDK] ", "[RPCMANAGER] "};
constexpr std::string_view kNamespace = "DistributedFs::";
constexpr std::string_view kNicknames[] = {"office", "pc", "phone"};

bool StartsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool HasShape(std::string_view text, std::string_view shape) {
    if (text.size() != shape.size()) {
        return false;
    }
    for (std::size_t i = 0; i != shape.size(); ++i) {
        if (shape[i] == '#' ? !IsDigit(text[i]) : text[i] != shape[i]) {
            return false;
        }
    }
    return true;
}

int Number(std::string_view digits) {
    int number = 0;
    for (const char digit : digits) {
        number = number * 10 + (digit - '0');
    }
    return number;
}

// Counts in the Gregorian calendar with years that begin in March, so that the leap day comes last.
std::int64_t DaysSince1970(int year, int month, int day) {
    const std::int64_t y = month <= 2 ? year - 1 : year;
    const std::int64_t m = month <= 2 ? month + 9 : month - 3;
    return 365 * y + y / 4 - y / 100 + y / 400 + (153 * m + 2) / 5 + day - 1 - 719468;
}

Level LevelNamed(std::string_view name) {
    return name == "info" ? Level::kInfo : name == "error" ? Level::kError : Level::kOther;
}

// Takes "[word] " off the front.
std::optional<std::string_view> TakeBracketed(std::string_view& text) {
    const std::size_t end = text.find("] ");
    if (text.empty() || text[0] != '[' || end == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view word = text.substr(1, end - 1);
    text.remove_prefix(end + 2);
    return word;
}

// Takes the time and the blank behind it off the front.
std::optional<std::int64_t> TakeTime(std::string_view& text) {
    const auto time = ParseTime(text.substr(0, kTimeShape.size()));
    if (!time || text.size() == kTimeShape.size() || text[kTimeShape.size()] != ' ') {
        return std::nullopt;
    }
    text.remove_prefix(kTimeShape.size() + 1);
    return time;
}

void SplitFunction(LibraryLine& parsed) {
    const std::size_t open = parsed.text.rfind('(');
    if (parsed.text.empty() || parsed.text.back() != ')' || open == std::string_view::npos) {
        return;
    }
    const std::string_view name = parsed.text.substr(open + 1, parsed.text.size() - open - 2);
    if (StartsWith(name, kNamespace)) {
        parsed.function = name.substr(kNamespace.size());
        parsed.text = parsed.text.substr(0, open);
    }
}

}  // namespace

std::optional<std::int64_t> ParseTime(std::string_view text) {
    if (!HasShape(text, kTimeShape)) {
        return std::nullopt;
    }
    const auto part = [&](std::size_t at, std::size_t size) {
        return Number(text.substr(at, size));
    };
    const int month = part(5, 2);
    const int day = part(8, 2);
    if (month < 1 || month > 12 || day < 1 || day > 31) {
        return std::nullopt;
    }
    const std::int64_t days = DaysSince1970(part(0, 4), month, day);
    const std::int64_t minutes = (days * 24 + part(11, 2)) * 60 + part(14, 2);
    return (minutes * 60 + part(17, 2)) * 1000 + part(20, 3);
}

std::optional<LibraryLine> ParseLibraryLine(std::string_view line) {
    LibraryLine parsed;
    const auto time = TakeTime(line);
    if (!time) {
        return std::nullopt;
    }
    const auto level = TakeBracketed(line);
    const auto thread = level ? TakeBracketed(line) : std::nullopt;
    if (!thread) {
        return std::nullopt;
    }
    const char* const end = thread->data() + thread->size();
    const auto number = std::from_chars(thread->data(), end, parsed.thread);
    if (number.ec != std::errc() || number.ptr != end) {
        return std::nullopt;
    }
    parsed.time = *time;
    parsed.level = LevelNamed(*level);
    parsed.text = line;
    for (const std::string_view tag : kTags) {
        if (StartsWith(parsed.text, tag)) {
            parsed.text.remove_prefix(tag.size());
            break;
        }
    }
    SplitFunction(parsed);
    return parsed;
}

std::optional<ServiceLine> ParseServiceLine(std::string_view line) {
    const auto time = TakeTime(line);
    if (!time) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i != std::size(kNicknames); ++i) {
        const std::string_view name = kNicknames[i];
        if (StartsWith(line, name) && line.size() > name.size() && line[name.size()] == ' ') {
            return ServiceLine{*time, static_cast<int>(i), line.substr(name.size() + 1)};
        }
    }
    return std::nullopt;
}

}  // namespace PlenxTrace
