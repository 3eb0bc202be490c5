#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "engine/engine_fixture.h"

using DistributedFs::PLENXManagerInner;
using DistributedFs::ServiceType;
using DistributedFs::TriggerType;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

std::string Inner(const std::string& operation) {
    return "(DistributedFs::PLENXManagerInner::" + operation + ")";
}

ServiceAnswer Raises(unsigned long code) {
    ServiceAnswer answer;
    answer.exception = code;
    return answer;
}

ServiceAnswer Answers(std::int32_t code) {
    ServiceAnswer answer;
    answer.reply = Int32Message(code);
    return answer;
}

// Makes the service answer requests of the id with the answer, and all others with 0.
void AnswerId(std::int32_t id, const ServiceAnswer& answer) {
    FakeRpc::Get().SetService(
        [id, answer](const ServiceCall& call) { return call.msgType == id ? answer : Answers(0); });
}

// Makes the service answer pings from this number on.
void AnswerPingsFrom(int first) {
    FakeRpc::Get().SetService([first, pings = 0](const ServiceCall& call) mutable {
        return call.msgType == 19 && pings++ < first ? Raises(1722) : Answers(0);
    });
}

std::vector<std::int32_t> Ids() {
    std::vector<std::int32_t> ids;
    for (const ServiceCall& call : FakeRpc::Get().ServiceCalls()) {
        ids.push_back(call.msgType);
    }
    return ids;
}

std::vector<Bytes> MessagesOfId(std::int32_t id) {
    std::vector<Bytes> messages;
    for (const ServiceCall& call : FakeRpc::Get().ServiceCalls()) {
        if (call.msgType == id) {
            messages.push_back(call.msg);
        }
    }
    return messages;
}

class ServiceOperations : public EngineTest {
protected:
    ServiceOperations() {
        InitEngine();
        FakePlatform::Get().Scm().SetStatus(L"PlenxPcSvc", SERVICE_RUNNING);
        FakePlatform::Get().Scm().SetStatus(L"PlenxPhoneSvc", SERVICE_RUNNING);
    }
};

class Engine_Start : public ServiceOperations {};

TEST_F(Engine_Start, PingsPushesTheSettingsAndCreatesTheGroup) {
    EXPECT_EQ(Engine().Start(Type(1), "g", "arg"), 0);
    const std::vector<ServiceCall> calls = FakeRpc::Get().ServiceCalls();
    ASSERT_THAT(Ids(), ElementsAre(19, 7, 8, 8, 0));
    EXPECT_EQ(calls[0].msg, MessageOf({Int64Arg(0)}));
    EXPECT_EQ(calls[1].msg, MessageOf({Int32Arg(1), StringArg("en_US")}));
    EXPECT_EQ(calls[2].msg, MessageOf({Int32Arg(0), Int64Arg(0)}));
    EXPECT_EQ(calls[3].msg, MessageOf({Int32Arg(2), Int64Arg(0)}));
    EXPECT_EQ(calls[4].msg, MessageOf({StringArg("g_1"), Int32Arg(2), StringArg("arg")}));
    for (const ServiceCall& call : calls) {
        EXPECT_EQ(call.endpoint, "PLENXPCService");
    }
    EXPECT_THAT(EngineTexts(),
                ElementsAre("L3 [PLENXSDK] plenx manager start service 1" + Inner("Start")));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(1, g, 0, true)"));
    EXPECT_THAT(FakePlatform::Get().CallsOf({"Sleep"}), IsEmpty());
}

TEST_F(Engine_Start, WritesItsLinesInThisOrder) {
    EXPECT_EQ(Engine().Start(Type(2), "g", "arg"), 0);
    EXPECT_THAT(
        RecordedLog::Get().Texts(),
        ElementsAre("L3 [PLENXSDK] plenx manager start service 2" + Inner("Start"),
                    "L3 [PLENXSDK] service is running"
                    "(DistributedFs::ServiceManager::StartServiceByIndex)",
                    "L3 [PLENXSDK] start plenx service PlenxPhoneSvc success"
                    "(DistributedFs::ServiceManager::StartPlenxService)",
                    "L3 [PLENXSDK] rpc manager ping service No:0"
                    "(DistributedFs::RpcManager::PingService)",
                    "L3 [PLENXSDK] rpc manager set string config svcType:2 cfgType:1 "
                    "cfgValue:en_US(DistributedFs::RpcManager::SetStringConfig)",
                    "L3 [PLENXSDK] rpc manager set int64 config svcType:2 cfgType:0 cfgValue:0"
                    "(DistributedFs::RpcManager::SetInt64Config)",
                    "L3 [PLENXSDK] rpc manager set int64 config svcType:2 cfgType:2 cfgValue:0"
                    "(DistributedFs::RpcManager::SetInt64Config)",
                    "L3 [PLENXSDK] rpc manager create group svcType:2"
                    "(DistributedFs::RpcManager::CreateGroup)",
                    "L3 [PLENXSDK] plenx manager notify status invoked svcType:2 sttsType:0 "
                    "value:1(DistributedFs::PLENXManager::NotifyStatus)",
                    "L3 [PLENXSDK] plenx manager notify status begin"
                    "(DistributedFs::PLENXManager::NotifyStatus)",
                    "L3 [PLENXSDK] plenx manager notify status end"
                    "(DistributedFs::PLENXManager::NotifyStatus)"));
}

TEST_F(Engine_Start, ServiceThatAnswersTheThirdPingIsStartedAfterTwoSleeps) {
    AnswerPingsFrom(2);
    EXPECT_EQ(Engine().Start(Type(1), "g", "arg"), 0);
    EXPECT_THAT(MessagesOfId(19), ElementsAre(MessageOf({Int64Arg(0)}), MessageOf({Int64Arg(1)}),
                                              MessageOf({Int64Arg(2)})));
    EXPECT_THAT(FakePlatform::Get().CallsOf({"Sleep", "ServiceMessage"}),
                ElementsAre("ServiceMessage(PLENXPCService, 19, 28)", "Sleep(200)",
                            "ServiceMessage(PLENXPCService, 19, 28)", "Sleep(200)",
                            "ServiceMessage(PLENXPCService, 19, 28)",
                            "ServiceMessage(PLENXPCService, 7, 42)",
                            "ServiceMessage(PLENXPCService, 8, 44)",
                            "ServiceMessage(PLENXPCService, 8, 44)",
                            "ServiceMessage(PLENXPCService, 0, 56)"));
    EXPECT_THAT(EngineTexts(),
                ElementsAre("L3 [PLENXSDK] plenx manager start service 1" + Inner("Start")));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(1, g, 0, true)"));
}

TEST_F(Engine_Start, ServiceThatAnswersTheLastPingIsStartedWithoutATimeout) {
    AnswerPingsFrom(25);
    EXPECT_EQ(Engine().Start(Type(1), "g", "arg"), 0);
    EXPECT_THAT(MessagesOfId(19), SizeIs(26));
    EXPECT_THAT(EngineTexts(),
                ElementsAre("L3 [PLENXSDK] plenx manager start service 1" + Inner("Start")));
}

TEST_F(Engine_Start, ServiceThatNeverAnswersGets26PingsAndIsTakenForStarted) {
    AnswerPingsFrom(1000);
    EXPECT_EQ(Engine().Start(Type(1), "g", "arg"), 0);

    std::vector<std::string> expected;
    std::vector<Bytes> pings;
    for (int attempt = 0; attempt != 26; ++attempt) {
        pings.push_back(MessageOf({Int64Arg(attempt)}));
        expected.push_back("ServiceMessage(PLENXPCService, 19, 28)");
        if (attempt != 25) {
            expected.push_back("Sleep(200)");
        }
    }
    expected.insert(
        expected.end(),
        {"ServiceMessage(PLENXPCService, 7, 42)", "ServiceMessage(PLENXPCService, 8, 44)",
         "ServiceMessage(PLENXPCService, 8, 44)", "ServiceMessage(PLENXPCService, 0, 56)"});
    EXPECT_EQ(FakePlatform::Get().CallsOf({"Sleep", "ServiceMessage"}), expected);
    EXPECT_EQ(MessagesOfId(19), pings);
    EXPECT_THAT(EngineTexts(),
                ElementsAre("L3 [PLENXSDK] plenx manager start service 1" + Inner("Start"),
                            "L4 [PLENXSDK] plenx manager wait plenx service timeout (5000 ms)" +
                                Inner("Start")));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(1, g, 0, true)"));
}

TEST_F(Engine_Start, PingThatTheServiceAnswersWithACodeIsRepeatedToo) {
    int pings = 0;
    FakeRpc::Get().SetService([&pings](const ServiceCall& call) {
        return Answers(call.msgType == 19 && ++pings < 3 ? 9 : 0);
    });
    EXPECT_EQ(Engine().Start(Type(1), "g", "arg"), 0);
    EXPECT_EQ(pings, 3);
}

TEST_F(Engine_Start, StoppedServiceIsStartedFirst) {
    FakePlatform::Get().Scm().SetStatus(L"PlenxPcSvc", SERVICE_STOPPED);
    EXPECT_EQ(Engine().Start(Type(1), "g", "arg"), 0);
    EXPECT_EQ(FakePlatform::Get().Scm().Find(L"PlenxPcSvc")->starts, 1U);
    const std::vector<std::string> calls =
        FakePlatform::Get().CallsOf({"StartServiceW", "ServiceMessage"});
    ASSERT_THAT(calls, SizeIs(6));
    EXPECT_THAT(calls[0], testing::StartsWith("StartServiceW("));
}

TEST_F(Engine_Start, ServiceThatCannotBeStartedEndsIt) {
    FakePlatform::Get().Scm().SetStatus(L"PlenxPcSvc", SERVICE_STOPPED);
    FakePlatform::Get().Scm().RefuseStart(L"PlenxPcSvc", ERROR_SERVICE_DISABLED);
    EXPECT_EQ(Engine().Start(Type(1), "g", "arg"), 5);
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
    EXPECT_THAT(
        EngineTexts(),
        ElementsAre("L3 [PLENXSDK] plenx manager start service 1" + Inner("Start"),
                    "L4 [PLENXSDK] plenx manager start plenx service error 5" + Inner("Start")));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(1, g, 0, false)"));
}

TEST_F(Engine_Start, GroupThatCannotBeCreatedEndsIt) {
    AnswerId(0, Answers(9));
    EXPECT_EQ(Engine().Start(Type(2), "g", "arg"), 9);
    EXPECT_THAT(EngineTexts(),
                ElementsAre("L3 [PLENXSDK] plenx manager start service 2" + Inner("Start"),
                            "L4 [PLENXSDK] plenx manager create group error 9" + Inner("Start")));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(2, g, 0, false)"));
}

TEST_F(Engine_Start, SettingsThatCannotBePushedAreIgnored) {
    FakeRpc::Get().SetService([](const ServiceCall& call) {
        return call.msgType == 7 || call.msgType == 8 ? Raises(1726) : Answers(0);
    });
    EXPECT_EQ(Engine().Start(Type(1), "g", "arg"), 0);
    EXPECT_THAT(Ids(), ElementsAre(19, 7, 8, 8, 0));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(1, g, 0, true)"));
}

TEST_F(Engine_Start, TypeBeyondTheTablesPushesNothing) {
    EXPECT_EQ(Engine().Start(Type(3), "g", "arg"), 16);  // row 3 is the driver, which runs
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
    EXPECT_THAT(FakePlatform::Get().CallsOf({"Sleep"}), SizeIs(25));
    EXPECT_THAT(EngineTexts(),
                ElementsAre("L3 [PLENXSDK] plenx manager start service 3" + Inner("Start"),
                            "L4 [PLENXSDK] plenx manager wait plenx service timeout (5000 ms)" +
                                Inner("Start"),
                            "L4 [PLENXSDK] plenx manager create group error 16" + Inner("Start")));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(3, g, 0, false)"));
}

TEST_F(Engine_Start, TypeOutsideTheServicesReturns16) {
    EXPECT_EQ(Engine().Start(Type(7), "g", "arg"), 16);
    EXPECT_EQ(Engine().Start(Type(0xFFFFFFFFU), "g", "arg"), 16);
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(7, g, 0, false)",
                                                "NotifyStatus(4294967295, g, 0, false)"));
}

TEST_F(Engine_Start, OfficeServiceTakesItsOwnMapsAndEndpoint) {
    FakePlatform::Get().Scm().AddService(L"PlenxOfficeSvc");
    EXPECT_EQ(Engine().Start(Type(0), "g", "arg"), 0);
    EXPECT_THAT(Ids(), ElementsAre(19, 7, 8, 8, 0));
    EXPECT_EQ(FakeRpc::Get().ServiceCalls().back().endpoint, "PLENXOfficeService");
    EXPECT_EQ(FakeRpc::Get().ServiceCalls().back().msg,
              MessageOf({StringArg("g_0"), Int32Arg(2), StringArg("arg")}));
}

class Engine_Stop : public ServiceOperations {};

TEST_F(Engine_Stop, DeletesTheGroupThenStopsTheServiceAndReportsFalse) {
    EXPECT_EQ(Engine().Stop(Type(1), "g"), 0);
    ASSERT_THAT(Ids(), ElementsAre(1));
    EXPECT_EQ(FakeRpc::Get().ServiceCalls()[0].msg, MessageOf({StringArg("g_1")}));
    const std::vector<std::string> calls =
        FakePlatform::Get().CallsOf({"ServiceMessage", "ControlService"});
    ASSERT_THAT(calls, SizeIs(2));
    EXPECT_THAT(calls[0], testing::StartsWith("ServiceMessage("));
    EXPECT_EQ(FakePlatform::Get().Scm().Find(L"PlenxPcSvc")->status.dwCurrentState,
              static_cast<DWORD>(SERVICE_STOPPED));
    EXPECT_THAT(EngineTexts(),
                ElementsAre("L3 [PLENXSDK] plenx manager stop service 1" + Inner("Stop")));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(1, g, 1, false)"));
}

TEST_F(Engine_Stop, WhenBothStepsFailReturns0AndLogsTwoErrors) {
    AnswerId(1, Raises(1722));
    FakePlatform::Get().Scm().RefuseStop(L"PlenxPhoneSvc", ERROR_SERVICE_CANNOT_ACCEPT_CTRL);
    EXPECT_EQ(Engine().Stop(Type(2), "g"), 0);
    EXPECT_THAT(
        EngineTexts(),
        ElementsAre("L3 [PLENXSDK] plenx manager stop service 2" + Inner("Stop"),
                    "L4 [PLENXSDK] plenx manager delete group error 1722" + Inner("Stop"),
                    "L4 [PLENXSDK] plenx manager stop plenx service error 6" + Inner("Stop")));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(2, g, 1, false)"));
}

TEST_F(Engine_Stop, OfTypeOutsideTheServicesLogs16Twice) {
    EXPECT_EQ(Engine().Stop(Type(7), "g"), 0);
    EXPECT_THAT(
        EngineTexts(),
        ElementsAre("L3 [PLENXSDK] plenx manager stop service 7" + Inner("Stop"),
                    "L4 [PLENXSDK] plenx manager delete group error 16" + Inner("Stop"),
                    "L4 [PLENXSDK] plenx manager stop plenx service error 16" + Inner("Stop")));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(7, g, 1, false)"));
}

// The tests below run without a service manager.

TEST_F(EngineTest, StartBeforeInitActsLikeAnEmptyTable) {
    EXPECT_EQ(Engine().Start(Type(1), "g", "arg"), 16);
    EXPECT_THAT(
        EngineTexts(),
        ElementsAre("L3 [PLENXSDK] plenx manager start service 1" + Inner("Start"),
                    "L4 [PLENXSDK] plenx manager start plenx service error 16" + Inner("Start")));
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(1, g, 0, false)"));
}

TEST_F(EngineTest, StopBeforeInitActsLikeAnEmptyTable) {
    EXPECT_EQ(Engine().Stop(Type(1), "g"), 0);
    EXPECT_THAT(
        EngineTexts(),
        ElementsAre("L3 [PLENXSDK] plenx manager stop service 1" + Inner("Stop"),
                    "L4 [PLENXSDK] plenx manager stop plenx service error 16" + Inner("Stop")));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(1, g, 1, false)"));
}

// The tests below are for the four device operations.

const std::uint8_t kData[] = {1, 2, 3, 4, 5};

struct DeviceOperation {
    const char* name;
    std::function<std::int32_t(PLENXManagerInner&, ServiceType)> call;
    std::int32_t msgType;
    std::vector<MessageArg> request;  // the arguments after the group name
    const char* begin;                // with "2" for the type
    const char* error;
    const char* statusKind;
    const char* success;
};

void PrintTo(const DeviceOperation& operation, std::ostream* out) {
    *out << operation.name;
}

class EveryDeviceOperation : public EngineTest,
                             public testing::WithParamInterface<DeviceOperation> {
protected:
    static std::string Line(const std::string& text) { return text + Inner(GetParam().name); }
};

TEST_P(EveryDeviceOperation, SendsItsRequestAndReportsNothingOnSuccess) {
    EXPECT_EQ(GetParam().call(Engine(), Type(2)), 0);
    const std::vector<ServiceCall> calls = FakeRpc::Get().ServiceCalls();
    ASSERT_THAT(calls, SizeIs(1));
    std::vector<MessageArg> request{StringArg("g_2")};
    request.insert(request.end(), GetParam().request.begin(), GetParam().request.end());
    EXPECT_EQ(calls[0].endpoint, "PLENXPhoneService");
    EXPECT_EQ(calls[0].msgType, GetParam().msgType);
    EXPECT_EQ(calls[0].msg, MessageOf(request));
    EXPECT_THAT(EngineTexts(), ElementsAre(Line(std::string("L3 ") + GetParam().begin),
                                           Line(std::string("L3 ") + GetParam().success)));
    EXPECT_THAT(observer_.Events(), IsEmpty());
}

TEST_P(EveryDeviceOperation, ReportsAndReturnsAFailure) {
    AnswerId(GetParam().msgType, Answers(-8));
    EXPECT_EQ(GetParam().call(Engine(), Type(2)), -8);
    EXPECT_THAT(EngineTexts(), ElementsAre(Line(std::string("L3 ") + GetParam().begin),
                                           Line(std::string("L4 ") + GetParam().error + "-8")));
    EXPECT_THAT(observer_.Events(), ElementsAre(std::string("NotifyStatus(2, g, ") +
                                                GetParam().statusKind + ", false)"));
}

TEST_P(EveryDeviceOperation, OfTypeWithoutAnEndpointFailsWith16) {
    EXPECT_EQ(GetParam().call(Engine(), Type(3)), 16);
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
    EXPECT_THAT(RecordedLog::Get().Texts(),
                Contains(StartsWith("L4 [PLENXSDK] send rpc message error ret:16"
                                    "(DistributedFs::RpcManager::Device")));
    EXPECT_EQ(EngineTexts().back(), Line(std::string("L4 ") + GetParam().error + "16"));
    EXPECT_THAT(observer_.Events(), ElementsAre(std::string("NotifyStatus(3, g, ") +
                                                GetParam().statusKind + ", false)"));
}

INSTANTIATE_TEST_SUITE_P(
    Operations, EveryDeviceOperation,
    testing::Values(
        DeviceOperation{"LocalDeviceOnline",
                        [](PLENXManagerInner& engine, ServiceType type) {
                            return engine.LocalDeviceOnline(type, "g", "dev", 5, kData);
                        },
                        2,
                        {StringArg("dev"), Int32Arg(0), Int32Arg(5), ArrayArg({1, 2, 3, 4, 5})},
                        "[PLENXSDK] plenx manager inner local device online svcType(2)",
                        "[PLENXSDK] plenx manager inner local device online error ",
                        "2",
                        "[PLENXSDK] plenx manager local device online success svcType(2)"},
        DeviceOperation{"RemoteDeviceOnline",
                        [](PLENXManagerInner& engine, ServiceType type) {
                            return engine.RemoteDeviceOnline(type, "g", "dev");
                        },
                        2,
                        {StringArg("dev"), Int32Arg(1), Int32Arg(0), ArrayArg({})},
                        "[PLENXSDK] plenx manager inner remote device online service 2",
                        "[PLENXSDK] plenx manager inner remote device online error ",
                        "2",
                        "[PLENXSDK] plenx manager inner remote device online success svcType(2)"},
        DeviceOperation{"LocalDeviceOffline",
                        [](PLENXManagerInner& engine, ServiceType type) {
                            return engine.LocalDeviceOffline(type, "g", "dev",
                                                             static_cast<TriggerType>(-6));
                        },
                        3,
                        {StringArg("dev"), Int32Arg(0), Int32Arg(-6)},
                        "[PLENXSDK] plenx manager inner local device offline service (2)",
                        "[PLENXSDK] plenx manager inner local device offline error ",
                        "3",
                        "[PLENXSDK] plenx manager inner local device offline success svcType(2)"},
        DeviceOperation{"RemoteDeviceOffline",
                        [](PLENXManagerInner& engine, ServiceType type) {
                            return engine.RemoteDeviceOffline(type, "g", "dev",
                                                              static_cast<TriggerType>(9));
                        },
                        3,
                        {StringArg("dev"), Int32Arg(1), Int32Arg(9)},
                        "[PLENXSDK] plenx manager inner remote device offline service (2)",
                        "[PLENXSDK] plenx manager inner remote device offline error ",
                        "3",
                        "[PLENXSDK] plenx manager inner remote device offline success "
                        "svcType(2)"}));

class Engine_LocalDeviceOnline : public EngineTest {};

TEST_F(Engine_LocalDeviceOnline, OnlyTheLow32BitsOfTheLengthCount) {
    EXPECT_EQ(Engine().LocalDeviceOnline(Type(1), "g", "dev", (1ULL << 32) + 5, kData), 0);
    EXPECT_EQ(FakeRpc::Get().ServiceCalls().at(0).msg,
              MessageOf({StringArg("g_1"), StringArg("dev"), Int32Arg(0), Int32Arg(5),
                         ArrayArg({1, 2, 3, 4, 5})}));
}

TEST_F(Engine_LocalDeviceOnline, LengthFrom2To31FailsWith19AndTouchesNoData) {
    EXPECT_EQ(Engine().LocalDeviceOnline(Type(1), "g", "dev", 1ULL << 31, kData), 19);
    EXPECT_EQ(Engine().LocalDeviceOnline(Type(1), "g", "dev", 0xFFFFFFFFULL, kData), 19);
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(1, g, 2, false)", "NotifyStatus(1, g, 2, false)"));
}

TEST_F(Engine_LocalDeviceOnline, EmptyDataMayBeNull) {
    EXPECT_EQ(Engine().LocalDeviceOnline(Type(1), "g", "dev", 0, nullptr), 0);
    EXPECT_EQ(
        FakeRpc::Get().ServiceCalls().at(0).msg,
        MessageOf({StringArg("g_1"), StringArg("dev"), Int32Arg(0), Int32Arg(0), ArrayArg({})}));
}

TEST_F(EngineTest, NameChangedForwardsWithoutALineOfItsOwn) {
    EXPECT_EQ(Engine().NameChanged("pc"), 0);
    EXPECT_THAT(EngineTexts(), IsEmpty());
    EXPECT_EQ(FakeRpc::Get().ServiceCalls().at(0).msg, MessageOf({StringArg("pc")}));
}

TEST_F(EngineTest, RecvRemoteMessageWritesItsLineAndForwardsToThePcService) {
    EXPECT_EQ(Engine().RecvRemoteMessage(static_cast<DistributedFs::PLENXMessageType>(-3),
                                         0xFFFFFFFFU, "m"),
              0);
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre("L3 [PLENXSDK] plenx manager job receive remote message is invoked" +
                                Inner("RecvRemoteMessage"),
                            "L3 [PLENXSDK] rpc manager receive remote message svcType:1"
                            "(DistributedFs::RpcManager::RecvRemoteMessage)"));
    EXPECT_EQ(FakeRpc::Get().ServiceCalls().at(0).endpoint, "PLENXPCService");
    EXPECT_EQ(FakeRpc::Get().ServiceCalls().at(0).msg,
              MessageOf({Int32Arg(-3), Int32Arg(-1), StringArg("m")}));
}

}  // namespace
