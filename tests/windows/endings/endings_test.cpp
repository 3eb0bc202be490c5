// Tests that a host may end at any moment. It ends with its own exit code, within five seconds, and
// leaves neither services nor a working folder behind.

#include "endings/endings.h"

namespace PlenxTest {
namespace {

TEST_F(Endings, HostThatUsesNothing_Exits) {
    RunOften("use-nothing");
}

TEST_F(Endings, HostThatLoadsAndFreesWithoutInit_IsRidOfTheLibrary) {
    RunOften("load-and-free");
}

TEST_F(Endings, HostThatFreesTheLibraryAfterInit_KeepsItAndExits) {
    RunOften("init-and-free");
}

TEST_F(Endings, HostWithIdleWorker_ExitsUninstallsAndReleasesTheCompanion) {
    RunOften("idle", Left::kNothing, [this] { EXPECT_TRUE(CompanionWasReleased()); });
}

TEST_F(Endings, HostThatReturnsWhileInitRuns_Exits) {
    // Init may be at any place. The next run takes over what it has made by then, whether that one
    // returns at once too or ends in order and leaves nothing.
    RunOften("return-at-once", Left::kWhatInitHadMade);
    RunOften("return-at-once", Left::kWhatInitHadMade,
             [this] { RunOften("idle", Left::kNothing, [] {}, 1); });
}

// The worker may have died inside the companion library, so the library leaves the companion alone.
TEST_F(Endings, HostWithBusyWorkerAndQueuedJobs_ExitsUninstallsAndLeavesTheCompanion) {
    folder_.SetServiceControl("[start]\nserve = false\n");
    RunOften("busy-with-queue", Left::kNothing, [this] { EXPECT_FALSE(CompanionWasReleased()); });
}

TEST_F(Endings, HostThatExitsInsideAnObserver_ExitsAndUninstalls) {
    RunOften("exit-inside-observer");
}

TEST_F(Endings, HostWithCallsArriving_ExitsAndUninstalls) {
    RunOften("calls-arriving");
}

}  // namespace
}  // namespace PlenxTest
