#include "distributed_file_manager.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <thread>
#include <vector>

#include "distributedfile/office.h"
#include "temporary_folder.h"

namespace {

class DistributedFileManagerTest : public testing::Test {
protected:
    void SetUp() override {
        setenv("PLENX_OFFICE_LOG", (folder / "calls").c_str(), 1);
        unsetenv("PLENX_OFFICE_FAIL");
    }
    void TearDown() override {
        unsetenv("PLENX_OFFICE_LOG");
        unsetenv("PLENX_OFFICE_FAIL");
    }

    std::string Calls() const { return ReadFile(folder / "calls"); }

    const TemporaryFolder folder;
};

}  // namespace

TEST_F(DistributedFileManagerTest, EachCallGetsItsLine_InOrder) {
    setenv("PLENX_OFFICE_FAIL", "RemoteDeviceOffline=12", 1);
    {
        DistributedFileManager manager("i", folder.Path().string(), "t\n", true);
        const unsigned char data[] = {0x01, 0xAB};
        std::string dir;
        EXPECT_EQ(manager.Start(), 0);
        EXPECT_EQ(manager.LocalDeviceOnline("g", "l", -1, data, 2), 0);
        EXPECT_EQ(manager.RemoteDeviceOnline("g", "r\"1"), 0);
        EXPECT_EQ(manager.GetGroupNeighborDistributedDir("g", "l", dir), 0);
        EXPECT_EQ(dir, (folder / "office/g/l").string());
        EXPECT_EQ(manager.RemoteDeviceOffline("g", "r"), 12);
        EXPECT_EQ(manager.LocalDeviceOffline("g", "none"), Office::kUnknownDevice);
        EXPECT_EQ(manager.Stop(), 0);
        EXPECT_EQ(manager.UninstallPackages(), 0);
    }
    EXPECT_EQ(Calls(), "DistributedFileManager(\"i\", \"" + folder.Path().string() +
                           "\", \"t\\x0a\", true)\n"
                           "Start() = 0\n"
                           "LocalDeviceOnline(\"g\", \"l\", -1, 01ab) = 0\n"
                           "RemoteDeviceOnline(\"g\", \"r\\\"1\") = 0\n"
                           "GetGroupNeighborDistributedDir(\"g\", \"l\") = 0\n"
                           "RemoteDeviceOffline(\"g\", \"r\") = 12\n"
                           "LocalDeviceOffline(\"g\", \"none\") = 1003\n"
                           "Stop() = 0\n"
                           "UninstallPackages() = 0\n"
                           "~DistributedFileManager()\n");
}

TEST_F(DistributedFileManagerTest, RequestedFailure_ChangesNothing_AndEndsWithTheRequest) {
    DistributedFileManager manager("i", folder.Path().string(), "t", false);
    setenv("PLENX_OFFICE_FAIL", "Start=7", 1);
    EXPECT_EQ(manager.Start(), 7);
    EXPECT_EQ(manager.Stop(), Office::kNotStarted);
    unsetenv("PLENX_OFFICE_FAIL");
    EXPECT_EQ(manager.Start(), 0);
}

TEST_F(DistributedFileManagerTest, ObjectsKeepTheirStateApart) {
    DistributedFileManager one("i", folder.Path().string(), "t", false);
    DistributedFileManager two("i", folder.Path().string(), "t", false);
    EXPECT_EQ(one.Start(), 0);
    EXPECT_EQ(two.Start(), 0);
    EXPECT_EQ(one.Stop(), 0);
    EXPECT_EQ(two.Start(), Office::kAlreadyStarted);
}

TEST_F(DistributedFileManagerTest, NewObjectAtAnOldAddress_StartsFresh) {
    alignas(DistributedFileManager) unsigned char storage[sizeof(DistributedFileManager)];
    for (int i = 0; i != 2; ++i) {
        auto* const manager =
            new (storage) DistributedFileManager("i", folder.Path().string(), "t", false);
        EXPECT_EQ(manager->Start(), 0);
        manager->~DistributedFileManager();
    }
}

TEST_F(DistributedFileManagerTest, AnyThreadMayCall) {
    unsetenv("PLENX_OFFICE_LOG");
    DistributedFileManager manager("i", folder.Path().string(), "t", false);
    ASSERT_EQ(manager.Start(), 0);
    std::vector<std::thread> threads;
    for (int i = 0; i != 4; ++i) {
        threads.emplace_back([&manager, i] {
            const std::string device = std::to_string(i);
            for (int round = 0; round != 500; ++round) {
                EXPECT_EQ(manager.RemoteDeviceOnline("g", device), 0);
                EXPECT_EQ(manager.RemoteDeviceOffline("g", device), 0);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
