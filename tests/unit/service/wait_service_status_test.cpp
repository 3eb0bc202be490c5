// Tests the polling of a service's status on the virtual clock, on which only sleeping takes time.

#include "service/service_manager.h"
#include "service_room_test.h"

using DistributedFs::ServiceManager;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::wstring kName = L"Waited";

class WaitServiceStatusTest : public ServiceRoomTest {
protected:
    WaitServiceStatusTest() {
        platform.Scm().AddService(kName);
        manager_ = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
        service_ = OpenServiceW(manager_, kName.c_str(), SERVICE_QUERY_STATUS);
        LookFromHere();
    }

    void TearDown() override {
        CloseServiceHandle(service_);
        CloseServiceHandle(manager_);
        ServiceRoomTest::TearDown();
    }

    void ServiceFollows(StatusScript script) { platform.Scm().RunScript(kName, std::move(script)); }

    void Wait(DWORD state, bool untilEqual) {
        const std::uint64_t start = platform.Clock().Now();
        ServiceManager::WaitServiceStatus(service_, status, bytesNeeded,
                                          static_cast<std::int32_t>(state), untilEqual);
        waited = platform.Clock().Now() - start;
    }

    static SERVICE_STATUS_PROCESS Status(DWORD state, DWORD checkPoint, DWORD waitHint) {
        SERVICE_STATUS_PROCESS status = {};
        status.dwCurrentState = state;
        status.dwCheckPoint = checkPoint;
        status.dwWaitHint = waitHint;
        return status;
    }

    Texts Sleeps() const { return platform.CallsOf({"Sleep"}); }
    Texts Queries() const { return platform.CallsOf({"QueryServiceStatusEx"}); }

    SERVICE_STATUS_PROCESS status = {};
    DWORD bytesNeeded = 0;
    std::uint64_t waited = 0;

private:
    SC_HANDLE manager_;
    SC_HANDLE service_;
};

TEST_F(WaitServiceStatusTest, UntilEqualInTheState_ReturnsWithoutAQuery) {
    status = Status(SERVICE_STOPPED, 0, 2000);
    Wait(SERVICE_STOPPED, true);
    EXPECT_THAT(Queries(), IsEmpty());
    EXPECT_EQ(waited, 0U);
}

TEST_F(WaitServiceStatusTest, UntilDifferentInAnotherState_ReturnsWithoutAQuery) {
    status = Status(SERVICE_RUNNING, 0, 2000);
    Wait(SERVICE_STOP_PENDING, false);
    EXPECT_THAT(Queries(), IsEmpty());
    EXPECT_EQ(waited, 0U);
}

TEST_F(WaitServiceStatusTest, ReachingTheState_EndsTheWaitAtTheNextPoll) {
    ServiceFollows({{0, SERVICE_STOP_PENDING}, {25, SERVICE_STOPPED}});
    status = Status(SERVICE_STOP_PENDING, 0, 2000);
    Wait(SERVICE_STOPPED, true);
    EXPECT_EQ(status.dwCurrentState, DWORD{SERVICE_STOPPED});
    EXPECT_THAT(Sleeps(), AllOf(SizeIs(4), Each("Sleep(10)")));
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(WaitServiceStatusTest, LeavingTheState_EndsTheWaitWhateverComesAfterIt) {
    ServiceFollows({{0, SERVICE_START_PENDING}, {25, SERVICE_PAUSED}});
    status = Status(SERVICE_START_PENDING, 0, 2000);
    Wait(SERVICE_START_PENDING, false);
    EXPECT_EQ(status.dwCurrentState, DWORD{SERVICE_PAUSED});
}

TEST_F(WaitServiceStatusTest, Query_AsksForThe36BytesOfTheProcessStatus) {
    ServiceFollows({{0, SERVICE_RUNNING}});
    status = Status(SERVICE_START_PENDING, 0, 2000);
    Wait(SERVICE_START_PENDING, false);
    EXPECT_THAT(Queries(), ElementsAre("QueryServiceStatusEx(Waited, 0, 36)"));
    EXPECT_EQ(bytesNeeded, 36U);
}

TEST_F(WaitServiceStatusTest, NoProgress_EndsTheWaitOnceMoreThanTheHintHasPassed) {
    ServiceFollows({{0, SERVICE_STOP_PENDING}});
    status = Status(SERVICE_STOP_PENDING, 0, 2000);
    Wait(SERVICE_STOPPED, true);
    EXPECT_EQ(waited, 2010U);  // at exactly 2000 ms it goes on
    EXPECT_THAT(Sleeps(), AllOf(SizeIs(201), Each("Sleep(10)")));
    EXPECT_THAT(Queries(), SizeIs(202));
    EXPECT_EQ(status.dwCurrentState, DWORD{SERVICE_STOP_PENDING});
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(WaitServiceStatusTest, Progress_RestartsTheClock) {
    ServiceFollows({{0, SERVICE_STOP_PENDING, 0, 2000},
                    {1900, SERVICE_STOP_PENDING, 1, 2000},
                    {3800, SERVICE_STOP_PENDING, 2, 2000},
                    {5700, SERVICE_STOPPED}});
    status = Status(SERVICE_STOP_PENDING, 0, 2000);
    Wait(SERVICE_STOPPED, true);
    EXPECT_EQ(status.dwCurrentState, DWORD{SERVICE_STOPPED});
    EXPECT_EQ(waited, 5710U);
}

TEST_F(WaitServiceStatusTest, Progress_IsFollowedByASleepToo) {
    ServiceFollows({{0, SERVICE_STOP_PENDING, 1}, {10, SERVICE_STOPPED}});
    status = Status(SERVICE_STOP_PENDING, 0, 2000);
    Wait(SERVICE_STOPPED, true);
    EXPECT_THAT(Queries(), SizeIs(2));
    EXPECT_THAT(Sleeps(), AllOf(SizeIs(2), Each("Sleep(10)")));
}

TEST_F(WaitServiceStatusTest, NoProgressAfterProgress_EndsTheWaitOneHintLater) {
    ServiceFollows({{0, SERVICE_STOP_PENDING, 0}, {1000, SERVICE_STOP_PENDING, 1}});
    status = Status(SERVICE_STOP_PENDING, 0, 2000);
    Wait(SERVICE_STOPPED, true);
    EXPECT_EQ(waited, 1000U + 2010U);
}

TEST_F(WaitServiceStatusTest, CheckPointThatWasThereBefore_IsNoProgress) {
    ServiceFollows({{0, SERVICE_STOP_PENDING, 7}});
    status = Status(SERVICE_STOP_PENDING, 7, 2000);
    Wait(SERVICE_STOPPED, true);
    EXPECT_EQ(waited, 2010U);
}

TEST_F(WaitServiceStatusTest, CheckPointBelowTheHighestSeen_IsNoProgress) {
    ServiceFollows({{0, SERVICE_STOP_PENDING, 3}, {1000, SERVICE_STOP_PENDING, 4}});
    status = Status(SERVICE_STOP_PENDING, 5, 2000);
    Wait(SERVICE_STOPPED, true);
    EXPECT_EQ(waited, 2010U);
}

TEST_F(WaitServiceStatusTest, CheckPoints_AreComparedUnsigned) {
    ServiceFollows(
        {{0, SERVICE_STOP_PENDING, 0x7FFFFFFF}, {1000, SERVICE_STOP_PENDING, 0x80000000}});
    status = Status(SERVICE_STOP_PENDING, 0x7FFFFFFF, 2000);
    Wait(SERVICE_STOPPED, true);
    EXPECT_EQ(waited, 1000U + 2010U);
}

TEST_F(WaitServiceStatusTest, HintThatChangesMeanwhile_IsNotRead) {
    ServiceFollows({{0, SERVICE_STOP_PENDING, 0, 60000}});
    status = Status(SERVICE_STOP_PENDING, 0, 2000);
    Wait(SERVICE_STOPPED, true);
    EXPECT_EQ(waited, 2010U);
}

TEST_F(WaitServiceStatusTest, TickCountThatWraps_DoesNotEndOrProlongTheWait) {
    ServiceFollows({{0, SERVICE_STOP_PENDING}});
    platform.Clock().SetTicks(0xFFFFFC00);
    status = Status(SERVICE_STOP_PENDING, 0, 2000);
    Wait(SERVICE_STOPPED, true);
    EXPECT_EQ(waited, 2010U);
}

TEST_F(WaitServiceStatusTest, HintOf0_GivesUpAtTheNextTick) {
    ServiceFollows({{0, SERVICE_START_PENDING}});
    status = Status(SERVICE_START_PENDING, 0, 0);
    Wait(SERVICE_START_PENDING, false);
    EXPECT_THAT(Sleeps(), ElementsAre("Sleep(0)"));
    EXPECT_THAT(Queries(), SizeIs(2));
}

TEST_F(WaitServiceStatusTest, Interval_IsTheHintDividedBy200WithoutRounding) {
    ServiceFollows({{0, SERVICE_START_PENDING}});
    status = Status(SERVICE_START_PENDING, 0, 3199);
    Wait(SERVICE_START_PENDING, false);
    EXPECT_THAT(Sleeps(), Each("Sleep(15)"));
    EXPECT_EQ(waited, 3210U);
}

TEST_F(WaitServiceStatusTest, HintBelow200_PollsWithoutSleeping) {
    ServiceFollows({{0, SERVICE_START_PENDING}});
    status = Status(SERVICE_START_PENDING, 0, 199);
    Wait(SERVICE_START_PENDING, false);
    EXPECT_THAT(Sleeps(), Each("Sleep(0)"));
    EXPECT_EQ(waited, 200U);
}

TEST_F(WaitServiceStatusTest, HugeHint_IsTakenUnsignedAndNotClamped) {
    ServiceFollows({{0, SERVICE_START_PENDING}, {30'000'000, SERVICE_RUNNING}});
    status = Status(SERVICE_START_PENDING, 0, 0xFFFFFFFF);
    Wait(SERVICE_START_PENDING, false);
    EXPECT_THAT(Sleeps(), AllOf(SizeIs(3), Each("Sleep(21474836)")));
    EXPECT_EQ(status.dwCurrentState, DWORD{SERVICE_RUNNING});
}

TEST_F(WaitServiceStatusTest, FailedQuery_IsLoggedAndEndsTheWait) {
    ServiceFollows({{0, SERVICE_STOP_PENDING}});
    platform.Faults().FailCall("QueryServiceStatusEx", 3, ERROR_ACCESS_DENIED);
    status = Status(SERVICE_STOP_PENDING, 0, 2000);
    Wait(SERVICE_STOPPED, true);
    EXPECT_THAT(Lines(), ElementsAre(Error("query service status error 5",
                                           "ServiceManager::WaitServiceStatus")));
    EXPECT_EQ(waited, 20U);
    EXPECT_EQ(status.dwCurrentState, DWORD{SERVICE_STOP_PENDING});
}

}  // namespace
