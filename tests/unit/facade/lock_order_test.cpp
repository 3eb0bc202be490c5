// Asserts the order of the locks. Several threads do everything that the facade can do. Only one
// pair of mutexes may have been locked one under the other.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <thread>

#include "facade/facade_fixture.h"
#include "facade/lock_watch.h"
#include "facade/named_locks.h"
#include "rpc/manager_calls.h"

namespace {

class LockOrder : public ReadyFacade {
protected:
    LockOrder() { NameLocks(); }
};

void CallEverything(std::uint32_t type) {
    const std::uint8_t data[2] = {1, 2};
    std::string dir;
    Facade().Start(Type(type), "g", "a");
    Facade().LocalDeviceOnline(Type(type), "g", "d", 2, data);
    Facade().RemoteDeviceOnline(Type(type), "g", "d");
    Facade().LocalDeviceOffline(Type(type), "g", "d", DistributedFs::kDefaultTrigger);
    Facade().RemoteDeviceOffline(Type(type), "g", "d", DistributedFs::kDefaultTrigger);
    Facade().RecvRemoteMessage(DistributedFs::kDefaultMessage, 1, "m");
    Facade().SetConfig(Type(type), Key(1), "text");
    Facade().SetConfig(Type(type), Key(0), std::int64_t{1});
    Facade().GetInt64Config(Type(type), Key(5));
    Facade().GetStringConfig(Type(type), Key(1));
    Facade().GetOfficeDir("g", "d", dir);
    Facade().Stop(Type(type), "g");
    Facade().Init("C:\\App", "C:\\Data", "third", true);
    Facade().Destroy();
}

void NotifyEverything() {
    for (std::int32_t id = 9; id != 19; ++id) {
        CallManager(id, MessageOf({StringArg("g_1"), Int32Arg(1), Int32Arg(1)}));
        CallManager(id, MessageOf({Int32Arg(1), Int32Arg(1), StringArg("m")}));
        RecordingObserver observer;
        Facade().RegisterPLENXServiceObserver(&observer);
        Facade().UnregisterPLENXServiceObserver(&observer);
    }
}

TEST_F(LockOrder, OnlyTheObserverMutexIsLockedUnderAnotherOne) {
    std::thread notifier(NotifyEverything);
    std::thread host([] {
        for (std::uint32_t type = 0; type != 5; ++type) {
            CallEverything(type);
        }
    });
    notifier.join();
    host.join();
    WaitForJobs();
    for (const char* name :
         {"poolMutex", "observerMutex", "fileManagerMutex", "engine's mutex", "sendMutex"}) {
        EXPECT_GT(LockWatch::Count(name), 5U) << name;
    }
    EXPECT_THAT(LockWatch::Nestings(), testing::ElementsAre("fileManagerMutex > observerMutex"));
}

// Shows that the watch sees an inversion.
TEST_F(LockOrder, AnObserverThatAsksForTheOfficeFolderIsSeenInvertingTheOrder) {
    observer_.hook = [](const std::string&) {
        std::string dir;
        Facade().GetOfficeDir("g", "d", dir);
    };
    CallManager(15, MessageOf({Int32Arg(1)}));
    observer_.hook = nullptr;
    EXPECT_THAT(LockWatch::Nestings(), testing::ElementsAre("observerMutex > fileManagerMutex"));
}

}  // namespace
