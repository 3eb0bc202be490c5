#ifndef PLENXSDK_SERVICE_KILL_SERVICE_PROCESS_H
#define PLENXSDK_SERVICE_KILL_SERVICE_PROCESS_H

#include <cstdint>

namespace DistributedFs {

/// Ends a service process that the Service Control Manager could not stop in time. It always logs;
/// for the id 0 it does nothing more.
void KillServiceProcess(std::uint32_t processId);

}  // namespace DistributedFs

#endif  // PLENXSDK_SERVICE_KILL_SERVICE_PROCESS_H
