// Runs this process as a service of the Service Control Manager.

#ifndef PLENXSERVICE_WINDOWS_SERVICE_H
#define PLENXSERVICE_WINDOWS_SERVICE_H

namespace PlenxService {

/// Returns when the service has stopped.
/// @return 0 or a Windows error, usually ERROR_FAILED_SERVICE_CONTROLLER_CONNECT, which means that
///         nobody started this process as a service.
unsigned long RunAsService();

}  // namespace PlenxService

#endif  // PLENXSERVICE_WINDOWS_SERVICE_H
