// Plays a scenario: says what holds for a request, the start and the stop of this service in this
// run of it, and hands notifications to the sender when their time has come. "plays line 12 of the
// scenario" in the log tells that the table there has its turn.
//
// The runs are counted in a file beside the control file, plenxservice.pc.runs, as a service that
// has crashed knows nothing. Load comes first; the rest on any thread.

#ifndef PLENXSERVICE_SCENARIO_PLAYER_H
#define PLENXSERVICE_SCENARIO_PLAYER_H

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "identity.h"
#include "notification_sender.h"
#include "scenario.h"
#include "service_log.h"

namespace PlenxService {

class ScenarioPlayer {
public:
    ScenarioPlayer(const Identity& identity, ServiceLog& log, NotificationSender& sender);

    /// A file that cannot be read, or has mistakes, is named in the log and not played.
    void Load(const std::wstring& path, const std::wstring& folderOfRuns);

    /// What [start] and [stop] say.
    Values Life() const;

    /// What the step for this request says; counts the request.
    Values StepFor(std::int32_t request);

    /// The service is asked to stop, or stops by itself.
    void AskedToStop() const { PlayLife(Moment::kStop); }

    // What is scheduled for the moment begins.
    void Started() { Begin(Moment::kStart, 0); }
    void Answered(std::int32_t request) { Begin(Moment::kRequest, request); }
    void Stopping() { Begin(Moment::kStop, 0); }

private:
    bool Covers(const Scope& scope) const { return scope.Covers(identity_.nickname, run_); }
    void PlayLife(Moment moment) const;
    const Step* FirstFor(std::int32_t request);
    void Begin(Moment moment, std::int32_t request) const;

    const Identity& identity_;
    ServiceLog& log_;
    NotificationSender& sender_;
    Scenario scenario_;
    std::int64_t run_ = 0;

    std::mutex mutex_;
    std::vector<std::int64_t> seen_;  // requests that each step covers
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_SCENARIO_PLAYER_H
