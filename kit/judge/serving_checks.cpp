// Checks how the program serves: in time, many callers at once, in any order, and for a long time.

#include <algorithm>
#include <iterator>

#include "judge/checks.h"
#include "judge/experiments.h"

namespace PlenxJudge {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::size_t kCallers = 20;
constexpr milliseconds kSoon(1000);
constexpr int kVanishing = 3;
constexpr std::uint64_t kMoreHandles = 32;
constexpr std::uint64_t kMoreBytes = std::uint64_t{8} * 1024 * 1024;
// What a program allocates once does not count as growth.
constexpr int kWarmUpShare = 5;

// The usual requests whose reply was exact, so that a wrong reply here comes from the many callers.
Exchanges Exact(const Exchanges& all) {
    Exchanges some;
    std::copy_if(all.begin(), all.end(), std::back_inserter(some),
                 [](const Exchange& exchange) { return CodeIn(exchange.answer).has_value(); });
    return some;
}

std::vector<Request> Crowd(const Exchanges& models) {
    std::vector<Request> requests;
    requests.reserve(kCallers);
    for (std::size_t i = 0; i < kCallers; ++i) {
        requests.push_back(models[i % models.size()].form.request);
    }
    return requests;
}

Forms EachForAGroupThatIsNotThere(int role) {
    Forms forms;
    for (const std::int32_t id :
         {PlenxWire::kDeviceOffline, PlenxWire::kDeviceOnline, PlenxWire::kDeleteGroup,
          PlenxWire::kRecvRemoteMessage, PlenxWire::kNameChanged, PlenxWire::kDeleteGroup,
          PlenxWire::kPingService}) {
        PlenxWire::Arguments arguments = UsualArguments(id, role);
        if (std::holds_alternative<std::string>(arguments[0]) && id != PlenxWire::kNameChanged) {
            arguments[0] = "early_" + std::to_string(role);
        }
        forms.push_back(FormOf(id, arguments, "before any CreateGroup of its group"));
    }
    return forms;
}

struct Soak {
    Exchanges failed;
    std::optional<Footprint> before;
    std::optional<Footprint> after;
    std::size_t rounds = 0;
};

Soak RunSoak(Trial& trial) {
    Soak soak;
    const auto begin = steady_clock::now();
    const Forms forms = UsualRequests(trial.Role());
    while (steady_clock::now() - begin < trial.SoakTime() && trial.Over().empty() &&
           soak.failed.empty()) {
        for (const Exchange& exchange : trial.SendUntilLost(forms)) {
            if (exchange.answer.way != Answer::Way::kReturned) {
                soak.failed.push_back(exchange);
            }
        }
        ++soak.rounds;
        if (!soak.before && steady_clock::now() - begin > trial.SoakTime() / kWarmUpShare) {
            soak.before = trial.Subject().Measure();
        }
    }
    trial.Subject().Manager().WaitForQuiet(milliseconds(300), milliseconds(5000));
    soak.after = trial.Subject().Measure();
    return soak;
}

const Soak& SoakOf(Trial& trial) {
    return trial.Remember<Soak>("soak", [&] { return RunSoak(trial); });
}

Outcome JudgeGrowth(std::uint64_t before, std::uint64_t after, std::uint64_t more,
                    const std::string& what) {
    if (after <= before + more) {
        return Outcome::Of({});
    }
    return Outcome::Of(
        {{"at most " + std::to_string(more) + " " + what + " more than after warming up",
          std::to_string(before) + " " + what + ", then " + std::to_string(after)}});
}

}  // namespace

Outcome ServingChecks::ComesBack(Trial& trial) {
    std::vector<Fault> faults;
    for (const Exchange& exchange : Usual(trial)) {
        const bool gone = exchange.answer.way == Answer::Way::kRaised && !exchange.survived;
        if (exchange.answer.way == Answer::Way::kHung || gone) {
            faults.push_back({"an answer", Told(exchange)});
        }
    }
    return Outcome::Of(std::move(faults));
}

Outcome ServingChecks::AnswersSoon(Trial& trial) {
    std::vector<Fault> faults;
    for (const Exchange& exchange : Usual(trial)) {
        if (exchange.answer.way == Answer::Way::kReturned && exchange.answer.took >= kSoon) {
            faults.push_back({"an answer within " + std::to_string(kSoon.count()) + " ms",
                              exchange.form.what + ": after " +
                                  std::to_string(exchange.answer.took.count()) + " ms"});
        }
    }
    return Outcome::Of(std::move(faults));
}

// Which code is right may depend on the order in which the requests come.
Outcome ServingChecks::ServesTwenty(Trial& trial) {
    const Exchanges models = Exact(Usual(trial));
    if (models.empty()) {
        return Outcome::NotJudged("no request got an exact reply when it came alone");
    }
    const std::vector<Answer> answers = trial.Subject().CallAtOnce(Crowd(models));
    std::vector<Fault> faults;
    for (std::size_t i = 0; i < answers.size(); ++i) {
        if (!CodeIn(answers[i])) {
            faults.push_back({"an exact reply, as when it came alone",
                              models[i % models.size()].form.what + " as one of " +
                                  std::to_string(kCallers) + " at once: " + Told(answers[i])});
        }
    }
    if (!trial.Subject().Revive()) {
        trial.End("the program is gone: twenty callers at once were the last requests");
    }
    return Outcome::Of(std::move(faults));
}

Outcome ServingChecks::SurvivesAVanishedCaller(Trial& trial) {
    PlenxWire::Arguments arguments = UsualArguments(PlenxWire::kDeviceOnline, trial.Role());
    constexpr std::size_t kLarge = std::size_t{1} << 22;
    arguments[3] = static_cast<std::int32_t>(kLarge);
    arguments[4] = PlenxWire::Bytes(kLarge, 1);
    const Form large = FormOf(PlenxWire::kDeviceOnline, arguments, "");
    for (int i = 0; i < kVanishing; ++i) {
        trial.Subject().VanishDuring(large.request);
    }
    const Exchange ping = trial.Send(
        FormOf(PlenxWire::kPingService, {std::int64_t{0}}, "after callers that ended in mid-call"));
    if (ping.answer.way == Answer::Way::kReturned) {
        return Outcome::Of({});
    }
    return Outcome::Of({{"an answer", ping.form.what + ": " + Told(ping.answer)}});
}

Outcome ServingChecks::TakesAnyOrder(Trial& trial) {
    std::vector<Fault> faults;
    const Exchanges& usual = Usual(trial);
    const bool returns = std::all_of(usual.begin(), usual.end(), [](const Exchange& exchange) {
        return exchange.answer.way == Answer::Way::kReturned;
    });
    if (!returns) {
        return Outcome::NotJudged("not every call came back in the usual order");
    }
    for (const Exchange& exchange :
         trial.SendUntilLost(EachForAGroupThatIsNotThere(trial.Role()))) {
        if (exchange.answer.way != Answer::Way::kReturned) {
            faults.push_back({"an answer", exchange.form.what + ": " + Told(exchange.answer)});
        }
    }
    return Outcome::Of(std::move(faults));
}

Outcome ServingChecks::GoesOn(Trial& trial) {
    const Soak& soak = SoakOf(trial);
    std::vector<Fault> faults;
    for (const Exchange& exchange : soak.failed) {
        faults.push_back({"an answer", exchange.form.what + " in round " +
                                           std::to_string(soak.rounds) + ": " +
                                           Told(exchange.answer)});
    }
    return Outcome::Of(std::move(faults));
}

Outcome ServingChecks::KeepsItsHandles(Trial& trial) {
    const Soak& soak = SoakOf(trial);
    if (!soak.before || !soak.after) {
        return Outcome::NotJudged("the system does not say what the process holds");
    }
    return JudgeGrowth(soak.before->handles, soak.after->handles, kMoreHandles, "handles");
}

Outcome ServingChecks::KeepsItsMemory(Trial& trial) {
    const Soak& soak = SoakOf(trial);
    if (!soak.before || !soak.after) {
        return Outcome::NotJudged("the system does not say what the process holds");
    }
    return JudgeGrowth(soak.before->bytes, soak.after->bytes, kMoreBytes, "bytes");
}

}  // namespace PlenxJudge
