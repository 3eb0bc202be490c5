// Requests in broken form. The program must survive them, and should refuse them.

#include "judge/checks.h"
#include "judge/experiments.h"

namespace PlenxJudge {
namespace {

bool WasLost(const Exchange& exchange) {
    return exchange.answer.way != Answer::Way::kNotSent && !exchange.survived;
}

bool RaisedOnly(const Exchange& exchange) {
    return exchange.answer.way == Answer::Way::kRaised && exchange.survived;
}

Fault FaultOf(const std::string& expected, const Exchange& exchange) {
    return {expected, Told(exchange), Shown(exchange.form.request.id, exchange.form.request.bytes)};
}

void AddRaised(const Exchanges& exchanges, std::vector<Fault>& faults) {
    for (const Exchange& exchange : exchanges) {
        if (RaisedOnly(exchange)) {
            faults.push_back(FaultOf("an answer", exchange));
        }
    }
}

}  // namespace

template <Breakage breakage>
Outcome BrokenChecks::Survives(Trial& trial) {
    std::vector<Fault> faults;
    const Exchanges& exchanges = Broken(trial, breakage);
    for (const Exchange& exchange : exchanges) {
        if (WasLost(exchange)) {
            faults.push_back(FaultOf("the program goes on", exchange));
        }
    }
    return exchanges.empty() ? Outcome::NotJudged(trial.Over()) : Outcome::Of(std::move(faults));
}

template <Breakage breakage>
Outcome BrokenChecks::Refuses(Trial& trial) {
    std::vector<Fault> faults;
    const Exchanges& exchanges = Broken(trial, breakage);
    for (const Exchange& exchange : exchanges) {
        if (CodeIn(exchange.answer) == 0) {
            faults.push_back(FaultOf("a code of the program's own, from 1000 to 1699", exchange));
        }
    }
    return exchanges.empty() ? Outcome::NotJudged(trial.Over()) : Outcome::Of(std::move(faults));
}

// clang-format off
template Outcome BrokenChecks::Survives<Breakage::kCut>(Trial&);
template Outcome BrokenChecks::Survives<Breakage::kPadded>(Trial&);
template Outcome BrokenChecks::Survives<Breakage::kTotalSize>(Trial&);
template Outcome BrokenChecks::Survives<Breakage::kCount>(Trial&);
template Outcome BrokenChecks::Survives<Breakage::kType>(Trial&);
template Outcome BrokenChecks::Survives<Breakage::kOffset>(Trial&);
template Outcome BrokenChecks::Survives<Breakage::kSize>(Trial&);
template Outcome BrokenChecks::Survives<Breakage::kNul>(Trial&);
template Outcome BrokenChecks::Survives<Breakage::kDescription>(Trial&);
template Outcome BrokenChecks::Survives<Breakage::kUnknownId>(Trial&);
template Outcome BrokenChecks::Survives<Breakage::kTiny>(Trial&);
template Outcome BrokenChecks::Refuses<Breakage::kCut>(Trial&);
template Outcome BrokenChecks::Refuses<Breakage::kPadded>(Trial&);
template Outcome BrokenChecks::Refuses<Breakage::kTotalSize>(Trial&);
template Outcome BrokenChecks::Refuses<Breakage::kCount>(Trial&);
template Outcome BrokenChecks::Refuses<Breakage::kType>(Trial&);
template Outcome BrokenChecks::Refuses<Breakage::kOffset>(Trial&);
template Outcome BrokenChecks::Refuses<Breakage::kSize>(Trial&);
template Outcome BrokenChecks::Refuses<Breakage::kNul>(Trial&);
template Outcome BrokenChecks::Refuses<Breakage::kDescription>(Trial&);
template Outcome BrokenChecks::Refuses<Breakage::kUnknownId>(Trial&);
template Outcome BrokenChecks::Refuses<Breakage::kTiny>(Trial&);
// clang-format on

Outcome BrokenChecks::GoesOnSending(Trial& trial) {
    if (!SentBeforeBrokenRequests(trial)) {
        return Outcome::NotJudged("the program sends no notification after CreateGroup");
    }
    AllBroken(trial);
    trial.Subject().Revive();
    if (SendsAfterCreateGroup(trial)) {
        return Outcome::Of({});
    }
    return Outcome::Of({{"a notification after CreateGroup, as before the broken requests",
                         "none, as if the thread that sends it hung or had ended"}});
}

Outcome BrokenChecks::RaisesNothing(Trial& trial) {
    std::vector<Fault> faults;
    AddRaised(Usual(trial), faults);
    for (const Exchanges* const exchanges : AllBroken(trial)) {
        AddRaised(*exchanges, faults);
    }
    return Outcome::Of(std::move(faults));
}

}  // namespace PlenxJudge
