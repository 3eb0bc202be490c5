// Notifications that no honest service sends, to test the library's server.

#ifndef PLENXSERVICE_HOSTILE_H
#define PLENXSERVICE_HOSTILE_H

#include "notification.h"

namespace PlenxService {

/// Returns all of them, each with a remark.
Notifications HostileNotifications();

}  // namespace PlenxService

#endif  // PLENXSERVICE_HOSTILE_H
