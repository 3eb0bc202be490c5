// Tests the judge's end of the endpoint "Manager".

#include "judge/inbox.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "wire/catalog.h"

namespace PlenxJudge {
namespace {

using PlenxSupport::Interruption;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

const Interruption kNone;

std::int32_t CodeIn(const ManagerAnswer& answer) {
    const auto decoded = PlenxWire::DecodeReply(answer.reply.data(), answer.reply.size());
    return decoded.Ok() ? std::get<std::int32_t>(decoded.arguments[0]) : -1;
}

TEST(JudgeInbox, AnswersAsTheLibraryDoes) {
    Inbox inbox(kNone);
    EXPECT_EQ(CodeIn(inbox.Take(PlenxWire::kConnectNotify, {1, 2})), 0);
    EXPECT_EQ(CodeIn(inbox.Take(PlenxWire::kLinkTypeQuery, {})), 7);
    ASSERT_EQ(inbox.Count(), 2u);
    EXPECT_EQ(inbox.Since(0)[0].message, (PlenxWire::Bytes{1, 2}));
    EXPECT_EQ(inbox.Since(1)[0].id, PlenxWire::kLinkTypeQuery);
    EXPECT_TRUE(inbox.Since(7).empty());
}

TEST(JudgeInbox, AnswersWorseOnDemand) {
    Inbox inbox(kNone);
    inbox.Behave(Manner::kRefusing);
    EXPECT_EQ(inbox.Take(10, {}).result, 20);
    inbox.Behave(Manner::kRaising);
    EXPECT_EQ(inbox.Take(10, {}).fault, 1726u);
    inbox.Behave(Manner::kHollow);
    const ManagerAnswer hollow = inbox.Take(10, {});
    EXPECT_EQ(hollow.size, 24);
    EXPECT_TRUE(hollow.reply.empty());
}

TEST(JudgeInbox, HoldsACallUntilTheMannerChanges) {
    Inbox inbox(kNone);
    inbox.Behave(Manner::kHeld);
    std::thread caller([&] { inbox.Take(10, {}); });
    ASSERT_TRUE(inbox.WaitForMoreThan(0, milliseconds(5000)));
    std::thread other([&] { inbox.Take(11, {}); });
    ASSERT_TRUE(inbox.WaitForMoreThan(1, milliseconds(5000)));
    inbox.Behave(Manner::kHonest);
    caller.join();
    other.join();
    EXPECT_FALSE(inbox.Since(0)[0].overlapped);
    EXPECT_TRUE(inbox.Since(0)[1].overlapped);
}

TEST(JudgeInbox, WaitsForQuiet) {
    Inbox inbox(kNone);
    constexpr milliseconds kLong(20000);
    const auto begin = steady_clock::now();
    inbox.WaitForQuiet(milliseconds(30), kLong);
    EXPECT_GE(steady_clock::now() - begin, milliseconds(30));
    EXPECT_LT(steady_clock::now() - begin, kLong);
    EXPECT_FALSE(inbox.WaitForMoreThan(0, milliseconds(1)));
    std::atomic<bool> over{false};
    std::thread restless([&] {
        while (!over) {
            inbox.Take(10, {});
            std::this_thread::sleep_for(milliseconds(1));
        }
    });
    const auto again = steady_clock::now();
    inbox.WaitForQuiet(kLong, milliseconds(100));
    EXPECT_GE(steady_clock::now() - again, milliseconds(100)) << "it was not quiet before";
    over = true;
    restless.join();
}

TEST(JudgeInbox, InterruptionEndsItsWaits) {
    Interruption interruption;
    const Inbox inbox(interruption);
    constexpr std::chrono::minutes kTooLong(1);
    const auto begin = steady_clock::now();
    std::thread other([&] { interruption.Raise(); });
    EXPECT_FALSE(inbox.WaitForMoreThan(0, kTooLong));
    inbox.WaitForQuiet(kTooLong, kTooLong);
    EXPECT_LT(steady_clock::now() - begin, kTooLong);
    other.join();
}

}  // namespace
}  // namespace PlenxJudge
