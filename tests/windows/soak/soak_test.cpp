// The soak, and what holds its own parts: that leaks are seen, that outcomes are missed.

#include <gtest/gtest.h>

#include <cstring>

#include "soak/judgement.h"
#include "soak/outcome_book.h"
#include "soak/soak_run.h"
#include "support/child_process.h"
#include "support/service_state.h"

namespace PlenxSoak {
namespace {

constexpr std::uint64_t kMebibyte = 1024 * 1024;
constexpr Sample kFlat{30 * kMebibyte, kMebibyte, 100, 12};

std::vector<Sample> FlatSeries(std::size_t count = 40) {
    return std::vector<Sample>(count, kFlat);
}

TEST(Judgement, FlatSeries_Holds) {
    EXPECT_EQ(Judge(FlatSeries()), std::vector<std::string>());
}

TEST(Judgement, GrowthWhileWarmingUp_Holds) {
    auto samples = FlatSeries();
    for (std::size_t i = 0; i != 10; ++i) {
        samples[i] = {i * kMebibyte, i * 1000, i, i};
    }
    EXPECT_EQ(Judge(samples), std::vector<std::string>());
}

TEST(Judgement, SinglePeaks_Hold) {
    auto samples = FlatSeries();
    samples[34] = {90 * kMebibyte, 5 * kMebibyte, 200, 20};
    EXPECT_EQ(Judge(samples), std::vector<std::string>());
}

TEST(Judgement, SlowLeakOfPrivateBytes_Fails) {
    auto samples = FlatSeries();
    for (std::size_t i = 0; i != samples.size(); ++i) {
        samples[i].privateBytes += i * 64 * 1024;
    }
    EXPECT_EQ(Judge(samples),
              std::vector<std::string>{"private bytes grew from 32374784 to 33685504"});
}

TEST(Judgement, SlowLeakOfHeapBytes_Fails) {
    auto samples = FlatSeries();
    for (std::size_t i = 0; i != samples.size(); ++i) {
        samples[i].heapBytes += i * 2000;
    }
    EXPECT_EQ(Judge(samples), std::vector<std::string>{"heap bytes grew from 1076576 to 1116576"});
}

TEST(Judgement, SlowLeakOfHandles_Fails) {
    auto samples = FlatSeries();
    for (std::size_t i = 0; i != samples.size(); ++i) {
        samples[i].handles += i / 2;
    }
    EXPECT_EQ(Judge(samples), std::vector<std::string>{"handles grew from 107 to 117"});
}

TEST(Judgement, OneThreadMore_Fails) {
    auto samples = FlatSeries();
    for (std::size_t i = 30; i != samples.size(); ++i) {
        ++samples[i].threads;
    }
    EXPECT_EQ(Judge(samples), std::vector<std::string>{"threads grew from 12 to 13"});
}

TEST(Judgement, TooFewSamples_IsNoJudgement) {
    EXPECT_EQ(Judge(FlatSeries(7)), std::vector<std::string>{"only 7 samples"});
}

TEST(OutcomeBook, OutcomesInOrder_AreTaken) {
    OutcomeBook book;
    book.Expect({1, "g", 0}, OutcomeBook::kCertain);
    book.Expect({1, "g", 1}, OutcomeBook::kCertain);
    book.Expect({3, "g", 1}, OutcomeBook::kPossible);
    EXPECT_TRUE(book.Take({1, "g", 0}));
    EXPECT_TRUE(book.Take({1, "g", 1}));
    EXPECT_TRUE(book.WaitForAll(std::chrono::milliseconds(0)));
    EXPECT_TRUE(book.Take({3, "g", 1}));
}

TEST(OutcomeBook, PossibleOutcome_MayBeLeftOut) {
    OutcomeBook book;
    book.Expect({1, "g", 2}, OutcomeBook::kPossible);
    book.Expect({1, "g", 0}, OutcomeBook::kCertain);
    EXPECT_TRUE(book.Take({1, "g", 0}));
    EXPECT_FALSE(book.Take({1, "g", 2})) << "its turn is over";
}

TEST(OutcomeBook, CertainOutcomeLeftOut_IsRefused) {
    OutcomeBook book;
    book.Expect({1, "g", 0}, OutcomeBook::kCertain);
    book.Expect({2, "g", 0}, OutcomeBook::kCertain);
    EXPECT_FALSE(book.Take({2, "g", 0}));
}

TEST(OutcomeBook, OutcomeThatNobodyPromised_IsRefused) {
    OutcomeBook book;
    EXPECT_FALSE(book.Take({1, "g", 0}));
    book.Expect({1, "g", 0}, OutcomeBook::kCertain);
    EXPECT_FALSE(book.Take({1, "other", 0}));
}

TEST(OutcomeBook, OutcomeThatDoesNotCome_EndsTheWait) {
    OutcomeBook book;
    book.Expect({1, "g", 0}, OutcomeBook::kCertain);
    EXPECT_FALSE(book.WaitForAll(std::chrono::milliseconds(1)));
    EXPECT_EQ(book.Missing(), "  missing  NotifyStatus(1, g, 0)\n");
}

// The host is a process of its own: what hangs in it must not hang the test.
TEST(Soak, RandomCallsAgainstServicesThatMisbehave_AreAnsweredAndLeakNothing) {
    constexpr unsigned kSecondsToEnd = 600;
    const Plan plan = PlanFromEnvironment();
    SetEnvironmentVariableW(L"PLENX_LOG_FILE", L"C:\\plenx-soak-logs\\library.log");
    PlenxTest::ChildProcess host(PlenxTest::ChildProcess::Self(L"--soak"));
    ASSERT_TRUE(host.Started());
    const auto code = host.WaitForExit((plan.seconds + kSecondsToEnd) * 1000);
    host.Kill();
    EXPECT_EQ(code, DWORD{0}) << "the run has failed, with seed " << plan.seed;
    for (const wchar_t* service : {L"PlenxPcSvc", L"PlenxPhoneSvc"}) {
        PlenxTest::EndService(service);
    }
}

}  // namespace
}  // namespace PlenxSoak

int main(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "--soak") == 0) {
        return PlenxSoak::Run(PlenxSoak::PlanFromEnvironment());
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
