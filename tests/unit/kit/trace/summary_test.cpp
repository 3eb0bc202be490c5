#include "trace/summary.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

#include "story.h"

namespace PlenxTrace {
namespace {

Summary SummaryOf(const std::vector<std::string>& texts) {
    Summary summary;
    std::uint64_t sequence = 0;
    for (const Event& event : Classified(texts)) {
        summary.Add(event, sequence++);
    }
    return summary;
}

TEST(Summary, CountsCallsWaitsFailuresAndRefusals) {
    const Summary summary = SummaryOf({
        Pushed(0, 1),
        Pushed(1, 2),
        Runs(4, 1),
        Error(5, kWorkerThread, "plenx manager start plenx service error 5",
              "PLENXManagerInner::Start"),
        Told(6, 1, 0, 0),
        Runs(7, 2),
        Told(9, 2, 0, 1),
        Error(10, kHostThread, "plenx manager start invalid parameter", "PLENXManager::Start"),
    });
    ASSERT_EQ(summary.calls.count("Start"), 1u);
    const CallCounts& starts = summary.calls.at("Start");
    EXPECT_EQ(starts.calls, 3u);
    EXPECT_EQ(starts.refused, 1u);
    EXPECT_EQ(starts.failed, 1u);
    EXPECT_EQ(starts.waits, 2u);
    EXPECT_EQ(starts.waitSum, 10);
    EXPECT_EQ(starts.waitMost, 6);
    EXPECT_EQ(summary.lines, 8u);
    EXPECT_EQ(summary.failures, 3u);
    EXPECT_EQ(summary.firstTime, kNoon);
    EXPECT_EQ(summary.lastTime, kNoon + 10);
}

TEST(Summary, GroupsFailedCallsByCode) {
    const std::string refused =
        Error(0, kHostThread, "plenx manager stop invalid parameter", "PLENXManager::Stop");
    const Summary summary = SummaryOf({refused, refused, Runs(1, 0), Told(2, 0, 0, 0)});
    ASSERT_EQ(summary.failedCalls.size(), 2u);
    const Group& office = summary.failedCalls.at("Start\n");
    EXPECT_EQ(office.count, 1u);
    EXPECT_EQ(office.code, std::nullopt);
    EXPECT_EQ(office.first, 3u);
    const Group& stops = summary.failedCalls.at("Stop\n26");
    EXPECT_EQ(stops.count, 2u);
    EXPECT_EQ(stops.code, 26);
    EXPECT_EQ(stops.first, 0u);
}

TEST(Summary, GroupsErrorLinesByTheirTextWithoutNumbers_ButWithTheirCode) {
    const auto line = [](const std::string& text) {
        return Error(0, kWorkerThread, text, "KillServiceProcess");
    };
    const Summary summary = SummaryOf({line("open service process 12 error 5"),
                                       line("open service process 345 error 5"),
                                       line("open service process 6 error 9")});
    ASSERT_EQ(summary.errorLines.size(), 2u);
    EXPECT_EQ(summary.errorLines.begin()->second.count, 2u);
    EXPECT_EQ(summary.errorLines.begin()->second.example,
              "open service process 12 error 5 (KillServiceProcess)");
}

TEST(Summary, KeepsTheTenSlowest_TheSlowestFirst) {
    std::vector<std::string> texts;
    for (int i = 0; i != 30; ++i) {
        texts.push_back(Runs(i * 1000, 1));
        texts.push_back(Told(i * 1000 + 100 + i, 1, 0, 1));
    }
    const Summary summary = SummaryOf(texts);
    ASSERT_EQ(summary.slowestStarts.size(), 10u);
    EXPECT_EQ(summary.slowestStarts.front().milliseconds, 129);
    EXPECT_EQ(summary.slowestStarts.back().milliseconds, 120);
    EXPECT_EQ(summary.slowestStarts.front().sequence, 59u);
    EXPECT_EQ(summary.Sequences().count(59), 1u);
}

TEST(Summary, DoesNotGrowWithoutBounds) {
    Summary summary;
    for (int i = 0; i != 5000; ++i) {
        std::string word = "w";
        for (int rest = i; rest != 0; rest /= 26) {
            word.push_back(static_cast<char>('a' + rest % 26));
        }
        const auto events = Classified({Error(0, kWorkerThread, word, "RpcManager::Start")});
        summary.Add(events[0], static_cast<std::uint64_t>(i));
    }
    EXPECT_LE(summary.errorLines.size(), 201u);
    std::uint64_t count = 0;
    for (const auto& [key, group] : summary.errorLines) {
        count += group.count;
    }
    EXPECT_EQ(count, 5000u);
}

TEST(Histogram, CountsEachLineOnce_HoweverLongItGets) {
    Histogram histogram;
    std::uint64_t total = 0;
    for (std::int64_t time = kNoon; time < kNoon + 400LL * 24 * 3600 * 1000;
         time += 3600LL * 1000) {
        histogram.Add(time, time == kNoon);
        ++total;
    }
    histogram.Add(kNoon - 5000, false);  // a clock set back
    std::uint64_t lines = 0;
    std::uint64_t failures = 0;
    for (const Histogram::Span& span : histogram.spans) {
        lines += span.lines;
        failures += span.failures;
    }
    EXPECT_EQ(lines, total + 1);
    EXPECT_EQ(failures, 1u);
    EXPECT_EQ(histogram.begin, kNoon);
    EXPECT_GT(histogram.spans[Histogram::kSpans / 2].lines, 0u);
}

TEST(Histogram, LinesWithoutATime_AreNotInIt) {
    Histogram histogram;
    histogram.Add(kNoTime, true);
    EXPECT_EQ(histogram.begin, kNoTime);
}

}  // namespace
}  // namespace PlenxTrace
