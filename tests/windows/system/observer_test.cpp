// Tests observers that misbehave: they throw, are slow, refuse, call back into the library, come
// and go. The others must hear everything, and the library must go on.

#include <algorithm>
#include <atomic>
#include <future>
#include <stdexcept>
#include <thread>

#include "system/host.h"

namespace PlenxTest {
namespace {

using testing::Contains;
using testing::ElementsAre;

const std::string kConnected = "NotifyConnect(1, group)";
const std::string kGroupStatus = "NotifyStatus(1, group, 100, 1)";
const std::string kStarted = "NotifyStatus(1, group, 0, 1)";

class Observers : public Host {
protected:
    /// The observer does this in one call, and behaves well otherwise.
    void BehaveIn(const std::string& call, std::function<int()> behaviour) {
        observer.Behave([=](const std::string& made) { return made == call ? behaviour() : 0; });
    }
    /// Starts the PC service. The observer stays in NotifyConnect until the test releases it.
    /// Returns whether it has got there.
    bool StaysInConnect(std::promise<void>& letGo) {
        BehaveIn(kConnected, [gate = letGo.get_future().share()] {
            gate.wait();
            return 0;
        });
        Init();
        manager.Start(kPcService, "group", "argument");
        return observer.WaitFor(kConnected);
    }
};

HOST_TEST(Observers, ExceptionOnAnRpcThread_GoesBackAs1726AndReleasesTheLock) {
    BehaveIn(kConnected, []() -> int { throw std::runtime_error("thrown by an observer"); });
    Init();
    ASSERT_TRUE(Start(kPcService));
    EXPECT_TRUE(ServiceComesToSay("Manager answered ConnectNotify(10) result:1726"));
    EXPECT_TRUE(observer.WaitFor(kGroupStatus));
    const std::string function = "PLENXManager::NotifyConnect";
    EXPECT_THAT(LinesOf(function),
                ElementsAre(Info(function, "plenx manager notify connect invoked svcType:1"),
                            Info(function, "plenx manager notify connect begin")));
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(observer.WaitFor(kConnected, 2));
}

HOST_TEST(Observers, ForeignException_GoesBackAs1726) {
    BehaveIn(kConnected, []() -> int { throw 42; });
    Init();
    ASSERT_TRUE(Start(kPcService));
    EXPECT_TRUE(ServiceComesToSay("Manager answered ConnectNotify(10) result:1726"));
    EXPECT_TRUE(observer.WaitFor(kGroupStatus));
}

HOST_TEST(Observers, OutOfMemoryOnAnRpcThread_GoesBackAs22) {
    BehaveIn(kConnected, []() -> int { throw std::bad_alloc(); });
    Init();
    ASSERT_TRUE(Start(kPcService));
    EXPECT_TRUE(ServiceComesToSay("Manager answered ConnectNotify(10) result:22"));
}

HOST_TEST(Observers, ExceptionOnTheWorker_EndsTheJobAndNothingElse) {
    BehaveIn(kStarted, []() -> int { throw std::runtime_error("thrown by an observer"); });
    Init();
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(Settle());
    const Lines lines = WorkerLines();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(),
              Info("PLENXManager::NotifyStatus", "plenx manager notify status begin"));
    EXPECT_TRUE(observer.WaitFor(kGroupStatus)) << "the lock is still held";
    EXPECT_TRUE(Start(kPhoneService));
}

HOST_TEST(Observers, ExceptionInAnOfficeJob_LeavesTheOfficeUsable) {
    BehaveIn("NotifyStatus(0, group, 0, 1)", []() -> int { throw std::runtime_error("thrown"); });
    Init();
    EXPECT_TRUE(Start(kOfficeService));
    observer.Behave(nullptr);
    manager.RemoteDeviceOnline(kOfficeService, "group", "there");
    EXPECT_TRUE(observer.WaitFor("NotifyStatus(0, group, 2, 1)"));
}

HOST_TEST(Observers, SlowObserver_DelaysNotificationsAndNoCallOfTheHost) {
    std::promise<void> letGo;
    ASSERT_TRUE(StaysInConnect(letGo));
    EXPECT_EQ(manager.DeviceNameChanged("name"), 0);
    EXPECT_EQ(manager.Start(kOfficeService, "group", "argument"), 0);
    EXPECT_EQ(manager.GetInt64Config(kPcService, DistributedFs::kServiceNotRunningConfig), 0);
    EXPECT_TRUE(
        LogComesToSay(Info("PLENXManager::NotifyStatus",
                           "plenx manager notify status invoked svcType:1 sttsType:0 value:1")));
    EXPECT_EQ(observer.Calls().back(), kConnected) << "two notifications ran at the same time";
    letGo.set_value();
    EXPECT_TRUE(observer.WaitFor("NotifyStatus(0, group, 0, 1)"));
    EXPECT_TRUE(observer.WaitFor(kGroupStatus));
}

HOST_TEST(Observers, CodeThatIsReturned_IsLoggedAndStopsNothing) {
    observer.Behave([](const std::string&) { return -5; });
    Init();
    ASSERT_TRUE(Start(kPcService));
    manager.LocalDeviceOnline(kPcService, "group", "here", 0, nullptr);
    manager.RemoteDeviceOnline(kPcService, "group", "there");
    manager.RecvRemoteMessage(DistributedFs::PLENXMessageType{1}, 1, "m");
    manager.RemoteDeviceOffline(kPcService, "group", "there", DistributedFs::TriggerType{3});
    Settle();
    manager.Stop(kPcService, "group");
    ASSERT_TRUE(observer.WaitFor("NotifyDisconnect(1, group)"));
    const std::pair<const char*, const char*> codes[] = {
        {"SendLocalMessage", "plenx manager send local message error -5"},
        {"NotifyConnect", "plenx manager notify connect error -5"},
        {"NotifyDisconnect", "plenx manager notify disconnect error -5"},
        {"NotifyReconnect", "plenx manager notify reconnect error -5"},
        {"QueryLinkStatus", "plenx manager  query link status error -5"},
        {"NotifyError", "plenx manager notify error code error -5"},
        {"NotifyDiskName", "plenx manager notify disk name error -5"},
    };
    for (const auto& [function, text] : codes) {
        const std::string name = std::string("PLENXManager::") + function;
        ASSERT_TRUE(WaitFor([&, &name = name] { return LinesOf(name).size() == 4; })) << name;
        EXPECT_EQ(LinesOf(name)[2], Error(name, text));
    }
    ASSERT_GT(LinesOf("PLENXManager::NotifyStatus").size(), 2u);
    EXPECT_EQ(LinesOf("PLENXManager::NotifyStatus")[2],
              Error("PLENXManager::NotifyStatus", "plenx manager notify status error -5"));
}

HOST_TEST(Observers, NullObserver_IsTakenAndNeverCalled) {
    manager.RegisterPLENXServiceObserver(nullptr);
    Init();
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(observer.WaitFor(kConnected));
    manager.UnregisterPLENXServiceObserver(nullptr);
    const std::string function = "PLENXManager::UnregisterPLENXServiceObserver";
    EXPECT_THAT(LinesOf(function),
                ElementsAre(Info(function, "plenx manager unregister observer invoked"),
                            Info(function, "plenx manager unregister observer begin"),
                            Info(function, "plenx manager unregister observer end")));
}

HOST_TEST(Observers, SeveralObservers_AllHearAndTheLastDecidesOnTheLinkStatus) {
    manager.UnregisterPLENXServiceObserver(&observer);
    RecordingObserver several[2];
    several[0].linkStatus = 1;
    several[1].linkStatus = 2;
    manager.RegisterPLENXServiceObserver(&several[1]);
    manager.RegisterPLENXServiceObserver(&several[0]);
    manager.RegisterPLENXServiceObserver(&several[0]);
    Init();
    manager.Start(kPcService, "group", "argument");
    manager.LocalDeviceOnline(kPcService, "group", "here", 0, nullptr);
    EXPECT_TRUE(several[1].WaitFor("NotifyDiskName(P:)"));
    EXPECT_TRUE(ServiceComesToSay("Manager answered LinkTypeQuery(13) result:0 reply:2"));
    for (RecordingObserver& one : several) {
        manager.UnregisterPLENXServiceObserver(&one);
    }
    EXPECT_EQ(several[0].Calls(), several[1].Calls());
    EXPECT_THAT(several[0].Calls(), testing::UnorderedElementsAre(
                                        kStarted, kConnected, kGroupStatus,
                                        "QueryLinkStatus(1, group, 0)", "NotifyDiskName(P:)"));
}

HOST_TEST(Observers, UnregisteringWhileACallRuns_WaitsForItAndNoCallFollows) {
    std::promise<void> letGo;
    ASSERT_TRUE(StaysInConnect(letGo));
    std::size_t calls = 0;
    std::thread unregistering([&] {
        manager.UnregisterPLENXServiceObserver(&observer);
        calls = observer.Calls().size();
    });
    const std::string function = "PLENXManager::UnregisterPLENXServiceObserver";
    EXPECT_TRUE(LogComesToSay(Info(function, "plenx manager unregister observer invoked")));
    letGo.set_value();
    unregistering.join();
    EXPECT_TRUE(ServiceComesToSay("Manager answered StatusNotify(14) result:0 reply:0"));
    EXPECT_TRUE(Settle());
    EXPECT_EQ(observer.Calls().size(), calls);
    Lines lines;
    for (const LogLine& line : ReadLibraryLog()) {
        lines.push_back(line.text);
    }
    const auto end =
        std::find(lines.begin(), lines.end(),
                  Info("PLENXManager::NotifyConnect", "plenx manager notify connect end"));
    EXPECT_THAT(Lines(end, lines.end()),
                Contains(Info(function, "plenx manager unregister observer begin")));
}

HOST_TEST(Observers, ObserverThatUsesTheLibrary_IsNotDeadlocked) {
    const auto useLibrary = [this](const std::string& call) {
        if (call == kConnected || call == kStarted) {
            manager.DeviceNameChanged("name");
            manager.SetConfig(kCombinedService, DistributedFs::kIntegerConfig0, std::int64_t{1});
            manager.GetInt64Config(kPcService, DistributedFs::kServiceNotRunningConfig);
            manager.GetStringConfig(kPcService, DistributedFs::kLocaleConfig);
            manager.RecvRemoteMessage(DistributedFs::PLENXMessageType{1}, 2, "hi");
        }
        return 0;
    };
    observer.Behave(useLibrary);
    Init();
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(observer.WaitFor("SendLocalMessage(1, 2, hi)", 2));
    EXPECT_TRUE(Settle());
}

HOST_TEST(Observers, ObserversThatComeAndGoAllTheTime_MakeNoOtherObserverMissACall) {
    Init();
    ASSERT_TRUE(Start(kPcService));
    Control("[[on]]\nrepeat = 50\n");
    std::atomic<bool> over{false};
    std::atomic<int> gone{0};
    std::thread changing([&] {
        while (!over) {
            RecordingObserver shortLived;
            manager.RegisterPLENXServiceObserver(&shortLived);
            manager.UnregisterPLENXServiceObserver(&shortLived);
            ++gone;
        }
    });
    EXPECT_TRUE(WaitFor([&] { return gone != 0; }));
    manager.RecvRemoteMessage(DistributedFs::PLENXMessageType{1}, 2, "hi");
    EXPECT_TRUE(observer.WaitFor("SendLocalMessage(1, 2, hi)", 50, 30000));
    over = true;
    changing.join();
}

}  // namespace
}  // namespace PlenxTest
