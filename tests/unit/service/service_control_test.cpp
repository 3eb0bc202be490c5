// Tests creating, deleting and probing services, the driver, and the checked operations.

#include <algorithm>
#include <atomic>
#include <thread>

#include "../common/wait_until.h"
#include "service_control_test.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string kCreate = "ServiceManager::CreateServiceByIndex";
const std::string kStart = "ServiceManager::StartServiceByIndex";
const std::string kStop = "ServiceManager::StopServiceByIndex";
const std::string kDelete = "ServiceManager::DeleteServiceByIndex";
const std::string kDokan = "ServiceManager::StartDokanService";
const std::string kStartPlenx = "ServiceManager::StartPlenxService";
const std::string kStopPlenx = "ServiceManager::StopPlenxService";
const std::string kAlive = "ServiceManager::isServiceAlive";

using CreateServiceTest = ServiceControlTest;
using DeleteServiceTest = ServiceControlTest;
using IsServiceAliveTest = ServiceControlTest;
using DokanServiceTest = ServiceControlTest;
using CheckedOperationsTest = ServiceControlTest;

// CreateServiceByIndex

TEST_F(CreateServiceTest, ServiceThatIsRegistered_IsLeftAlone) {
    EXPECT_EQ(manager->CreateServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("sevice has been created", kCreate)));
    EXPECT_THAT(
        ScmCalls(),
        ElementsAre("OpenSCManagerW(null, null, 0xF003F)", "OpenServiceW(\"PlenxPcSvc\", 0xF01FF)",
                    "CloseServiceHandle(PlenxPcSvc)", "CloseServiceHandle(manager)"));
}

TEST_F(CreateServiceTest, NewService_IsRegistered) {
    EXPECT_EQ(manager->CreateServiceByIndex(kOffice), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("create service success", kCreate)));
    EXPECT_THAT(
        ScmCalls(),
        ElementsAre("OpenSCManagerW(null, null, 0xF003F)",
                    "OpenServiceW(\"PlenxOfficeSvc\", 0xF01FF)",
                    "CreateServiceW(\"PlenxOfficeSvc\", \"PlenxOfficeSvc\", 0xF01FF, 0x10, 3, 1, "
                    "\"C:\\App\\plenxservice.exe\", null, null, null, null, null)",
                    "CloseServiceHandle(PlenxOfficeSvc)", "CloseServiceHandle(manager)"));
}

TEST_F(CreateServiceTest, ManagerRefused_Returns1) {
    platform.Faults().FailCall("OpenSCManagerW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->CreateServiceByIndex(kPc), 1);
    EXPECT_THAT(Lines(), ElementsAre(Error("open sc manager error 5", kCreate)));
}

TEST_F(CreateServiceTest, AnyFailureToOpen_CountsAsNotRegistered) {
    platform.Faults().FailCall("OpenServiceW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->CreateServiceByIndex(kPc), 3);
    EXPECT_THAT(Lines(), ElementsAre(Error("create service error 1073", kCreate)));
    EXPECT_EQ(platform.Calls().back(), "CloseServiceHandle(manager)");
}

TEST_F(CreateServiceTest, ServiceMarkedForDelete_Returns3) {
    const SC_HANDLE opener = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
    const SC_HANDLE holder = OpenServiceW(opener, kPcName.c_str(), DELETE);
    DeleteService(holder);
    platform.Faults().FailCall("OpenServiceW", 1, ERROR_SERVICE_DOES_NOT_EXIST);
    LookFromHere();
    EXPECT_EQ(manager->CreateServiceByIndex(kPc), 3);
    EXPECT_THAT(Lines(), ElementsAre(Error("create service error 1072", kCreate)));
    CloseServiceHandle(holder);
    CloseServiceHandle(opener);
}

// DeleteServiceByIndex

TEST_F(DeleteServiceTest, StoppedService_IsDeleted) {
    EXPECT_EQ(manager->DeleteServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("delete service successful", kDelete)));
    EXPECT_FALSE(scm.Find(kPcName));
    EXPECT_THAT(
        ScmCalls(),
        ElementsAre("OpenSCManagerW(null, null, 0xF003F)", "OpenServiceW(\"PlenxPcSvc\", 0x10004)",
                    "QueryServiceStatusEx(PlenxPcSvc, 0, 36)", "DeleteService(PlenxPcSvc)",
                    "CloseServiceHandle(PlenxPcSvc)", "CloseServiceHandle(manager)"));
}

TEST_F(DeleteServiceTest, ServiceThatIsNotRegistered_CountsAsDeleted) {
    EXPECT_EQ(manager->DeleteServiceByIndex(kOffice), 0);
    EXPECT_THAT(Lines(), ElementsAre(Error("service PlenxOfficeSvc has been deleted", kDelete)));
    EXPECT_EQ(platform.Calls().back(), "CloseServiceHandle(manager)");
}

TEST_F(DeleteServiceTest, AnyFailureToOpen_CountsAsDeleted) {
    platform.Faults().FailCall("OpenServiceW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->DeleteServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Error("service PlenxPcSvc has been deleted", kDelete)));
    EXPECT_TRUE(scm.Find(kPcName));
}

TEST_F(DeleteServiceTest, ServiceInAnyStateButStopped_Returns7) {
    for (const DWORD state : {SERVICE_START_PENDING, SERVICE_STOP_PENDING, SERVICE_RUNNING,
                              SERVICE_CONTINUE_PENDING, SERVICE_PAUSE_PENDING, SERVICE_PAUSED}) {
        SCOPED_TRACE(state);
        PcIs(state);
        LookFromHere();
        EXPECT_EQ(manager->DeleteServiceByIndex(kPc), 7);
        EXPECT_THAT(Lines(), ElementsAre(Error("service PlenxPcSvc is not stopped", kDelete)));
        EXPECT_THAT(platform.CallsOf({"DeleteService"}), IsEmpty());
    }
}

TEST_F(DeleteServiceTest, ServiceAlreadyMarkedForDelete_Returns7) {
    const SC_HANDLE opener = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
    const SC_HANDLE holder = OpenServiceW(opener, kPcName.c_str(), DELETE);
    DeleteService(holder);
    LookFromHere();
    EXPECT_EQ(manager->DeleteServiceByIndex(kPc), 7);
    EXPECT_THAT(Lines(), ElementsAre(Error("service PlenxPcSvc delete error 1072", kDelete)));
    CloseServiceHandle(holder);
    CloseServiceHandle(opener);
}

TEST_F(DeleteServiceTest, ManagerRefused_Returns1) {
    platform.Faults().FailCall("OpenSCManagerW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->DeleteServiceByIndex(kPc), 1);
    EXPECT_THAT(Lines(), ElementsAre(Error("open sc manager error 5", kDelete)));
}

TEST_F(DeleteServiceTest, QueryFailing_Returns4) {
    platform.Faults().FailCall("QueryServiceStatusEx", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->DeleteServiceByIndex(kPc), 4);
    EXPECT_THAT(Lines(), ElementsAre(Error("query service status error 5", kDelete)));
}

// isServiceAlive

TEST_F(IsServiceAliveTest, StoppedService_IsNotAlive) {
    EXPECT_FALSE(manager->isServiceAlive(kPc));
    EXPECT_THAT(Lines(), ElementsAre(Info("service has stopped", kAlive)));
    EXPECT_THAT(
        platform.Calls(),
        ElementsAre("OpenSCManagerW(null, null, 0xF003F)", "OpenServiceW(\"PlenxPcSvc\", 0x4)",
                    "QueryServiceStatusEx(PlenxPcSvc, 0, 36)", "CloseServiceHandle(PlenxPcSvc)",
                    "CloseServiceHandle(manager)"));
}

TEST_F(IsServiceAliveTest, ServiceInAnyOtherState_IsAliveSilently) {
    for (const DWORD state : {SERVICE_START_PENDING, SERVICE_STOP_PENDING, SERVICE_RUNNING,
                              SERVICE_CONTINUE_PENDING, SERVICE_PAUSE_PENDING, SERVICE_PAUSED}) {
        SCOPED_TRACE(state);
        PcIs(state);
        EXPECT_TRUE(manager->isServiceAlive(kPc));
        EXPECT_THAT(Lines(), IsEmpty());
    }
}

TEST_F(IsServiceAliveTest, EachFailure_IsLoggedAndMeansNotAlive) {
    PcIs(SERVICE_RUNNING);
    platform.Faults().FailCall("OpenSCManagerW", 1, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(manager->isServiceAlive(kPc));
    platform.Faults().FailCall("OpenServiceW", 1, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(manager->isServiceAlive(kPc));
    platform.Faults().FailCall("QueryServiceStatusEx", 1, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(manager->isServiceAlive(kPc));
    EXPECT_THAT(Lines(), ElementsAre(Error("open sc manager error 5", kAlive),
                                     Error("open service error 5", kAlive),
                                     Error("query service status error 5", kAlive)));
    EXPECT_TRUE(manager->isServiceAlive(kPc));
}

TEST_F(IsServiceAliveTest, RowOutsideTheTable_IsNotAliveAndCallsNothing) {
    for (const std::int32_t row : {-1, 4, INT32_MIN, INT32_MAX}) {
        EXPECT_FALSE(manager->isServiceAlive(row));
    }
    EXPECT_THAT(platform.Calls(), IsEmpty());
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(IsServiceAliveTest, EmptyTable_HasNothingAlive) {
    const auto empty = MakeEmptyManager();
    LookFromHere();
    EXPECT_FALSE(empty->isServiceAlive(kOffice));
    EXPECT_FALSE(empty->isServiceAlive(kDriver));
    EXPECT_THAT(platform.Calls(), IsEmpty());
}

TEST_F(IsServiceAliveTest, AskedFromOtherThreadsWhileTheWorkerWorks_IsSafe) {
    std::atomic<bool> stop{false};
    std::atomic<int> alive{0};
    std::atomic<int> stopped{0};
    const auto ask = [&] {
        while (!stop) {
            ++(manager->isServiceAlive(kPc) ? alive : stopped);
        }
    };
    std::thread first(ask);
    std::thread second(ask);
    for (int round = 0; round != 30; ++round) {
        EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
        EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    }
    EXPECT_TRUE(WaitUntil([&] { return stopped != 0; }));
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_TRUE(WaitUntil([&] { return alive != 0; }));
    stop = true;
    first.join();
    second.join();
    const Texts lines = Lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), Info("service has stopped", kAlive)), stopped);
}

// StartDokanService

TEST_F(DokanServiceTest, DriverThatRuns_IsASuccess) {
    EXPECT_EQ(manager->StartDokanService(), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("sevice has been created", kCreate),
                                     Info("service is running", kStart),
                                     Info("start dokan service success", kDokan)));
}

TEST_F(DokanServiceTest, DriverThatCannotBeCreated_IsStartedAllTheSame) {
    platform.Faults().FailCall("OpenServiceW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StartDokanService(), 0);
    EXPECT_THAT(Lines(), ElementsAre(Error("create service error 1073", kCreate),
                                     Error("create dokan service error 3", kDokan),
                                     Info("service is running", kStart),
                                     Info("start dokan service success", kDokan)));
}

TEST_F(DokanServiceTest, DriverThatCannotBeStarted_ReturnsTheCodeOfTheStart) {
    scm.SetStatus(L"Dokan1", SERVICE_STOPPED);
    scm.RefuseStart(L"Dokan1", ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(manager->StartDokanService(), 5);
    EXPECT_THAT(Lines(), ElementsAre(Info("sevice has been created", kCreate), Kill(0),
                                     Error("start service error 2", kStart),
                                     Error("start dokan service error 5", kDokan)));
}

TEST_F(DokanServiceTest, DriverThatCanNeitherBeCreatedNorOpened_Returns2) {
    platform.Faults().FailCallsFrom("OpenServiceW", 1, ERROR_SERVICE_DOES_NOT_EXIST);
    platform.Faults().FailCallsFrom("CreateServiceW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StartDokanService(), 2);
    EXPECT_THAT(Lines(), ElementsAre(Error("create service error 5", kCreate),
                                     Error("create dokan service error 3", kDokan),
                                     Error("open service error 1060", kStart),
                                     Error("start dokan service error 2", kDokan)));
    platform.Faults().Reset();
}

// StartPlenxService and StopPlenxService

TEST_F(CheckedOperationsTest, Success_IsLoggedWithTheName) {
    EXPECT_EQ(manager->StartPlenxService(kPhone), 0);
    EXPECT_EQ(manager->StopPlenxService(kPhone), 0);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Info("start service successful", kStart),
                                     Info("start plenx service PlenxPhoneSvc success", kStartPlenx),
                                     Info("stop service successful", kStop),
                                     Info("stop plenx service PlenxPhoneSvc success", kStopPlenx)));
}

TEST_F(CheckedOperationsTest, Failure_IsLoggedWithNameAndCodeAndReturned) {
    EXPECT_EQ(manager->StartPlenxService(kOffice), 2);
    EXPECT_EQ(manager->StopPlenxService(kOffice), 2);
    EXPECT_THAT(Lines(),
                ElementsAre(Error("open service error 1060", kStart),
                            Error("start plenx service PlenxOfficeSvc error 2", kStartPlenx),
                            Error("open service error 1060", kStop),
                            Error("stop plenx service PlenxOfficeSvc error 2", kStopPlenx)));
}

TEST_F(CheckedOperationsTest, RowOutsideTheTable_Returns16WithoutALineOrACall) {
    for (const std::int32_t row : {-1, 4, INT32_MIN, INT32_MAX}) {
        SCOPED_TRACE(row);
        EXPECT_EQ(manager->StartPlenxService(row), 16);
        EXPECT_EQ(manager->StopPlenxService(row), 16);
        EXPECT_EQ(manager->CreateServiceByIndex(row), 16);
        EXPECT_EQ(manager->StartServiceByIndex(row), 16);
        EXPECT_EQ(manager->StopServiceByIndex(row), 16);
        EXPECT_EQ(manager->DeleteServiceByIndex(row), 16);
    }
    EXPECT_THAT(platform.Calls(), IsEmpty());
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(CheckedOperationsTest, EmptyTable_HasNoRows) {
    const auto empty = MakeEmptyManager();
    LookFromHere();
    EXPECT_EQ(empty->StartPlenxService(kOffice), 16);
    EXPECT_EQ(empty->StopPlenxService(kPc), 16);
    EXPECT_EQ(empty->CreateServiceByIndex(kPc), 16);
    EXPECT_THAT(platform.Calls(), IsEmpty());
    EXPECT_THAT(Lines(), IsEmpty());
}

}  // namespace
