// Messages in the log of a development service.

#ifndef PLENXMSG_LOG_LINES_H
#define PLENXMSG_LOG_LINES_H

#include <optional>
#include <string>
#include <string_view>

#include "wire/line.h"

namespace PlenxMsg {

struct LoggedMessage {
    std::string before;  // time, service, and whether it was received or sent
    PlenxWire::ParsedLine message;
};

/// Empty when the line holds no message.
std::optional<LoggedMessage> LoggedMessageIn(std::string_view line);

}  // namespace PlenxMsg

#endif  // PLENXMSG_LOG_LINES_H
