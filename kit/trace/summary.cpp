#include "trace/summary.h"

#include <algorithm>
#include <utility>

#include "trace/log_line.h"
#include "trace/template_text.h"

namespace PlenxTrace {
namespace {

constexpr std::size_t kMostSlow = 10;
constexpr std::size_t kMostGroups = 200;
constexpr std::size_t kMostShapeBytes = 160;
constexpr char kOtherGroups[] = "all others";

void AddSlow(std::vector<Slow>& slowest, Slow slow) {
    const auto place = std::find_if(slowest.begin(), slowest.end(), [&](const Slow& other) {
        return other.milliseconds < slow.milliseconds;
    });
    slowest.insert(place, std::move(slow));
    if (slowest.size() > kMostSlow) {
        slowest.pop_back();
    }
}

Group& GroupOf(std::map<std::string, Group>& groups, std::string key) {
    const bool full = groups.size() >= kMostGroups && groups.count(key) == 0;
    return groups[full ? kOtherGroups : std::move(key)];
}

void AddToGroup(Group& group, const Event& event, std::uint64_t sequence, std::string example) {
    if (group.count++ == 0) {
        group.first = sequence;
        group.code = event.code;
        group.usual = event.usual;
        group.example = std::move(example);
    }
}

// Numbers become #, except the code, because "open service error 5" and "... 1060" differ.
std::string Shape(std::string_view text, const std::optional<std::int64_t>& code) {
    std::string shape;
    for (std::size_t i = 0; i != text.size() && shape.size() < kMostShapeBytes; ++i) {
        if (!IsDigit(text[i])) {
            shape.push_back(text[i]);
        } else if (shape.empty() || shape.back() != '#') {
            shape.push_back('#');
        }
    }
    return code ? shape + " " + std::to_string(*code) : shape;
}

std::string MessageOf(const Event& event) {
    if (const auto parsed = ParseLibraryLine(event.line)) {
        return std::string(parsed->text) + " (" + std::string(parsed->function) + ")";
    }
    return event.label;
}

}  // namespace

void Histogram::Add(std::int64_t time, bool failure) {
    if (time == kNoTime) {
        return;
    }
    if (begin == kNoTime) {
        begin = time;
    }
    const std::int64_t since = std::max<std::int64_t>(time - begin, 0);
    while (since / span >= static_cast<std::int64_t>(kSpans)) {
        for (std::size_t i = 0; i != kSpans; ++i) {
            const Span joined = 2 * i < kSpans
                                    ? Span{spans[2 * i].lines + spans[2 * i + 1].lines,
                                           spans[2 * i].failures + spans[2 * i + 1].failures}
                                    : Span{};
            spans[i] = joined;
        }
        span *= 2;
    }
    Span& place = spans[static_cast<std::size_t>(since / span)];
    ++place.lines;
    place.failures += failure ? 1 : 0;
}

void Summary::Add(const Event& event, std::uint64_t sequence) {
    ++lines;
    requests += event.kind == Kind::kRequest ? 1 : 0;
    notifications += event.kind == Kind::kNotification ? 1 : 0;
    foreign += event.kind == Kind::kForeign ? 1 : 0;
    unknown += event.kind == Kind::kUnknown ? 1 : 0;
    torn += event.torn ? 1 : 0;
    cut += event.cutBytes != 0 ? 1 : 0;
    if (event.time != kNoTime) {
        firstTime = firstTime == kNoTime ? event.time : std::min(firstTime, event.time);
        lastTime = std::max(lastTime, event.time);
    }
    histogram.Add(event.time, IsAlarming(event));
    AddCall(event);
    if (event.waited) {
        AddSlow(longestWaits, {*event.waited, sequence, event.time, event.label, false});
    }
    if (event.kind == Kind::kOutcome && event.operation == "Start" && event.took) {
        AddSlow(slowestStarts, {*event.took, sequence, event.time, event.label, event.failure});
    }
    if (event.failure) {
        AddFailure(event, sequence);
    }
}

void Summary::AddCall(const Event& event) {
    if (event.kind == Kind::kCall) {
        ++calls[event.operation].calls;
    } else if (event.kind == Kind::kRefusal) {
        ++calls[event.operation].calls;
        ++calls[event.operation].refused;
    } else if (event.kind == Kind::kOutcome && event.failure) {
        ++calls[event.operation].failed;
    } else if (event.waited) {
        CallCounts& counts = calls[event.operation];
        ++counts.waits;
        counts.waitSum += *event.waited;
        counts.waitMost = std::max(counts.waitMost, *event.waited);
    }
}

void Summary::AddFailure(const Event& event, std::uint64_t sequence) {
    (event.usual ? usual : failures) += 1;
    if (event.kind == Kind::kOutcome || event.kind == Kind::kRefusal) {
        const std::string code = event.code ? std::to_string(*event.code) : "";
        const std::string operation(event.operation);
        AddToGroup(GroupOf(failedCalls, operation + "\n" + code), event, sequence, operation);
    }
    if (event.level == Level::kError) {
        const std::string message = MessageOf(event);
        AddToGroup(GroupOf(errorLines, Shape(message, event.code)), event, sequence, message);
    }
}

std::set<std::uint64_t> Summary::Sequences() const {
    std::set<std::uint64_t> sequences;
    for (const auto* slow : {&slowestStarts, &longestWaits}) {
        for (const Slow& one : *slow) {
            sequences.insert(one.sequence);
        }
    }
    for (const auto* groups : {&failedCalls, &errorLines}) {
        for (const auto& [key, group] : *groups) {
            sequences.insert(group.first);
        }
    }
    return sequences;
}

}  // namespace PlenxTrace
