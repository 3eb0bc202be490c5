// These tests do everything at once. ThreadSanitizer finds the races.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "facade/facade_fixture.h"
#include "rpc/manager_calls.h"

namespace {

constexpr int kRounds = 30;

void Round(int seed, int n) {
    const auto type = static_cast<std::uint32_t>((seed + n) % 5);
    const std::uint8_t data[4] = {1, 2, 3, 4};
    std::string dir = "x";
    Facade().SetConfig(Type(type), Key(1), "text");
    Facade().SetConfig(Type(type), Key(0), std::int64_t{n});
    Facade().LocalDeviceOnline(Type(type), "g", "d", 4, data);
    Facade().RemoteDeviceOnline(Type(type), "g", "d");
    Facade().LocalDeviceOffline(Type(type), "g", "d", DistributedFs::kDefaultTrigger);
    Facade().RemoteDeviceOffline(Type(type), "g", "d", DistributedFs::kDefaultTrigger);
    Facade().DeviceNameChanged("n");
    Facade().RecvRemoteMessage(DistributedFs::kDefaultMessage, 1, "m");
    Facade().GetInt64Config(Type(type), Key(5));
    Facade().GetStringConfig(Type(type), Key(1));
    Facade().GetOfficeDir("g", "d", dir);
    if (n % 10 == 0) {
        Facade().Start(Type(type), "g", "a");
        Facade().Stop(Type(type), "g");
        Facade().Init("C:\\App", "C:\\Data", "third", true);
        Facade().Destroy();
    }
}

void Notify(int n) {
    CallManager(9 + n % 10, MessageOf({StringArg("g_1"), Int32Arg(1), Int32Arg(1)}));
    CallManager(15, MessageOf({Int32Arg(n)}));
    CallManager(13, MessageOf({StringArg("g_1"), Int32Arg(n)}));
}

void RegisterAndUnregister(int) {
    RecordingObserver observer;
    Facade().RegisterPLENXServiceObserver(&observer);
    Facade().UnregisterPLENXServiceObserver(&observer);
    EXPECT_LE(observer.MostAtOnce(), 1U);
}

TEST_F(FreshFacade, SurvivesAllOperationsOfManyThreads) {
    const std::vector<std::function<void(int)>> parts = {[](int n) { Round(0, n); },
                                                         [](int n) { Round(2, n); },
                                                         [](int n) { Round(4, n); },
                                                         Notify,
                                                         Notify,
                                                         RegisterAndUnregister};
    std::vector<std::thread> threads;
    for (const std::function<void(int)>& part : parts) {
        threads.emplace_back([&part] {
            for (int n = 0; n != kRounds; ++n) {
                part(n);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    WaitForJobs();
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    EXPECT_EQ(observer_.MostAtOnce(), 1U);
    EXPECT_EQ(FakeFileManager::Get().Constructions(), 1U);
    EXPECT_EQ(FakeFileManager::Get().MostCallsAtOnce(), 1U);
    EXPECT_EQ(FakeRpc::Get().MostCallsAtOnce(), 1U);
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
    EXPECT_EQ(FakeRpc::Get().LiveStrings(), 0U);
    EXPECT_EQ(FakeRpc::Get().LiveBindings(), 0U);
}

TEST_F(ReadyFacade, EndOfTheProcessWithJobsInFlightIsClean) {
    for (int n = 0; n != 200; ++n) {
        Facade().RemoteDeviceOnline(Type(0), "g", "d");
        Facade().DeviceNameChanged("n");
    }
}

TEST_F(ReadyFacade, ManyThreadsQueueEveryJobOnce) {
    constexpr int kThreads = 4;
    constexpr int kJobs = 100;
    std::vector<std::thread> threads;
    for (int i = 0; i != kThreads; ++i) {
        threads.emplace_back([] {
            for (int n = 0; n != kJobs; ++n) {
                EXPECT_EQ(
                    Facade().RemoteDeviceOffline(Type(0), "g", "d", DistributedFs::kDefaultTrigger),
                    0);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    WaitForJobs();
    EXPECT_EQ(FakeFileManager::Get().Calls().size(), static_cast<std::size_t>(kThreads * kJobs));
}

}  // namespace
