// Tests what ends the waits of a program that is told to end.

#include "support/interruption.h"

#include <gtest/gtest.h>

#include <thread>

namespace PlenxSupport {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::chrono::minutes kTooLong(1);

TEST(Interruption, NotRaised_LetsAWaitRunToItsEnd) {
    const Interruption interruption;
    const auto begin = steady_clock::now();
    EXPECT_FALSE(interruption.WaitFor(milliseconds(20)));
    EXPECT_GE(steady_clock::now() - begin, milliseconds(20));
    EXPECT_FALSE(interruption.IsRaised());
}

TEST(Interruption, Raised_EndsAWaitOfAnotherThread) {
    Interruption interruption;
    const auto begin = steady_clock::now();
    std::thread other([&] { interruption.Raise(); });
    EXPECT_TRUE(interruption.WaitFor(kTooLong));
    EXPECT_LT(steady_clock::now() - begin, kTooLong);
    other.join();
}

TEST(Interruption, Raised_StaysRaised) {
    Interruption interruption;
    interruption.Raise();
    interruption.Raise();
    EXPECT_TRUE(interruption.IsRaised());
    EXPECT_TRUE(interruption.WaitFor(kTooLong));
    EXPECT_TRUE(interruption.WaitFor(kTooLong));
}

}  // namespace
}  // namespace PlenxSupport
