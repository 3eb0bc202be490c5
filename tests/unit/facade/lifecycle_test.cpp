// Tests Init and Destroy.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/asleep.h"
#include "common/wait_until.h"
#include "facade/facade_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string kInitPushed = Info("plenx manager inner init is pushed into thread pool", "Init");
const std::string kDestroyPushed =
    Info("plenx manager inner destroy is pushed into thread pool", "Destroy");

// The facade is made when the library is loaded. The logger is made before it and destroyed after
// it, so lines can be written to the very end.
TEST(Facade, MakesTheLoggerBeforeItself) {
    EXPECT_EQ(RecordedLog::Get().Requests(), 1U);
    EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
}

TEST_F(FreshFacade, LoadingTheLibraryStartsNothing) {
    EXPECT_THAT(FakePlatform::Get().Calls(), IsEmpty());
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
    EXPECT_THAT(FakeFileManager::Get().Calls(), IsEmpty());
    EXPECT_EQ(FakePlatform::Get().PinCount(), 0U);
}

TEST_F(FreshFacade, InitMakesTheCompanionAndQueuesTheServiceSide) {
    Facade().Init("C:\\App", "C:\\Data", "third", true);
    EXPECT_THAT(FakeFileManager::Get().Calls(),
                ElementsAre("DistributedFileManager(C:\\App, C:\\Data, third, true)"));
    EXPECT_EQ(FakePlatform::Get().PinCount(), 1U);
    ASSERT_TRUE(FakeRpc::Get().WaitUntilListening());
    EXPECT_THAT(FacadeTexts(), ElementsAre(Info("Init", "Init"), kInitPushed));
    EXPECT_THAT(TextsOfClass("PLENXManagerInner"),
                ElementsAre("L3 [PLENXSDK] service manager initialization"
                            "(DistributedFs::PLENXManagerInner::Init)",
                            "L3 [PLENXSDK] rpc listen thread initialization"
                            "(DistributedFs::PLENXManagerInner::Init)"));
}

TEST_F(FreshFacade, InitHandsEmptyArgumentsOnToo) {
    Facade().Init("", "", "", false);
    EXPECT_THAT(FakeFileManager::Get().Calls(), ElementsAre("DistributedFileManager(, , , false)"));
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
}

// The module must stay loaded before its first thread runs, and the companion may start threads.
TEST_F(FreshFacade, InitPinsTheModuleBeforeItMakesAnything) {
    unsigned pins = 0;
    FakeFileManager::Get().SetHook(
        [&pins](const std::string&) { pins = FakePlatform::Get().PinCount(); });
    Facade().Init("C:\\App", "C:\\Data", "", false);
    EXPECT_EQ(pins, 1U);
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
}

TEST_F(FreshFacade, InitDoesNotWaitForTheServiceSide) {
    std::promise<void> letGo;
    std::atomic<bool> held{false};
    std::atomic<bool> given{false};
    FakePlatform::Get().Faults().Before(
        "OpenSCManagerW", 1, [&, gate = letGo.get_future().share()] {
            held = true;
            given = gate.wait_for(std::chrono::seconds(20)) == std::future_status::ready;
        });
    Facade().Init("C:\\App", "C:\\Data", "", false);
    EXPECT_EQ(Facade().Start(Type(0), "g", "a"), 0);
    EXPECT_THAT(observer_.Events(), IsEmpty());
    letGo.set_value();
    EXPECT_TRUE(observer_.WaitFor("NotifyStatus(0, g, 0, true)"));
    EXPECT_TRUE(held);
    EXPECT_TRUE(given) << "both calls returned only after the worker had given up";
}

// A getter answers only when the first Init has ended, whatever Init is doing.
void ExpectGetterWaitsForInit(const std::function<void()>& getter) {
    std::promise<void> letGo;
    std::shared_future<void> gate = letGo.get_future().share();
    std::promise<void> reached;
    FakePlatform::Get().Faults().Before("OpenSCManagerW", 1, [gate, &reached] {
        reached.set_value();
        gate.wait_for(std::chrono::seconds(20));
    });
    Facade().Init("C:\\App", "C:\\Data", "", false);
    ASSERT_EQ(reached.get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready);
    std::future<void> answer = std::async(std::launch::async, getter);
    EXPECT_TRUE(WaitUntil(AllOthersAreAsleep));
    EXPECT_EQ(answer.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    letGo.set_value();
    EXPECT_EQ(answer.wait_for(std::chrono::seconds(20)), std::future_status::ready);
}

TEST_F(FreshFacade, GetInt64ConfigWaitsForTheFirstInit) {
    ExpectGetterWaitsForInit([] { EXPECT_EQ(Facade().GetInt64Config(Type(1), Key(5)), 1); });
}

TEST_F(FreshFacade, GetStringConfigWaitsForTheFirstInit) {
    ExpectGetterWaitsForInit([] { EXPECT_EQ(Facade().GetStringConfig(Type(1), Key(1)), ""); });
}

TEST_F(ReadyFacade, SecondInitKeepsTheCompanionAndQueuesTheEngineOnceMore) {
    Facade().Init("C:\\Other", "C:\\Elsewhere", "other", false);
    WaitForJobs();
    EXPECT_THAT(FacadeTexts(), ElementsAre(Info("Init", "Init"), kInitPushed));
    EXPECT_THAT(FakeFileManager::Get().Calls(), IsEmpty());
    EXPECT_EQ(FakeFileManager::Get().Constructions(), 1U);
    EXPECT_THAT(TextsOfClass("PLENXManagerInner"), IsEmpty());
    EXPECT_THAT(FakePlatform::Get().CallsOf({"CreateServiceW", "OpenSCManagerW"}), IsEmpty());
}

// The job of Destroy shows this as long as the engine has made nothing yet.
TEST_F(FreshFacade, SecondInitReplacesTheStoredFolders) {
    FakePlatform::Get().Files().AddFolder(L"C:\\OldApp");
    FakePlatform::Get().Files().AddFolder(L"C:\\OldData");
    for (const unsigned n : {1U, 2U}) {
        FakePlatform::Get().Faults().Before("OpenSCManagerW", n, [] { throw std::bad_alloc(); });
    }
    Facade().Init("C:\\OldApp", "C:\\OldData", "", false);
    Facade().Init("C:\\App", "C:\\Data", "", false);
    WaitForJobs();
    EXPECT_FALSE(FakePlatform::Get().Scm().Find(L"PlenxPcSvc").has_value());
    FakePlatform::Get().ForgetCalls();
    Facade().Destroy();
    ASSERT_TRUE(FakeRpc::Get().WaitUntilListening());
    const auto service = FakePlatform::Get().Scm().Find(L"PlenxPcSvc");
    ASSERT_TRUE(service.has_value());
    EXPECT_EQ(service->config.binaryPath, L"C:\\App\\plenxservice.exe");
    EXPECT_THAT(FakePlatform::Get().CallsOf({"_wmkdir"}),
                testing::Contains(testing::HasSubstr("C:\\Data\\plenx\\pc")));
}

TEST_F(FreshFacade, InitWithMalformedUtf8LeavesARunningFacadeAndCanBeRepeated) {
    Facade().Init("C:\\\xFF", "C:\\Data", "", false);
    WaitForJobs();
    EXPECT_THAT(FakePlatform::Get().CallsOf({"OpenSCManagerW"}), IsEmpty());
    EXPECT_EQ(Facade().Start(Type(1), "g", "a"), 0);
    WaitForJobs();
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyStatus(1, g, 0, false)"));
    EXPECT_EQ(TextsOfClass("PLENXManagerInner").back(),
              "L4 [PLENXSDK] plenx manager start plenx service error 16"
              "(DistributedFs::PLENXManagerInner::Start)");

    Facade().Init("C:\\App", "C:\\Data", "", false);
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    EXPECT_EQ(Facade().GetInt64Config(Type(1), Key(5)), 1);
}

TEST_F(FreshFacade, CompanionThatCannotBeMadeFailsInitAndTheNextOneTriesAgain) {
    FakeFileManager::Get().SetHook([](const std::string&) { throw std::runtime_error("no"); });
    EXPECT_THROW(Facade().Init("C:\\App", "C:\\Data", "", false), std::runtime_error);
    EXPECT_EQ(Facade().Stop(Type(0), "g"), 0);
    EXPECT_THAT(FacadeTexts(), ElementsAre(Info("Init", "Init"),
                                           "L4 [PLENXSDK] thread pool is released"
                                           "(DistributedFs::PLENXManager::Stop)"));
    FakeFileManager::Get().SetHook(nullptr);
    Facade().Init("C:\\App", "C:\\Data", "", false);
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    EXPECT_EQ(FakeFileManager::Get().Live(), 1U);
}

TEST_F(FreshFacade, DestroyBeforeInitOnlyWritesItsLine) {
    Facade().Destroy();
    EXPECT_THAT(RecordedLog::Get().Texts(), ElementsAre(Info("destroy", "Destroy")));
    EXPECT_THAT(FakeFileManager::Get().Calls(), IsEmpty());
}

TEST_F(ReadyFacade, DestroyUninstallsThePackagesAndQueuesInitWhichDoesNothing) {
    Facade().Destroy();
    WaitForJobs();
    EXPECT_THAT(FakeFileManager::Get().Calls(), ElementsAre("UninstallPackages()"));
    EXPECT_THAT(FacadeTexts(), ElementsAre(Info("destroy", "Destroy"), kDestroyPushed));
    EXPECT_THAT(TextsOfClass("PLENXManagerInner"), IsEmpty());
    EXPECT_THAT(FakePlatform::Get().CallsOf({"OpenSCManagerW"}), IsEmpty());
}

TEST_F(ReadyFacade, DestroyIgnoresTheCompanionsCode) {
    FakeFileManager::Get().SetResult("UninstallPackages", 9);
    Facade().Destroy();
    WaitForJobs();
    EXPECT_THAT(FacadeTexts(), ElementsAre(Info("destroy", "Destroy"), kDestroyPushed));
}

// The exception is the host's to take; it leaves nothing locked.
TEST_F(ReadyFacade, DestroyWithACompanionThatThrowsQueuesNothing) {
    FakeFileManager::Get().SetHook([](const std::string&) { throw std::runtime_error("test"); });
    EXPECT_THROW(Facade().Destroy(), std::runtime_error);
    FakeFileManager::Get().SetHook({});
    EXPECT_THAT(FacadeTexts(), ElementsAre(Info("destroy", "Destroy")));
    RecordedLog::Get().Clear();
    std::async(std::launch::async, [] { Facade().Destroy(); }).get();
    EXPECT_THAT(FacadeTexts(), ElementsAre(Info("destroy", "Destroy"), kDestroyPushed));
}

TEST_F(ReadyFacade, GetOfficeDirWithACompanionThatThrowsKeepsTheText) {
    FakeFileManager::Get().SetHook([](const std::string&) { throw std::runtime_error("test"); });
    std::string dir = "abc";
    EXPECT_THROW(Facade().GetOfficeDir("g", "d", dir), std::runtime_error);
    FakeFileManager::Get().SetHook({});
    EXPECT_EQ(dir, "abc");
    EXPECT_EQ(
        std::async(std::launch::async, [&] { return Facade().GetOfficeDir("g", "d", dir); }).get(),
        0);
}

TEST_F(ReadyFacade, EverythingWorksAfterDestroy) {
    Facade().Destroy();
    EXPECT_EQ(FakeFileManager::Get().Live(), 1U);
    EXPECT_EQ(Facade().Start(Type(3), "g", "a"), 0);
    std::string dir = "x";
    EXPECT_EQ(Facade().GetOfficeDir("g", "d", dir), 0);
    WaitForJobs();
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyStatus(1, g, 0, true)", "NotifyStatus(0, g, 0, true)"));
}

TEST_F(FreshFacade, DestroyQueuesInitWithTheStoredFolders) {
    Facade().Init("C:\\\xFF", "C:\\Data", "", false);  // fails on the worker
    WaitForJobs();
    RecordedLog::Get().Clear();
    Facade().Destroy();  // fails in the same way
    WaitForJobs();
    EXPECT_THAT(TextsOfClass("PLENXManagerInner"),
                ElementsAre("L3 [PLENXSDK] service manager initialization"
                            "(DistributedFs::PLENXManagerInner::Init)"));
    EXPECT_THAT(FakeRpc::Get().Calls(),
                testing::Not(testing::Contains(testing::StartsWith("RpcServerListen"))));
}

}  // namespace
