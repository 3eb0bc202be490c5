// The summary of the whole log, whatever part of it the page shows. Its memory does not grow with
// the log.

#ifndef PLENXKIT_TRACE_SUMMARY_H
#define PLENXKIT_TRACE_SUMMARY_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "trace/event.h"

namespace PlenxTrace {

/// The calls of one operation of the public interface.
struct CallCounts {
    std::uint64_t calls = 0;
    std::uint64_t refused = 0;
    std::uint64_t failed = 0;
    std::uint64_t waits = 0;  // calls whose worker's line is in the log
    std::int64_t waitSum = 0;
    std::int64_t waitMost = 0;
};

/// Failures of one shape: their number, and the first of them.
struct Group {
    std::uint64_t count = 0;
    std::uint64_t first = 0;  // the sequence number of the first
    std::optional<std::int64_t> code;
    bool usual = false;
    std::string example;
};

/// A start or a wait that took long.
struct Slow {
    std::int64_t milliseconds = 0;
    std::uint64_t sequence = 0;
    std::int64_t time = 0;
    std::string label;
    bool failure = false;
};

/// Lines over time: spans of the same length, which doubles when the log goes on.
struct Histogram {
    static constexpr std::size_t kSpans = 240;
    struct Span {
        std::uint64_t lines = 0;
        std::uint64_t failures = 0;
    };
    std::int64_t begin = kNoTime;
    std::int64_t span = 1;  // milliseconds
    std::array<Span, kSpans> spans{};
    void Add(std::int64_t time, bool failure);
};

struct Summary {
    std::uint64_t lines = 0;
    std::uint64_t failures = 0;  // lines that stand out
    std::uint64_t usual = 0;     // errors that every healthy run has
    std::uint64_t requests = 0;
    std::uint64_t notifications = 0;
    std::uint64_t foreign = 0;  // texts that are not lines of a log
    std::uint64_t unknown = 0;  // lines of the library that the table does not have
    std::uint64_t torn = 0;
    std::uint64_t cut = 0;
    std::int64_t firstTime = kNoTime;
    std::int64_t lastTime = kNoTime;
    std::map<std::string_view, CallCounts> calls;
    std::map<std::string, Group> failedCalls;  // by operation and code
    std::map<std::string, Group> errorLines;   // by their text without its numbers
    std::vector<Slow> slowestStarts;
    std::vector<Slow> longestWaits;
    Histogram histogram;

    void Add(const Event& event, std::uint64_t sequence);
    /// The lines that the summary points at.
    std::set<std::uint64_t> Sequences() const;

private:
    void AddCall(const Event& event);
    void AddFailure(const Event& event, std::uint64_t sequence);
};

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_SUMMARY_H
