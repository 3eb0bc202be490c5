#include "trace/classifier.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "story.h"

namespace PlenxTrace {
namespace {

// Returns lanes, label and failure mark in one text, so that a failed test shows all of them.
std::string Drawn(const Event& event) {
    static const char* const kLanes[] = {"host",     "facade",    "worker", "engine",
                                         "services", "observers", "nowhere"};
    std::string text = std::string(kLanes[static_cast<int>(event.from)]) + ">" +
                       kLanes[static_cast<int>(event.to)] + " " + event.label;
    return text + (event.usual ? " usual" : event.failure ? " FAILS" : "");
}

TEST(Classifier, ACallItsJobAndItsOutcome_GoThroughTheLanes) {
    const auto events = Classified({
        Pushed(0, 1),
        Runs(7, 1),
        Info(8, kWorkerThread, "plenx manager start service 1", "PLENXManagerInner::Start"),
        Info(9, kWorkerThread, "rpc manager ping service No:0", "RpcManager::PingService"),
        Info(10, kWorkerThread, "rpc manager create group svcType:1", "RpcManager::CreateGroup"),
        Told(20, 1, 0, 1),
        Info(21, kWorkerThread, "plenx manager notify status begin", "PLENXManager::NotifyStatus"),
        Info(22, kWorkerThread, "plenx manager notify status end", "PLENXManager::NotifyStatus"),
    });
    ASSERT_EQ(events.size(), 8u);
    EXPECT_EQ(Drawn(events[0]), "host>facade Start pc");
    EXPECT_EQ(Drawn(events[1]), "facade>worker Start pc runs");
    EXPECT_EQ(Drawn(events[2]), "worker>engine start pc");
    EXPECT_EQ(Drawn(events[3]), "engine>services pc: PingService 0");
    EXPECT_EQ(Drawn(events[4]), "engine>services pc: CreateGroup");
    EXPECT_EQ(Drawn(events[5]), "engine>facade Start pc: done");
    EXPECT_EQ(Drawn(events[6]), "facade>observers NotifyStatus");
    EXPECT_EQ(Drawn(events[7]), "observers>facade all observers told");
    EXPECT_EQ(events[1].waited, 7);
    EXPECT_EQ(events[5].took, 13);
    EXPECT_EQ(events[0].kind, Kind::kCall);
    EXPECT_EQ(events[5].kind, Kind::kOutcome);
    EXPECT_EQ(events[0].time, kNoon);
    EXPECT_EQ(events[3].service, 1);
}

TEST(Classifier, AStatusOnAnotherThread_IsAServicesNotification) {
    const auto events = Classified({Runs(0, 1), Told(1, 1, 100, 1, kRpcThread)});
    EXPECT_EQ(Drawn(events[1]), "services>facade NotifyStatus pc: 100 is 1");
    EXPECT_EQ(events[1].kind, Kind::kNotification);
    EXPECT_EQ(events[1].took, std::nullopt);
}

TEST(Classifier, AFailedStart_HasTheCodeOfItsLastErrorLine) {
    const auto events = Classified({
        Runs(0, 2),
        Error(1, kWorkerThread, "send service message exception 1722",
              "RpcManager::SendRpcMessage"),
        Error(2, kWorkerThread, "send rpc message error ret:1722", "RpcManager::CreateGroup"),
        Error(3, kWorkerThread, "plenx manager create group error 19", "PLENXManagerInner::Start"),
        Told(4, 2, 0, 0),
        Runs(5, 2),
        Told(6, 2, 0, 0),
    });
    EXPECT_EQ(Drawn(events[1]), "services>engine exception 1722 FAILS");
    EXPECT_EQ(Drawn(events[2]), "engine>engine the request failed: 1722 FAILS");
    EXPECT_EQ(Drawn(events[4]), "engine>facade Start phone: failed FAILS");
    EXPECT_EQ(events[4].code, 19);
    EXPECT_EQ(events[6].code, std::nullopt) << "the previous job is over";
}

TEST(Classifier, TheStopOfAnEngineService_FailsOnlyIfALineSaysSo) {
    const std::string runs =
        Info(0, kWorkerThread, "plenx manager stop service svcType(1) is invoked",
             "PLENXManager::StopFunc");
    const auto good = Classified({runs, Told(1, 1, 1, 0)});
    EXPECT_EQ(Drawn(good[1]), "engine>facade Stop pc: done");
    const auto bad = Classified({runs,
                                 Error(1, kWorkerThread, "plenx manager delete group error 1722",
                                       "PLENXManagerInner::Stop"),
                                 Told(2, 1, 1, 0)});
    EXPECT_EQ(Drawn(bad[2]), "engine>facade Stop pc: ended, with errors FAILS");
    EXPECT_EQ(bad[2].code, 1722);
    const auto office = Classified({runs, Told(1, 0, 1, 0)});
    EXPECT_EQ(Drawn(office[1]), "worker>facade Stop office: failed FAILS");
}

TEST(Classifier, AStartOfAll_HasTwoOutcomes_EachWithItsOwnTime) {
    const auto events = Classified({Runs(0, 3), Told(30, 1, 0, 1), Told(35, 0, 0, 1)});
    EXPECT_EQ(events[1].took, 30);
    EXPECT_EQ(events[2].took, 5);
    EXPECT_EQ(Drawn(events[2]), "worker>facade Start office: done");
}

TEST(Classifier, AWaitIsCountedFromTheOldestCallOfThatKind) {
    const auto events = Classified({Pushed(0, 1), Pushed(1, 2), Pushed(2, 1), Runs(10, 1),
                                    Runs(20, 2), Runs(30, 1), Runs(40, 1)});
    EXPECT_EQ(events[3].waited, 10);
    EXPECT_EQ(events[4].waited, 19);
    EXPECT_EQ(events[5].waited, 28);
    EXPECT_EQ(events[6].waited, std::nullopt) << "its call is not in the log";
}

TEST(Classifier, ASecondInitLeavesNoLineOfTheWorker_AndHoldsNothingUp) {
    const std::string pushed =
        Info(0, kHostThread, "plenx manager plenx manager inner init is pushed into thread pool",
             "PLENXManager::Init");
    const auto events = Classified({pushed, pushed, Pushed(5, 0), Runs(6, 0)});
    EXPECT_EQ(events[3].waited, 1);
}

TEST(Classifier, AClockSetBack_GivesNoWait) {
    const auto events = Classified({Pushed(100, 1), Runs(50, 1)});
    EXPECT_EQ(events[1].waited, std::nullopt);
}

TEST(Classifier, ARefusal_HasCode26) {
    const auto events = Classified(
        {Error(0, kHostThread, "plenx manager start invalid parameter", "PLENXManager::Start"),
         Error(0, kHostThread, "thread pool is released", "PLENXManager::Start")});
    EXPECT_EQ(Drawn(events[0]), "host>facade Start refused: 26 FAILS");
    EXPECT_EQ(events[0].code, 26);
    EXPECT_EQ(Drawn(events[1]), "host>facade Start before Init FAILS");
    EXPECT_EQ(events[1].code, std::nullopt);
}

TEST(Classifier, WhatEveryHealthyRunLogsAsAnError_IsUsual) {
    const auto events = Classified({
        Error(0, kWorkerThread, "kill service process 0", "KillServiceProcess"),
        Error(0, kWorkerThread, "open service error 1060", "ServiceManager::StopServiceByIndex"),
        Error(0, kWorkerThread, "stop service PlenxPcSvc error 2",
              "ServiceManager::InstallService"),
        Error(0, kWorkerThread, "stop service PlenxPcSvc error 6",
              "ServiceManager::InstallService"),
        Error(0, kWorkerThread, "open service error 5", "ServiceManager::StopServiceByIndex"),
    });
    EXPECT_EQ(Drawn(events[0]), "engine>engine nothing is left to end usual");
    EXPECT_EQ(Drawn(events[1]), "engine>engine there is no such service usual");
    EXPECT_EQ(Drawn(events[2]), "engine>engine PlenxPcSvc was not installed before usual");
    EXPECT_EQ(Drawn(events[3]), "engine>engine stop service PlenxPcSvc: 6 FAILS");
    EXPECT_EQ(Drawn(events[4]), "engine>engine open service: 5 FAILS");
    EXPECT_EQ(events[3].code, 6);
}

TEST(Classifier, AServiceThatDoesNotServeYet_IsUsualWhileItIsPinged) {
    const std::string fails = Error(1, kWorkerThread, "send service message exception 1722",
                                    "RpcManager::SendRpcMessage");
    const auto events = Classified({
        Runs(0, 1),
        Info(0, kWorkerThread, "rpc manager ping service No:0", "RpcManager::PingService"),
        fails,
        Error(1, kWorkerThread, "send rpc message error ret:1722", "RpcManager::PingService"),
        Error(2, kWorkerThread, "send service message exception 5", "RpcManager::SendRpcMessage"),
        Info(3, kWorkerThread, "rpc manager create group svcType:1", "RpcManager::CreateGroup"),
        fails,
    });
    EXPECT_EQ(Drawn(events[2]), "services>engine exception 1722 usual");
    EXPECT_EQ(Drawn(events[3]), "engine>engine the request failed: 1722 usual");
    EXPECT_EQ(Drawn(events[4]), "services>engine exception 5 FAILS");
    EXPECT_EQ(Drawn(events[6]), "services>engine exception 1722 FAILS");
}

TEST(Classifier, TheProcessOfAnEarlierRun_IsUsual_AndAStopByForceIsNot) {
    const auto events = Classified({
        Error(0, kWorkerThread, "kill service process 12", "KillServiceProcess"),
        Error(0, kWorkerThread, "open service process 12 error 87", "KillServiceProcess"),
        Error(0, kWorkerThread, "open service process 12 error 5", "KillServiceProcess"),
        Info(0, kWorkerThread, "force stop service", "ServiceManager::StopServiceByIndex"),
    });
    EXPECT_EQ(
        Drawn(events[0]),
        "engine>services end process 12 if it is still there: usual right after a stop usual");
    EXPECT_EQ(Drawn(events[1]), "engine>engine process 12 is gone already usual");
    EXPECT_EQ(Drawn(events[2]), "engine>engine open service process 12: 5 FAILS");
    EXPECT_EQ(Drawn(events[3]), "engine>services the service is ended by force FAILS");
}

TEST(Classifier, AFolderWithoutItsIcon_IsUsual) {
    const auto events = Classified({
        Error(0, kWorkerThread, R"(open fileC:\an error here\video\desktop.ini error)",
              "PLENXManagerInner::CreateFileIcon"),
    });
    EXPECT_EQ(
        Drawn(events[0]),
        R"(engine>engine a folder stays without its icon: C:\an error here\video\desktop.ini usual)");
}

TEST(Classifier, ABrokenMessage_StandsWhereItIsRead) {
    const std::string type = "Invalid Args rpcReqArgType:3";
    const std::string function = "RpcMessageReader::ReadString";
    const auto events = Classified({
        Runs(0, 1),
        Error(1, kWorkerThread, type, function),
        Error(1, kRpcThread, type, function),
        Error(1, kRpcThread, "Invalid Args offset:40 rpcReqArgSize:9 rpcMsgSize_:49 argLen:8",
              "RpcMessageReader::ReadInt8Array"),
    });
    EXPECT_EQ(Drawn(events[1]), "engine>engine an argument is of another type: 3 FAILS");
    EXPECT_EQ(Drawn(events[2]), "facade>facade an argument is of another type: 3 FAILS");
    EXPECT_EQ(Drawn(events[3]),
              "facade>facade an argument does not fit: 9 bytes at 40 of 49, 8 expected FAILS");
}

TEST(Classifier, AJobForAnInvalidService_IsTheWorkers) {
    const auto events =
        Classified({Runs(0, 7), Error(1, kWorkerThread,
                                      "plenx manager start service invalid service type svcType(7)",
                                      "PLENXManager::StartFunc")});
    EXPECT_EQ(Drawn(events[1]), "worker>worker Start: there is no service 7 FAILS");
}

TEST(Classifier, AnUnknownLine_StandsInTheLaneOfItsClass) {
    const auto events = Classified({
        Info(0, kHostThread, "something new", "PLENXManager::Start"),
        Runs(1, 1),
        Error(2, kWorkerThread, "start service invalid service type svcType(7)",
              "PLENXManager::StartFunc"),
        Info(3, kHostThread, "something else", "Somebody::Else"),
    });
    EXPECT_EQ(Drawn(events[0]), "facade>facade something new");
    EXPECT_EQ(Drawn(events[2]),
              "worker>worker start service invalid service type svcType(7) FAILS");
    EXPECT_EQ(Drawn(events[3]), "nowhere>nowhere something else");
    EXPECT_EQ(events[3].kind, Kind::kUnknown);
}

TEST(Classifier, GarbageHasTheTimeOfTheLineBefore_AndIsShownAsItIs) {
    const auto events = Classified({"garbage \xff", Pushed(5, 1), "<b>more</b>"});
    EXPECT_EQ(events[0].time, kNoTime);
    EXPECT_EQ(events[0].kind, Kind::kForeign);
    EXPECT_EQ(events[2].time, kNoon + 5);
    EXPECT_EQ(Drawn(events[2]), "nowhere>nowhere <b>more</b>");
}

TEST(Classifier, AServiceBeyondTheThree_KeepsItsNumber) {
    const auto events = Classified({Pushed(0, 7), Pushed(0, 3)});
    EXPECT_EQ(Drawn(events[0]), "host>facade Start service 7");
    EXPECT_EQ(Drawn(events[1]), "host>facade Start all");
}

TEST(ServiceLog, ShowsRequestsAnswersAndNotifications) {
    EXPECT_EQ(Drawn(ServiceEvent("pc received PingService(19) number:0")),
              "services>services pc: PingService(19) received");
    EXPECT_EQ(Drawn(ServiceEvent("pc received PingService(19) broken: 3 bytes")),
              "services>services pc: PingService(19) received, broken FAILS");
    EXPECT_EQ(Drawn(ServiceEvent("phone answered CreateGroup(0) result:0 reply:0")),
              "services>engine phone: CreateGroup(0) done");
    EXPECT_EQ(Drawn(ServiceEvent("phone answered CreateGroup(0) result:0 reply:1001")),
              "services>engine phone: CreateGroup(0) refused: 1001 FAILS");
    EXPECT_EQ(Drawn(ServiceEvent("pc answered CreateGroup(0) fault 998")),
              "services>engine pc: CreateGroup(0): fault 998 FAILS");
    EXPECT_EQ(Drawn(ServiceEvent("pc sends ConnectNotify(10) grpName:\"g_1\"")),
              "services>services pc: ConnectNotify(10) is sent");
    EXPECT_EQ(Drawn(ServiceEvent("pc Manager answered LinkTypeQuery(13) result:0 reply:7")),
              "facade>services pc: LinkTypeQuery(13) answered: 7");
    EXPECT_EQ(Drawn(ServiceEvent("pc Manager answered ConnectNotify(10) exception 1722")),
              "facade>services pc: ConnectNotify(10): exception 1722 FAILS");
    EXPECT_EQ(Drawn(ServiceEvent("office dies at CreateGroup(0)")),
              "services>services office: dies at CreateGroup(0) FAILS");
    EXPECT_EQ(Drawn(ServiceEvent("pc something new")), "services>services pc: something new");
}

TEST(ServiceLog, GarbageIsShownAsItIs) {
    const Event event = ClassifyServiceLine(AsLine("no line"), kNoon);
    EXPECT_EQ(event.kind, Kind::kForeign);
    EXPECT_EQ(event.time, kNoon);
}

}  // namespace
}  // namespace PlenxTrace
