#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "engine/engine_fixture.h"
#include "failing_threads.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::string kServiceManagerLine =
    "L3 [PLENXSDK] service manager initialization(DistributedFs::PLENXManagerInner::Init)";
const std::string kListenLine =
    "L3 [PLENXSDK] rpc listen thread initialization(DistributedFs::PLENXManagerInner::Init)";

std::size_t PlaceOf(const std::vector<std::string>& texts, const std::string& part) {
    const auto found = std::find_if(texts.begin(), texts.end(), [&](const std::string& text) {
        return text.find(part) != std::string::npos;
    });
    return static_cast<std::size_t>(found - texts.begin());
}

std::string ConfigLine(const std::string& function, const std::string& type, const std::string& key,
                       const std::string& value) {
    const std::string verb = function[0] == 'G' ? "get" : "set";
    return "L3 [PLENXSDK] plenx manager " + verb + " config svcType:" + type + " cfgType:" + key +
           " cfgValue:" + value + "(DistributedFs::PLENXManagerInner::" + function + ")";
}

std::string InvalidTypeLine(const std::string& function, const std::string& type) {
    return "L4 [PLENXSDK] plenx manager invalid service type svcType:" + type +
           "(DistributedFs::PLENXManagerInner::" + function + ")";
}

class Engine_Init : public EngineTest {};

TEST_F(Engine_Init, MakesTheServicesThenTheIconsThenTheListener) {
    // One icon cannot be written, so its line shows when the engine tried.
    std::filesystem::create_directory("C:\\App\\res\\plenx\\icon\\video\\desktop.ini");
    Engine().Init("C:\\App", "C:\\Data");
    ASSERT_TRUE(FakeRpc::Get().WaitUntilListening());

    EXPECT_THAT(EngineTexts(),
                ElementsAre(kServiceManagerLine,
                            "L4 [PLENXSDK] open fileC:\\App\\res\\plenx\\icon\\video\\desktop.ini"
                            " error(DistributedFs::PLENXManagerInner::CreateFileIcon)",
                            kListenLine));
    const std::vector<std::string> texts = RecordedLog::Get().Texts();
    EXPECT_EQ(PlaceOf(texts, kServiceManagerLine), 0U);
    EXPECT_LT(PlaceOf(texts, "start dokan service success"), PlaceOf(texts, "open fileC:"));
    EXPECT_EQ(texts.back(), kListenLine);
    EXPECT_THAT(FakeRpc::Get().Calls(),
                ElementsAre("RpcServerUseProtseqEpW(ncalrpc, 10, Manager, null)",
                            "RpcServerRegisterIf(manager interface, null, null)",
                            "RpcServerListen(1, 10, 0)"));
}

TEST_F(Engine_Init, GivesTheInstallFolderAndTheDataFolderInThisOrder) {
    InitEngine();
    const auto service = FakePlatform::Get().Scm().Find(L"PlenxPcSvc");
    ASSERT_TRUE(service.has_value());
    EXPECT_EQ(service->config.binaryPath, L"C:\\App\\plenxservice.exe");
    EXPECT_TRUE(FakePlatform::Get().Files().Exists(L"C:\\Data\\plenx\\pc"));
}

TEST_F(Engine_Init, SecondCallDoesNothing) {
    InitEngine();
    std::filesystem::remove("C:\\App\\res\\plenx\\icon\\audio\\desktop.ini");
    Engine().Init("C:\\Other", "C:\\Elsewhere");
    EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
    EXPECT_THAT(FakePlatform::Get().Calls(), IsEmpty());
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists("C:\\App\\res\\plenx\\icon\\audio\\desktop.ini"));
}

TEST_F(Engine_Init, MalformedInstallFolderThrowsMakesNothingAndIsTriedAgain) {
    EXPECT_THROW(Engine().Init("C:\\\xFF", "C:\\Data"), std::range_error);
    EXPECT_THAT(RecordedLog::Get().Texts(), ElementsAre(kServiceManagerLine));
    EXPECT_THAT(FakePlatform::Get().Calls(), IsEmpty());
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());

    RecordedLog::Get().Clear();
    Engine().Init("C:\\App", "C:\\Data");
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    EXPECT_THAT(EngineTexts(), ElementsAre(kServiceManagerLine, kListenLine));
}

TEST_F(Engine_Init, MalformedDataFolderThrowsAndReleasesTheMutex) {
    EXPECT_THROW(Engine().Init("C:\\App", "C:\\Data\xC3"), std::range_error);
    EXPECT_EQ(Engine().GetInt64Config(Type(1), Key(5)), 0);
    EXPECT_THAT(FakePlatform::Get().Calls(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists("C:\\App\\res\\plenx\\icon\\audio\\desktop.ini"));
}

TEST_F(Engine_Init, WithoutAWorkingFolderStillListens) {
    Engine().Init("C:\\App", "");
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    EXPECT_EQ(EngineTexts().back(), kListenLine);
    EXPECT_FALSE(FakePlatform::Get().Scm().Find(L"PlenxPcSvc").has_value());
}

TEST_F(Engine_Init, OfSeveralThreadsMakesEverythingOnce) {
    std::vector<std::thread> threads;
    for (int i = 0; i != 4; ++i) {
        threads.emplace_back([] { Engine().Init("C:\\App", "C:\\Data"); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    EXPECT_THAT(EngineTexts(), ElementsAre(kServiceManagerLine, kListenLine));
    EXPECT_THAT(FakePlatform::Get().CallsOf({"CreateServiceW"}), SizeIs(3));
}

TEST_F(Engine_Init, ListenerThatCannotBeStarted_RaisesAndOnlyItIsTriedAgain) {
    FailingThreads::SetStartsLeft(0);
    EXPECT_THROW(Engine().Init("C:\\App", "C:\\Data"), std::system_error);
    EXPECT_THAT(EngineTexts(), ElementsAre(kServiceManagerLine, kListenLine));
    EXPECT_EQ(Engine().GetInt64Config(Type(1), Key(5)), 1);

    FailingThreads::SetStartsLeft(FailingThreads::kAll);
    RecordedLog::Get().Clear();
    FakePlatform::Get().ForgetCalls();
    Engine().Init("C:\\App", "C:\\Data");
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    EXPECT_THAT(RecordedLog::Get().Texts(), ElementsAre(kListenLine));
    EXPECT_THAT(FakePlatform::Get().CallsOf({"CreateServiceW"}), IsEmpty());
}

TEST_F(Engine_Init, ListenerThatRunsOutOfMemory_EndsOnlyItsThread) {
    FakePlatform::Get().Faults().Before("RpcServerUseProtseqEpW", 1,
                                        [] { throw std::bad_alloc(); });
    Engine().Init("C:\\App", "C:\\Data");
    ASSERT_THAT(FailingThreads::Started(), SizeIs(1));
    EXPECT_EQ(pthread_join(FailingThreads::Started()[0], nullptr), 0);
    EXPECT_THAT(FakeRpc::Get().Calls(),
                ElementsAre("RpcServerUseProtseqEpW(ncalrpc, 10, Manager, null)"));
    EXPECT_EQ(Engine().Start(Type(1), "g", "a"), 0);
}

class Engine_GetInt64Config : public EngineTest {};

TEST_F(Engine_GetInt64Config, BeforeInitIs0ForEveryKey) {
    for (const std::uint32_t key : {0U, 1U, 2U, 3U, 5U, 0xFFFFFFFFU}) {
        EXPECT_EQ(Engine().GetInt64Config(Type(1), Key(key)), 0);
    }
    EXPECT_THAT(FakePlatform::Get().Calls(), IsEmpty());
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre(ConfigLine("GetInt64Config", "1", "0", "0"),
                            ConfigLine("GetInt64Config", "1", "1", "0"),
                            ConfigLine("GetInt64Config", "1", "2", "0"),
                            ConfigLine("GetInt64Config", "1", "3", "0"),
                            ConfigLine("GetInt64Config", "1", "5", "0"),
                            ConfigLine("GetInt64Config", "1", "4294967295", "0")));
}

TEST_F(Engine_GetInt64Config, Key5Is1WhileTheServiceIsNotRunningAnd0WhileItIs) {
    InitEngine();
    EXPECT_EQ(Engine().GetInt64Config(Type(1), Key(5)), 1);
    FakePlatform::Get().Scm().SetStatus(L"PlenxPcSvc", SERVICE_RUNNING);
    EXPECT_EQ(Engine().GetInt64Config(Type(1), Key(5)), 0);
    EXPECT_EQ(Engine().GetInt64Config(Type(2), Key(5)), 1);
    EXPECT_THAT(EngineTexts(), ElementsAre(ConfigLine("GetInt64Config", "1", "5", "1"),
                                           ConfigLine("GetInt64Config", "1", "5", "0"),
                                           ConfigLine("GetInt64Config", "2", "5", "1")));
}

TEST_F(Engine_GetInt64Config, Type3AsksAboutTheDriver) {
    InitEngine();
    EXPECT_EQ(Engine().GetInt64Config(Type(3), Key(5)), 0);
    FakePlatform::Get().Scm().SetStatus(L"Dokan1", SERVICE_STOPPED);
    EXPECT_EQ(Engine().GetInt64Config(Type(3), Key(5)), 1);
}

TEST_F(Engine_GetInt64Config, OtherTypesAreNotRunning) {
    InitEngine();
    for (const std::uint32_t type : {4U, 7U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(Engine().GetInt64Config(Type(type), Key(5)), 1);
    }
    EXPECT_THAT(FakePlatform::Get().Calls(), IsEmpty());
}

TEST_F(Engine_GetInt64Config, OtherKeysAre0WhateverWasSet) {
    InitEngine();
    Engine().SetIntConfig(Type(1), Key(0), 7);
    Engine().SetIntConfig(Type(1), Key(2), 8);
    EXPECT_EQ(Engine().GetInt64Config(Type(1), Key(0)), 0);
    EXPECT_EQ(Engine().GetInt64Config(Type(1), Key(2)), 0);
    EXPECT_THAT(FakePlatform::Get().Calls(), IsEmpty());
}

TEST_F(Engine_GetInt64Config, OnAnEmptyTableKey5Is1) {
    Engine().Init("C:\\App", "");
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    for (const std::uint32_t type : {1U, 2U, 3U}) {
        EXPECT_EQ(Engine().GetInt64Config(Type(type), Key(5)), 1);
    }
}

TEST_F(EngineTest, GetStringConfigIsEmptyAndWritesNothing) {
    Engine().SetStringConfig(Type(1), Key(1), "de_DE");
    RecordedLog::Get().Clear();
    EXPECT_EQ(Engine().GetStringConfig(Type(1), Key(1)), "");
    EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
}

// The tests below are for the settings that a start of the service sends.

class Engine_Settings : public EngineTest {
protected:
    // Returns the messages with ids 7 and 8 that a start of the service sends, in order.
    static std::vector<Bytes> Pushed(std::uint32_t type) {
        constexpr const wchar_t* kNames[] = {L"PlenxOfficeSvc", L"PlenxPcSvc", L"PlenxPhoneSvc"};
        FakePlatform::Get().Scm().SetStatus(kNames[type], SERVICE_RUNNING);
        FakeRpc::Get().ClearRecord();
        EXPECT_EQ(Engine().Start(Type(type), "g", "arg"), 0);
        std::vector<Bytes> pushed;
        for (const ServiceCall& call : FakeRpc::Get().ServiceCalls()) {
            if (call.msgType == 7 || call.msgType == 8) {
                pushed.push_back(call.msg);
            }
        }
        return pushed;
    }
    static Bytes Text(std::int32_t key, const std::string& value) {
        return MessageOf({Int32Arg(key), StringArg(value)});
    }
    static Bytes Number(std::int32_t key, std::int64_t value) {
        return MessageOf({Int32Arg(key), Int64Arg(value)});
    }
};

TEST_F(Engine_Settings, BeginWithTheirDefaults) {
    InitEngine();
    for (const std::uint32_t type : {1U, 2U}) {
        EXPECT_THAT(Pushed(type), ElementsAre(Text(1, "en_US"), Number(0, 0), Number(2, 0)));
    }
}

TEST_F(Engine_Settings, ChangeOnlyTheServiceThatIsNamed) {
    Engine().SetStringConfig(Type(1), Key(1), "de_DE");
    Engine().SetIntConfig(Type(2), Key(2), -9);
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre(ConfigLine("SetStringConfig", "1", "1", "de_DE"),
                            ConfigLine("SetIntConfig", "2", "2", "-9")));
    InitEngine();
    EXPECT_THAT(Pushed(1), ElementsAre(Text(1, "de_DE"), Number(0, 0), Number(2, 0)));
    EXPECT_THAT(Pushed(2), ElementsAre(Text(1, "en_US"), Number(0, 0), Number(2, -9)));
}

TEST_F(Engine_Settings, OfType3AreThoseOfType1) {
    Engine().SetIntConfig(Type(3), Key(0), 7);
    Engine().SetStringConfig(Type(3), Key(1), "fr_FR");
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre(ConfigLine("SetIntConfig", "3", "0", "7"),
                            ConfigLine("SetStringConfig", "3", "1", "fr_FR")));
    InitEngine();
    EXPECT_THAT(Pushed(1), ElementsAre(Text(1, "fr_FR"), Number(0, 7), Number(2, 0)));
    EXPECT_THAT(Pushed(2), ElementsAre(Text(1, "en_US"), Number(0, 0), Number(2, 0)));
}

TEST_F(Engine_Settings, UnknownKeysAreIgnoredWithoutAnError) {
    Engine().SetStringConfig(Type(1), Key(4), "x");
    Engine().SetStringConfig(Type(1), Key(0), "x");
    Engine().SetIntConfig(Type(1), Key(1), 5);
    Engine().SetIntConfig(Type(1), Key(5), 5);
    Engine().SetIntConfig(Type(1), Key(0xFFFFFFFFU), 5);
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre(ConfigLine("SetStringConfig", "1", "4", "x"),
                            ConfigLine("SetStringConfig", "1", "0", "x"),
                            ConfigLine("SetIntConfig", "1", "1", "5"),
                            ConfigLine("SetIntConfig", "1", "5", "5"),
                            ConfigLine("SetIntConfig", "1", "4294967295", "5")));
    InitEngine();
    EXPECT_THAT(Pushed(1), ElementsAre(Text(1, "en_US"), Number(0, 0), Number(2, 0)));
}

TEST_F(Engine_Settings, OfInvalidTypesAreLoggedAndChangeNothing) {
    Engine().SetStringConfig(Type(0), Key(1), "x");
    Engine().SetStringConfig(Type(4), Key(1), "x");
    Engine().SetIntConfig(Type(0), Key(0), 5);
    Engine().SetIntConfig(Type(4), Key(0), 5);
    Engine().SetIntConfig(Type(0xFFFFFFFFU), Key(0), 5);
    EXPECT_THAT(
        RecordedLog::Get().Texts(),
        ElementsAre(
            ConfigLine("SetStringConfig", "0", "1", "x"), InvalidTypeLine("SetStringConfig", "0"),
            ConfigLine("SetStringConfig", "4", "1", "x"), InvalidTypeLine("SetStringConfig", "4"),
            ConfigLine("SetIntConfig", "0", "0", "5"), InvalidTypeLine("SetIntConfig", "0"),
            ConfigLine("SetIntConfig", "4", "0", "5"), InvalidTypeLine("SetIntConfig", "4"),
            ConfigLine("SetIntConfig", "4294967295", "0", "5"),
            InvalidTypeLine("SetIntConfig", "4294967295")));
    InitEngine();
    EXPECT_THAT(Pushed(1), ElementsAre(Text(1, "en_US"), Number(0, 0), Number(2, 0)));
    EXPECT_THAT(Pushed(2), ElementsAre(Text(1, "en_US"), Number(0, 0), Number(2, 0)));
    FakePlatform::Get().Scm().AddService(L"PlenxOfficeSvc");
    EXPECT_THAT(Pushed(0), ElementsAre(Text(1, "en_US"), Number(0, 0), Number(2, 0)));
}

TEST_F(Engine_Settings, AreSentToNobodyWhenTheyAreSet) {
    InitEngine();
    Engine().SetIntConfig(Type(1), Key(0), std::numeric_limits<std::int64_t>::min());
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
    EXPECT_THAT(Pushed(1),
                ElementsAre(Text(1, "en_US"), Number(0, std::numeric_limits<std::int64_t>::min()),
                            Number(2, 0)));
}

TEST_F(Engine_Settings, AreSentAgainAtEveryStart) {
    InitEngine();
    EXPECT_THAT(Pushed(1), SizeIs(3));
    EXPECT_THAT(Pushed(1), SizeIs(3));
}

}  // namespace
