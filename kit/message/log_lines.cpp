#include "message/log_lines.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace PlenxMessage {
namespace {

constexpr std::string_view kTime = "####-##-## ##:##:##.### ";
constexpr std::string_view kServices[] = {"office ", "pc ", "phone "};
constexpr std::string_view kReceived = "received ";
constexpr std::string_view kSends = "sends ";
constexpr std::string_view kRemark = "hostile (";
constexpr std::string_view kRemarkEnd = ") ";

bool StartsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

// The position behind the date, the time and the service's name.
std::size_t EventStart(std::string_view line) {
    std::size_t start = 0;
    for (int words = 0; words < 3; ++words) {
        start = line.find(' ', start);
        if (start++ == std::string_view::npos) {
            return line.size();
        }
    }
    return start;
}

std::size_t MessageStart(std::string_view line) {
    const std::size_t start = EventStart(line);
    const std::string_view event = line.substr(start);
    if (StartsWith(event, kReceived)) {
        return start + kReceived.size();
    }
    if (!StartsWith(event, kSends)) {
        return std::string_view::npos;
    }
    const std::size_t sent = start + kSends.size();
    if (!StartsWith(line.substr(sent), kRemark)) {
        return sent;
    }
    const std::size_t end = line.find(kRemarkEnd, sent);
    return end == std::string_view::npos ? end : end + kRemarkEnd.size();
}

}  // namespace

bool IsLineOfAService(std::string_view line) {
    const auto fits = [](char letter, char shape) {
        return shape == '#' ? letter >= '0' && letter <= '9' : letter == shape;
    };
    const std::string_view time = line.substr(0, kTime.size());
    if (!std::equal(time.begin(), time.end(), kTime.begin(), kTime.end(), fits)) {
        return false;
    }
    const std::string_view rest = line.substr(kTime.size());
    return std::any_of(std::begin(kServices), std::end(kServices),
                       [&](std::string_view service) { return StartsWith(rest, service); });
}

std::optional<LoggedMessage> LoggedMessageIn(std::string_view line) {
    if (!line.empty() && line.back() == '\r') {
        line.remove_suffix(1);
    }
    const std::size_t start = MessageStart(line);
    if (start == std::string_view::npos) {
        return std::nullopt;
    }
    LoggedMessage logged;
    logged.message = PlenxWire::ParseMessageLine(line.substr(start));
    logged.before = line.substr(0, start - 1);
    if (logged.message.kind == PlenxWire::ParsedLine::Kind::kNone) {
        return std::nullopt;
    }
    return logged;
}

}  // namespace PlenxMessage
