// Tests the public operations while the process ends. The system has ended the other threads by
// then, and any lock may belong to one of them. Here the locks belong to threads that do not go on.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <chrono>
#include <functional>
#include <future>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "facade/facade_fixture.h"

using DistributedFs::kDefaultMessage;
using DistributedFs::kDefaultTrigger;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

RecordingObserver& OtherObserver() {
    static RecordingObserver observer;
    return observer;
}

// A public operation, the value that it returns ("-" when it returns nothing), and its lines.
struct Operation {
    const char* name;
    std::function<std::string()> call;
    std::string result;
    std::vector<std::string> lines = {};
};

void PrintTo(const Operation& operation, std::ostream* out) {
    *out << operation.name;
}

template <class Call>
std::function<std::string()> Nothing(Call call) {
    return [call] {
        call();
        return std::string("-");
    };
}

template <class Call>
std::function<std::string()> Number(Call call) {
    return [call] { return std::to_string(call()); };
}

// The library must not copy a block that nobody takes.
const unsigned char* UnreadableByte() {
    static void* const page = mmap(nullptr, 1, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return static_cast<const unsigned char*>(page);
}

const std::vector<Operation> kOperations = {
    {"GetInstance",
     [] {
         const auto* const first = &Facade();
         return std::string(first == &Facade() ? "the instance" : "another one");
     },
     "the instance"},
    {"Init", Nothing([] { Facade().Init("C:\\App", "C:\\Data", "third", true); }), "-"},
    {"Destroy", Nothing([] { Facade().Destroy(); }), "-"},
    {"GetInt64Config", Number([] { return Facade().GetInt64Config(Type(1), Key(5)); }), "0"},
    {"GetStringConfig", [] { return Facade().GetStringConfig(Type(1), Key(1)); }, ""},
    {"SetStringConfig", Nothing([] { Facade().SetConfig(Type(3), Key(1), "de_DE"); }), "-"},
    {"SetIntConfig", Nothing([] { Facade().SetConfig(Type(3), Key(0), std::int64_t{1}); }), "-"},
    {"Start", Number([] { return Facade().Start(Type(0), "g", "a"); }), "0"},
    {"Stop", Number([] { return Facade().Stop(Type(0), "g"); }), "0"},
    {"LocalDeviceOnline",
     Number([] { return Facade().LocalDeviceOnline(Type(0), "g", "d", 1, UnreadableByte()); }),
     "0"},
    {"RemoteDeviceOnline", Number([] { return Facade().RemoteDeviceOnline(Type(0), "g", "d"); }),
     "0"},
    {"LocalDeviceOffline",
     Number([] { return Facade().LocalDeviceOffline(Type(0), "g", "d", kDefaultTrigger); }), "0"},
    {"RemoteDeviceOffline",
     Number([] { return Facade().RemoteDeviceOffline(Type(0), "g", "d", kDefaultTrigger); }), "0"},
    {"DeviceNameChanged", Number([] { return Facade().DeviceNameChanged("late"); }), "0"},
    {"RecvRemoteMessage",
     Number([] { return Facade().RecvRemoteMessage(kDefaultMessage, 4, "late"); }), "0"},
    {"GetOfficeDir",
     [] {
         std::string dir = "abc";
         const int code = Facade().GetOfficeDir("g", "d", dir);
         return std::to_string(code) + " " + dir;
     },
     "0 \\abc"},
    {"RegisterPLENXServiceObserver",
     Nothing([] { Facade().RegisterPLENXServiceObserver(&OtherObserver()); }), "-"},
    {"UnregisterPLENXServiceObserver",
     Nothing([] { Facade().UnregisterPLENXServiceObserver(&OtherObserver()); }), "-"},
};

const std::vector<Operation> kRefusals = {
    {"GetInt64Config",
     Number([] { return Facade().GetInt64Config(Type(0), Key(5)); }),
     "0",
     {Error("invalid service type svcType:0", "GetInt64Config")}},
    {"GetStringConfig",
     [] { return Facade().GetStringConfig(Type(4), Key(1)); },
     "",
     {Error("invalid service type svcType:4", "GetStringConfig")}},
    {"SetStringConfig",
     Nothing([] { Facade().SetConfig(Type(4), Key(1), "de_DE"); }),
     "-",
     {Error("set string config invalid service type svcType:4", "SetConfig")}},
    {"SetIntConfig",
     Nothing([] { Facade().SetConfig(Type(4), Key(0), std::int64_t{1}); }),
     "-",
     {Error("set int config invalid service type svcType(4)", "SetConfig")}},
    {"Start",
     Number([] { return Facade().Start(Type(0), "g", ""); }),
     "26",
     {Error("start invalid parameter", "Start")}},
    {"Stop",
     Number([] { return Facade().Stop(Type(0), ""); }),
     "26",
     {Error("stop invalid parameter", "Stop")}},
    {"LocalDeviceOnline",
     Number([] { return Facade().LocalDeviceOnline(Type(0), "g", "", 0, nullptr); }),
     "26",
     {Error("local device online invalid parameter", "LocalDeviceOnline")}},
    {"RemoteDeviceOnline",
     Number([] { return Facade().RemoteDeviceOnline(Type(0), "g", ""); }),
     "26",
     {Error("remote device online invalid parameter", "RemoteDeviceOnline")}},
    {"LocalDeviceOffline",
     Number([] { return Facade().LocalDeviceOffline(Type(0), "g", "", kDefaultTrigger); }),
     "26",
     {Error("local device offline invalid parameter", "LocalDeviceOffline")}},
    {"RemoteDeviceOffline",
     Number([] { return Facade().RemoteDeviceOffline(Type(0), "g", "", kDefaultTrigger); }),
     "26",
     {Error("remote device offline invalid parameter", "RemoteDeviceOffline")}},
    {"DeviceNameChanged",
     Number([] { return Facade().DeviceNameChanged(""); }),
     "26",
     {Error("device name changed invalid parameter", "DeviceNameChanged")}},
};

std::string NameOf(const testing::TestParamInfo<Operation>& operation) {
    return operation.param.name;
}

// One thread stays in a notification of the office service and holds the locks of the observers and
// of the companion. A second one stays where it queues a job and holds the pool's lock. A third one
// stays in the engine and holds its lock.
class CallAtProcessEnd : public ReadyFacade, public testing::WithParamInterface<Operation> {
protected:
    CallAtProcessEnd() {
        const std::string queueing =
            Info("device name changed is pushed into thread pool", "DeviceNameChanged");
        const std::string engine =
            "L3 [PLENXSDK] plenx manager get config svcType:1 cfgType:5 cfgValue:0"
            "(DistributedFs::PLENXManagerInner::GetInt64Config)";
        observer_.hook = [gate = gate_](const std::string&) { gate.wait(); };
        RecordedLog::Get().SetHook([=, gate = gate_](const std::string& line) {
            if (line == queueing || line == engine) {
                gate.wait();
            }
        });
        Facade().Start(Type(0), "held", "a");
        EXPECT_TRUE(observer_.WaitFor("NotifyStatus(0, held, 0, true)"));
        others_.emplace_back([] { Facade().DeviceNameChanged("n"); });
        EXPECT_TRUE(RecordedLog::Get().WaitFor(queueing));
        others_.emplace_back([] { Facade().GetInt64Config(Type(1), Key(5)); });
        EXPECT_TRUE(RecordedLog::Get().WaitFor(engine));
        ForgetAll();
        FakePlatform::Get().EndProcess();
    }
    ~CallAtProcessEnd() override {
        LetAllGoOn();
        FakePlatform::Get().Reset();
    }

    void LetAllGoOn() {
        if (!others_.empty()) {
            letGo_.set_value();
            for (std::thread& other : others_) {
                other.join();
            }
            others_.clear();
            RecordedLog::Get().SetHook(nullptr);
        }
    }

    void ExpectReturnsAtOnce() {
        auto returned = std::async(std::launch::async, GetParam().call);
        if (returned.wait_for(std::chrono::seconds(20)) != std::future_status::ready) {
            LetAllGoOn();
            FAIL() << "it waits for a lock";
        }
        EXPECT_EQ(returned.get(), GetParam().result);
        EXPECT_EQ(RecordedLog::Get().Texts(), GetParam().lines);
        EXPECT_THAT(FakeFileManager::Get().Calls(), IsEmpty());
        EXPECT_THAT(FakePlatform::Get().Calls(), IsEmpty());
    }

private:
    std::promise<void> letGo_;
    const std::shared_future<void> gate_ = letGo_.get_future().share();
    std::vector<std::thread> others_;
};

class OperationAtProcessEnd : public CallAtProcessEnd {};

TEST_P(OperationAtProcessEnd, TakesNoLockAndReturnsAsIfThereWereNothingToDo) {
    ExpectReturnsAtOnce();
}

// Here the worker goes on, to show which jobs it was given.
TEST_P(OperationAtProcessEnd, QueuesNothing) {
    ExpectReturnsAtOnce();
    LetAllGoOn();
    FakePlatform::Get().Reset();
    Facade().Start(Type(0), "later", "a");
    WaitForJobs();
    EXPECT_THAT(RequestsWithoutNameChanged(), IsEmpty());
    EXPECT_FALSE(
        FakeRpc::Get().WaitForMessage(MessageOf({StringArg("late")}), std::chrono::seconds(0)));
    EXPECT_THAT(FakeFileManager::Get().Calls(), ElementsAre("Start()"));
    EXPECT_THAT(TextsOfClass("PLENXManagerInner"), IsEmpty());
    EXPECT_THAT(OtherObserver().Events(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Operations, OperationAtProcessEnd, testing::ValuesIn(kOperations), NameOf);

class RefusalAtProcessEnd : public CallAtProcessEnd {};

TEST_P(RefusalAtProcessEnd, TakesNoLockAndIsLoggedAsEver) {
    ExpectReturnsAtOnce();
}

INSTANTIATE_TEST_SUITE_P(Operations, RefusalAtProcessEnd, testing::ValuesIn(kRefusals), NameOf);

}  // namespace
