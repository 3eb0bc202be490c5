// Tests which locks are held at each line of the log, and at each call of the companion, of an
// observer or of the system. The thread whose turn it is writes a line that says "begin".

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "facade/facade_fixture.h"
#include "facade/lock_watch.h"
#include "facade/named_locks.h"
#include "rpc/manager_calls.h"

using testing::ElementsAre;
using testing::ElementsAreArray;

namespace {

// Records the events in order, each with the locks that its thread held: "poolMutex: line", or
// "free: line" when it held none.
class HeldAt {
public:
    void Take(const std::string& what) {
        const std::string locks = LockWatch::Held();
        const std::lock_guard<std::mutex> lock(mutex_);
        all_.push_back(
            {std::this_thread::get_id(), (locks.empty() ? "free" : locks) + ": " + what});
    }
    void Forget() {
        const std::lock_guard<std::mutex> lock(mutex_);
        all_.clear();
    }
    /// Returns the events on the calling thread, or on all others.
    std::vector<std::string> Own() const { return Texts(true); }
    std::vector<std::string> Others() const { return Texts(false); }

private:
    struct Entry {
        std::thread::id thread;
        std::string text;
    };

    std::vector<std::string> Texts(bool own) const {
        const std::lock_guard<std::mutex> lock(mutex_);
        std::vector<std::string> texts;
        for (const Entry& entry : all_) {
            if ((entry.thread == std::this_thread::get_id()) == own) {
                texts.push_back(entry.text);
            }
        }
        return texts;
    }

    mutable std::mutex mutex_;
    std::vector<Entry> all_;
};

template <class Facade>
class Watched : public Facade {
protected:
    Watched() {
        NameLocks();
        RecordedLog::Get().SetHook([this](const std::string& line) { held_.Take(line); });
        FakeFileManager::Get().SetHook([this](const std::string& call) { held_.Take(call); });
        this->observer_.hook = [this](const std::string& event) { held_.Take(event); };
    }
    ~Watched() override { RecordedLog::Get().SetHook(nullptr); }

    HeldAt held_;
};

class HeldLocks : public Watched<ReadyFacade> {
protected:
    HeldLocks() {
        WaitForJobs();
        held_.Forget();
    }
    // Returns the events of the worker and the companion for one job, without the lines of the
    // engine and of the wait.
    std::vector<std::string> OfJob(const std::function<void()>& queue) {
        WaitForJobs();
        held_.Forget();
        queue();
        WaitForJobs();
        std::vector<std::string> all;
        for (const std::string& text : held_.Others()) {
            const bool isLine = text.find("[PLENXSDK]") != std::string::npos;
            if (!isLine || (text.find("::PLENXManager::") != std::string::npos &&
                            text.find("DeviceNameChanged") == std::string::npos)) {
                all.push_back(text);
            }
        }
        return all;
    }
};

class HeldLocksOfFresh : public Watched<FreshFacade> {
protected:
    HeldLocksOfFresh() { held_.Forget(); }
};

struct Notification {
    std::int32_t id;
    std::string function;
    std::string texts;  // the texts of its lines, such as "notify connect"
    Bytes message;
    std::string values;  // the values in its first line
    std::string event;
    std::string errorText = "error ";
};

void PrintTo(const Notification& notification, std::ostream* out) {
    *out << notification.function;
}

const Notification kNotifications[] = {
    {9, "SendLocalMessage", "send local message",
     MessageOf({Int32Arg(3), Int32Arg(1), StringArg("m")}), "", "SendLocalMessage(3, 1, m)"},
    {10, "NotifyConnect", "notify connect", MessageOf({StringArg("g_1")}), " svcType:1",
     "NotifyConnect(1, g)"},
    {11, "NotifyDisconnect", "notify disconnect", MessageOf({StringArg("g_1")}), " svcType:1",
     "NotifyDisconnect(1, g)"},
    {12, "NotifyReconnect", "notify reconnect", MessageOf({StringArg("g_1")}), " svcType:1",
     "NotifyReconnect(1, g)"},
    {13, "QueryLinkStatus", " query link status", MessageOf({StringArg("g_1"), Int32Arg(4)}),
     " svcType:1 linkType:4", "QueryLinkStatus(1, g, 4, 0)"},
    {14, "NotifyStatus", "notify status", MessageOf({StringArg("g_1"), Int32Arg(4), Int32Arg(1)}),
     " svcType:1 sttsType:4 value:1", "NotifyStatus(1, g, 4, true)"},
    {15, "NotifyError", "notify error", MessageOf({Int32Arg(7)}), " errCode:7", "NotifyError(7)",
     "code error "},
    {16, "NotifyDiskName", "notify diskName", MessageOf({StringArg("P:")}),
     " diskName:P:", "NotifyDiskName(P:)"},
};

class HeldLocksOfNotification : public HeldLocks,
                                public testing::WithParamInterface<Notification> {};

TEST_P(HeldLocksOfNotification, AreTakenBeforeTheBeginAndReleasedAfterTheEnd) {
    const Notification& each = GetParam();
    observer_.code = 5;
    CallManager(each.id, each.message);
    const auto line = [&](const std::string& text) { return Info(text, each.function); };
    // The first line has one blank where the others of a link query have two.
    const std::string first = each.texts[0] == ' ' ? each.texts.substr(1) : each.texts;
    const std::string error = each.id == 16 ? "notify disk name" : each.texts;
    EXPECT_THAT(
        held_.Own(),
        ElementsAre("free: " + line(first + " invoked" + each.values),
                    "observerMutex: " + line(each.texts + " begin"), "observerMutex: " + each.event,
                    "observerMutex: " + Error(error + " " + each.errorText + "5", each.function),
                    "observerMutex: " + line(each.texts + " end")));
}

INSTANTIATE_TEST_SUITE_P(All, HeldLocksOfNotification, testing::ValuesIn(kNotifications));

TEST_F(HeldLocks, RegisteringBeginsAndEndsUnderTheObserverMutex) {
    RecordingObserver other;
    const std::string function = "RegisterPLENXServiceObserver";
    Facade().RegisterPLENXServiceObserver(&other);
    EXPECT_THAT(held_.Own(),
                ElementsAre("free: " + Info("register observer invoked", function),
                            "observerMutex: " + Info("register observer begin", function),
                            "observerMutex: " + Info("register observer end", function)));
    Facade().UnregisterPLENXServiceObserver(&other);
}

TEST_F(HeldLocks, UnregisteringBeginsAndEndsUnderTheObserverMutex) {
    RecordingObserver other;
    const std::string function = "UnregisterPLENXServiceObserver";
    Facade().UnregisterPLENXServiceObserver(&other);
    EXPECT_THAT(held_.Own(),
                ElementsAre("free: " + Info("unregister observer invoked", function),
                            "observerMutex: " + Info("unregister observer begin", function),
                            "observerMutex: " + Info("unregister observer end", function)));
}

TEST_F(HeldLocks, GetOfficeDirSaysSoAndAsksUnderTheFileManagerMutex) {
    std::string dir;
    Facade().GetOfficeDir("g", "d", dir);
    EXPECT_THAT(held_.Own(), ElementsAre("fileManagerMutex: " +
                                             Info("get office dir is invoked", "GetOfficeDir"),
                                         "fileManagerMutex: GetGroupNeighborDistributedDir(g, d)"));
}

// The tests below are for the operations that queue. They hold the lock when they ask whether there
// is a pool and when they say that they queue.

struct Queueing {
    std::string function;
    std::vector<std::string> pushed;
    std::function<void()> call;
    bool needsPool = true;  // false when the operation says nothing if there is no pool
};

const std::vector<Queueing>& QueueingOperations() {
    static const std::uint8_t data[] = {1};
    const auto trigger = DistributedFs::kDefaultTrigger;
    static const std::vector<Queueing> all = {
        {"Start", {"start service (4)"}, [] { Facade().Start(Type(4), "g", "a"); }},
        {"Stop", {"stop service (4)"}, [] { Facade().Stop(Type(4), "g"); }},
        {"LocalDeviceOnline",
         {"service (4) local device online"},
         [] { Facade().LocalDeviceOnline(Type(4), "g", "d", 1, data); }},
        {"RemoteDeviceOnline",
         {"service (4) remote device online"},
         [] { Facade().RemoteDeviceOnline(Type(4), "g", "d"); }},
        {"LocalDeviceOffline",
         {"service (4) local device offline"},
         [=] { Facade().LocalDeviceOffline(Type(4), "g", "d", trigger); }},
        {"RemoteDeviceOffline",
         {"service (4) remote device offline"},
         [=] { Facade().RemoteDeviceOffline(Type(4), "g", "d", trigger); }},
        {"DeviceNameChanged", {"device name changed"}, [] { Facade().DeviceNameChanged("n"); }},
        {"RecvRemoteMessage",
         {"receive remote message"},
         [] { Facade().RecvRemoteMessage(DistributedFs::kDefaultMessage, 1, "m"); }},
        {"SetConfig",
         {"(1) set string config", "(2) set string config"},
         [] { Facade().SetConfig(Type(3), Key(1), "text"); },
         false},
        {"SetConfig",
         {"(1) set int config", "(2) set int config"},
         [] { Facade().SetConfig(Type(3), Key(0), std::int64_t{1}); },
         false},
    };
    return all;
}

TEST_F(HeldLocks, EveryJobIsQueuedUnderThePoolMutex) {
    for (const Queueing& each : QueueingOperations()) {
        held_.Forget();
        each.call();
        std::vector<std::string> expected;
        for (const std::string& text : each.pushed) {
            expected.push_back("poolMutex: " +
                               Info(text + " is pushed into thread pool", each.function));
        }
        EXPECT_THAT(held_.Own(), ElementsAreArray(expected));
    }
    WaitForJobs();
}

TEST_F(HeldLocksOfFresh, WhetherThereIsAPoolIsAskedUnderThePoolMutex) {
    for (const Queueing& each : QueueingOperations()) {
        held_.Forget();
        each.call();
        const std::string line =
            "poolMutex: L4 [PLENXSDK] thread pool is released"
            "(DistributedFs::PLENXManager::" +
            each.function + ")";
        EXPECT_THAT(held_.Own(), ElementsAreArray(std::vector<std::string>(each.needsPool, line)));
    }
}

TEST_F(HeldLocksOfFresh, InitMakesTheCompanionThenQueuesEachUnderItsOwnLock) {
    Facade().Init("C:\\App", "C:\\Data", "third", true);
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    EXPECT_THAT(
        held_.Own(),
        ElementsAre(
            "free: " + Info("Init", "Init"),
            "fileManagerMutex: DistributedFileManager(C:\\App, C:\\Data, third, true)",
            "poolMutex: " + Info("plenx manager inner init is pushed into thread pool", "Init")));
}

TEST_F(HeldLocks, DestroyUninstallsThePackagesAndOnlyThenQueues) {
    Facade().Destroy();
    EXPECT_THAT(
        held_.Own(),
        ElementsAre("free: " + Info("destroy", "Destroy"), "fileManagerMutex: UninstallPackages()",
                    "poolMutex: " +
                        Info("plenx manager inner destroy is pushed into thread pool", "Destroy")));
    WaitForJobs();
}

// The tests below are for the engine.

std::string EngineInfo(const std::string& text, const std::string& function) {
    return "engine's mutex: L3 [PLENXSDK] " + text +
           "(DistributedFs::PLENXManagerInner::" + function + ")";
}

DistributedFs::PLENXManagerInner& Engine() {
    return DistributedFs::PLENXManagerInner::GetInstance();
}

TEST_F(HeldLocks, SettersAreAtWorkUnderTheEnginesMutex) {
    Engine().SetStringConfig(Type(1), Key(1), "de_DE");
    Engine().SetIntConfig(Type(2), Key(0), 7);
    Engine().SetStringConfig(Type(4), Key(1), "x");
    Engine().SetIntConfig(Type(4), Key(0), 7);
    const auto refused = [](const std::string& function) {
        return "engine's mutex: L4 [PLENXSDK] plenx manager invalid service type svcType:4"
               "(DistributedFs::PLENXManagerInner::" +
               function + ")";
    };
    const std::string line = "plenx manager set config svcType:";
    EXPECT_THAT(held_.Own(),
                ElementsAre(EngineInfo(line + "1 cfgType:1 cfgValue:de_DE", "SetStringConfig"),
                            EngineInfo(line + "2 cfgType:0 cfgValue:7", "SetIntConfig"),
                            EngineInfo(line + "4 cfgType:1 cfgValue:x", "SetStringConfig"),
                            refused("SetStringConfig"),
                            EngineInfo(line + "4 cfgType:0 cfgValue:7", "SetIntConfig"),
                            refused("SetIntConfig")));
}

TEST_F(HeldLocks, ServiceIsAskedAboutUnderTheEnginesMutex) {
    for (const char* const call : {"OpenSCManagerW", "OpenServiceW", "QueryServiceStatusEx"}) {
        FakePlatform::Get().Faults().Before(call, 1, [this, call] { held_.Take(call); });
    }
    EXPECT_EQ(Facade().GetInt64Config(Type(1), Key(5)), 0);
    EXPECT_THAT(held_.Own(),
                ElementsAre("engine's mutex: OpenSCManagerW", "engine's mutex: OpenServiceW",
                            "engine's mutex: QueryServiceStatusEx",
                            EngineInfo("plenx manager get config svcType:1 cfgType:5 cfgValue:0",
                                       "GetInt64Config")));
}

TEST_F(HeldLocksOfFresh, EngineIsInitialisedUnderItsMutex) {
    FakePlatform::Get().Faults().Before("CreateServiceW", 1,
                                        [this] { held_.Take("CreateServiceW"); });
    Engine().Init("C:\\App", "C:\\Data");
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    for (const std::string& entry : held_.Own()) {
        EXPECT_THAT(entry, testing::StartsWith("engine's mutex: "));
    }
    EXPECT_THAT(held_.Own(), testing::Contains("engine's mutex: CreateServiceW"));
    EXPECT_EQ(held_.Own().back(), EngineInfo("rpc listen thread initialization", "Init"));
}

TEST_F(HeldLocks, EngineJobsTakeNoLockOfTheEngine) {
    for (const unsigned n : {1U, 2U}) {
        FakePlatform::Get().Faults().Before("OpenSCManagerW", n,
                                            [this] { held_.Take("OpenSCManagerW"); });
    }
    const std::uint8_t data[] = {7};
    EXPECT_EQ(Engine().Start(Type(1), "g", "a"), 0);
    EXPECT_EQ(Engine().LocalDeviceOnline(Type(1), "g", "d", 1, data), 0);
    EXPECT_EQ(Engine().RemoteDeviceOnline(Type(1), "g", "d"), 0);
    EXPECT_EQ(Engine().LocalDeviceOffline(Type(1), "g", "d", DistributedFs::kDefaultTrigger), 0);
    EXPECT_EQ(Engine().RemoteDeviceOffline(Type(1), "g", "d", DistributedFs::kDefaultTrigger), 0);
    EXPECT_EQ(Engine().Stop(Type(1), "g"), 0);

    std::vector<std::string> ofTheEngine;  // without what it makes others do under their own locks
    for (const std::string& entry : held_.Own()) {
        if (entry.find("::PLENXManagerInner::") != std::string::npos ||
            entry.find("OpenSCManagerW") != std::string::npos) {
            ofTheEngine.push_back(entry);
        }
    }
    const auto line = [](const std::string& text, const std::string& function) {
        return "free: L3 [PLENXSDK] plenx manager " + text +
               "(DistributedFs::PLENXManagerInner::" + function + ")";
    };
    const auto inner = [&line](const std::string& text, const std::string& function) {
        return line("inner " + text, function);
    };
    EXPECT_THAT(
        ofTheEngine,
        ElementsAre(line("start service 1", "Start"), "free: OpenSCManagerW",
                    inner("local device online svcType(1)", "LocalDeviceOnline"),
                    line("local device online success svcType(1)", "LocalDeviceOnline"),
                    inner("remote device online service 1", "RemoteDeviceOnline"),
                    inner("remote device online success svcType(1)", "RemoteDeviceOnline"),
                    inner("local device offline service (1)", "LocalDeviceOffline"),
                    inner("local device offline success svcType(1)", "LocalDeviceOffline"),
                    inner("remote device offline service (1)", "RemoteDeviceOffline"),
                    inner("remote device offline success svcType(1)", "RemoteDeviceOffline"),
                    line("stop service 1", "Stop"), "free: OpenSCManagerW"));
}

TEST_F(HeldLocks, RequestsAreSentUnderALockOfTheirOwn) {
    FakeRpc::Get().SetService([this](const ServiceCall&) {
        held_.Take("a service is called");
        ServiceAnswer answer;
        answer.reply = Int32Message(0);
        return answer;
    });
    const std::string line = "rpc manager name changed svcType:1";
    EXPECT_EQ(DistributedFs::RpcManager::GetInstance().NameChanged("n"), 0);
    EXPECT_THAT(held_.Own(), ElementsAre("free: L3 [PLENXSDK] " + line +
                                             "(DistributedFs::RpcManager::NameChanged)",
                                         "sendMutex: a service is called"));
}

// The tests below are for the jobs of the office service.

std::vector<std::string> StatusUnder(const std::string& outer, const std::string& event,
                                     const std::string& values) {
    const std::string inner = outer.empty() ? "observerMutex: " : outer + " > observerMutex: ";
    const std::vector<std::string> lines = StatusLines(values);
    return {(outer.empty() ? "free" : outer) + ": " + lines[0], inner + lines[1], inner + event,
            inner + lines[2]};
}

std::vector<std::string> operator+(std::vector<std::string> left,
                                   const std::vector<std::string>& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

TEST_F(HeldLocks, OfficeIsStartedAndReportedUnderTheFileManagerMutex) {
    EXPECT_THAT(
        OfJob([] { Facade().Start(Type(0), "g", "a"); }),
        ElementsAreArray(std::vector<std::string>{
                             "free: " + Info("start service svcType(0) is invoked", "StartFunc"),
                             "fileManagerMutex: Start()"} +
                         StatusUnder("fileManagerMutex", "NotifyStatus(0, g, 0, true)",
                                     "svcType:0 sttsType:0 value:1")));
}

TEST_F(HeldLocks, OfficeIsStoppedUnderTheFileManagerMutexAndAllStoppedIsToldWithoutIt) {
    EXPECT_THAT(
        OfJob([] { Facade().Stop(Type(0), "g"); }),
        ElementsAreArray(
            std::vector<std::string>{
                "free: " + Info("stop service svcType(0) is invoked", "StopFunc"),
                "fileManagerMutex: Stop()"} +
            StatusUnder("fileManagerMutex", "NotifyStatus(0, g, 1, true)",
                        "svcType:0 sttsType:1 value:1") +
            StatusUnder("", "NotifyStatus(3, g, 1, true)", "svcType:3 sttsType:1 value:1")));
}

TEST_F(HeldLocks, RemoteDeviceOfTheOfficeComesUnderTheFileManagerMutex) {
    EXPECT_THAT(OfJob([] { Facade().RemoteDeviceOnline(Type(0), "g", "d"); }),
                ElementsAreArray(std::vector<std::string>{
                                     "free: " + Info("remote device online svcType(0) is invoked",
                                                     "RemoteDeviceOnlineFunc"),
                                     "fileManagerMutex: RemoteDeviceOnline(g, d)"} +
                                 StatusUnder("fileManagerMutex", "NotifyStatus(0, g, 2, true)",
                                             "svcType:0 sttsType:2 value:1")));
}

TEST_F(HeldLocks, LocalDeviceOfTheOfficeGoesUnderTheFileManagerMutex) {
    EXPECT_THAT(OfJob([] {
                    Facade().LocalDeviceOffline(Type(0), "g", "d", DistributedFs::kDefaultTrigger);
                }),
                ElementsAreArray(std::vector<std::string>{
                                     "free: " + Info("local device offline svcType(0) is invoked",
                                                     "LocalDeviceOfflineFunc"),
                                     "fileManagerMutex: LocalDeviceOffline(g, d)"} +
                                 StatusUnder("fileManagerMutex", "NotifyStatus(0, g, 3, true)",
                                             "svcType:0 sttsType:3 value:1")));
}

TEST_F(HeldLocks, OtherDeviceCallsOfTheOfficeAreMadeUnderTheFileManagerMutex) {
    const std::uint8_t data[] = {7};
    EXPECT_THAT(OfJob([&] { Facade().LocalDeviceOnline(Type(0), "g", "d", 1, data); }),
                ElementsAre("free: " + Info("local device online svcType(0) is invoked",
                                            "LocalDeviceOnlineFunc"),
                            "fileManagerMutex: LocalDeviceOnline(g, d, 1, 07, 1)"));
    EXPECT_THAT(OfJob([] {
                    Facade().RemoteDeviceOffline(Type(0), "g", "d", DistributedFs::kDefaultTrigger);
                }),
                ElementsAre("free: " + Info("remote device offline svcType(0) is invoked",
                                            "RemoteDeviceOfflineFunc"),
                            "fileManagerMutex: RemoteDeviceOffline(g, d)"));
}

// The job locks the mutex once to change the mark of the PC service, and again for the office
// service.
TEST_F(HeldLocks, MarkOfTheCombinedTypeChangesUnderTheFileManagerMutexBeforeTheOfficesTurn) {
    const auto locked = [] { return LockWatch::Count("fileManagerMutex"); };
    std::vector<std::size_t> atCompanion;
    FakeFileManager::Get().SetHook([&](const std::string&) { atCompanion.push_back(locked()); });
    const std::size_t before = locked();
    OfJob([] { Facade().Start(Type(3), "g", "a"); });
    OfJob([] { Facade().Stop(Type(3), "g"); });
    EXPECT_THAT(atCompanion, ElementsAre(before + 2, before + 4));
    EXPECT_EQ(locked(), before + 4);
}

}  // namespace
