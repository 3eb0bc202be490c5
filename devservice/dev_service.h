// One running service with all its parts, from its start to its end. The same under the
// Service Control Manager and on the console.

#ifndef PLENXSERVICE_DEV_SERVICE_H
#define PLENXSERVICE_DEV_SERVICE_H

#include "handle.h"
#include "identity.h"
#include "notification_sender.h"
#include "peer.h"
#include "scenario_player.h"
#include "service_log.h"
#include "service_status.h"

namespace PlenxService {

class DevService {
public:
    /// status outlives this. scenario: a file; empty: the one that the control file names.
    DevService(Identity identity, ServiceStatus& status, bool toConsole,
               std::wstring scenario = {});

    /// Starts, serves until stopped, ends and reports each step. Once.
    /// @return 0 when it came to running and ended as it should.
    int Run();

    /// The stop control, on any thread: returns at once.
    void RequestStop();

    /// Ends Run without a word to anybody, after some time on the console.
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
    const Handle stop_;
    NotificationSender sender_;
    ScenarioPlayer scenario_;
    Peer peer_;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_DEV_SERVICE_H
