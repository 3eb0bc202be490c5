// Looking at RPC endpoints without disturbing whoever serves them.

#ifndef PLENXKIT_DOCTOR_PING_H
#define PLENXKIT_DOCTOR_PING_H

#include <string>

#include "doctor/system.h"

namespace PlenxHost {

/// Asks the RPC runtime whether anybody listens. No call of the endpoint's interface is made.
bool IsServed(const std::string& endpoint);

/// The ping that the library itself sends before each Start. One at a time. A service that does
/// not answer in time keeps a thread of this process until the process ends.
PingAnswer Ping(const std::string& endpoint);

}  // namespace PlenxHost

#endif  // PLENXKIT_DOCTOR_PING_H
