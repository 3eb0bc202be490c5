// One call of the library's endpoint "Manager".

#ifndef PLENXSERVICE_NOTIFICATION_H
#define PLENXSERVICE_NOTIFICATION_H

#include <cstdint>
#include <string>
#include <vector>

#include "wire/message.h"

namespace PlenxService {

struct Notification {
    std::int32_t id;
    PlenxWire::Bytes message;
    std::string remark;         // what is hostile about it, if anything
    unsigned scenarioLine = 0;  // the line of the table that begins with it, or 0
};

using Notifications = std::vector<Notification>;

}  // namespace PlenxService

#endif  // PLENXSERVICE_NOTIFICATION_H
