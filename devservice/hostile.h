// Notifications that no honest service sends, to try the library's server with.

#ifndef PLENXSERVICE_HOSTILE_H
#define PLENXSERVICE_HOSTILE_H

#include "notification.h"

namespace PlenxService {

/// All of them, each with a remark.
Notifications HostileNotifications();

}  // namespace PlenxService

#endif  // PLENXSERVICE_HOSTILE_H
