// Plays what two files say: the control file, which may change while the service runs, and the
// scenario that it or the command line names, which is read once. Says what holds for a request,
// the start and the stop of this service in this run of it, and hands notifications to the sender
// when their time has come. For each key, the control file takes precedence over the scenario.
//
// The control file plenxservice.toml lies in the folder that the environment variable
// PLENX_SERVICE_CONTROL names, else in the install folder. Beside it, in plenxservice.pc.runs, the
// runs are counted, because a service that has crashed remembers nothing. "plays line 12 of the
// scenario" in the log means that the table on that line has its turn.
//
// Call Load first. Any thread may call the rest.

#ifndef PLENXSERVICE_SCENARIO_PLAYER_H
#define PLENXSERVICE_SCENARIO_PLAYER_H

#include <cstdint>
#include <mutex>
#include <string>

#include "identity.h"
#include "notification_sender.h"
#include "played_file.h"
#include "service_log.h"

namespace PlenxService {

extern const wchar_t kControlFileName[];

class ScenarioPlayer {
public:
    ScenarioPlayer(const Identity& identity, ServiceLog& log, NotificationSender& sender);

    /// An empty scenario means the one that the control file names. When a file has mistakes or
    /// cannot be read, the log names it and it is not played.
    void Load(const std::wstring& scenario);

    // These return what the files say at the moment.
    Values Start() { return Life(Moment::kStart); }
    Values Stop() { return Life(Moment::kStop); }
    /// Counts the request.
    Values StepFor(std::int32_t request);

    /// Call this when the service is asked to stop, or stops by itself.
    void AskedToStop() const { LogTurns(Moment::kStop); }

    // These begin the schedules of the moment.
    void Started() { Begin(Moment::kStart, 0); }
    void Answered(std::int32_t request) { Begin(Moment::kRequest, request); }
    void Stopping() { Begin(Moment::kStop, 0); }

private:
    void LoadScenario(const std::wstring& path);
    void ReadControlFile();
    void CountRun();
    std::wstring Absolute(const std::string& path) const;
    Values Life(Moment moment);
    void LogTurns(Moment moment) const;
    void Begin(Moment moment, std::int32_t request);
    void Schedule(const PlayedFile& file, Moment moment, std::int32_t request, bool logged) const;

    ServiceLog& log_;
    NotificationSender& sender_;
    const std::wstring folder_;
    Part part_;
    PlayedFile scenario_;

    std::mutex mutex_;
    std::string controlText_;
    PlayedFile control_;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_SCENARIO_PLAYER_H
