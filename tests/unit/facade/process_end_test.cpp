// Tests which things are taken back at the end of the process, and which are left alone because a
// thread may have been using them. Each test ends a child process, whose very last act is to
// report.

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <string>
#include <thread>

#include "common/asleep.h"
#include "common/wait_until.h"
#include "facade/facade_fixture.h"

namespace {

bool reportWanted = false;
FakeMachine* machine = nullptr;

// This is made before every other static object and so destroyed after them.
struct Report {
    ~Report() {
        delete machine;
        if (!reportWanted) {
            return;
        }
        const auto deleted = FakePlatform::Get().CallsOf({"DeleteService"}).size();
        std::fprintf(stderr, "companions left: %zu; services deleted: %zu; handles open: %zu\n",
                     FakeFileManager::Get().Live(), deleted,
                     FakePlatform::Get().OpenHandles().size());
    }
};
__attribute__((init_priority(101))) const Report kReport;

[[noreturn]] void EndProcess() {
    reportWanted = true;
    FakePlatform::Get().EndProcess();
    std::exit(0);
}

void InitAll() {
    machine = new FakeMachine;
    Facade().Init("C:\\App", "C:\\Data", "third", true);
    if (!FakeRpc::Get().WaitUntilListening()) {
        std::abort();
    }
    WaitForJobs();
    // The worker says that it is done before it is idle.
    if (!WaitUntil(AllOthersAreAsleep)) {
        std::abort();
    }
}

// A thread that does not go on stays here.
void StayForEver() {
    for (;;) {
        pause();
    }
}

// Returns once the companion is inside a call, where it stays.
void BlockCompanion() {
    static std::promise<void> reached;
    FakeFileManager::Get().SetHook([](const std::string& call) {
        if (call.find("GetGroupNeighborDistributedDir") == 0) {
            reached.set_value();
            StayForEver();
        }
    });
    std::thread([] {
        std::string dir;
        Facade().GetOfficeDir("g", "d", dir);
    }).detach();
    reached.get_future().wait();
}

const testing::ExitedWithCode kWell(0);

TEST(ProcessEnd, OfAnIdleLibraryReleasesTheCompanionAndUninstallsTheServices) {
    EXPECT_EXIT(
        {
            InitAll();
            EndProcess();
        },
        kWell, "companions left: 0; services deleted: 2; handles open: 0");
}

TEST(ProcessEnd, OfAnUnusedLibraryDoesNothing) {
    EXPECT_EXIT(EndProcess(), kWell, "companions left: 0; services deleted: 0; handles open: 0");
}

TEST(ProcessEnd, WithTheWorkerInsideTheCompanionLeavesThatAlone) {
    EXPECT_EXIT(
        {
            InitAll();
            static std::promise<void> reached;
            FakeFileManager::Get().SetHook([](const std::string&) {
                reached.set_value();
                StayForEver();
            });
            Facade().Start(Type(0), "g", "a");
            reached.get_future().wait();
            EndProcess();
        },
        kWell, "companions left: 1; services deleted: 2; handles open: 0");
}

TEST(ProcessEnd, WithAHostThreadInsideTheCompanionLeavesThatAlone) {
    EXPECT_EXIT(
        {
            InitAll();
            BlockCompanion();
            EndProcess();
        },
        kWell, "companions left: 1; services deleted: 2; handles open: 0");
}

// The threads go on while the statics are destroyed. This does not happen on Windows.
TEST(Destruction, WaitsForTheWorkerBeforeTheCompanionIsReleased) {
    EXPECT_EXIT(
        {
            InitAll();
            static std::promise<void> reached;
            static std::atomic<bool> ending{false};
            FakeFileManager::Get().SetHook([ender = std::to_string(gettid())](const std::string&) {
                FakeFileManager::Get().SetHook(nullptr);
                reached.set_value();
                if (!WaitUntil([&] { return ending && IsAsleep(ender); })) {
                    std::abort();
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(200));
                std::fprintf(stderr, "companions during the call: %zu\n",
                             FakeFileManager::Get().Live());
            });
            Facade().Start(Type(0), "g", "a");
            reached.get_future().wait();
            ending = true;
            std::exit(0);
        },
        kWell, "companions during the call: 1");
}

}  // namespace
