// Tests hosts as Visual C++ builds them. They link plenxsdk_c.lib and have nothing of MinGW in
// them.

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "support/child_process.h"
#include "support/install_folder.h"
#include "support/service_state.h"

namespace PlenxTest {
namespace {

class VisualCppHost : public testing::Test {
protected:
    VisualCppHost() {
        SetEnvironmentVariableW(L"INSTALL", folder_.InstallPath().c_str());
        SetEnvironmentVariableW(L"DATA", folder_.DataPath().c_str());
    }
    ~VisualCppHost() override {
        SetEnvironmentVariableW(L"INSTALL", nullptr);
        SetEnvironmentVariableW(L"DATA", nullptr);
    }

    static void Run(const std::wstring& program) {
        ChildProcess host(L"\"" + ProgramFolder() + L"\\" + program + L"\"");
        ASSERT_TRUE(host.Started()) << "error " << host.StartError();
        const auto code = host.WaitForExit(60000);
        ASSERT_TRUE(code.has_value()) << "the host hangs";
        EXPECT_EQ(*code, 40U) << "the host ended with the number of the step that went wrong";
        EXPECT_FALSE(IsRegistered(L"PlenxPcSvc"));
    }

    InstallFolder folder_{L"plenx-visual-cpp"};
};

TEST_F(VisualCppHost, WithAQueue_StartsAndStopsAService) {
    Run(L"visual_cpp_queue_host.exe");
}

TEST_F(VisualCppHost, WithAnObserver_StartsAndStopsAService) {
    Run(L"visual_cpp_observer_host.exe");
}

}  // namespace
}  // namespace PlenxTest
