#include "distributedfile/office.h"

#include <gmock/gmock.h>

#include "temporary_folder.h"

using namespace Office;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class OfficeTest : public testing::Test {
protected:
    TemporaryFolder data;
    OfficeState office{data.Path().string()};
    std::string dir = "before";
};

class StartedOfficeTest : public OfficeTest {
protected:
    void SetUp() override { ASSERT_EQ(office.Start(), kOk); }
};

}  // namespace

TEST_F(OfficeTest, StartAndStopAlternate) {
    EXPECT_EQ(office.Stop(), kNotStarted);
    EXPECT_EQ(office.Start(), kOk);
    EXPECT_EQ(office.Start(), kAlreadyStarted);
    EXPECT_EQ(office.Stop(), kOk);
    EXPECT_EQ(office.Stop(), kNotStarted);
    EXPECT_EQ(office.Start(), kOk);
}

TEST_F(OfficeTest, NotStarted_NoDeviceOperationWorks) {
    EXPECT_EQ(office.LocalDeviceOnline("g", "d", 1, {}), kNotStarted);
    EXPECT_EQ(office.RemoteDeviceOnline("g", "d"), kNotStarted);
    EXPECT_EQ(office.LocalDeviceOffline("g", "d"), kNotStarted);
    EXPECT_EQ(office.RemoteDeviceOffline("g", "d"), kNotStarted);
    EXPECT_EQ(office.GetGroupNeighborDistributedDir("g", "d", dir), kNotStarted);
    EXPECT_EQ(dir, "before");
}

TEST_F(StartedOfficeTest, EmptyNames_AreRefused) {
    EXPECT_EQ(office.LocalDeviceOnline("", "d", 1, {}), kInvalidArgument);
    EXPECT_EQ(office.RemoteDeviceOnline("g", ""), kInvalidArgument);
    EXPECT_EQ(office.LocalDeviceOffline("", "d"), kInvalidArgument);
    EXPECT_EQ(office.RemoteDeviceOffline("g", ""), kInvalidArgument);
    EXPECT_EQ(office.GetGroupNeighborDistributedDir("", "", dir), kInvalidArgument);
}

TEST_F(StartedOfficeTest, LocalDeviceIsKeptWithItsBytes) {
    const unsigned char bytes[] = {1, 0, 255};
    ASSERT_EQ(office.LocalDeviceOnline("g", "d", 9, {bytes, 3}), kOk);
    const LocalDevice* const device = office.FindLocalDevice("g", "d");
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(device->type, 9);
    EXPECT_THAT(device->data, ElementsAre(1, 0, 255));
    EXPECT_EQ(office.FindLocalDevice("g", "e"), nullptr);
    EXPECT_EQ(office.FindLocalDevice("h", "d"), nullptr);
}

TEST_F(StartedOfficeTest, LocalDeviceTwice_KeepsTheNewValues) {
    const unsigned char bytes[] = {1, 2};
    ASSERT_EQ(office.LocalDeviceOnline("g", "d", 9, {bytes, 2}), kOk);
    ASSERT_EQ(office.LocalDeviceOnline("g", "d", 8, {}), kOk);
    EXPECT_EQ(office.FindLocalDevice("g", "d")->type, 8);
    EXPECT_THAT(office.FindLocalDevice("g", "d")->data, IsEmpty());
}

TEST_F(StartedOfficeTest, DataIsUpTo16Bytes) {
    const unsigned char bytes[17] = {};
    EXPECT_EQ(office.LocalDeviceOnline("g", "d", 1, {bytes, 16}), kOk);
    EXPECT_EQ(office.LocalDeviceOnline("g", "e", 1, {bytes, 17}), kInvalidArgument);
    EXPECT_EQ(office.LocalDeviceOnline("g", "e", 1, {bytes, -1}), kInvalidArgument);
    EXPECT_EQ(office.LocalDeviceOnline("g", "e", 1, {nullptr, 1}), kInvalidArgument);
    EXPECT_EQ(office.FindLocalDevice("g", "e"), nullptr);
}

TEST_F(StartedOfficeTest, DevicesGoOfflineOnce_EachKindForItself) {
    ASSERT_EQ(office.LocalDeviceOnline("g", "d", 1, {}), kOk);
    EXPECT_EQ(office.RemoteDeviceOffline("g", "d"), kUnknownDevice);
    EXPECT_EQ(office.LocalDeviceOffline("h", "d"), kUnknownDevice);
    EXPECT_EQ(office.LocalDeviceOffline("g", "d"), kOk);
    EXPECT_EQ(office.LocalDeviceOffline("g", "d"), kUnknownDevice);
    ASSERT_EQ(office.RemoteDeviceOnline("g", "d"), kOk);
    EXPECT_EQ(office.LocalDeviceOffline("g", "d"), kUnknownDevice);
    EXPECT_EQ(office.RemoteDeviceOffline("h", "d"), kUnknownDevice);
    EXPECT_EQ(office.RemoteDeviceOffline("g", "d"), kOk);
    EXPECT_EQ(office.RemoteDeviceOffline("g", "d"), kUnknownDevice);
}

TEST_F(StartedOfficeTest, FolderOfADeviceThatIsOnline_IsMade) {
    ASSERT_EQ(office.RemoteDeviceOnline("g", "r"), kOk);
    ASSERT_EQ(office.LocalDeviceOnline("g", "l", 1, {}), kOk);
    EXPECT_EQ(office.GetGroupNeighborDistributedDir("g", "r", dir), kOk);
    EXPECT_EQ(dir, (data / "office/g/r").string());
    EXPECT_EQ(office.GetGroupNeighborDistributedDir("g", "l", dir), kOk);
    EXPECT_EQ(dir, (data / "office/g/l").string());
    EXPECT_TRUE(std::filesystem::is_directory(dir));
}

TEST_F(StartedOfficeTest, FolderOfAnUnknownDevice_IsNotMade) {
    EXPECT_EQ(office.GetGroupNeighborDistributedDir("g", "d", dir), kUnknownDevice);
    EXPECT_EQ(dir, "before");
    EXPECT_TRUE(std::filesystem::is_empty(data.Path()));
}

TEST_F(StartedOfficeTest, FolderThatCannotBeMade_IsReported) {
    std::ofstream(data / "office") << "in the way";
    ASSERT_EQ(office.RemoteDeviceOnline("g", "d"), kOk);
    EXPECT_EQ(office.GetGroupNeighborDistributedDir("g", "d", dir), kNoFolder);
}

TEST_F(StartedOfficeTest, StopTakesAllDevicesOffline) {
    ASSERT_EQ(office.RemoteDeviceOnline("g", "d"), kOk);
    ASSERT_EQ(office.Stop(), kOk);
    ASSERT_EQ(office.Start(), kOk);
    EXPECT_EQ(office.RemoteDeviceOffline("g", "d"), kUnknownDevice);
}

TEST_F(StartedOfficeTest, UninstallClearsAll_AndLeavesFolders) {
    ASSERT_EQ(office.RemoteDeviceOnline("g", "d"), kOk);
    ASSERT_EQ(office.GetGroupNeighborDistributedDir("g", "d", dir), kOk);
    EXPECT_EQ(office.UninstallPackages(), kOk);
    EXPECT_EQ(office.Stop(), kNotStarted);
    EXPECT_EQ(office.UninstallPackages(), kOk);
    ASSERT_EQ(office.Start(), kOk);
    EXPECT_EQ(office.RemoteDeviceOffline("g", "d"), kUnknownDevice);
    EXPECT_TRUE(std::filesystem::is_directory(dir));
}
