// What Windows Explorer is told, as a window in the same process hears it.

#include <windows.h>

#include <shlobj.h>

#include "system/host.h"

namespace PlenxTest {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

constexpr UINT kShellNews = WM_APP + 1;

/// Writes down each event as "<event> <path>".
class ShellListener {
public:
    ShellListener()
        : window_(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                                  nullptr)) {
        SHChangeNotifyEntry everything{};
        everything.fRecursive = TRUE;
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&OnMessage));
        registration_ = SHChangeNotifyRegister(window_, SHCNRF_ShellLevel | SHCNRF_NewDelivery,
                                               SHCNE_ALLEVENTS, kShellNews, 1, &everything);
    }
    ~ShellListener() {
        SHChangeNotifyDeregister(registration_);
        DestroyWindow(window_);
    }
    ShellListener(const ShellListener&) = delete;
    ShellListener& operator=(const ShellListener&) = delete;

    bool Listens() const { return window_ != nullptr && registration_ != 0; }

    bool WaitForEvents(std::size_t count) {
        return WaitFor([&] {
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                DispatchMessageW(&message);
            }
            return events_.size() >= count;
        });
    }
    const Lines& Events() const { return events_; }

private:
    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
        if (message == kShellNews) {
            auto* const self =
                reinterpret_cast<ShellListener*>(GetWindowLongPtrW(window, GWLP_USERDATA));
            self->Take(reinterpret_cast<HANDLE>(first), static_cast<DWORD>(second));
            return 0;
        }
        return DefWindowProcW(window, message, first, second);
    }

    void Take(HANDLE change, DWORD process) {
        PIDLIST_ABSOLUTE* items = nullptr;
        LONG event = 0;
        const HANDLE lock = SHChangeNotification_Lock(change, process, &items, &event);
        wchar_t path[MAX_PATH] = L"";
        if (items != nullptr && items[0] != nullptr) {
            SHGetPathFromIDListW(items[0], path);
        }
        events_.push_back(std::to_string(event) + " " + std::filesystem::path(path).string());
        SHChangeNotification_Unlock(lock);
    }

    HWND window_;
    ULONG registration_ = 0;
    Lines events_;
};

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
    EXPECT_TRUE(listener.WaitForEvents(3));
    EXPECT_TRUE(ServiceComesToSay("Manager answered ExploreFlushNotify(18) result:0 reply:0"));
    // Where the system files the computer folder, which is no path, is its own matter.
    EXPECT_THAT(
        listener.Events(),
        ElementsAre(kFolderChanged + " " + folder.Data() + "\\plenx\\pc", kDriveAdded + " P:\\",
                    AllOf(StartsWith(kFolderChanged + " "),
                          EndsWith("shell:::{20D04FE0-3AEA-1069-A2D8-08002B30309D}"))));
}

HOST_TEST(Explorer, LocalDeviceOffline_RefreshesTheDrive) {
    ASSERT_TRUE(listener.Listens());
    Init();
    ASSERT_TRUE(Start(kPcService));
    manager.LocalDeviceOffline(kPcService, "group", "here", DistributedFs::TriggerType{0});
    EXPECT_TRUE(listener.WaitForEvents(1));
    EXPECT_TRUE(ServiceComesToSay("Manager answered ExploreFlushNotify(18) result:0 reply:0"));
    EXPECT_THAT(listener.Events(), ElementsAre(kFolderChanged + " P:\\"));
}

}  // namespace
}  // namespace PlenxTest
