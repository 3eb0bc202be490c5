// Decides which lines of a large log the page shows, so that the page stays small whatever the log.
//
// The head and the end of the log and every failure come first. The lines before the failures come
// next, then the calls and their outcomes, then stretches of the rest. A share that is not used up
// goes to the next one. Lines that do not fit into their share are thinned out evenly.

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

/// The numbers of lines to choose from.
struct Totals {
    std::uint64_t lines = 0;
    std::uint64_t failures = 0;  // lines that stand out
    std::uint64_t calls = 0;     // calls, refusals and outcomes that are no failures
    void Count(const Event& event);
};

/// The decision, which the page reports.
struct Plan {
    bool whole = true;  // all lines are shown, and nothing below counts
    std::uint64_t edge = 0;
    std::uint64_t failures = 0;  // the number of failures to show
    std::uint64_t context = 0;   // lines before each failure that is shown
    std::uint64_t calls = 0;     // the number of calls to show
    std::uint64_t others = 0;    // the number of other lines to show, in stretches
};

Plan MakePlan(const Totals& totals, std::uint64_t mostEvents);

/// A line that is shown, or a number of lines that are not.
struct Shown {
    Event event;
    std::uint64_t sequence = 0;  // the number of the line, or of the first one left out, from 0
    std::uint64_t leftOut = 0;   // 0 for a line that is shown
    std::int64_t until = 0;      // the time of the last one left out
};

class Selection {
public:
    /// The lines with the sequence numbers in wanted are shown in any case.
    Selection(const Totals& totals, const Plan& plan, std::set<std::uint64_t> wanted);

    /// Takes the next line and adds the lines that can be shown by now, or none.
    void Take(Event event, std::vector<Shown>& shown);
    /// Adds the rest.
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
