// Tests that a host of the plain C interface may end at any moment. It ends with its own exit code,
// in time, and leaves neither services nor a working folder behind.

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

#include "endings/endings.h"

namespace PlenxTest {
namespace {

// The lines come in the order of the calls.
constexpr char kLateCalls[] =
    "plenx_abi 1\n"
    "plenx_open -8\n"
    "plenx_last_error -8\n"
    "plenx_init -8\n"
    "plenx_destroy 0\n"
    "plenx_get_int64 -8\n"
    "plenx_get_string -8\n"
    "plenx_set_int64 -8\n"
    "plenx_set_string -8\n"
    "plenx_start -8\n"
    "plenx_stop -8\n"
    "plenx_local_device_online -8\n"
    "plenx_remote_device_online -8\n"
    "plenx_local_device_offline -8\n"
    "plenx_remote_device_offline -8\n"
    "plenx_device_name_changed -8\n"
    "plenx_recv_remote_message -8\n"
    "plenx_get_office_dir -8\n"
    "plenx_queue_open -8\n"
    "plenx_queue_next -8\n"
    "plenx_event_free 0\n"
    "plenx_queue_wait_handle 0\n"
    "plenx_queue_set_link_status -8\n"
    "plenx_queue_cancel 0\n"
    "plenx_queue_close 0\n"
    "plenx_observe -8\n"
    "plenx_unobserve 0\n"
    "The process is ending. 0\n";

class CInterfaceEndings : public Endings {
protected:
    CInterfaceEndings() { SetEnvironmentVariableW(L"PLENX_LATE_CALLS", lateCalls_.c_str()); }
    ~CInterfaceEndings() override { SetEnvironmentVariableW(L"PLENX_LATE_CALLS", nullptr); }

    static int Times() { return Repetitions() > 50 ? 20 : 3; }  // 20 in ./plenx stress

    void RunHosts(const std::string& mode) {
        RunOften(mode, Left::kNothing, [] {}, Times());
    }

    void RunLateCallers(const std::string& mode) {
        RunOften(
            mode, Left::kNothing, [&] { EXPECT_EQ(ReadFile(lateCalls_), kLateCalls); }, Times());
    }

private:
    const std::filesystem::path lateCalls_ = folder_.DataPath() / L"late-calls.txt";
};

TEST_F(CInterfaceEndings, HostThatExitsInsideAFunctionOfAnObserver_ExitsAndUninstalls) {
    RunHosts("exit-inside-a-function");
}

TEST_F(CInterfaceEndings, HostThatExitsWhileAFunctionRuns_ExitsAndUninstalls) {
    RunHosts("function-stays");
}

TEST_F(CInterfaceEndings, HostThatExitsWhileTenThreadsWaitForAQueue_ExitsAndUninstalls) {
    RunHosts("ten-readers-wait");
}

// The service sends one error after the other. The last one is the number of the others, negative.
TEST_F(CInterfaceEndings, HostWhoseTenThreadsReadAFlood_TakesEachEventOnce) {
    constexpr int kOthers = 100;  // on a busy machine each takes some 30 ms
    const auto send = [](int code) {
        return "[[notify]]\non = \"CreateGroup\"\nsend = \"ErrorNotify\"\nerrCode = " +
               std::to_string(code) + "\n";
    };
    std::string flood;
    for (int code = 1; code <= kOthers; ++code) {
        flood += send(code);
    }
    folder_.SetServiceControl(flood + send(-kOthers));
    RunOften("ten-readers-share-a-flood", Left::kNothing, [] {}, 1);
}

TEST_F(CInterfaceEndings, CallsOfADllBeforeTheInterfaceIsDetached_ReturnAtOnce) {
    RunLateCallers("call-before-the-interface-goes");
}

TEST_F(CInterfaceEndings, CallsOfADllAfterTheInterfaceWasDetached_ReturnAtOnce) {
    RunLateCallers("call-after-the-interface-went");
}

TEST_F(CInterfaceEndings, HostThatFreesItUnused_IsRidOfBothDlls) {
    RunHosts("free-unused");
}

TEST_F(CInterfaceEndings, HostThatFreesItAfterAQueueWasOpened_KeepsBothDlls) {
    RunHosts("free-in-use");
}

}  // namespace
}  // namespace PlenxTest
