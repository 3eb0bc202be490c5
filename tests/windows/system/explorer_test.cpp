// Tests the notifications for Windows Explorer, which a window in the same process hears.

#include "system/host.h"
#include "system/shell_listener.h"

namespace PlenxTest {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

const std::string kDriveAdded = std::to_string(SHCNE_DRIVEADD);
const std::string kFolderChanged = std::to_string(SHCNE_UPDATEDIR);

class Explorer : public Host {
protected:
    ShellListener listener;
};

HOST_TEST(Explorer, RemoteDeviceOnline_RefreshesTheFolderAndAddsTheDrive) {
    ASSERT_TRUE(listener.Listens());
    Init();
    ASSERT_TRUE(Start(kPcService));
    manager.RemoteDeviceOnline(kPcService, "group", "there");
    listener.WaitForEvents(3);
    EXPECT_TRUE(ServiceComesToSay("Manager answered ExploreFlushNotify(18) result:0 reply:0"));
    // The system itself decides where it files the computer folder, which is no path.
    const testing::Matcher<Lines> expected =
        ElementsAre(kFolderChanged + " " + folder.Data() + "\\plenx\\pc", kDriveAdded + " P:\\",
                    AllOf(StartsWith(kFolderChanged + " "),
                          EndsWith("shell:::{20D04FE0-3AEA-1069-A2D8-08002B30309D}")));
    EXPECT_TRUE(ShowsNews(testing::Value(listener.Events(), expected), listener.Events()));
}

HOST_TEST(Explorer, LocalDeviceOffline_RefreshesTheDrive) {
    ASSERT_TRUE(listener.Listens());
    Init();
    ASSERT_TRUE(Start(kPcService));
    manager.LocalDeviceOffline(kPcService, "group", "here", DistributedFs::TriggerType{0});
    listener.WaitForEvents(1);
    EXPECT_TRUE(ServiceComesToSay("Manager answered ExploreFlushNotify(18) result:0 reply:0"));
    const Lines expected = {kFolderChanged + " P:\\"};
    EXPECT_TRUE(ShowsNews(listener.Events() == expected, listener.Events()));
}

}  // namespace
}  // namespace PlenxTest
