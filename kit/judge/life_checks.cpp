// The program as a Windows service, from its start to its end.

#include <thread>

#include "judge/checks.h"
#include "judge/experiments.h"

namespace PlenxJudge {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kProcessEnds(1000);
constexpr milliseconds kFolderIsFree(500);
constexpr milliseconds kUntilANotification(1500);
constexpr std::size_t kRequestsDuringTheStop = 10;
constexpr std::uint32_t kStartTimeout = 1053;

Service& ServiceOf(Trial& trial) {
    return *trial.Subject().AsService();
}

Outcome JudgeStop(const Watched& watched) {
    if (HasStopped(watched)) {
        return Outcome::Of({});
    }
    return Outcome::Of({{"stopped, with no pause of " + std::to_string(watched.patience) +
                             " ms in its checkpoints",
                         Told(watched)}});
}

const char* const kEndpoints[] = {"PLENXOfficeService", "PLENXPCService", "PLENXPhoneService"};

const char* const kNotStarted = "the program did not reach running";

}  // namespace

Outcome LifeChecks::ReportsRunning(Trial& trial) {
    const Watched& watched = FirstStart(trial);
    if (HasStarted(watched)) {
        return Outcome::Of({});
    }
    trial.End("the program does not start");
    return Outcome::Of({{"running, with no pause of " + std::to_string(watched.patience) +
                             " ms, its wait hint, in its checkpoints",
                         Told(watched)}});
}

Outcome LifeChecks::StatesAHint(Trial& trial) {
    for (const StatusReport& report : FirstStart(trial).reports) {
        if (report.state == ServiceState::kStartPending && report.waitHint == 0) {
            return Outcome::Of({{"start pending with a wait hint, such as 3000 ms",
                                 "start pending with the hint 0"}});
        }
    }
    return Outcome::Of({});
}

Outcome LifeChecks::ServesBeforeItRuns(Trial& trial) {
    if (!HasStarted(FirstStart(trial))) {
        return Outcome::NotJudged(kNotStarted);
    }
    const Exchange& ping = PingAfterFirstStart(trial).front();
    const std::uint32_t code = ping.answer.exception;
    const bool served = code != 1722 && code != 1717 && code != 1715;
    if (served) {
        return Outcome::Of({});
    }
    trial.End("the program does not serve its endpoint");
    return Outcome::Of({{std::string("somebody serves ") + kEndpoints[trial.Role()] +
                             " as soon as the program reports running",
                         ping.form.what + ": " + Told(ping.answer)}});
}

Outcome LifeChecks::AcceptsTheStop(Trial& trial) {
    if (!HasStarted(FirstStart(trial))) {
        return Outcome::NotJudged(kNotStarted);
    }
    if (FirstStart(trial).Last().acceptsStop) {
        return Outcome::Of({});
    }
    return Outcome::Of({{"running with SERVICE_ACCEPT_STOP", "running without it"}});
}

Outcome LifeChecks::MakesItsFolder(Trial& trial) {
    if (!HasStarted(FirstStart(trial))) {
        return Outcome::NotJudged(kNotStarted);
    }
    if (ServiceOf(trial).HasDataFolder()) {
        return Outcome::Of({});
    }
    return Outcome::Of({{"its data folder, which was missing at the start", "no such folder"}});
}

Outcome LifeChecks::Stops(Trial& trial) {
    return JudgeStop(UsualStop(trial));
}

Outcome LifeChecks::EndsItsProcess(Trial& trial) {
    if (!HasStopped(UsualStop(trial))) {
        return Outcome::NotJudged("it has not reported stopped");
    }
    if (ServiceOf(trial).UntilProcessEnds(kProcessEnds)) {
        return Outcome::Of({});
    }
    return Outcome::Of({{"the end of its process within " + std::to_string(kProcessEnds.count()) +
                             " ms after it has reported stopped",
                         "the process was still there"}});
}

Outcome LifeChecks::LeavesItsFolder(Trial& trial) {
    trial.Subject().Revive();
    if (!HasStopped(ServiceOf(trial).Stop())) {
        return Outcome::NotJudged("it has not reported stopped");
    }
    const std::string reason = ServiceOf(trial).RemoveDataFolder(kFolderIsFree);
    if (reason.empty()) {
        return Outcome::Of({});
    }
    return Outcome::Of(
        {{"a data folder that can be removed: no file in it is open, and it is nobody's current "
          "folder",
          reason}});
}

Outcome LifeChecks::StartsAgain(Trial& trial) {
    trial.Subject().Revive();
    ServiceOf(trial).Stop();
    const Watched watched = ServiceOf(trial).Start({true, trial.Role()});
    if (!HasStarted(watched)) {
        return Outcome::Of({{"running after a stop and another start", Told(watched)}});
    }
    const Exchange ping = trial.Send(FormOf(PlenxWire::kPingService, {std::int64_t{0}}, ""));
    if (ping.answer.way == Answer::Way::kReturned) {
        return Outcome::Of({});
    }
    return Outcome::Of(
        {{"an answer after another start", ping.form.what + ": " + Told(ping.answer)}});
}

Outcome LifeChecks::StopsDuringRequests(Trial& trial) {
    PlenxWire::Arguments arguments = UsualArguments(PlenxWire::kDeviceOnline, trial.Role());
    constexpr std::size_t kLarge = std::size_t{1} << 20;
    arguments[3] = static_cast<std::int32_t>(kLarge);
    arguments[4] = PlenxWire::Bytes(kLarge, 1);
    const Form large = FormOf(PlenxWire::kDeviceOnline, arguments, "");
    trial.Subject().Revive();
    std::thread callers([&] {
        trial.Subject().CallAtOnce(std::vector<Request>(kRequestsDuringTheStop, large.request));
    });
    std::this_thread::sleep_for(milliseconds(50));
    const Watched watched = ServiceOf(trial).Stop();
    if (!HasStopped(watched)) {
        ServiceOf(trial).End();
    }
    callers.join();
    return JudgeStop(watched);
}

Outcome LifeChecks::StopsWithoutManager(Trial& trial) {
    trial.Subject().Revive();
    if (!SendsAfterCreateGroup(trial)) {
        return Outcome::NotJudged("the program sends no notification after CreateGroup");
    }
    Inbox& manager = trial.Subject().Manager();
    const std::size_t before = manager.Count();
    manager.Behave(Manner::kHeld);
    CauseANotification(trial);
    manager.WaitForMoreThan(before, kUntilANotification);
    const Watched watched = ServiceOf(trial).Stop();
    manager.Behave(Manner::kHonest);
    return JudgeStop(watched);
}

Outcome LifeChecks::RefusesAStartByHand(Trial& trial) {
    Service& service = ServiceOf(trial);
    service.Stop();
    service.End();
    Watched watched = service.Start({false, trial.Role()});
    service.End();
    if (watched.error == kStartTimeout) {
        // Wine's manager sometimes reports this when the process ends at once.
        watched = service.Start({false, trial.Role()});
        service.End();
    }
    if (watched.error == 0 && watched.Last().state == ServiceState::kStopped &&
        watched.Last().exitCode != 0) {
        return Outcome::Of({});
    }
    return Outcome::Of(
        {{"stopped with an error, because no start arguments were given", Told(watched)}});
}

Outcome LifeChecks::ObeysTheDigit(Trial& trial) {
    const int other = trial.Role() == 1 ? 2 : 1;
    Service& service = ServiceOf(trial);
    service.Stop();
    service.End();
    const Watched watched = service.Start({true, other});
    const bool right = service.Serves(other);
    const bool wrong = service.Serves(trial.Role());
    service.Stop();
    service.End();
    const std::string digit = std::to_string(other);
    if (!HasStarted(watched)) {
        return Outcome::Of({{"running with the digit " + digit, Told(watched)}});
    }
    if (right && !wrong) {
        return Outcome::Of({});
    }
    return Outcome::Of({{std::string("with the digit ") + digit + " the endpoint " +
                             kEndpoints[other] + ", and no other",
                         wrong ? std::string("it serves ") + kEndpoints[trial.Role()]
                               : std::string("nobody serves ") + kEndpoints[other]}});
}

}  // namespace PlenxJudge
