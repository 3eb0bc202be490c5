#include "host/inbox.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <thread>

#include "common/asleep.h"
#include "common/wait_until.h"

namespace PlenxHost {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kNoTime(0);
constexpr milliseconds kLong(20000);

Notification Error(std::int64_t code) {
    return {"NotifyError", {{"errCode", code}}, "main"};
}

Pattern For(std::string_view line) {
    return Pattern(SplitWords(line).words);
}

std::int64_t Code(const Notification& notification) {
    return std::get<std::int64_t>(notification.fields[0].value);
}

TEST(Inbox, EarlierNotificationsAreTakenOnceAndInOrder) {
    Inbox inbox;
    inbox.Put(Error(1));
    inbox.Put(Error(2));
    EXPECT_EQ(Code(*inbox.Take(For("*"), kNoTime)), 1);
    EXPECT_EQ(Code(*inbox.Take(For("*"), kNoTime)), 2);
    EXPECT_FALSE(inbox.Take(For("*"), kNoTime));
}

TEST(Inbox, OthersStayForLaterExpectations) {
    Inbox inbox;
    inbox.Put(Error(1));
    inbox.Put(Error(2));
    EXPECT_TRUE(inbox.Take(For("NotifyError 2"), kNoTime));
    EXPECT_EQ(inbox.Left().size(), 1U);
    EXPECT_TRUE(inbox.Take(For("NotifyError 1"), kNoTime));
}

TEST(Inbox, WaitEndsWhenItComes) {
    Inbox inbox;
    std::thread sender([&, waiting = std::to_string(gettid())] {
        inbox.Put(Error(1));
        EXPECT_TRUE(WaitUntil([&] { return IsAsleep(waiting); }));
        inbox.Put(Error(2));
    });
    EXPECT_TRUE(inbox.Take(For("NotifyError 2"), kLong));
    sender.join();
}

TEST(Inbox, WaitEndsAtItsLimit) {
    Inbox inbox;
    const auto start = steady_clock::now();
    EXPECT_FALSE(inbox.Take(For("*"), milliseconds(30)));
    EXPECT_GE(steady_clock::now() - start, milliseconds(30));
}

TEST(Inbox, InterruptEndsEveryWaitNowAndLater) {
    Inbox inbox;
    std::thread interrupter([&, waiting = std::to_string(gettid())] {
        EXPECT_TRUE(WaitUntil([&] { return IsAsleep(waiting); }));
        inbox.Interrupt();
    });
    EXPECT_FALSE(inbox.Take(For("*"), kLong));
    interrupter.join();
    const auto start = steady_clock::now();
    inbox.Pause(kLong);
    EXPECT_LT(steady_clock::now() - start, kLong / 2);
    EXPECT_TRUE(inbox.Interrupted());
}

TEST(Inbox, KeepsTheLatestOnly) {
    Inbox inbox;
    for (std::size_t i = 0; i != Inbox::kMostKept + 1; ++i) {
        inbox.Put(Error(static_cast<std::int64_t>(i)));
    }
    EXPECT_EQ(inbox.Left().size(), Inbox::kMostKept);
    EXPECT_EQ(Code(inbox.Left().front()), 1);
}

}  // namespace
}  // namespace PlenxHost
