// Tests the jobs on the worker for each service type.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <numeric>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "facade/facade_fixture.h"

using DistributedFs::PLENXMessageType;
using DistributedFs::TriggerType;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::uint8_t kData[] = {1, 2, 3};

// The six operations that have a service type.
struct Job {
    const char* name;
    std::function<int(std::uint32_t type)> call;
    std::string pushedBegin;  // the text before the type
    std::string pushedEnd;    // the text after the type
    std::string invoked;
    std::string invalid;  // the line for type 7
    std::string companionCall;
    std::string companionName;
    std::string statusKind;  // empty when there is no status
    std::int32_t engineRequest;
};

void PrintTo(const Job& job, std::ostream* out) {
    *out << job.name;
}

const std::string kPushed = " is pushed into thread pool";

const Job kJobs[] = {
    {"Start", [](std::uint32_t type) { return Facade().Start(Type(type), "g", "a"); },
     "start service (", ")" + kPushed, "start service svcType(",
     "start service invalid service type svcType(7)", "Start()", "Start", "0", 0},
    {"Stop", [](std::uint32_t type) { return Facade().Stop(Type(type), "g"); }, "stop service (",
     ")" + kPushed, "stop service svcType(", "stop service invalid service type svcType(7)",
     "Stop()", "Stop", "1", 1},
    {"LocalDeviceOnline",
     [](std::uint32_t type) { return Facade().LocalDeviceOnline(Type(type), "g", "d", 3, kData); },
     "service (", ") local device online" + kPushed, "local device online svcType(",
     "invalid service type svcType(7)", "LocalDeviceOnline(g, d, 1, 010203, 3)",
     "LocalDeviceOnline", "", 2},
    {"RemoteDeviceOnline",
     [](std::uint32_t type) { return Facade().RemoteDeviceOnline(Type(type), "g", "d"); },
     "service (", ") remote device online" + kPushed, "remote device online svcType(",
     "remote device online invalid service type svcType(7)", "RemoteDeviceOnline(g, d)",
     "RemoteDeviceOnline", "2", 2},
    {"LocalDeviceOffline",
     [](std::uint32_t type) {
         return Facade().LocalDeviceOffline(Type(type), "g", "d", static_cast<TriggerType>(-4));
     },
     "service (", ") local device offline" + kPushed, "local device offline svcType(",
     "local device offline invalid service type svcType:7", "LocalDeviceOffline(g, d)",
     "LocalDeviceOffline", "3", 3},
    {"RemoteDeviceOffline",
     [](std::uint32_t type) {
         return Facade().RemoteDeviceOffline(Type(type), "g", "d", static_cast<TriggerType>(9));
     },
     "service (", ") remote device offline" + kPushed, "remote device offline svcType(",
     "remote device offline invalid service type svcType:7", "RemoteDeviceOffline(g, d)",
     "RemoteDeviceOffline", "", 3},
};

class EveryJob : public ReadyFacade, public testing::WithParamInterface<Job> {
protected:
    static const Job& Param() { return GetParam(); }
    static std::vector<std::string> FirstLines(const std::string& type) {
        return {Info(Param().pushedBegin + type + Param().pushedEnd, Param().name),
                Info(Param().invoked + type + ") is invoked", std::string(Param().name) + "Func")};
    }
    static bool IsStop() { return Param().name == std::string("Stop"); }
    static void Append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
        lines.insert(lines.end(), more.begin(), more.end());
    }
    static void ExpectOfficeLines(int code) {
        std::vector<std::string> expected = FirstLines("0");
        if (!Param().statusKind.empty()) {
            Append(expected, StatusLines("svcType:0 sttsType:" + Param().statusKind +
                                         " value:" + (code == 0 ? "1" : "0")));
        }
        if (IsStop()) {
            Append(expected, StatusLines("svcType:3 sttsType:1 value:1"));
        }
        EXPECT_EQ(FacadeTexts(), expected);
    }
    void ExpectOfficeEvents(int code) {
        std::vector<std::string> expected;
        if (!Param().statusKind.empty()) {
            expected.push_back("NotifyStatus(0, g, " + Param().statusKind + ", " +
                               (code == 0 ? "true" : "false") + ")");
        }
        if (IsStop()) {
            expected.push_back("NotifyStatus(3, g, 1, true)");
        }
        EXPECT_EQ(observer_.Events(), expected);
    }
    // Checks the request that a job of type 1 or 2 sends to its service.
    static void ExpectEngineRequest(const std::string& endpoint) {
        const std::vector<ServiceCall> calls = RequestsWithoutNameChanged();
        ASSERT_FALSE(calls.empty());
        EXPECT_EQ(calls.back().msgType, Param().engineRequest);
        EXPECT_EQ(calls.back().endpoint, endpoint);
    }
};

TEST_P(EveryJob, OfType0CallsTheCompanionLibrary) {
    EXPECT_EQ(Param().call(0), 0);
    WaitForJobs();
    EXPECT_THAT(FakeFileManager::Get().Calls(), ElementsAre(Param().companionCall));
    EXPECT_THAT(RequestsWithoutNameChanged(), IsEmpty());
    ExpectOfficeLines(0);
    ExpectOfficeEvents(0);
}

TEST_P(EveryJob, OfType0ReportsTheCompanionsFailure) {
    FakeFileManager::Get().SetResult(Param().companionName, 9);
    EXPECT_EQ(Param().call(0), 0);
    WaitForJobs();
    ExpectOfficeLines(9);
    ExpectOfficeEvents(9);
}

TEST_P(EveryJob, OfType0TakesANegativeCodeForAFailureToo) {
    FakeFileManager::Get().SetResult(Param().companionName, -9);
    EXPECT_EQ(Param().call(0), 0);
    WaitForJobs();
    ExpectOfficeLines(-9);
    ExpectOfficeEvents(-9);
}

TEST_P(EveryJob, OfTypes1And2GoesToTheEngine) {
    Param().call(1);
    WaitForJobs();
    ExpectEngineRequest("PLENXPCService");
    Param().call(2);
    WaitForJobs();
    ExpectEngineRequest("PLENXPhoneService");
    EXPECT_THAT(FakeFileManager::Get().Calls(), IsEmpty());
    std::vector<std::string> texts = FacadeTexts();
    ASSERT_GE(texts.size(), 2U);
    EXPECT_EQ(std::vector<std::string>(texts.begin(), texts.begin() + 2), FirstLines("1"));
}

TEST_P(EveryJob, OfKnownTypesIsNotCalledInvalid) {
    for (std::uint32_t type = 0; type <= 3; ++type) {
        Param().call(type);
    }
    WaitForJobs();
    EXPECT_THAT(FacadeTexts(), testing::Each(testing::Not(HasSubstr("invalid"))));
}

TEST_P(EveryJob, OfTypesAbove3OnlyLogs) {
    EXPECT_EQ(Param().call(7), 0);
    WaitForJobs();
    std::vector<std::string> expected = FirstLines("7");
    expected.push_back(Error(Param().invalid, std::string(Param().name) + "Func"));
    if (IsStop()) {
        Append(expected, StatusLines("svcType:3 sttsType:1 value:1"));
    }
    EXPECT_EQ(FacadeTexts(), expected);
    EXPECT_THAT(FakeFileManager::Get().Calls(), IsEmpty());
    EXPECT_THAT(RequestsWithoutNameChanged(), IsEmpty());
}

TEST_P(EveryJob, OfType3GoesToTheEngineAndThenToTheCompanionLibrary) {
    std::vector<std::int32_t> requestsBefore;
    FakeFileManager::Get().SetHook([&requestsBefore](const std::string&) {
        for (const ServiceCall& call : FakeRpc::Get().ServiceCalls()) {
            requestsBefore.push_back(call.msgType);
        }
    });
    Param().call(3);
    WaitForJobs();
    EXPECT_THAT(FakeFileManager::Get().Calls(), ElementsAre(Param().companionCall));
    if (Param().name == std::string("LocalDeviceOnline")) {
        // Type 3 itself has no endpoint.
        EXPECT_THAT(requestsBefore, IsEmpty());
        EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(3, g, 2, false)"));
        EXPECT_THAT(TextsOfClass("PLENXManagerInner"),
                    ElementsAre("L3 [PLENXSDK] plenx manager inner local device online "
                                "svcType(3)(DistributedFs::PLENXManagerInner::"
                                "LocalDeviceOnline)",
                                "L4 [PLENXSDK] plenx manager inner local device online error 16"
                                "(DistributedFs::PLENXManagerInner::LocalDeviceOnline)"));
    } else {
        ASSERT_THAT(requestsBefore, testing::Not(IsEmpty()));
        EXPECT_EQ(requestsBefore.back(), Param().engineRequest);
        ExpectEngineRequest("PLENXPCService");
    }
}

TEST_P(EveryJob, OfType3RunsTheCompanionEvenWhenTheEngineFails) {
    FakeRpc::Get().SetService([](const ServiceCall& call) {
        ServiceAnswer answer;
        answer.reply = Int32Message(call.msgType == Param().engineRequest ? 5 : 0);
        return answer;
    });
    Param().call(3);
    WaitForJobs();
    EXPECT_THAT(FakeFileManager::Get().Calls(), ElementsAre(Param().companionCall));
}

INSTANTIATE_TEST_SUITE_P(Jobs, EveryJob, testing::ValuesIn(kJobs),
                         [](const testing::TestParamInfo<Job>& job) {
                             return std::string(job.param.name);
                         });

class Jobs : public ReadyFacade {};

// The tests below look at the requests that a job sends to the services.

TEST_F(Jobs, StartCreatesTheGroupOfTheService) {
    Facade().Start(Type(1), "g", "arg");
    WaitForJobs();
    EXPECT_EQ(RequestsWithoutNameChanged().back().msg,
              MessageOf({StringArg("g_1"), Int32Arg(2), StringArg("arg")}));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(1, g, 0, true)"));
}

TEST_F(Jobs, StartOfType3StartsServices1And0) {
    Facade().Start(Type(3), "g", "arg");
    WaitForJobs();
    EXPECT_EQ(RequestsWithoutNameChanged().back().msg,
              MessageOf({StringArg("g_1"), Int32Arg(2), StringArg("arg")}));
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(1, g, 0, true)", "NotifyStatus(0, g, 0, true)"));
}

TEST_F(Jobs, StopOfType3StopsServices1And0AndSaysThatAllIsStopped) {
    Facade().Stop(Type(3), "g");
    WaitForJobs();
    EXPECT_EQ(RequestsWithoutNameChanged().back().msg, MessageOf({StringArg("g_1")}));
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(1, g, 1, false)", "NotifyStatus(0, g, 1, true)",
                            "NotifyStatus(3, g, 1, true)"));
}

TEST_F(Jobs, OfflineTriggersReachTheServiceUnchanged) {
    Facade().LocalDeviceOffline(Type(1), "g", "d", static_cast<TriggerType>(-4));
    Facade().RemoteDeviceOffline(Type(3), "g", "d", static_cast<TriggerType>(0x7FFFFFFF));
    WaitForJobs();
    const std::vector<ServiceCall> calls = RequestsWithoutNameChanged();
    ASSERT_THAT(calls, SizeIs(2));
    EXPECT_EQ(calls[0].msg,
              MessageOf({StringArg("g_1"), StringArg("d"), Int32Arg(0), Int32Arg(-4)}));
    EXPECT_EQ(calls[1].msg,
              MessageOf({StringArg("g_1"), StringArg("d"), Int32Arg(1), Int32Arg(0x7FFFFFFF)}));
}

TEST_F(Jobs, RemoteDeviceOnlineOfType3TellsService1) {
    Facade().RemoteDeviceOnline(Type(3), "g", "d");
    WaitForJobs();
    EXPECT_EQ(
        RequestsWithoutNameChanged().at(0).msg,
        MessageOf({StringArg("g_1"), StringArg("d"), Int32Arg(1), Int32Arg(0), ArrayArg({})}));
}

TEST_F(Jobs, DeviceNameChangedGoesToThePcService) {
    EXPECT_EQ(Facade().DeviceNameChanged("pc"), 0);
    ASSERT_TRUE(FakeRpc::Get().WaitForMessage(MessageOf({StringArg("pc")})));
    EXPECT_EQ(FakeRpc::Get().ServiceCalls().at(0).endpoint, "PLENXPCService");
    EXPECT_THAT(
        RecordedLog::Get().Texts(),
        ElementsAre(Info("device name changed is pushed into thread pool", "DeviceNameChanged"),
                    Info("device name changed is invoked", "DeviceNameChangedFunc"),
                    "L3 [PLENXSDK] rpc manager name changed svcType:1"
                    "(DistributedFs::RpcManager::NameChanged)"));
}

TEST_F(Jobs, RecvRemoteMessageGoesToThePcServiceUnchanged) {
    EXPECT_EQ(Facade().RecvRemoteMessage(static_cast<PLENXMessageType>(-3), 0xFFFFFFFFU, ""), 0);
    const Bytes message = MessageOf({Int32Arg(-3), Int32Arg(-1), StringArg("")});
    ASSERT_TRUE(FakeRpc::Get().WaitForMessage(message));
    EXPECT_EQ(FakeRpc::Get().ServiceCalls().at(0).endpoint, "PLENXPCService");
    EXPECT_THAT(
        RecordedLog::Get().Texts(),
        ElementsAre(Info("receive remote message is pushed into thread pool", "RecvRemoteMessage"),
                    Info("receive remote message is invoked", "RecvRemoteMessageFunc"),
                    "L3 [PLENXSDK] plenx manager job receive remote message is invoked"
                    "(DistributedFs::PLENXManagerInner::RecvRemoteMessage)",
                    "L3 [PLENXSDK] rpc manager receive remote message svcType:1"
                    "(DistributedFs::RpcManager::RecvRemoteMessage)"));
}

// The tests below are for LocalDeviceOnline and its block of bytes. The blocks are on the heap and
// have exactly the size that may be read.

std::unique_ptr<std::uint8_t[]> Block(std::size_t size) {
    auto block = std::make_unique<std::uint8_t[]>(size);
    std::iota(block.get(), block.get() + size, std::uint8_t{0});
    return block;
}

class DataBlock : public ReadyFacade {
protected:
    static int Online(std::uint32_t type, std::uint64_t size, const std::uint8_t* data) {
        const int result = Facade().LocalDeviceOnline(Type(type), "g", "d", size, data);
        WaitForJobs();
        return result;
    }
};

TEST_F(DataBlock, OfficeServiceGetsAtMost16Bytes) {
    EXPECT_EQ(Online(0, 40, Block(40).get()), 0);
    Online(0, 17, Block(17).get());
    Online(0, 16, Block(16).get());
    Online(0, 15, Block(15).get());
    const std::string sixteen = "000102030405060708090a0b0c0d0e0f";
    EXPECT_THAT(FakeFileManager::Get().Calls(),
                ElementsAre("LocalDeviceOnline(g, d, 1, " + sixteen + ", 16)",
                            "LocalDeviceOnline(g, d, 1, " + sixteen + ", 16)",
                            "LocalDeviceOnline(g, d, 1, " + sixteen + ", 16)",
                            "LocalDeviceOnline(g, d, 1, " + sixteen.substr(0, 30) + ", 15)"));
}

TEST_F(DataBlock, OneByteIsPassedToEitherService) {
    const auto block = Block(1);
    Online(0, 1, block.get());
    Online(1, 1, block.get());
    EXPECT_THAT(FakeFileManager::Get().Calls(), ElementsAre("LocalDeviceOnline(g, d, 1, 00, 1)"));
    EXPECT_EQ(
        RequestsWithoutNameChanged().at(0).msg,
        MessageOf({StringArg("g_1"), StringArg("d"), Int32Arg(0), Int32Arg(1), ArrayArg({0})}));
}

TEST_F(DataBlock, EmptyBlockIsNullForTheOfficeService) {
    Online(0, 0, Block(1).get());
    Online(0, 0, nullptr);
    Online(0, 5, nullptr);
    EXPECT_THAT(FakeFileManager::Get().Calls(), ElementsAre("LocalDeviceOnline(g, d, 1, null, 0)",
                                                            "LocalDeviceOnline(g, d, 1, null, 0)",
                                                            "LocalDeviceOnline(g, d, 1, null, 0)"));
}

TEST_F(DataBlock, PcServiceGetsAllOfIt) {
    const auto block = Block(40);
    Online(1, 40, block.get());
    EXPECT_EQ(RequestsWithoutNameChanged().at(0).msg,
              MessageOf({StringArg("g_1"), StringArg("d"), Int32Arg(0), Int32Arg(40),
                         ArrayArg(Bytes(block.get(), block.get() + 40))}));
}

TEST_F(DataBlock, NullDataGivesThePcServiceNoBytes) {
    Online(1, 40, nullptr);
    EXPECT_EQ(
        RequestsWithoutNameChanged().at(0).msg,
        MessageOf({StringArg("g_1"), StringArg("d"), Int32Arg(0), Int32Arg(0), ArrayArg({})}));
}

TEST_F(DataBlock, OnlyTheLow32BitsOfTheSizeCountAndAreRead) {
    const auto block = Block(5);
    Online(0, (1ULL << 32) + 5, block.get());
    Online(1, (7ULL << 32) + 5, block.get());
    Online(0, 1ULL << 32, block.get());
    EXPECT_THAT(FakeFileManager::Get().Calls(),
                ElementsAre("LocalDeviceOnline(g, d, 1, 0001020304, 5)",
                            "LocalDeviceOnline(g, d, 1, null, 0)"));
    EXPECT_EQ(RequestsWithoutNameChanged().at(0).msg,
              MessageOf({StringArg("g_1"), StringArg("d"), Int32Arg(0), Int32Arg(5),
                         ArrayArg({0, 1, 2, 3, 4})}));
}

TEST_F(DataBlock, SizeFrom2To31ReadsNoByteAndFailsForThePcService) {
    const auto block = Block(1);
    for (const std::uint64_t size : {1ULL << 31, 0xFFFFFFFFULL, ~0ULL}) {
        EXPECT_EQ(Online(0, size, block.get()), 0);
        EXPECT_EQ(Online(1, size, block.get()), 0);
    }
    EXPECT_THAT(FakeFileManager::Get().Calls(), ElementsAre("LocalDeviceOnline(g, d, 1, null, 0)",
                                                            "LocalDeviceOnline(g, d, 1, null, 0)",
                                                            "LocalDeviceOnline(g, d, 1, null, 0)"));
    EXPECT_THAT(RequestsWithoutNameChanged(), IsEmpty());
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(1, g, 2, false)", "NotifyStatus(1, g, 2, false)",
                            "NotifyStatus(1, g, 2, false)"));
    EXPECT_TRUE(
        RecordedLog::Get().WaitFor("L4 [PLENXSDK] plenx manager inner local device online error 19"
                                   "(DistributedFs::PLENXManagerInner::LocalDeviceOnline)",
                                   std::chrono::seconds(1), 3));
}

TEST_F(DataBlock, CallersBufferMayBeFreedAtOnce) {
    std::promise<void> letGo;
    std::shared_future<void> gate = letGo.get_future().share();
    FakeFileManager::Get().SetHook(
        [gate](const std::string&) { gate.wait_for(std::chrono::seconds(20)); });
    Facade().Start(Type(0), "g", "a");  // keeps the worker busy
    {
        auto block = Block(4);
        Facade().LocalDeviceOnline(Type(0), "g", "d", 4, block.get());
        std::fill(block.get(), block.get() + 4, std::uint8_t{0xFF});
    }
    letGo.set_value();
    WaitForJobs();
    EXPECT_THAT(FakeFileManager::Get().Calls(),
                ElementsAre("Start()", "LocalDeviceOnline(g, d, 1, 00010203, 4)"));
}

// The tests below are for the signal that everything is stopped.

struct Steps {
    const char* name;
    std::vector<std::string> steps;  // "start 0", "stop 1", ...; the test checks the last one
    bool allStopped;
};

void PrintTo(const Steps& steps, std::ostream* out) {
    *out << steps.name;
}

class AllStoppedSignal : public ReadyFacade, public testing::WithParamInterface<Steps> {
protected:
    static void Run(const std::string& step) {
        const auto type = static_cast<std::uint32_t>(std::stoul(step.substr(step.find(' '))));
        if (step[2] == 'a') {
            Facade().Start(Type(type), "g", "a");
        } else {
            Facade().Stop(Type(type), "g");
        }
        WaitForJobs();
    }
};

TEST_P(AllStoppedSignal, FollowsAStopThatLeavesNothingStarted) {
    for (const std::string& step : GetParam().steps) {
        RecordedLog::Get().Clear();
        Run(step);
    }
    const std::vector<std::string> texts = FacadeTexts();
    const std::string signal =
        Info("notify status invoked svcType:3 sttsType:1 value:1", "NotifyStatus");
    EXPECT_EQ(std::count(texts.begin(), texts.end(), signal), GetParam().allStopped ? 1 : 0);
    EXPECT_EQ(observer_.Events().back() == "NotifyStatus(3, g, 1, true)", GetParam().allStopped);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, AllStoppedSignal,
    testing::Values(Steps{"PcAlone", {"stop 1"}, true}, Steps{"PhoneAlone", {"stop 2"}, true},
                    Steps{"PcSetsNoBit", {"start 1", "stop 1"}, true},
                    Steps{"Office", {"start 0", "stop 0"}, true},
                    Steps{"OfficeWithoutAStart", {"stop 0"}, true},
                    Steps{"PcWhileOfficeRuns", {"start 0", "stop 1"}, false},
                    Steps{"InvalidWhileOfficeRuns", {"start 0", "stop 7"}, false},
                    Steps{"Invalid", {"stop 7"}, true}, Steps{"Both", {"start 3", "stop 3"}, true},
                    Steps{"BothMinusOffice", {"start 3", "stop 0"}, false},
                    Steps{"BothMinusOfficeMinusPc", {"start 3", "stop 0", "stop 1"}, false},
                    Steps{"BothMinusOfficeThenBoth", {"start 3", "stop 0", "stop 3"}, true},
                    Steps{"OfficeThenBoth", {"start 0", "stop 3"}, true}),
    [](const testing::TestParamInfo<Steps>& steps) { return std::string(steps.param.name); });

TEST_F(Jobs, FailedStartOfTheOfficeServiceCountsAsStarted) {
    FakeFileManager::Get().SetResult("Start", 9);
    Facade().Start(Type(0), "g", "a");
    Facade().Stop(Type(1), "g");
    WaitForJobs();
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(0, g, 0, false)", "NotifyStatus(1, g, 1, false)"));
}

TEST_F(Jobs, FailedStartOfThePcServiceCountsInType3) {
    FakePlatform::Get().Scm().SetStatus(L"PlenxPcSvc", SERVICE_STOPPED);
    FakePlatform::Get().Scm().RefuseStart(L"PlenxPcSvc", ERROR_SERVICE_DISABLED);
    Facade().Start(Type(3), "g", "a");
    Facade().Stop(Type(0), "g");
    WaitForJobs();
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(1, g, 0, false)", "NotifyStatus(0, g, 0, true)",
                            "NotifyStatus(0, g, 1, true)"));
}

TEST_F(Jobs, FailedStopOfTheOfficeServiceCountsAsStopped) {
    FakeFileManager::Get().SetResult("Stop", 9);
    Facade().Start(Type(0), "g", "a");
    Facade().Stop(Type(0), "g");
    WaitForJobs();
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(0, g, 0, true)", "NotifyStatus(0, g, 1, false)",
                            "NotifyStatus(3, g, 1, true)"));
}

// The tests below are for order and exceptions.

TEST_F(Jobs, RunInTheOrderOfTheCalls) {
    std::vector<std::string> expected;
    for (int i = 0; i != 50; ++i) {
        const std::string group = "g" + std::to_string(i);
        Facade().RemoteDeviceOnline(Type(0), group, "d");
        Facade().RemoteDeviceOffline(Type(0), group, "d", TriggerType());
        expected.push_back("RemoteDeviceOnline(" + group + ", d)");
        expected.push_back("RemoteDeviceOffline(" + group + ", d)");
    }
    WaitForJobs();
    EXPECT_EQ(FakeFileManager::Get().Calls(), expected);
}

TEST_F(Jobs, ExceptionOfAJobIsLostAndTheNextJobRuns) {
    FakeFileManager::Get().SetHook([](const std::string& call) {
        if (call == "Start()") {
            throw std::runtime_error("companion");
        }
    });
    EXPECT_EQ(Facade().Start(Type(0), "g", "a"), 0);
    EXPECT_EQ(Facade().RemoteDeviceOnline(Type(0), "g", "d"), 0);
    WaitForJobs();
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(0, g, 2, true)"));
}

TEST_F(Jobs, ObserversExceptionLosesTheRestOfTheJob) {
    observer_.hook = [](const std::string& event) {
        if (event == "NotifyStatus(0, g, 0, true)") {
            throw std::runtime_error("observer");
        }
    };
    Facade().Start(Type(0), "g", "a");  // this does not set its mark
    Facade().Stop(Type(1), "g");
    WaitForJobs();
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(0, g, 0, true)", "NotifyStatus(1, g, 1, false)",
                            "NotifyStatus(3, g, 1, true)"));
}

// The two marks of type 3 change one after the other. A failure of the office's turn shows this: by
// then the mark of the PC service has changed, and that of the office service has not.

TEST_F(Jobs, StartOfType3HasMarkedThePcServiceBeforeTheOfficesTurn) {
    FakeFileManager::Get().SetHook([](const std::string& call) {
        if (call == "Start()") {
            throw std::runtime_error("companion");
        }
    });
    Facade().Start(Type(3), "g", "a");
    Facade().Stop(Type(2), "g");
    WaitForJobs();
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(1, g, 0, true)", "NotifyStatus(2, g, 1, false)"));
}

TEST_F(Jobs, StopOfType3HasUnmarkedThePcServiceBeforeTheOfficesTurn) {
    Facade().Start(Type(3), "g", "a");
    WaitForJobs();
    FakeFileManager::Get().SetHook(
        [](const std::string&) { throw std::runtime_error("companion"); });
    Facade().Stop(Type(3), "g");
    Facade().Stop(Type(2), "g");  // the office service still counts as started
    WaitForJobs();
    FakeFileManager::Get().SetHook(nullptr);
    Facade().Stop(Type(0), "g");
    WaitForJobs();
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(1, g, 0, true)", "NotifyStatus(0, g, 0, true)",
                            "NotifyStatus(1, g, 1, false)", "NotifyStatus(2, g, 1, false)",
                            "NotifyStatus(0, g, 1, true)", "NotifyStatus(3, g, 1, true)"));
}

TEST_F(Jobs, StopOfType3UnmarksTheOfficeServiceOnlyAfterItsReport) {
    Facade().Start(Type(3), "g", "a");
    WaitForJobs();
    observer_.hook = [](const std::string& event) {
        if (event == "NotifyStatus(0, g, 1, true)") {
            throw std::runtime_error("observer");
        }
    };
    Facade().Stop(Type(3), "g");
    Facade().Stop(Type(1), "g");
    WaitForJobs();
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(1, g, 0, true)", "NotifyStatus(0, g, 0, true)",
                            "NotifyStatus(1, g, 1, false)", "NotifyStatus(0, g, 1, true)",
                            "NotifyStatus(1, g, 1, false)"));
}

}  // namespace
