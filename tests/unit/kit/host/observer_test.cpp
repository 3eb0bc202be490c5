#include "host/observer.h"

#include <gmock/gmock.h>

#include <thread>

#include "captured_output.h"

namespace PlenxHost {
namespace {

using namespace DistributedFs;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::EndsWith;

class ObserverTest : public testing::Test {
protected:
    std::vector<std::string> Heard() {
        std::vector<std::string> texts;
        for (const Notification& notification : inbox_.Left()) {
            texts.push_back(ToText(notification));
        }
        return texts;
    }

    CapturedOutput captured_{MakeTextFormat()};
    Inbox inbox_;
    Behaviour behaviour_;
    HostObserver observer_{"main", behaviour_, inbox_, captured_.Get()};
};

TEST_F(ObserverTest, EveryNotificationIsKeptWithItsArguments) {
    std::int32_t status = 3;
    observer_.SendLocalMessage(static_cast<PLENXMessageType>(-4), 0xFFFFFFFFU, "m");
    observer_.NotifyConnect(kPcService, "g");
    observer_.NotifyDisconnect(static_cast<ServiceType>(0xFFFFFFFFU), "");
    observer_.NotifyReconnect(kPhoneService, "g");
    observer_.QueryLinkStatus(kPcService, "g", 6, status);
    observer_.NotifyStatus(kCombinedService, "g", 100, false);
    observer_.NotifyError(-5);
    observer_.NotifyDiskName("\xFF");
    EXPECT_THAT(Heard(),
                ElementsAre("SendLocalMessage(msgType=-4, msgLen=4294967295, message=\"m\")",
                            "NotifyConnect(svcType=1, first=\"g\")",
                            "NotifyDisconnect(svcType=4294967295, first=\"\")",
                            "NotifyReconnect(svcType=2, first=\"g\")",
                            "QueryLinkStatus(svcType=1, first=\"g\", linkType=6, linkStatus=3, "
                            "answer=3)",
                            "NotifyStatus(svcType=3, first=\"g\", sttsType=100, value=false)",
                            "NotifyError(errCode=-5)", "NotifyDiskName(diskName=\"\\xff\")"));
    EXPECT_EQ(captured_.Lines().size(), 8U);
    EXPECT_EQ(status, 3);
}

TEST_F(ObserverTest, ReturnsTheChosenAnswer) {
    behaviour_.Set([](Reaction& reaction) {
        reaction.answer = 9;
        reaction.linkStatus = -7;
    });
    std::int32_t status = 0;
    EXPECT_EQ(observer_.QueryLinkStatus(kPcService, "g", 0, status), 9);
    EXPECT_EQ(status, -7);
    EXPECT_EQ(observer_.NotifyError(1), 9);
    EXPECT_THAT(captured_.Lines().back(), EndsWith("< NotifyError(errCode=1) returns 9"));
}

TEST_F(ObserverTest, ThrowsOnceAfterThePrinting) {
    behaviour_.Set([](Reaction& reaction) { reaction.throws = true; });
    EXPECT_THROW(observer_.NotifyError(1), std::runtime_error);
    EXPECT_EQ(observer_.NotifyError(2), 0);
    EXPECT_THAT(captured_.Lines(), ElementsAre(EndsWith("< NotifyError(errCode=1) throws"),
                                               EndsWith("< NotifyError(errCode=2)")));
}

TEST_F(ObserverTest, IsSlowUntilDelaysEnd) {
    behaviour_.Set([](Reaction& reaction) { reaction.delay = milliseconds(20); });
    auto start = steady_clock::now();
    observer_.NotifyError(1);
    EXPECT_GE(steady_clock::now() - start, milliseconds(20));

    behaviour_.Set([](Reaction& reaction) { reaction.delay = milliseconds(60000); });
    start = steady_clock::now();
    std::thread ender([&] { behaviour_.EndDelays(); });
    observer_.NotifyError(2);
    ender.join();
    EXPECT_LT(steady_clock::now() - start, milliseconds(30000));
}

TEST_F(ObserverTest, LinesOfSeveralThreadsAreWhole) {
    constexpr int kEach = 200;
    const auto notify = [&](HostObserver& observer) {
        for (int i = 0; i != kEach; ++i) {
            observer.NotifyDiskName(std::string(200, 'x'));
        }
    };
    HostObserver other("other", behaviour_, inbox_, captured_.Get());
    std::thread thread([&] { notify(other); });
    notify(observer_);
    thread.join();
    const auto lines = captured_.Lines();
    EXPECT_EQ(lines.size(), 2U * kEach);
    const std::string whole = "NotifyDiskName(diskName=\"" + std::string(200, 'x') + "\")";
    for (const std::string& line : lines) {
        EXPECT_TRUE(testing::Matches(EndsWith(whole))(line) ||
                    testing::Matches(EndsWith(whole + " @other"))(line))
            << line;
    }
}

}  // namespace
}  // namespace PlenxHost
