// Tests the public operations on the caller's thread: their checks, lines and results.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <future>
#include <ostream>
#include <string>
#include <vector>

#include "facade/facade_fixture.h"

using DistributedFs::kDefaultMessage;
using DistributedFs::kDefaultTrigger;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The table has each queueing operation, for service type 7, for which no job does anything.
struct Operation {
    const char* name;
    std::function<int()> call;
    std::string pushed;
    std::vector<std::function<int()>> withEmpty;
    std::string invalidParameter;
};

void PrintTo(const Operation& operation, std::ostream* out) {
    *out << operation.name;
}

const Operation kOperations[] = {
    {"Start",
     [] { return Facade().Start(Type(7), "g", "a"); },
     "start service (7) is pushed into thread pool",
     {[] { return Facade().Start(Type(7), "", "a"); },
      [] { return Facade().Start(Type(7), "g", ""); },
      [] { return Facade().Start(Type(7), "", ""); }},
     "start invalid parameter"},
    {"Stop",
     [] { return Facade().Stop(Type(7), "g"); },
     "stop service (7) is pushed into thread pool",
     {[] { return Facade().Stop(Type(7), ""); }},
     "stop invalid parameter"},
    {"LocalDeviceOnline",
     [] { return Facade().LocalDeviceOnline(Type(7), "g", "d", 0, nullptr); },
     "service (7) local device online is pushed into thread pool",
     {[] { return Facade().LocalDeviceOnline(Type(7), "", "d", 0, nullptr); },
      [] { return Facade().LocalDeviceOnline(Type(7), "g", "", 0, nullptr); }},
     "local device online invalid parameter"},
    {"RemoteDeviceOnline",
     [] { return Facade().RemoteDeviceOnline(Type(7), "g", "d"); },
     "service (7) remote device online is pushed into thread pool",
     {[] { return Facade().RemoteDeviceOnline(Type(7), "", "d"); },
      [] { return Facade().RemoteDeviceOnline(Type(7), "g", ""); }},
     "remote device online invalid parameter"},
    {"LocalDeviceOffline",
     [] { return Facade().LocalDeviceOffline(Type(7), "g", "d", kDefaultTrigger); },
     "service (7) local device offline is pushed into thread pool",
     {[] { return Facade().LocalDeviceOffline(Type(7), "", "d", kDefaultTrigger); },
      [] { return Facade().LocalDeviceOffline(Type(7), "g", "", kDefaultTrigger); }},
     "local device offline invalid parameter"},
    {"RemoteDeviceOffline",
     [] { return Facade().RemoteDeviceOffline(Type(7), "g", "d", kDefaultTrigger); },
     "service (7) remote device offline is pushed into thread pool",
     {[] { return Facade().RemoteDeviceOffline(Type(7), "", "d", kDefaultTrigger); },
      [] { return Facade().RemoteDeviceOffline(Type(7), "g", "", kDefaultTrigger); }},
     "remote device offline invalid parameter"},
    {"DeviceNameChanged",
     [] { return Facade().DeviceNameChanged("n"); },
     "device name changed is pushed into thread pool",
     {[] { return Facade().DeviceNameChanged(""); }},
     "device name changed invalid parameter"},
    {"RecvRemoteMessage",
     [] { return Facade().RecvRemoteMessage(kDefaultMessage, 0, ""); },
     "receive remote message is pushed into thread pool",
     {},
     ""},
};

std::string NameOf(const testing::TestParamInfo<Operation>& operation) {
    return operation.param.name;
}

class BeforeInit : public FreshFacade, public testing::WithParamInterface<Operation> {};

TEST_P(BeforeInit, OperationIsDroppedWithALineAndReturns0) {
    EXPECT_EQ(GetParam().call(), 0);
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre(std::string("L4 [PLENXSDK] thread pool is released"
                                        "(DistributedFs::PLENXManager::") +
                            GetParam().name + ")"));
}

TEST_P(BeforeInit, EmptyArgumentReturns26) {
    for (const std::function<int()>& call : GetParam().withEmpty) {
        RecordedLog::Get().Clear();
        EXPECT_EQ(call(), 26);
        EXPECT_THAT(RecordedLog::Get().Texts(),
                    ElementsAre(Error(GetParam().invalidParameter, GetParam().name)));
    }
}

// The leak check of the sanitized builds finds a copy that is kept.
TEST_F(FreshFacade, DataOfALocalDeviceIsNotKeptBeforeInit) {
    const std::vector<unsigned char> data(4096, 0x5A);
    EXPECT_EQ(Facade().LocalDeviceOnline(Type(1), "g", "d", data.size(), data.data()), 0);
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre("L4 [PLENXSDK] thread pool is released"
                            "(DistributedFs::PLENXManager::LocalDeviceOnline)"));
}

INSTANTIATE_TEST_SUITE_P(Operations, BeforeInit, testing::ValuesIn(kOperations), NameOf);

class AfterInit : public ReadyFacade, public testing::WithParamInterface<Operation> {};

TEST_P(AfterInit, OperationIsQueuedWithALineAndReturns0) {
    EXPECT_EQ(GetParam().call(), 0);
    EXPECT_EQ(TextsOfClass("PLENXManager").at(0), Info(GetParam().pushed, GetParam().name));
}

TEST_P(AfterInit, EmptyArgumentReturns26AndQueuesNothing) {
    for (const std::function<int()>& call : GetParam().withEmpty) {
        RecordedLog::Get().Clear();
        EXPECT_EQ(call(), 26);
        WaitForJobs();
        std::vector<std::string> texts = TextsOfClass("PLENXManager");
        EXPECT_EQ(texts.at(0), Error(GetParam().invalidParameter, GetParam().name));
        EXPECT_EQ(texts.size(), 3U);  // it adds the two texts of the job that the test waited for
    }
    EXPECT_THAT(FakeFileManager::Get().Calls(), IsEmpty());
    EXPECT_THAT(observer_.Events(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Operations, AfterInit, testing::ValuesIn(kOperations), NameOf);

TEST_F(ReadyFacade, RequestsReturnWhileAJobIsAtWork) {
    std::promise<void> letGo;
    std::shared_future<void> gate = letGo.get_future().share();
    FakeFileManager::Get().SetHook(
        [gate](const std::string&) { gate.wait_for(std::chrono::seconds(20)); });
    EXPECT_EQ(Facade().Start(Type(0), "g", "a"), 0);
    EXPECT_EQ(Facade().Stop(Type(0), "g"), 0);
    EXPECT_EQ(Facade().RecvRemoteMessage(kDefaultMessage, 0, "m"), 0);
    Facade().SetConfig(Type(1), Key(0), std::int64_t{5});
    EXPECT_THAT(observer_.Events(), IsEmpty());
    letGo.set_value();
    WaitForJobs();
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(0, g, 0, true)", "NotifyStatus(0, g, 1, true)",
                            "NotifyStatus(3, g, 1, true)"));
}

// The tests below are for SetConfig.

std::string EngineLine(const char* function, const std::string& type, const std::string& value) {
    return "L3 [PLENXSDK] plenx manager set config svcType:" + type +
           " cfgType:1 cfgValue:" + value + "(DistributedFs::PLENXManagerInner::" + function + ")";
}

TEST_F(ReadyFacade, SetConfigOfAStringQueuesAJobForTheService) {
    Facade().SetConfig(Type(2), Key(1), "de_DE");
    WaitForJobs();
    EXPECT_THAT(FacadeTexts(),
                ElementsAre(Info("(2) set string config is pushed into thread pool", "SetConfig")));
    EXPECT_THAT(TextsOfClass("PLENXManagerInner"),
                ElementsAre(EngineLine("SetStringConfig", "2", "de_DE")));
}

TEST_F(ReadyFacade, SetConfigOfANumberQueuesAJobForTheService) {
    Facade().SetConfig(Type(1), Key(1), std::int64_t{-5});
    WaitForJobs();
    EXPECT_THAT(FacadeTexts(),
                ElementsAre(Info("(1) set int config is pushed into thread pool", "SetConfig")));
    EXPECT_THAT(TextsOfClass("PLENXManagerInner"),
                ElementsAre(EngineLine("SetIntConfig", "1", "-5")));
}

TEST_F(ReadyFacade, SetConfigOfType3QueuesTwoJobsForServices1Then2) {
    Facade().SetConfig(Type(3), Key(1), "x");
    Facade().SetConfig(Type(3), Key(1), std::int64_t{7});
    WaitForJobs();
    EXPECT_THAT(FacadeTexts(),
                ElementsAre(Info("(1) set string config is pushed into thread pool", "SetConfig"),
                            Info("(2) set string config is pushed into thread pool", "SetConfig"),
                            Info("(1) set int config is pushed into thread pool", "SetConfig"),
                            Info("(2) set int config is pushed into thread pool", "SetConfig")));
    EXPECT_THAT(
        TextsOfClass("PLENXManagerInner"),
        ElementsAre(EngineLine("SetStringConfig", "1", "x"),
                    EngineLine("SetStringConfig", "2", "x"), EngineLine("SetIntConfig", "1", "7"),
                    EngineLine("SetIntConfig", "2", "7")));
}

TEST_F(ReadyFacade, SetConfigOfType0LeavesNoTrace) {
    Facade().SetConfig(Type(0), Key(1), "x");
    Facade().SetConfig(Type(0), Key(1), std::int64_t{7});
    WaitForJobs();
    EXPECT_THAT(FacadeTexts(), IsEmpty());
    EXPECT_THAT(TextsOfClass("PLENXManagerInner"), IsEmpty());
}

void ExpectInvalidConfigTypesAreLogged() {
    Facade().SetConfig(Type(4), Key(1), "x");
    Facade().SetConfig(Type(0xFFFFFFFFU), Key(1), "x");
    Facade().SetConfig(Type(4), Key(1), std::int64_t{7});
    Facade().SetConfig(Type(0xFFFFFFFFU), Key(1), std::int64_t{7});
    EXPECT_THAT(
        RecordedLog::Get().Texts(),
        ElementsAre(Error("set string config invalid service type svcType:4", "SetConfig"),
                    Error("set string config invalid service type svcType:4294967295", "SetConfig"),
                    Error("set int config invalid service type svcType(4)", "SetConfig"),
                    Error("set int config invalid service type svcType(4294967295)", "SetConfig")));
}

TEST_F(ReadyFacade, SetConfigOfTypesAbove3IsLogged) {
    ExpectInvalidConfigTypesAreLogged();
}

TEST_F(FreshFacade, SetConfigOfTypesAbove3IsLoggedBeforeInitToo) {
    ExpectInvalidConfigTypesAreLogged();
}

TEST_F(FreshFacade, SetConfigBeforeInitIsLostSilently) {
    for (const std::uint32_t type : {0U, 1U, 2U, 3U}) {
        Facade().SetConfig(Type(type), Key(1), "x");
        Facade().SetConfig(Type(type), Key(1), std::int64_t{7});
    }
    EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
}

// The tests below are for the getters.

TEST_F(ReadyFacade, GetInt64ConfigReadsTheEngineForTypes1To3) {
    EXPECT_EQ(Facade().GetInt64Config(Type(1), Key(5)), 0);
    FakePlatform::Get().Scm().SetStatus(L"PlenxPhoneSvc", SERVICE_STOPPED);
    EXPECT_EQ(Facade().GetInt64Config(Type(2), Key(5)), 1);
    EXPECT_EQ(Facade().GetInt64Config(Type(3), Key(5)), 0);
    EXPECT_EQ(TextsOfClass("PLENXManagerInner").size(), 3U);
    EXPECT_THAT(FacadeTexts(), IsEmpty());
}

TEST_F(ReadyFacade, GetInt64ConfigOfOtherTypesIs0WithoutTheEngine) {
    EXPECT_EQ(Facade().GetInt64Config(Type(0), Key(5)), 0);
    EXPECT_EQ(Facade().GetInt64Config(Type(4), Key(5)), 0);
    EXPECT_EQ(Facade().GetInt64Config(Type(0xFFFFFFFFU), Key(5)), 0);
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre(Error("invalid service type svcType:0", "GetInt64Config"),
                            Error("invalid service type svcType:4", "GetInt64Config"),
                            Error("invalid service type svcType:4294967295", "GetInt64Config")));
    EXPECT_THAT(FakePlatform::Get().Calls(), IsEmpty());
}

TEST_F(FreshFacade, GetInt64ConfigBeforeInitIs0) {
    EXPECT_EQ(Facade().GetInt64Config(Type(1), Key(5)), 0);
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre("L3 [PLENXSDK] plenx manager get config svcType:1 cfgType:5 "
                            "cfgValue:0(DistributedFs::PLENXManagerInner::GetInt64Config)"));
}

TEST_F(ReadyFacade, GetStringConfigIsAlwaysEmpty) {
    Facade().SetConfig(Type(1), Key(1), "de_DE");
    WaitForJobs();
    RecordedLog::Get().Clear();
    for (const std::uint32_t type : {1U, 2U, 3U}) {
        EXPECT_EQ(Facade().GetStringConfig(Type(type), Key(1)), "");
    }
    EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
}

TEST_F(FreshFacade, GetStringConfigOfOtherTypesIsLogged) {
    EXPECT_EQ(Facade().GetStringConfig(Type(0), Key(1)), "");
    EXPECT_EQ(Facade().GetStringConfig(Type(4), Key(1)), "");
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre(Error("invalid service type svcType:0", "GetStringConfig"),
                            Error("invalid service type svcType:4", "GetStringConfig")));
}

// The tests below are for GetOfficeDir.

TEST_F(FreshFacade, GetOfficeDirBeforeInitPutsABackslashInFrontAndReturns0) {
    std::string dir = "abc";
    EXPECT_EQ(Facade().GetOfficeDir("g", "d", dir), 0);
    EXPECT_EQ(dir, "\\abc");
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre(Info("get office dir is invoked", "GetOfficeDir")));
}

TEST_F(ReadyFacade, GetOfficeDirIsTheCompanionsFolderAndTheNameThatWentIn) {
    FakeFileManager::Get().SetNeighbourDir("D:\\dev");
    std::string dir = "abc";
    EXPECT_EQ(Facade().GetOfficeDir("g", "d", dir), 0);
    EXPECT_EQ(dir, "D:\\dev\\abc");
    EXPECT_THAT(FakeFileManager::Get().Calls(),
                ElementsAre("GetGroupNeighborDistributedDir(g, d)"));
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre(Info("get office dir is invoked", "GetOfficeDir")));
}

TEST_F(ReadyFacade, GetOfficeDirSetsTheFolderWhateverTheCode) {
    FakeFileManager::Get().SetNeighbourDir("D:\\dev");
    FakeFileManager::Get().SetResult("GetGroupNeighborDistributedDir", -7);
    std::string dir;
    EXPECT_EQ(Facade().GetOfficeDir("", "", dir), -7);
    EXPECT_EQ(dir, "D:\\dev\\");
}

TEST_F(ReadyFacade, GetOfficeDirMayBeGivenOneStringForAll) {
    FakeFileManager::Get().SetNeighbourDir("D:\\dev");
    std::string same = "s";
    EXPECT_EQ(Facade().GetOfficeDir(same, same, same), 0);
    EXPECT_EQ(same, "D:\\dev\\s");
    EXPECT_THAT(FakeFileManager::Get().Calls(),
                ElementsAre("GetGroupNeighborDistributedDir(s, s)"));
}

}  // namespace
