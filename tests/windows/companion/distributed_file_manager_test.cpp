// Tests the office service on a real file system, with any character in folders and lines.

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <string>

#include "companion/run_host.h"
#include "distributed_file_manager.h"
#include "support/install_folder.h"

namespace PlenxTest {
namespace {

class OfficeServiceTest : public testing::Test {
protected:
    void SetUp() override {
        RemoveFolder(folder_);
        std::filesystem::create_directories(folder_);
        SetEnvironmentVariableW(L"PLENX_OFFICE_LOG", log_.c_str());
    }
    void TearDown() override {
        for (const wchar_t* const name : {L"PLENX_OFFICE_LOG", L"PLENX_OFFICE_FAIL",
                                          L"PLENX_LATE_OFFICE_LOG", L"PLENX_LOG_LEVEL"}) {
            SetEnvironmentVariableW(name, nullptr);
        }
        RemoveFolder(folder_);
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / L"plenx-companion-h\u00E9\u4E2D";
    const std::filesystem::path log_ = folder_ / L"calls \u4E2D.txt";
};

TEST_F(OfficeServiceTest, FolderOfADeviceIsMade_WithAnyNameInIt) {
    DistributedFileManager manager("i", folder_.u8string(), "t", true);
    ASSERT_EQ(manager.Start(), 0);
    for (const char* const device :
         {"d", "..", "..\\..\\d", "C:\\d", "a/b", "nul", "com1.txt", "d:stream", "d.", "d ", "*?",
          "h\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80"}) {
        std::string dir;
        ASSERT_EQ(manager.RemoteDeviceOnline("g", device), 0) << device;
        ASSERT_EQ(manager.GetGroupNeighborDistributedDir("g", device, dir), 0) << device;
        const std::filesystem::path path = std::filesystem::u8path(dir);
        EXPECT_EQ(path.parent_path(), folder_ / L"office" / L"g") << dir;
        EXPECT_TRUE(std::filesystem::is_directory(path)) << dir;
    }
    const auto folders = std::filesystem::directory_iterator(folder_ / L"office" / L"g");
    EXPECT_EQ(std::distance(begin(folders), end(folders)), 12);
}

TEST_F(OfficeServiceTest, FolderUsesBackslashes) {
    DistributedFileManager manager("i", "C:/plenx-none/..\\plenx-none", "t", true);
    ASSERT_EQ(manager.Start(), 0);
    ASSERT_EQ(manager.RemoteDeviceOnline("g", "d"), 0);
    std::string dir;
    ASSERT_EQ(manager.GetGroupNeighborDistributedDir("g", "d", dir), 0);
    EXPECT_EQ(dir, "C:\\plenx-none\\..\\plenx-none\\office\\g\\d");
    std::filesystem::remove_all("C:\\plenx-none");
}

TEST_F(OfficeServiceTest, NameThatIsNotUtf8_GivesNoFolder) {
    DistributedFileManager manager("i", folder_.u8string(), "t", true);
    ASSERT_EQ(manager.Start(), 0);
    ASSERT_EQ(manager.RemoteDeviceOnline("g", "\xFF"), 0);
    std::string dir = "before";
    EXPECT_EQ(manager.GetGroupNeighborDistributedDir("g", "\xFF", dir), 1005);
    EXPECT_EQ(dir, "before");
}

TEST_F(OfficeServiceTest, CallsAreWritten_AndFailOnRequest) {
    {
        DistributedFileManager manager("i", "d\xC3\xA9", "t", false);
        SetEnvironmentVariableW(L"PLENX_OFFICE_FAIL", L"Start=7, Stop=8");
        EXPECT_EQ(manager.Start(), 7);
        EXPECT_EQ(manager.Stop(), 8);
        SetEnvironmentVariableW(L"PLENX_OFFICE_FAIL", nullptr);
        EXPECT_EQ(manager.Stop(), 1001);
    }
    EXPECT_EQ(ReadFile(log_),
              "DistributedFileManager(\"i\", \"d\xC3\xA9\", \"t\", false)\n"
              "Start() = 7\n"
              "Stop() = 8\n"
              "Stop() = 1001\n"
              "~DistributedFileManager()\n");
}

TEST_F(OfficeServiceTest, ProcessEndsWhileAThreadCalls_LateCallsAreStillWritten) {
    SetEnvironmentVariableW(L"PLENX_LOG_LEVEL", L"off");
    SetEnvironmentVariableW(L"PLENX_OFFICE_LOG", nullptr);
    SetEnvironmentVariableW(L"PLENX_LATE_OFFICE_LOG", log_.c_str());
    for (int i = 0; i != Repetitions(); ++i) {
        SCOPED_TRACE(i);
        std::filesystem::remove(log_);
        ASSERT_NO_FATAL_FAILURE(RunHost("busy"));
        EXPECT_EQ(ReadFile(log_), "UninstallPackages() = 1007\n~DistributedFileManager()\n");
    }
}

}  // namespace
}  // namespace PlenxTest
