// Tests the service's life under the real Service Control Manager, as the library sees it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "devservice/fake_manager.h"
#include "devservice/service_client.h"
#include "devservice/service_under_test.h"
#include "support/child_process.h"
#include "support/handle.h"
#include "support/system_habits.h"
#include "wire/catalog.h"

namespace PlenxTest {
namespace {

using testing::HasSubstr;

constexpr DWORD kStopLimit = 2000;  // the library waits this long for a service

const std::wstring kEndpoints[] = {L"PLENXOfficeService", L"PLENXPCService", L"PLENXPhoneService"};

ServiceAnswer Ping(const std::wstring& endpoint, std::int64_t number = 0) {
    return CallService(endpoint, PlenxWire::kPingService, {number});
}

std::vector<SERVICE_STATUS_PROCESS> OfState(const std::vector<SERVICE_STATUS_PROCESS>& reports,
                                            DWORD state) {
    std::vector<SERVICE_STATUS_PROCESS> some;
    for (const SERVICE_STATUS_PROCESS& report : reports) {
        if (report.dwCurrentState == state) {
            some.push_back(report);
        }
    }
    return some;
}

void ExpectRising(const std::vector<SERVICE_STATUS_PROCESS>& reports) {
    for (std::size_t i = 1; i < reports.size(); ++i) {
        EXPECT_GT(reports[i].dwCheckPoint, reports[i - 1].dwCheckPoint);
    }
}

class EachService : public testing::TestWithParam<int> {};

TEST_P(EachService, ServesItsEndpointBeforeItReportsRunning) {
    ServiceUnderTest service(GetParam());
    ASSERT_TRUE(service.StartAndRun());
    EXPECT_EQ(Ping(kEndpoints[GetParam()]).Code(), 0);
    EXPECT_NE(service.Status().dwProcessId, 0u);
}

INSTANTIATE_TEST_SUITE_P(Rows, EachService, testing::Values(0, 1, 2));

TEST(Life, DataFolderThatIsMissing_IsMadeAndHoldsTheLog) {
    ServiceUnderTest service(1);
    ASSERT_FALSE(std::filesystem::exists(service.DataFolder()));
    ASSERT_TRUE(service.StartAndRun());
    EXPECT_TRUE(service.LogComesToSay(" pc runs\n"));
}

// A service that is registered anew cannot show the code of the run before.
TEST(Life, ArgumentsThatAreWrong_EndInStoppedWithError87) {
    for (const std::vector<std::wstring>& arguments : {std::vector<std::wstring>{},
                                                       {L"C:\\a", L"C:\\b"},
                                                       {L"C:\\a", L"C:\\b", L"3"},
                                                       {L"C:\\a", L"C:\\b", L"12"},
                                                       {L"", L"C:\\b", L"1"}}) {
        ServiceUnderTest service(1);
        EXPECT_TRUE(Shows(Habits::kStartOfAServiceThatIsGoneAtOnce, service.Start(arguments)));
        ASSERT_TRUE(service.Reaches(SERVICE_STOPPED, 5000));
        EXPECT_EQ(service.Status().dwWin32ExitCode, ERROR_INVALID_PARAMETER);
    }
}

TEST(Life, SlowStart_ReportsAHintOfSecondsAndRisingCheckpoints) {
    ServiceUnderTest service(1, "[start]\ndelay_ms = 600\n");
    ASSERT_EQ(service.Start(), NO_ERROR);
    const auto reports = service.Watch(SERVICE_RUNNING, 5000);
    ASSERT_EQ(reports.back().dwCurrentState, SERVICE_RUNNING);
    const auto pending = OfState(reports, SERVICE_START_PENDING);
    ASSERT_GE(pending.size(), 4u);
    EXPECT_EQ(pending.back().dwWaitHint, 3000u);
    ExpectRising(pending);
    EXPECT_EQ(reports.back().dwCheckPoint, 0u);
}

TEST(Life, SilentStart_ReportsNoProgressWhileItLasts) {
    ServiceUnderTest service(1, "[start]\nsilent_ms = 800\nhint_ms = 4000\n");
    ASSERT_EQ(service.Start(), NO_ERROR);
    ASSERT_TRUE(service.LogComesToSay("starts silently"));
    const auto reports = service.Watch(SERVICE_RUNNING, 500);
    EXPECT_EQ(reports.size(), 1u);
    EXPECT_EQ(reports[0].dwCurrentState, SERVICE_START_PENDING);
    EXPECT_EQ(reports[0].dwWaitHint, 4000u);
    EXPECT_TRUE(service.Reaches(SERVICE_RUNNING, 3000));
}

TEST(Life, StartThatNeverEnds_StaysStartPending) {
    ServiceUnderTest service(1, "[start]\nnever = true\n");
    ASSERT_EQ(service.Start(), NO_ERROR);
    ASSERT_TRUE(service.LogComesToSay("never leaves start pending"));
    EXPECT_FALSE(service.Reaches(SERVICE_RUNNING, 1000));
    EXPECT_EQ(service.Status().dwCurrentState, SERVICE_START_PENDING);
}

TEST(Life, StartThatIsToldToFail_ReportsStoppedWithTheCode) {
    ServiceUnderTest service(1, "[start]\nservice = 'pc'\nfail = 1234\n");
    service.Start();
    ASSERT_TRUE(service.LogComesToSay("is told to fail, code 1234"));
    ASSERT_TRUE(service.Reaches(SERVICE_STOPPED, 5000));
    EXPECT_EQ(service.Status().dwWin32ExitCode, ERROR_SERVICE_SPECIFIC_ERROR);
    EXPECT_EQ(service.Status().dwServiceSpecificExitCode, 1234u);
}

TEST(Life, ControlOfAnotherService_HasNoEffect) {
    ServiceUnderTest service(1, "[start]\nservice = 'phone'\nfail = 1234\n");
    EXPECT_TRUE(service.StartAndRun());
}

TEST(Life, ServiceThatDoesNotServe_RunsAndItsEndpointIsAbsent) {
    ServiceUnderTest service(1, "[start]\nserve = false\n");
    ASSERT_TRUE(service.StartAndRun());
    EXPECT_EQ(ExceptionOfCall(kEndpoints[1], PlenxWire::kPingService),
              DWORD{RPC_S_SERVER_UNAVAILABLE});
}

TEST(Life, Stop_IsDoneInTimeAndTheEndpointGoesWithIt) {
    ServiceUnderTest service(1);
    ASSERT_TRUE(service.StartAndRun());
    const PlenxSupport::Handle process(
        OpenProcess(SYNCHRONIZE, FALSE, service.Status().dwProcessId));
    EXPECT_EQ(service.SendStop(), NO_ERROR);
    EXPECT_TRUE(service.Reaches(SERVICE_STOPPED, kStopLimit));
    EXPECT_EQ(service.Status().dwWin32ExitCode, NO_ERROR);
    EXPECT_EQ(WaitForSingleObject(process.Get(), 10000), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(ExceptionOfCall(kEndpoints[1], PlenxWire::kPingService),
              DWORD{RPC_S_SERVER_UNAVAILABLE});
}

TEST(Life, StartStopAgainAndAgain_Works) {
    ServiceUnderTest service(2);
    for (int round = 0; round < 10; ++round) {
        ASSERT_TRUE(service.StartAndRun()) << round;
        ASSERT_EQ(Ping(kEndpoints[2]).Code(), 0) << round;
        ASSERT_EQ(service.SendStop(), NO_ERROR) << round;
        ASSERT_TRUE(service.Reaches(SERVICE_STOPPED, kStopLimit)) << round;
    }
}

TEST(Life, SlowStop_ReportsProgress) {
    ServiceUnderTest service(1, "[stop]\ndelay_ms = 600\n");
    ASSERT_TRUE(service.StartAndRun());
    ASSERT_EQ(service.SendStop(), NO_ERROR);
    const auto reports = service.Watch(SERVICE_STOPPED, 5000);
    ASSERT_EQ(reports.back().dwCurrentState, SERVICE_STOPPED);
    const auto pending = OfState(reports, SERVICE_STOP_PENDING);
    ASSERT_GE(pending.size(), 4u);
    EXPECT_EQ(pending.back().dwWaitHint, 2000u);
    ExpectRising(pending);
}

TEST(Life, StopThatIsIgnored_LeavesItRunning) {
    ServiceUnderTest service(1, "[stop]\nhow = 'ignore'\n");
    ASSERT_TRUE(service.StartAndRun());
    EXPECT_EQ(service.SendStop(), NO_ERROR);
    EXPECT_FALSE(service.Reaches(SERVICE_STOPPED, 500));
    EXPECT_EQ(service.Status().dwCurrentState, SERVICE_RUNNING);
    EXPECT_EQ(Ping(kEndpoints[1]).Code(), 0);
    EXPECT_THAT(service.Log(), HasSubstr(" pc ignores stop\n"));
}

TEST(Life, StopThatNeverEnds_StaysStopPending) {
    ServiceUnderTest service(1, "[stop]\nhow = 'never'\n");
    ASSERT_TRUE(service.StartAndRun());
    EXPECT_EQ(service.SendStop(), NO_ERROR);
    EXPECT_FALSE(service.Reaches(SERVICE_STOPPED, 1000));
    EXPECT_EQ(service.Status().dwCurrentState, SERVICE_STOP_PENDING);
}

TEST(Life, StopThatIsNotAccepted_IsRefused) {
    ServiceUnderTest service(1, "[stop]\naccept = false\n");
    ASSERT_TRUE(service.StartAndRun());
    EXPECT_TRUE(Shows(Habits::kStopThatIsNotAccepted, service.SendStop()));
    EXPECT_EQ(service.Status().dwCurrentState, SERVICE_RUNNING);
}

TEST(Life, StopDuringADelayedRequest_IsDoneInTimeAndTheCallerComesBack) {
    ServiceUnderTest service(1, "[[on]]\ndelay_ms = 60000\n");
    ASSERT_TRUE(service.StartAndRun());
    ChildProcess caller(CallerOf(kEndpoints[1], PlenxWire::kDeleteGroup));
    EXPECT_TRUE(service.LogComesToSay("received DeleteGroup(1) groupName:\"g_1\"\n"));
    EXPECT_EQ(service.SendStop(), NO_ERROR);
    EXPECT_TRUE(service.Reaches(SERVICE_STOPPED, kStopLimit));
    // The answer races with the end of the process, so it may come or not.
    EXPECT_TRUE(caller.WaitForExit(5000).has_value());
}

TEST(Life, StopWhileTheLibraryDoesNotComeBack_IsDoneInTime) {
    FakeManager::Show();
    FakeManager::Block(4000);
    ServiceUnderTest service(1, "log = 'second.log'\n");
    ASSERT_TRUE(service.StartAndRun());
    CallService(kEndpoints[1], PlenxWire::kCreateGroup, {std::string("g_1"), 2, std::string("a")});
    ASSERT_EQ(FakeManager::Await(1).size(), 1u);
    EXPECT_EQ(service.SendStop(), NO_ERROR);
    EXPECT_TRUE(service.Reaches(SERVICE_STOPPED, kStopLimit));
    EXPECT_THAT(service.SecondLog(),
                HasSubstr("the library does not come back from a notification"));
    FakeManager::Show();
}

// The service says that it runs shortly after it has begun to run, and Wine keeps a folder in which
// a file is open at that moment. The answer to a ping comes after all earlier lines are written.
TEST(Life, DataFolder_CanBeRemovedWhileTheServiceRuns) {
    ServiceUnderTest service(1, "log = 'second.log'\n");
    ASSERT_TRUE(service.StartAndRun());
    ASSERT_TRUE(service.LogComesToSay(" pc runs\n"));
    ASSERT_EQ(Ping(kEndpoints[1]).Code(), 0);
    std::error_code error;
    std::filesystem::remove_all(service.DataFolder(), error);
    EXPECT_EQ(error.value(), 0);
    EXPECT_FALSE(std::filesystem::exists(service.DataFolder()));
    EXPECT_EQ(Ping(kEndpoints[1], 7).Code(), 0);
    EXPECT_FALSE(std::filesystem::exists(service.DataFolder()));
    EXPECT_THAT(service.SecondLog(), HasSubstr("received PingService(19) number:7"));
}

TEST(Life, OnceStopped_NothingIsWrittenToTheDataFolder) {
    ServiceUnderTest service(1, "log = 'second.log'\n");
    ASSERT_TRUE(service.StartAndRun());
    const PlenxSupport::Handle process(
        OpenProcess(SYNCHRONIZE, FALSE, service.Status().dwProcessId));
    ASSERT_TRUE(process);
    service.SendStop();
    ASSERT_TRUE(service.Reaches(SERVICE_STOPPED, kStopLimit));
    const std::string log = service.Log();
    EXPECT_THAT(log, HasSubstr(" pc has stopped\n"));
    std::filesystem::remove_all(service.DataFolder());
    ASSERT_EQ(WaitForSingleObject(process.Get(), 10000), DWORD{WAIT_OBJECT_0});
    EXPECT_FALSE(std::filesystem::exists(service.DataFolder()));
}

// Without arguments the program first looks for the service manager, which takes Wine ten seconds
// in a prefix where no service has been touched yet.
TEST(Console, UsageErrors_EndWith2) {
    for (const wchar_t* const arguments : {L"", L"--console", L"--console tablet", L"--nonsense",
                                           L"--console pc --seconds 0", L"--console pc --data"}) {
        ChildProcess child(L"\"" + ProgramFolder() + L"\\plenxservice.exe\" " + arguments);
        EXPECT_EQ(child.WaitForExit(40000), DWORD{2});
    }
}

TEST(Console, ControlFile_IsTakenFromTheFolderOfTheEnvironment) {
    ServiceUnderTest service(1, "[start]\nfail = 7\n");  // only for its folders
    SetEnvironmentVariableW(L"PLENX_SERVICE_CONTROL", service.InstallFolder().c_str());
    ChildProcess child(L"\"" + ProgramFolder() +
                       L"\\plenxservice.exe\" --console pc --install C:\\nowhere --data " +
                       service.DataFolder().wstring() + L" --seconds 5");
    SetEnvironmentVariableW(L"PLENX_SERVICE_CONTROL", nullptr);
    EXPECT_EQ(child.WaitForExit(4000), DWORD{1});
    EXPECT_THAT(service.Log(), HasSubstr(" pc is told to fail, code 7\n"));
}

TEST(Console, RunsForTheTimeGivenAndEndsWith0) {
    ServiceUnderTest service(1);  // only for its folders
    ChildProcess child(L"\"" + ProgramFolder() + L"\\plenxservice.exe\" --console phone --data " +
                       service.DataFolder().wstring() + L" --install " +
                       service.InstallFolder().wstring() + L" --seconds 1");
    EXPECT_TRUE(service.LogComesToSay(" phone runs\n"));
    EXPECT_EQ(Ping(kEndpoints[2]).Code(), 0);
    EXPECT_EQ(child.WaitForExit(10000), DWORD{0});
    EXPECT_THAT(service.Log(), HasSubstr(" phone has stopped\n"));
}

}  // namespace
}  // namespace PlenxTest
