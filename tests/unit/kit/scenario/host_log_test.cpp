// Tests what the logs of a run show.

#include "scenario/host_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace PlenxScenario {
namespace {

using testing::ElementsAre;

constexpr char kServiceLog[] = "2026-01-31 12:34:56.789 pc plays scenario \"A\", run 1\n";

Ending EndedWith(unsigned long code, bool ownHost = false) {
    Ending ending;
    ending.exitCode = code;
    ending.ownHost = ownHost;
    ending.deadline = 60;
    return ending;
}

TEST(Observed, NotificationsAreTakenOutOfTheHostsOutput) {
    EXPECT_THAT(
        ObservedIn("     0.012 [100] > start pc home arg = 0\r\n"
                   "     0.120 [104] < NotifyConnect(svcType=1, first=\"a] < b\")\r\n"
                   "exit code 0\r\n"
                   "    12.345 [7] < NotifyError(errCode=5)\n"
                   "an echo [1] < of something\n"),
        ElementsAre("NotifyConnect(svcType=1, first=\"a] < b\")", "NotifyError(errCode=5)"));
}

TEST(Reason, OfARunThatPassed_IsEmpty) {
    EXPECT_EQ(ReasonOfFailure(EndedWith(0), "exit code 0\n", kServiceLog), "");
}

TEST(Reason, ServiceThatNeverPlayed_IsNamed) {
    EXPECT_EQ(ReasonOfFailure(EndedWith(0), "exit code 0\n", "pc starts\n"),
              "no service was started from the install folder, %PLENX_INSTALL%");
}

TEST(Reason, ExpectationThatFailed_IsTheFirstOfTheList) {
    EXPECT_EQ(ReasonOfFailure(EndedWith(1),
                              "2 failed, of 7 expectations:\n"
                              "  a.plenx:3: expect NotifyError 5 within 10\n"
                              "  a.plenx:4: expect NotifyError 6 within 10\n"
                              "exit code 1\n",
                              kServiceLog),
              "a.plenx:3: expect NotifyError 5 within 10");
}

TEST(Reason, HostWhoseTimeWasOver_IsNamed) {
    EXPECT_EQ(ReasonOfFailure(EndedWith(3), "exit code 3\n", kServiceLog),
              "the host took too long");
}

TEST(Reason, HostThatDidNotEnd_IsNamedWithItsTime) {
    Ending ending;
    ending.deadline = 2.5;
    EXPECT_EQ(ReasonOfFailure(ending, "", kServiceLog), "the host did not end within 2.5 s");
}

TEST(Reason, OwnHost_IsReportedWithItsExitCodeAndLastLine) {
    EXPECT_EQ(ReasonOfFailure(EndedWith(3, true), "one\r\ntwo\r\n\r\n", kServiceLog),
              "the host ended with 3, its last line: two");
    EXPECT_EQ(ReasonOfFailure(EndedWith(0xC0000005, true), "", kServiceLog),
              "the host ended with 3221225477, 0xC0000005 (access violation) and printed nothing");
}

TEST(Reason, HostThatWindowsEnded_IsReportedInWords) {
    EXPECT_EQ(ReasonOfFailure(EndedWith(0xC0000135, true), "", ""),
              "the host ended with 3221225781, 0xC0000135 (a DLL was not found) and printed "
              "nothing");
    EXPECT_EQ(ReasonOfFailure(EndedWith(0x80000000, true), "one\n", ""),
              "the host ended with 2147483648, 0x80000000, its last line: one");
    EXPECT_EQ(ReasonOfFailure(EndedWith(0x7FFFFFFF, true), "one\n", ""),
              "the host ended with 2147483647, its last line: one");
}

}  // namespace
}  // namespace PlenxScenario
