// One running service with all its parts, from its start to its end. It is the same under the
// Service Control Manager and on the console.

#ifndef PLENXSERVICE_DEV_SERVICE_H
#define PLENXSERVICE_DEV_SERVICE_H

#include "identity.h"
#include "notification_sender.h"
#include "peer.h"
#include "scenario_player.h"
#include "service_log.h"
#include "service_status.h"
#include "support/handle.h"

namespace PlenxService {

class DevService {
public:
    /// The status must outlive this. The scenario is a file; when it is empty, the control file
    /// names it.
    DevService(Identity identity, ServiceStatus& status, bool toConsole,
               std::wstring scenario = {});

    /// Starts, serves until stopped, ends, and reports each step. Call it once.
    /// @return 0 when the service ran and ended as it should.
    int Run();

    /// Handles the stop control, on any thread, and returns at once.
    void RequestStop();

    /// Ends Run after the given time on the console, without a stop control.
    void StopNow() { SetEvent(stop_.Get()); }

private:
    bool Start();
    void EndAtStart(const Values& start);
    bool StartUnpunctually(const Values& start);
    bool ServeEndpoint(const Values& start);
    void Progress(DWORD state, DWORD waitHint, DWORD milliseconds);
    void End();
    void Fail(const std::string& what, DWORD exitCode, DWORD ownCode = 0);

    const Identity identity_;
    ServiceStatus& status_;
    const std::wstring scenarioFile_;
    ServiceLog log_;
    const PlenxSupport::Handle stop_;
    NotificationSender sender_;
    ScenarioPlayer scenario_;
    Peer peer_;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_DEV_SERVICE_H
