#include "judge/experiments.h"

#include <algorithm>
#include <chrono>
#include <set>

namespace PlenxJudge {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kUntilANotification(1500);
constexpr milliseconds kQuiet(250);
// On a busy machine there may be pauses between the notifications.
constexpr milliseconds kQuietAfterALife(800);
constexpr milliseconds kLongestLife(5000);

constexpr Breakage kBreakages[] = {
    Breakage::kCut,         Breakage::kPadded,    Breakage::kTotalSize, Breakage::kCount,
    Breakage::kType,        Breakage::kOffset,    Breakage::kSize,      Breakage::kNul,
    Breakage::kDescription, Breakage::kUnknownId, Breakage::kTiny,
};

Forms FormsOfALife(int role) {
    Forms forms = UsualRequests(role);
    const std::string digit = "_" + std::to_string(role);
    for (const std::string group : {"a_b", "caf\xc3\xa9"}) {
        forms.push_back(FormOf(PlenxWire::kCreateGroup,
                               {group + digit, std::int32_t{2}, std::string("argument")}, ""));
        forms.push_back(FormOf(PlenxWire::kDeleteGroup, {group + digit}, ""));
    }
    return forms;
}

Form UsualPing(int role) {
    return FormOf(PlenxWire::kPingService, UsualArguments(PlenxWire::kPingService, role), "");
}

// A request that the program does not survive even in good form fails a check of its own. Its
// broken forms would cost many losses and say nothing.
Forms BrokenFormsToTry(Trial& trial, Breakage breakage) {
    std::set<std::int32_t> deadly;
    for (const Exchange& exchange : Usual(trial)) {
        if (!exchange.survived) {
            deadly.insert(exchange.form.request.id);
        }
    }
    Forms forms = BrokenForms(breakage, trial.Role());
    forms.erase(
        std::remove_if(forms.begin(), forms.end(),
                       [&](const Form& form) { return deadly.count(form.request.id) != 0; }),
        forms.end());
    return forms;
}

bool Sends(Trial& trial) {
    const Inbox& manager = trial.Subject().Manager();
    manager.WaitForQuiet(kQuiet, kLongestLife);
    const std::size_t before = manager.Count();
    CauseANotification(trial);
    const bool sends = manager.WaitForMoreThan(before, kUntilANotification);
    manager.WaitForQuiet(kQuiet, kLongestLife);
    return sends;
}

const char* NameOf(ServiceState state) {
    switch (state) {
    case ServiceState::kStopped:
        return "stopped";
    case ServiceState::kStartPending:
        return "start pending";
    case ServiceState::kStopPending:
        return "stop pending";
    case ServiceState::kRunning:
        return "running";
    case ServiceState::kOther:
        break;
    }
    return "in another state";
}

std::string Told(const StatusReport& report) {
    std::string text = NameOf(report.state);
    if (report.state == ServiceState::kStopped) {
        return text + " with code " + std::to_string(report.exitCode);
    }
    if (report.state != ServiceState::kRunning) {
        text += ", checkpoint " + std::to_string(report.checkPoint) + ", hint " +
                std::to_string(report.waitHint) + " ms";
    }
    return text;
}

}  // namespace

const Exchanges& Usual(Trial& trial) {
    return trial.Remember<Exchanges>("usual",
                                     [&] { return trial.SendAll(UsualRequests(trial.Role())); });
}

const Exchanges& Broken(Trial& trial, Breakage breakage) {
    SentBeforeBrokenRequests(trial);
    return trial.Remember<Exchanges>("broken " + std::to_string(static_cast<int>(breakage)), [&] {
        return trial.SendUntilLost(BrokenFormsToTry(trial, breakage));
    });
}

std::vector<const Exchanges*> AllBroken(Trial& trial) {
    std::vector<const Exchanges*> all;
    for (const Breakage breakage : kBreakages) {
        all.push_back(&Broken(trial, breakage));
    }
    return all;
}

const std::vector<Notification>& NotificationsOfALife(Trial& trial) {
    return trial.Remember<std::vector<Notification>>("life", [&] {
        const Inbox& manager = trial.Subject().Manager();
        manager.WaitForQuiet(kQuiet, kLongestLife);
        const std::size_t before = manager.Count();
        trial.SendUntilLost(FormsOfALife(trial.Role()));
        manager.WaitForQuiet(kQuietAfterALife, kLongestLife);
        return manager.Since(before);
    });
}

Exchange CauseANotification(Trial& trial) {
    return trial.Send(
        FormOf(PlenxWire::kCreateGroup, UsualArguments(PlenxWire::kCreateGroup, trial.Role()), ""));
}

bool SentBeforeBrokenRequests(Trial& trial) {
    return trial.Remember<bool>("sent before broken requests", [&] { return Sends(trial); });
}

bool SendsAfterCreateGroup(Trial& trial) {
    return trial.Remember<bool>("sends after CreateGroup", [&] { return Sends(trial); });
}

const Watched& FirstStart(Trial& trial) {
    return trial.Remember<Watched>("start", [&] {
        Service& service = *trial.Subject().AsService();
        service.End();
        service.RemoveDataFolder(kLongestLife);
        const Watched watched = service.Start({true, trial.Role()});
        PingAfterFirstStart(trial);
        return watched;
    });
}

const Exchanges& PingAfterFirstStart(Trial& trial) {
    return trial.Remember<Exchanges>("ping after the start", [&] {
        const Form form = UsualPing(trial.Role());
        return Exchanges{{form, trial.Subject().Call(form.request), true, {}}};
    });
}

const Watched& UsualStop(Trial& trial) {
    return trial.Remember<Watched>("stop", [&] {
        trial.Subject().Revive();
        return trial.Subject().AsService()->Stop();
    });
}

bool HasStarted(const Watched& watched) {
    return watched.error == 0 && watched.Last().state == ServiceState::kRunning;
}

bool HasStopped(const Watched& watched) {
    return watched.error == 0 && watched.Last().state == ServiceState::kStopped;
}

std::string Told(const Watched& watched) {
    if (watched.error != 0) {
        return "the Service Control Manager answered " + std::to_string(watched.error);
    }
    std::string text = Told(watched.Last());
    if (watched.gaveUp) {
        text += ", and no larger checkpoint for " + std::to_string(watched.patience) + " ms";
    }
    return text + ", after " + std::to_string(watched.took.count()) + " ms";
}

}  // namespace PlenxJudge
