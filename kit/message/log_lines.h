// Messages in the log of a development service.

#ifndef PLENXKIT_MESSAGE_LOG_LINES_H
#define PLENXKIT_MESSAGE_LOG_LINES_H

#include <optional>
#include <string>
#include <string_view>

#include "wire/line.h"

namespace PlenxMessage {

struct LoggedMessage {
    std::string before;  // time, service, and whether it was received or sent
    PlenxWire::ParsedLine message;
};

/// Whether the line begins like the lines of that log: 2026-01-31 12:34:56.789 pc ...
bool IsLineOfAService(std::string_view line);

/// Empty when the line holds no message.
std::optional<LoggedMessage> LoggedMessageIn(std::string_view line);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_LOG_LINES_H
