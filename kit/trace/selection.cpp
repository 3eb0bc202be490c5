#include "trace/selection.h"

#include <algorithm>
#include <utility>

namespace PlenxTrace {
namespace {

constexpr std::uint64_t kMostContext = 10;
constexpr std::uint64_t kStretch = 50;

bool IsCall(const Event& event) {
    return event.kind == Kind::kCall || event.kind == Kind::kRefusal ||
           event.kind == Kind::kOutcome;
}

// Whether the thing at index is among the picked ones, when they are spread evenly over count.
bool IsPicked(std::uint64_t index, std::uint64_t picked, std::uint64_t count) {
    if (picked >= count) {
        return true;
    }
    return (index + 1) * picked / count != index * picked / count;
}

// The same, but it picks stretches of neighbours.
bool IsPickedInStretches(std::uint64_t index, std::uint64_t picked, std::uint64_t count) {
    const std::uint64_t stretches = std::max<std::uint64_t>(count / kStretch, 1);
    return IsPicked(std::min(index / kStretch, stretches - 1), picked / kStretch, stretches);
}

}  // namespace

void Totals::Count(const Event& event) {
    ++lines;
    if (IsAlarming(event)) {
        ++failures;
    } else if (IsCall(event)) {
        ++calls;
    }
}

Plan MakePlan(const Totals& totals, std::uint64_t mostEvents) {
    Plan plan;
    if (totals.lines <= mostEvents) {
        return plan;
    }
    plan.whole = false;
    plan.edge = mostEvents / 10;
    std::uint64_t left = mostEvents - 2 * plan.edge;
    plan.failures = std::min(totals.failures, left / 2);
    left -= plan.failures;
    plan.context = plan.failures == 0 ? 0 : std::min(left / 2 / plan.failures, kMostContext);
    left -= plan.context * plan.failures;
    plan.calls = std::min(totals.calls, left);
    left -= plan.calls;
    plan.others = std::min(totals.lines - totals.failures - totals.calls, left);
    left -= plan.others;
    plan.failures = std::min(totals.failures, plan.failures + left);  // these have no context
    return plan;
}

Selection::Selection(const Totals& totals, const Plan& plan, std::set<std::uint64_t> wanted)
    : totals_(totals), plan_(plan), wanted_(std::move(wanted)) {}

void Selection::Take(Event event, std::vector<Shown>& shown) {
    const bool chosen = IsChosen(event);
    const bool hasContext = chosen && IsAlarming(event);
    if (chosen && !hasContext) {
        while (!waiting_.empty()) {
            LeaveOut(waiting_.front());
            waiting_.pop_front();
        }
    }
    Shown line;
    line.event = std::move(event);
    line.sequence = sequence_++;
    waiting_.push_back(std::move(line));
    if (chosen) {
        Flush(shown);
    } else if (waiting_.size() > plan_.context) {
        LeaveOut(waiting_.front());
        waiting_.pop_front();
    }
}

void Selection::Finish(std::vector<Shown>& shown) {
    for (const Shown& line : waiting_) {
        LeaveOut(line);
    }
    waiting_.clear();
    Flush(shown);
}

bool Selection::IsChosen(const Event& event) {
    if (plan_.whole) {
        return true;
    }
    bool chosen = IsAtEdge() || wanted_.count(sequence_) != 0;
    if (IsAlarming(event)) {
        chosen |= IsPicked(failuresSeen_++, plan_.failures, totals_.failures);
    } else if (IsCall(event)) {
        chosen |= IsPicked(callsSeen_++, plan_.calls, totals_.calls);
    } else {
        const std::uint64_t others = totals_.lines - totals_.failures - totals_.calls;
        chosen |= IsPickedInStretches(othersSeen_++, plan_.others, others);
    }
    return chosen;
}

bool Selection::IsAtEdge() const {
    return sequence_ < plan_.edge || sequence_ + plan_.edge >= totals_.lines;
}

// Shows the gap of lines that were left out so far, and then all waiting lines.
void Selection::Flush(std::vector<Shown>& shown) {
    if (gap_.leftOut != 0) {
        shown.push_back(std::exchange(gap_, {}));
    }
    for (Shown& line : waiting_) {
        shown.push_back(std::move(line));
    }
    waiting_.clear();
}

void Selection::LeaveOut(const Shown& line) {
    if (gap_.leftOut == 0) {
        gap_.sequence = line.sequence;
        gap_.event.time = line.event.time;
    }
    ++gap_.leftOut;
    gap_.until = line.event.time;
}

}  // namespace PlenxTrace
