// A host's own DLL calls the library while the process detaches its DLLs, before or after the
// library itself is detached. The system has ended the other threads wherever they were. Every call
// must return as if there were nothing to do, the host must end, and the services and the working
// folder must go.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "endings/endings.h"

namespace PlenxTest {
namespace {

constexpr char kCalls[] =
    "UnregisterPLENXServiceObserver\n"
    "RegisterPLENXServiceObserver\n"
    "Init\n"
    "Destroy\n"
    "GetOfficeDir 0 \\dir\n"
    "GetInt64Config 0\n"
    "GetStringConfig \n"
    "SetConfig, both\n"
    "Start 0\n"
    "Start without a group 26\n"
    "Stop 0\n"
    "LocalDeviceOnline 0\n"
    "RemoteDeviceOnline 0\n"
    "LocalDeviceOffline 0\n"
    "RemoteDeviceOffline 0\n"
    "DeviceNameChanged 0\n"
    "RecvRemoteMessage 0\n"
    "GetInstance\n";

class LateCalls : public Endings, public testing::WithParamInterface<const char*> {
protected:
    LateCalls() {
        SetEnvironmentVariableW(L"PLENX_LATE_CALLS", calls_.c_str());
        SetEnvironmentVariableW(L"PLENX_LATE_FOLDER", folder_.WorkingFolder().c_str());
    }
    ~LateCalls() override {
        SetEnvironmentVariableW(L"PLENX_LATE_CALLS", nullptr);
        SetEnvironmentVariableW(L"PLENX_LATE_FOLDER", nullptr);
    }

    void RunHosts(const std::string& detached, const std::string& firstLine) {
        const int hosts = Repetitions() > 50 ? 20 : 2;  // 20 in ./plenx stress
        RunOften(
            "late-" + detached + "," + GetParam(), Left::kNothing,
            [&] { EXPECT_EQ(ReadFile(calls_), firstLine + "\n" + kCalls); }, hosts);
    }

private:
    const std::filesystem::path calls_ = folder_.DataPath() / L"late-calls.txt";
};

TEST_P(LateCalls, BeforeTheLibraryIsDetached_ReturnAtOnce) {
    RunHosts("before", "before the library");
}

TEST_P(LateCalls, AfterTheLibraryIsDetached_ReturnAtOnce) {
    RunHosts("after", "after the library");
}

INSTANTIATE_TEST_SUITE_P(WithA, LateCalls,
                         testing::Values("worker-in-notification", "rpc-thread-in-notification",
                                         "worker-in-companion", "host-thread-in-queueing",
                                         "worker-in-engine"),
                         [](const auto& place) {
                             std::string name = place.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

}  // namespace
}  // namespace PlenxTest
