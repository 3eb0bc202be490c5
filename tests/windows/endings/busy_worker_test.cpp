// Tests hosts that end while the library's threads are busy. They must end just as well as idle
// ones. Each of these tests takes some time, so they run less often than the others.

#include <algorithm>

#include "endings/endings.h"

namespace PlenxTest {
namespace {

class BusyWorker : public Endings {
protected:
    void RunLessOften(const std::string& modeName, Left left = Left::kNothing) {
        RunOften(modeName, left, [] {}, std::max(Repetitions() / 24, 1));
    }
};

// A service that is starting accepts no stop, so it rightly stays; the next host takes it over.
TEST_F(BusyWorker, HostThatExitsWhileAServiceStarts_ExitsAndLeavesThatServiceAlone) {
    folder_.SetServiceControl("[start]\nservice = 'pc'\ndelay_ms = 20000\n");
    RunLessOften("waiting-for-a-start", Left::kThePcService);
}

TEST_F(BusyWorker, HostThatExitsWhileAServiceStops_ExitsAndUninstalls) {
    folder_.SetServiceControl("[stop]\nservice = 'pc'\ndelay_ms = 700\n");
    RunLessOften("waiting-for-a-stop");
}

TEST_F(BusyWorker, HostThatExitsWhileAServiceHangsInItsStop_ExitsAndLeavesThatServiceAlone) {
    folder_.SetServiceControl("[stop]\nservice = 'pc'\nhow = 'never'\n");
    RunLessOften("waiting-for-a-stop", Left::kThePcService);
}

TEST_F(BusyWorker, HostThatExitsInACallThatIsNeverAnswered_ExitsAndUninstalls) {
    folder_.SetServiceControl(
        "[[on]]\nservice = 'pc'\nrequest = 'DeviceOnline'\ndelay_ms = 60000\n");
    RunLessOften("waiting-for-an-answer");
}

TEST_F(BusyWorker, HostThatExitsWhileTheWorkerIsInAnObserver_ExitsAndUninstalls) {
    RunLessOften("worker-stays-in-observer");
}

TEST_F(BusyWorker, HostThatExitsWhileAServiceIsInAnObserver_ExitsAndUninstalls) {
    RunLessOften("rpc-thread-stays-in-observer");
}

TEST_F(BusyWorker, HostThatFreesTheLibraryOnAnotherThread_KeepsItAndExits) {
    RunLessOften("free-on-another-thread");
}

TEST_F(BusyWorker, HostThatExitsWhileOtherThreadsCall_ExitsAndUninstalls) {
    RunLessOften("exit-while-others-call");
}

}  // namespace
}  // namespace PlenxTest
