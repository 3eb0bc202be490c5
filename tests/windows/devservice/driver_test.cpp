// Tests the placeholder driver files.

#include <windows.h>

#include <winver.h>

#include <gtest/gtest.h>

#include <vector>

#include "support/child_process.h"
#include "support/handle.h"
#include "support/service_state.h"
#include "support/system_habits.h"

namespace PlenxTest {
namespace {

const wchar_t* const kFiles[] = {L"\\dokan1.sys", L"\\dokan1.dll", L"\\dokanfuse1.dll"};

// Returns the major version in the upper 16 bits and the minor in the lower, or 0 without a
// resource.
DWORD VersionOf(const std::wstring& path) {
    std::vector<char> block(GetFileVersionInfoSizeW(path.c_str(), nullptr));
    VS_FIXEDFILEINFO* info = nullptr;
    UINT size = 0;
    if (block.empty() ||
        !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
        !VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&info), &size)) {
        return 0;
    }
    return info->dwFileVersionMS;
}

TEST(DriverFiles, CarryTheirVersions) {
    for (const wchar_t* const file : kFiles) {
        EXPECT_EQ(VersionOf(ProgramFolder() + file), 0x00010000u);
        EXPECT_EQ(VersionOf(ProgramFolder() + L"\\upgrade" + file), 0x00010001u);
    }
}

TEST(DriverFiles, Libraries_LoadAndUnload) {
    for (const wchar_t* const file : {L"\\dokan1.dll", L"\\dokanfuse1.dll"}) {
        const HMODULE module = LoadLibraryW((ProgramFolder() + file).c_str());
        ASSERT_NE(module, nullptr);
        EXPECT_TRUE(FreeLibrary(module));
    }
}

// Registers the driver as the library does: as a file-system driver, and without access rights.
void RegisterDriver(const wchar_t* name, const std::wstring& path) {
    const PlenxSupport::ServiceHandle manager(
        OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CREATE_SERVICE));
    const PlenxSupport::ServiceHandle created(CreateServiceW(
        manager.Get(), name, name, 0, SERVICE_FILE_SYSTEM_DRIVER, SERVICE_SYSTEM_START,
        SERVICE_ERROR_NORMAL, path.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
    EXPECT_TRUE(created) << GetLastError();
}

class Driver : public testing::TestWithParam<const wchar_t*> {};

TEST_P(Driver, ReachesRunningAndStopsAgainIfTheSystemTakesIt) {
    const wchar_t* const name = L"PlenxDriverTest";
    RemoveService(name);
    RegisterDriver(name, ProgramFolder() + GetParam());
    PlenxSupport::ServiceHandle driver = OpenedService(name, SERVICE_ALL_ACCESS);
    const bool starts = StartServiceW(driver.Get(), 0, nullptr);
    EXPECT_TRUE(Shows(Habits::kStartOfTheDriver, starts ? DWORD{0} : GetLastError()));
    if (starts) {
        EXPECT_EQ(StateOf(name), DWORD{SERVICE_RUNNING});
        SERVICE_STATUS reply = {};
        EXPECT_TRUE(ControlService(driver.Get(), SERVICE_CONTROL_STOP, &reply)) << GetLastError();
    }
    EXPECT_EQ(StateOf(name), DWORD{SERVICE_STOPPED});
    driver.Reset();  // a service that somebody holds is not removed
    RemoveService(name);
}

INSTANTIATE_TEST_SUITE_P(Versions, Driver,
                         testing::Values(L"\\dokan1.sys", L"\\upgrade\\dokan1.sys"));

}  // namespace
}  // namespace PlenxTest
