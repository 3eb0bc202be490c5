// What the checks of one run share: the program, what was sent and what came of it. Experiments
// that several checks judge run only once.

#ifndef PLENXKIT_JUDGE_TRIAL_H
#define PLENXKIT_JUDGE_TRIAL_H

#include <any>
#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "judge/check.h"
#include "judge/forms.h"
#include "judge/program.h"
#include "support/interruption.h"

namespace PlenxJudge {

/// One request and what came of it.
struct Exchange {
    Form form;
    Answer answer;
    bool survived = true;  // the program went on
    std::string before;    // when it did not: the request before this one, and what came of it
};
using Exchanges = std::vector<Exchange>;

class Trial {
public:
    Trial(Program& program, std::chrono::seconds soak,
          const PlenxSupport::Interruption& interruption)
        : program_(program), soak_(soak), interruption_(interruption) {}

    Program& Subject() { return program_; }
    std::chrono::seconds SoakTime() const { return soak_; }
    int Role() const { return program_.Role(); }
    /// The groups of every CreateGroup that was sent.
    const std::set<std::string>& Groups() const { return groups_; }

    /// Sends the request. When the program does not survive it, starts it again if that is
    /// possible.
    Exchange Send(const Form& form);
    Exchanges SendAll(const Forms& forms);
    /// Stops when some of them did not come back as they should, because more would say the same.
    Exchanges SendUntilLost(const Forms& forms);

    /// The result of an experiment, which runs when the first check asks for it.
    template <class Result>
    const Result& Remember(const std::string& name, const std::function<Result()>& run) {
        auto found = results_.find(name);
        if (found == results_.end()) {
            found = results_.emplace(name, run()).first;
        }
        return std::any_cast<const Result&>(found->second);
    }

    /// Whether somebody wants the run to end. What a check finds may then be wrong.
    bool IsInterrupted() const { return interruption_.IsRaised(); }
    /// Why nothing more can be judged; empty while something can.
    const std::string& Over() const { return over_; }
    void End(std::string why) { over_ = std::move(why); }

private:
    void KeepTheGroup(const Request& request);
    bool StaysUp(std::uint32_t exception);

    Program& program_;
    const std::chrono::seconds soak_;
    const PlenxSupport::Interruption& interruption_;
    std::map<std::string, std::any> results_;
    std::set<std::string> groups_;
    std::string before_;  // the last request, and what came of it
    int losses_ = 0;
    std::string over_;
};

/// The answer in words, for Fault::came.
std::string Told(const Answer& answer);
/// The request and its answer in words. The cause of a loss may be the request before it.
std::string Told(const Exchange& exchange);
/// The bytes of a message, decoded as plenxkit message shows them.
std::string Shown(std::int32_t id, const PlenxWire::Bytes& bytes);
std::string ShownReply(const PlenxWire::Bytes& bytes);

/// The int32 of an exact reply.
std::optional<std::int32_t> CodeIn(const Answer& answer);
/// The result of the request as the library reads it: what it cannot read counts as 0.
std::int64_t ResultForLibrary(const Answer& answer);

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_TRIAL_H
