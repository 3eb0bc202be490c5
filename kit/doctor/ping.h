// Looks at RPC endpoints without disturbing the process that serves them.

#ifndef PLENXKIT_DOCTOR_PING_H
#define PLENXKIT_DOCTOR_PING_H

#include <string>

#include "doctor/system.h"

namespace PlenxHost {

/// Asks the RPC runtime whether anybody listens. It makes no call of the endpoint's interface.
bool IsServed(const std::string& endpoint);

/// Sends the ping that the library itself sends before each Start. Callers send one at a time. A
/// service that does not answer in time keeps a thread of this process until the process ends.
PingAnswer Ping(const std::string& endpoint);

}  // namespace PlenxHost

#endif  // PLENXKIT_DOCTOR_PING_H
