// Runs the soak, and tests its own parts: they must notice leaks and missed outcomes.

#include <gtest/gtest.h>
#include <windows.h>

#include <rpc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "soak/heap_bytes.h"
#include "soak/judgement.h"
#include "soak/listener.h"
#include "soak/measure.h"
#include "soak/outcome_book.h"
#include "soak/service_handles.h"
#include "soak/silence.h"
#include "soak/soak_run.h"
#include "support/child_process.h"
#include "support/service_state.h"
#include "support/system_habits.h"

namespace PlenxSoak {
namespace {

constexpr std::uint64_t kMebibyte = std::uint64_t{1024} * 1024;
constexpr Sample kFlat{30 * kMebibyte, kMebibyte, 100, 12, 0, 0, 0};

std::vector<Sample> FlatSeries(std::size_t count = 40) {
    return std::vector<Sample>(count, kFlat);
}

TEST(Judgement, FlatSeries_Holds) {
    EXPECT_EQ(Judge(FlatSeries()), std::vector<std::string>());
}

TEST(Judgement, GrowthWhileWarmingUp_Holds) {
    auto samples = FlatSeries();
    for (std::size_t i = 0; i != 10; ++i) {
        samples[i] = {i * kMebibyte, i * 1000, i, i, 0, 0, 0};
    }
    EXPECT_EQ(Judge(samples), std::vector<std::string>());
}

TEST(Judgement, SinglePeaks_Hold) {
    auto samples = FlatSeries();
    samples[34] = {90 * kMebibyte, 5 * kMebibyte, 200, 20, 0, 0, 0};
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

TEST(Judgement, OneServiceHandleMore_Fails) {
    auto samples = FlatSeries();
    for (std::size_t i = 30; i != samples.size(); ++i) {
        ++samples[i].serviceHandles;
    }
    EXPECT_EQ(Judge(samples), std::vector<std::string>{"service handles grew from 0 to 1"});
}

TEST(Judgement, TooFewSamples_GiveNoJudgement) {
    EXPECT_EQ(Judge(FlatSeries(7)), std::vector<std::string>{"only 7 samples"});
}

TEST(Measure, HeapBytes_AreExact) {
    constexpr std::size_t kBlocks = 1000;
    constexpr std::size_t kBytes = 40;
    CountHeapBytes();
    std::vector<void*> blocks(kBlocks);
    const std::uint64_t before = Measure().heapBytes;
    std::generate(blocks.begin(), blocks.end(), [] { return std::malloc(kBytes); });
    EXPECT_EQ(Measure().heapBytes, before + kBlocks * kBytes);
    blocks.front() = std::realloc(blocks.front(), 2 * kBytes);
    EXPECT_EQ(Measure().heapBytes, before + (kBlocks + 1) * kBytes);
    for (void* const block : blocks) {
        std::free(block);
    }
    EXPECT_EQ(Measure().heapBytes, before);
}

// Wine's record of a handle also exists while the handle is open. So it is safe to subtract records
// from the private bytes only together with a count of the open handles.
TEST(Measure, OpenServiceHandles_AreCountedAndAreWinesRecords) {
    CountServiceHandles();
    const Sample before = Measure();
    const SC_HANDLE manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
    const SC_HANDLE service = OpenServiceW(manager, L"PlugPlay", SERVICE_QUERY_STATUS);
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(OpenServiceW(manager, L"no such service", SERVICE_QUERY_STATUS), nullptr);
    const Sample held = Measure();
    EXPECT_EQ(held.serviceHandles, before.serviceHandles + 2);
    EXPECT_TRUE(
        Shows(PlenxTest::Habits::kServiceHandlesInTheHeap, held.wineRecords - before.wineRecords));
    EXPECT_EQ(held.privateBytes, held.measuredBytes - held.wineRecords * kBytesOfAWineRecord);
    CloseServiceHandle(service);
    CloseServiceHandle(manager);
    const Sample after = Measure();
    EXPECT_EQ(after.serviceHandles, before.serviceHandles);
    EXPECT_EQ(after.wineRecords, before.wineRecords);
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

TEST(Silence, NotificationsThatCome_EndIt) {
    Silence silence;
    for (std::uint64_t i = 1; i != 100; ++i) {
        silence.AtRest(i, i / Silence::kMostRests);
        EXPECT_FALSE(silence.TooLong()) << i;
    }
}

TEST(Silence, ServicesThatStartAndSayNothing_AreNoticed) {
    Silence silence;
    silence.AtRest(1, 1);
    for (int i = 0; i != Silence::kMostRests; ++i) {
        EXPECT_FALSE(silence.TooLong());
        silence.AtRest(2 + static_cast<std::uint64_t>(i), 1);
    }
    EXPECT_TRUE(silence.TooLong());
}

TEST(Silence, NobodyWhoCouldSaySomething_IsNoSilence) {
    Silence silence;
    for (int i = 0; i != 100; ++i) {
        silence.AtRest(1, 1);
    }
    EXPECT_FALSE(silence.TooLong());
}

// The library plays no part in this: a client comes and goes before the server listens.
TEST(Listener, ServerThatTheSystemLeftDeaf_IsRevived) {
    wchar_t protocol[] = L"ncalrpc";
    wchar_t endpoint[] = L"PlenxSoakListener";
    ASSERT_EQ(RpcServerUseProtseqEpW(reinterpret_cast<RPC_WSTR>(protocol), 10,
                                     reinterpret_cast<RPC_WSTR>(endpoint), nullptr),
              RPC_S_OK);
    const HANDLE client =
        CreateFileW(L"\\\\.\\pipe\\lrpc\\PlenxSoakListener", GENERIC_READ | GENERIC_WRITE, 0,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    const bool isPipe = client != INVALID_HANDLE_VALUE;
    ASSERT_TRUE(Shows(PlenxTest::Habits::kEndpointIsAPipe, isPipe ? "there" : "none"));
    if (!isPipe) {
        return;
    }
    CloseHandle(client);
    ASSERT_EQ(RpcServerListen(1, 10, TRUE), RPC_S_OK);
    EXPECT_FALSE(TakesConnections(endpoint)) << "this system no longer needs ReviveListener";
    EXPECT_EQ(ReviveListener(endpoint), 1u);
    EXPECT_TRUE(TakesConnections(endpoint));
    EXPECT_EQ(RpcMgmtStopServerListening(nullptr), RPC_S_OK);
}

// The host is a process of its own, so that a hang in it does not hang the test.
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
