// Which lines of a large log the page shows, so that the page stays small whatever the log is.
//
// The head and the end of the log and every failure come first, then what led to the failures, then
// the calls and what came of them, then stretches of the rest. A share that is not used up goes to
// the next one. What does not fit into its share is thinned out evenly.

#ifndef PLENXKIT_TRACE_SELECTION_H
#define PLENXKIT_TRACE_SELECTION_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <set>
#include <vector>

#include "trace/event.h"

namespace PlenxTrace {

constexpr std::uint64_t kDefaultMostEvents = 20000;

/// What there is to choose from.
struct Totals {
    std::uint64_t lines = 0;
    std::uint64_t failures = 0;  // that stand out
    std::uint64_t calls = 0;     // and refusals and outcomes, as far as they are no failures
    void Count(const Event& event);
};

/// What was decided; the page tells it.
struct Plan {
    bool whole = true;  // all lines are shown, and nothing below counts
    std::uint64_t edge = 0;
    std::uint64_t failures = 0;  // how many of Totals::failures
    std::uint64_t context = 0;   // lines before each failure that is shown
    std::uint64_t calls = 0;     // how many of Totals::calls
    std::uint64_t others = 0;    // how many of the rest, in stretches
};

Plan MakePlan(const Totals& totals, std::uint64_t mostEvents);

/// A line that is shown, or a number of lines that are not.
struct Shown {
    Event event;
    std::uint64_t sequence = 0;  // of the line, from 0; or of the first one left out
    std::uint64_t leftOut = 0;   // 0: a line
    std::int64_t until = 0;      // time of the last one left out
};

class Selection {
public:
    /// The lines of these sequence numbers are shown in any case.
    Selection(const Totals& totals, const Plan& plan, std::set<std::uint64_t> wanted);

    /// Takes the next line and gives what is to be shown by now, maybe nothing.
    void Take(Event event, std::vector<Shown>& shown);
    /// Gives the rest.
    void Finish(std::vector<Shown>& shown);

private:
    bool IsChosen(const Event& event);
    bool IsAtEdge() const;
    void Flush(std::vector<Shown>& shown);
    void LeaveOut(const Shown& line);

    Totals totals_;
    Plan plan_;
    std::set<std::uint64_t> wanted_;
    std::uint64_t sequence_ = 0;
    std::uint64_t failuresSeen_ = 0;
    std::uint64_t callsSeen_ = 0;
    std::uint64_t othersSeen_ = 0;
    std::deque<Shown> waiting_;  // not chosen for themselves, but a failure may follow
    Shown gap_;
};

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_SELECTION_H
