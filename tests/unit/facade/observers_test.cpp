// Tests the registration of observers and the fan-out of notifications, which come in as calls of
// the services.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <future>
#include <ostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "common/asleep.h"
#include "common/wait_until.h"
#include "facade/facade_fixture.h"
#include "rpc/manager_calls.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> Texts() {
    return RecordedLog::Get().Texts();
}

ManagerReply Connect() {
    return CallManager(10, MessageOf({StringArg("g_1")}));
}

TEST(Observers, RegisteringWritesThreeLines) {
    RecordingObserver observer;
    Facade().RegisterPLENXServiceObserver(&observer);
    const std::string function = "RegisterPLENXServiceObserver";
    EXPECT_THAT(Texts(), ElementsAre(Info("register observer invoked", function),
                                     Info("register observer begin", function),
                                     Info("register observer end", function)));
    Facade().UnregisterPLENXServiceObserver(&observer);
}

TEST(Observers, UnregisteringWritesThreeLinesAlsoForAnUnknownObserver) {
    RecordingObserver observer;
    Facade().UnregisterPLENXServiceObserver(&observer);
    const std::string function = "UnregisterPLENXServiceObserver";
    EXPECT_THAT(Texts(), ElementsAre(Info("unregister observer invoked", function),
                                     Info("unregister observer begin", function),
                                     Info("unregister observer end", function)));
}

TEST(Observers, RegisteredTwiceIsCalledOnceAndRemovedByOneUnregistration) {
    RecordingObserver observer;
    Facade().RegisterPLENXServiceObserver(&observer);
    Facade().RegisterPLENXServiceObserver(&observer);
    Connect();
    EXPECT_THAT(observer.Events(), ElementsAre("NotifyConnect(1, g)"));
    Facade().UnregisterPLENXServiceObserver(&observer);
    Connect();
    EXPECT_THAT(observer.Events(), ElementsAre("NotifyConnect(1, g)"));
}

TEST(Observers, NullIsRegisteredAndSkippedSilently) {
    RecordingObserver observer;
    Facade().RegisterPLENXServiceObserver(nullptr);
    Facade().RegisterPLENXServiceObserver(&observer);
    EXPECT_EQ(Texts().size(), 6U);
    RecordedLog::Get().Clear();
    EXPECT_EQ(Connect().result, 0);
    EXPECT_THAT(Texts(), ElementsAre(Info("notify connect invoked svcType:1", "NotifyConnect"),
                                     Info("notify connect begin", "NotifyConnect"),
                                     Info("notify connect end", "NotifyConnect")));
    EXPECT_THAT(observer.Events(), ElementsAre("NotifyConnect(1, g)"));
    Facade().UnregisterPLENXServiceObserver(nullptr);
    Facade().UnregisterPLENXServiceObserver(&observer);
}

TEST(Observers, AreCalledInTheOrderOfTheirAddresses) {
    std::array<RecordingObserver, 4> observers;  // ascending addresses
    std::vector<std::size_t> order;
    for (const std::size_t i : {2U, 0U, 3U, 1U}) {
        observers[i].hook = [i, &order](const std::string&) { order.push_back(i); };
        Facade().RegisterPLENXServiceObserver(&observers[i]);
    }
    Connect();
    EXPECT_THAT(order, ElementsAre(0U, 1U, 2U, 3U));
    for (RecordingObserver& observer : observers) {
        Facade().UnregisterPLENXServiceObserver(&observer);
    }
}

TEST(Observers, FailingOneIsLoggedAndTheOthersAreCalled) {
    std::array<RecordingObserver, 2> observers;
    observers[0].code = 5;
    Facade().RegisterPLENXServiceObserver(&observers[0]);
    Facade().RegisterPLENXServiceObserver(&observers[1]);
    RecordedLog::Get().Clear();
    EXPECT_EQ(Connect().result, 0);
    EXPECT_THAT(Texts(), ElementsAre(Info("notify connect invoked svcType:1", "NotifyConnect"),
                                     Info("notify connect begin", "NotifyConnect"),
                                     Error("notify connect error 5", "NotifyConnect"),
                                     Info("notify connect end", "NotifyConnect")));
    EXPECT_THAT(observers[0].Events(), ElementsAre("NotifyConnect(1, g)"));
    EXPECT_THAT(observers[1].Events(), ElementsAre("NotifyConnect(1, g)"));
    for (RecordingObserver& observer : observers) {
        Facade().UnregisterPLENXServiceObserver(&observer);
    }
}

// The tests below are for every notification.

struct Notification {
    const char* function;
    std::int32_t id;
    Bytes message;
    std::string invoked;
    std::string begin;
    std::string error;
    std::string end;
    std::string event;
};

void PrintTo(const Notification& notification, std::ostream* out) {
    *out << notification.function;
}

class EveryNotification : public testing::TestWithParam<Notification> {
protected:
    static std::string InfoLine(const std::string& text) {
        return "L3 [PLENXSDK] plenx manager " + text + Function();
    }
    static std::string ErrorLine(const std::string& text) {
        return "L4 [PLENXSDK] plenx manager " + text + Function();
    }
    static std::string Function() {
        return std::string("(DistributedFs::PLENXManager::") + GetParam().function + ")";
    }
    static void Notify() { CallManager(GetParam().id, GetParam().message); }
};

TEST_P(EveryNotification, WithoutObserversWritesInvokedBeginAndEnd) {
    Notify();
    EXPECT_THAT(Texts(), ElementsAre(InfoLine(GetParam().invoked), InfoLine(GetParam().begin),
                                     InfoLine(GetParam().end)));
}

TEST_P(EveryNotification, PassesItsArgumentsToTheObserver) {
    RecordingObserver observer;
    Facade().RegisterPLENXServiceObserver(&observer);
    RecordedLog::Get().Clear();
    Notify();
    EXPECT_THAT(observer.Events(), ElementsAre(GetParam().event));
    EXPECT_THAT(Texts(), ElementsAre(InfoLine(GetParam().invoked), InfoLine(GetParam().begin),
                                     InfoLine(GetParam().end)));
    Facade().UnregisterPLENXServiceObserver(&observer);
}

TEST_P(EveryNotification, LogsTheCodeOfEachFailingObserverBeforeItCallsTheNext) {
    std::array<RecordingObserver, 3> observers;
    observers[0].code = -7;
    observers[2].code = 1234567;
    std::vector<std::size_t> linesAtCall;
    for (RecordingObserver& observer : observers) {
        observer.hook = [&](const std::string&) { linesAtCall.push_back(Texts().size()); };
        Facade().RegisterPLENXServiceObserver(&observer);
    }
    RecordedLog::Get().Clear();
    Notify();
    EXPECT_THAT(Texts(),
                ElementsAre(InfoLine(GetParam().invoked), InfoLine(GetParam().begin),
                            ErrorLine(GetParam().error + "-7"),
                            ErrorLine(GetParam().error + "1234567"), InfoLine(GetParam().end)));
    EXPECT_THAT(linesAtCall, ElementsAre(2U, 3U, 3U));
    for (RecordingObserver& observer : observers) {
        EXPECT_THAT(observer.Events(), ElementsAre(GetParam().event));
        Facade().UnregisterPLENXServiceObserver(&observer);
    }
}

TEST_P(EveryNotification, ExceptionSkipsTheObserversThatFollowAndReleasesTheLock) {
    std::array<RecordingObserver, 2> observers;
    observers[0].hook = [](const std::string&) { throw std::runtime_error("observer"); };
    for (RecordingObserver& observer : observers) {
        Facade().RegisterPLENXServiceObserver(&observer);
    }
    RecordedLog::Get().Clear();
    Notify();
    EXPECT_THAT(Texts(), ElementsAre(InfoLine(GetParam().invoked), InfoLine(GetParam().begin)));
    EXPECT_THAT(observers[1].Events(), IsEmpty());
    Facade().UnregisterPLENXServiceObserver(&observers[0]);
    Notify();
    EXPECT_THAT(observers[1].Events(), ElementsAre(GetParam().event));
    Facade().UnregisterPLENXServiceObserver(&observers[1]);
}

INSTANTIATE_TEST_SUITE_P(
    Notifications, EveryNotification,
    testing::Values(
        Notification{
            "SendLocalMessage", 9, MessageOf({Int32Arg(4), Int32Arg(5), StringArg("hello")}),
            "send local message invoked", "send local message begin", "send local message error ",
            "send local message end", "SendLocalMessage(4, 5, hello)"},
        Notification{"NotifyConnect", 10, MessageOf({StringArg("g_1")}),
                     "notify connect invoked svcType:1", "notify connect begin",
                     "notify connect error ", "notify connect end", "NotifyConnect(1, g)"},
        Notification{"NotifyDisconnect", 11, MessageOf({StringArg("g_2")}),
                     "notify disconnect invoked svcType:2", "notify disconnect begin",
                     "notify disconnect error ", "notify disconnect end", "NotifyDisconnect(2, g)"},
        Notification{"NotifyReconnect", 12, MessageOf({StringArg("g_77")}),
                     "notify reconnect invoked svcType:77", "notify reconnect begin",
                     "notify reconnect error ", "notify reconnect end", "NotifyReconnect(77, g)"},
        Notification{"QueryLinkStatus", 13, MessageOf({StringArg("g_1"), Int32Arg(-1)}),
                     "query link status invoked svcType:1 linkType:4294967295",
                     " query link status begin", " query link status error ",
                     " query link status end", "QueryLinkStatus(1, g, 4294967295, 0)"},
        Notification{"NotifyStatus", 14, MessageOf({StringArg("g_1"), Int32Arg(-1), Int32Arg(2)}),
                     "notify status invoked svcType:1 sttsType:4294967295 value:1",
                     "notify status begin", "notify status error ", "notify status end",
                     "NotifyStatus(1, g, 4294967295, true)"},
        Notification{"NotifyError", 15, MessageOf({Int32Arg(-9)}),
                     "notify error invoked errCode:-9", "notify error begin",
                     "notify error code error ", "notify error end", "NotifyError(-9)"},
        Notification{"NotifyDiskName", 16, MessageOf({StringArg("disk \xC3\xBC")}),
                     "notify diskName invoked diskName:disk \xC3\xBC", "notify diskName begin",
                     "notify disk name error ", "notify diskName end",
                     "NotifyDiskName(disk \xC3\xBC)"}),
    [](const testing::TestParamInfo<Notification>& notification) {
        return std::string(notification.param.function);
    });

TEST(Observers, LastOneToWriteTheLinkStatusWins) {
    std::array<RecordingObserver, 3> observers;
    observers[0].linkStatus = 5;
    observers[0].code = 9;  // what a failing observer wrote stays
    observers[1].linkStatus = 6;
    for (RecordingObserver& observer : observers) {
        Facade().RegisterPLENXServiceObserver(&observer);
    }
    const ManagerReply reply = CallManager(13, MessageOf({StringArg("g_1"), Int32Arg(2)}));
    EXPECT_EQ(reply.bytes, Int32Message(6));
    EXPECT_THAT(observers[0].Events(), ElementsAre("QueryLinkStatus(1, g, 2, 0)"));
    EXPECT_THAT(observers[1].Events(), ElementsAre("QueryLinkStatus(1, g, 2, 5)"));
    EXPECT_THAT(observers[2].Events(), ElementsAre("QueryLinkStatus(1, g, 2, 6)"));
    for (RecordingObserver& observer : observers) {
        Facade().UnregisterPLENXServiceObserver(&observer);
    }
}

TEST(Observers, UnregisteringWaitsForTheNotificationThatIsBeingDelivered) {
    RecordingObserver observer;
    std::promise<void> letGo;
    std::shared_future<void> gate = letGo.get_future().share();
    observer.hook = [gate](const std::string&) { gate.wait_for(std::chrono::seconds(20)); };
    Facade().RegisterPLENXServiceObserver(&observer);
    std::thread service([] { Connect(); });
    ASSERT_TRUE(observer.WaitFor("NotifyConnect(1, g)"));
    auto unregistered = std::async(
        std::launch::async, [&observer] { Facade().UnregisterPLENXServiceObserver(&observer); });
    EXPECT_TRUE(WaitUntil(AllOthersAreAsleep));
    EXPECT_EQ(unregistered.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    letGo.set_value();
    EXPECT_EQ(unregistered.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    service.join();
}

// The tests below show what an observer may do inside a notification, and which locks are held
// then.

TEST_F(ReadyFacade, ObserverMayQueueAndReadInsideANotification) {
    observer_.hook = [](const std::string& event) {
        if (event == "NotifyConnect(1, g)") {
            EXPECT_EQ(Facade().Start(Type(0), "g", "a"), 0);
            EXPECT_EQ(Facade().Stop(Type(0), "g"), 0);
            Facade().SetConfig(Type(3), Key(1), "x");
            EXPECT_EQ(Facade().GetInt64Config(Type(1), Key(0)), 0);
            EXPECT_EQ(Facade().GetStringConfig(Type(1), Key(1)), "");
        }
    };
    EXPECT_EQ(Connect().result, 0);
    WaitForJobs();
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyConnect(1, g)", "NotifyStatus(0, g, 0, true)",
                            "NotifyStatus(0, g, 1, true)", "NotifyStatus(3, g, 1, true)"));
}

bool OfficeDirAnswersWithin(std::future<int>& answer, std::chrono::milliseconds time) {
    return answer.wait_for(time) == std::future_status::ready;
}

std::future<int> AskForOfficeDir() {
    return std::async(std::launch::async, [] {
        std::string dir;
        return Facade().GetOfficeDir("g", "d", dir);
    });
}

TEST_F(ReadyFacade, OfficeStatusIsRaisedWhileTheCompanionIsLocked) {
    std::future<int> answer;
    std::atomic<bool> answeredInside{true};
    observer_.hook = [&](const std::string& event) {
        if (event == "NotifyStatus(0, g, 0, true)") {
            answer = AskForOfficeDir();
            answeredInside = OfficeDirAnswersWithin(answer, std::chrono::milliseconds(50));
        }
    };
    Facade().Start(Type(0), "g", "a");
    WaitForJobs();
    EXPECT_FALSE(answeredInside);
    EXPECT_TRUE(OfficeDirAnswersWithin(answer, std::chrono::seconds(20)));
}

TEST_F(ReadyFacade, AllStoppedIsRaisedAfterTheCompanionIsReleased) {
    std::atomic<bool> answeredInside{false};
    observer_.hook = [&](const std::string& event) {
        if (event == "NotifyStatus(3, g, 1, true)") {
            auto answer = AskForOfficeDir();
            answeredInside = OfficeDirAnswersWithin(answer, std::chrono::seconds(10));
        }
    };
    Facade().Stop(Type(0), "g");
    WaitForJobs();
    EXPECT_TRUE(answeredInside);
}

}  // namespace
