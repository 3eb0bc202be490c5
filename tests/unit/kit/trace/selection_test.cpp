#include "trace/selection.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>
#include <vector>

namespace PlenxTrace {
namespace {

Event Step() {
    Event event;
    event.kind = Kind::kStep;
    return event;
}

Event Call() {
    Event event;
    event.kind = Kind::kCall;
    return event;
}

Event Failure() {
    Event event = Step();
    event.failure = true;
    return event;
}

struct Result {
    std::set<std::uint64_t> lines;
    std::uint64_t leftOut = 0;
};

// Returns the lines that are chosen. Checks that each line is either shown or counted, in its
// order.
Result Chosen(const std::vector<Event>& events, std::uint64_t most,
              const std::set<std::uint64_t>& wanted = {}) {
    Totals totals;
    for (const Event& event : events) {
        totals.Count(event);
    }
    Selection selection(totals, MakePlan(totals, most), wanted);
    std::vector<Shown> shown;
    for (const Event& event : events) {
        selection.Take(event, shown);
    }
    selection.Finish(shown);
    Result result;
    std::uint64_t next = 0;
    for (const Shown& one : shown) {
        EXPECT_EQ(one.sequence, next);
        next += one.leftOut == 0 ? 1 : one.leftOut;
        result.leftOut += one.leftOut;
        if (one.leftOut == 0) {
            result.lines.insert(one.sequence);
        }
    }
    EXPECT_EQ(next, events.size());
    return result;
}

TEST(Selection, ASmallLogIsShownWhole) {
    const Result result = Chosen(std::vector<Event>(100, Step()), 100);
    EXPECT_EQ(result.lines.size(), 100u);
    EXPECT_EQ(result.leftOut, 0u);
}

TEST(Selection, AnEmptyLogIsNoTrouble) {
    EXPECT_TRUE(Chosen({}, 100).lines.empty());
}

TEST(Selection, OfALargeLog_NoMoreThanAskedForIsShown) {
    for (const std::uint64_t most : {100u, 1000u, 5000u}) {
        for (const Event& event : {Step(), Call(), Failure()}) {
            const Result result = Chosen(std::vector<Event>(20001, event), most);
            EXPECT_LE(result.lines.size(), most);
            EXPECT_GE(result.lines.size(), most / 2);
            EXPECT_EQ(result.lines.size() + result.leftOut, 20001u);
        }
    }
}

TEST(Selection, ShowsHeadEndEachFailureAndWhatLedToIt) {
    std::vector<Event> events(10000, Step());
    events[5000] = Failure();
    const Result result = Chosen(events, 1000);
    for (std::uint64_t i = 0; i != 100; ++i) {
        EXPECT_TRUE(result.lines.count(i)) << i;
        EXPECT_TRUE(result.lines.count(9999 - i)) << i;
    }
    for (std::uint64_t i = 4990; i <= 5000; ++i) {
        EXPECT_TRUE(result.lines.count(i)) << i;
    }
}

TEST(Selection, FailuresAndCallsComeBeforeTheRest) {
    std::vector<Event> events;
    for (int i = 0; i != 10000; ++i) {
        events.push_back(i % 100 == 3 ? Failure() : i % 100 == 60 ? Call() : Step());
    }
    const Result result = Chosen(events, 3000);
    for (std::uint64_t i = 0; i != events.size(); ++i) {
        if (events[i].kind == Kind::kCall || events[i].failure) {
            EXPECT_TRUE(result.lines.count(i)) << i;
        }
    }
}

TEST(Selection, WhatIsTooMuchOfAKind_IsThinnedEvenly) {
    const Result result = Chosen(std::vector<Event>(100000, Failure()), 1000);
    std::uint64_t before = 0;
    for (const std::uint64_t line : result.lines) {
        EXPECT_LE(line - before, 300u);
        before = line;
    }
    EXPECT_LE(99999 - before, 300u);
}

TEST(Selection, UsualErrorsAreNoFailures) {
    Event usual = Failure();
    usual.usual = true;
    Totals totals;
    totals.Count(usual);
    EXPECT_EQ(totals.failures, 0u);
}

TEST(Selection, WhatTheSummaryPointsAt_IsShown) {
    const Result result = Chosen(std::vector<Event>(10000, Step()), 200, {1234, 7777});
    EXPECT_TRUE(result.lines.count(1234));
    EXPECT_TRUE(result.lines.count(7777));
}

}  // namespace
}  // namespace PlenxTrace
