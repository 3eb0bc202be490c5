#include "judge/runner.h"

#include <chrono>
#include <exception>

namespace PlenxJudge {
namespace {

// A check that looks at the life of a service brings it up itself.
Outcome RunOne(const Check& check, Trial& trial) {
    const bool service = trial.Subject().AsService() != nullptr;
    const std::string why = WhyNotRun(check, service, trial.SoakTime().count() != 0);
    if (!why.empty()) {
        return Outcome::NotJudged(why);
    }
    if (!trial.Over().empty()) {
        return Outcome::NotJudged(trial.Over());
    }
    if (check.needs != Needs::kService && !trial.Subject().Revive()) {
        trial.End("the program does not run");
        return Outcome::NotJudged(trial.Over());
    }
    return check.run(trial);
}

Record RecordOf(const Check& check, Outcome outcome, const std::set<std::string>& known,
                double seconds) {
    return {check.number,   check.level,        check.section,
            check.sentence, std::move(outcome), known.count(check.number) != 0,
            seconds};
}

}  // namespace

std::string WhyNotRun(const Check& check, bool asService, bool soaks) {
    if (check.needs == Needs::kService && !asService) {
        return "only with --service";
    }
    return check.needs == Needs::kSoak && !soaks ? "only with --soak" : "";
}

std::vector<Record> RunChecks(const std::vector<const Check*>& checks, Trial& trial,
                              const std::set<std::string>& known, const Listener& listener) {
    std::vector<Record> records;
    for (std::size_t i = 0; i < checks.size(); ++i) {
        listener.begins(*checks[i], i);
        const auto begin = std::chrono::steady_clock::now();
        Outcome outcome = RunOne(*checks[i], trial);
        if (trial.IsInterrupted()) {
            break;
        }
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
        records.push_back(RecordOf(*checks[i], std::move(outcome), known, took.count()));
        listener.ends(records.back());
    }
    return records;
}

}  // namespace PlenxJudge
