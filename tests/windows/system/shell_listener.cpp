#include "system/shell_listener.h"

#include <string>

#include "support/wait.h"
#include "support/wide_text.h"

namespace PlenxTest {
namespace {

constexpr UINT kShellNews = WM_APP + 1;

}  // namespace

ShellListener::ShellListener()
    : window_(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                              nullptr)) {
    SHChangeNotifyEntry everything{};
    everything.fRecursive = TRUE;
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&OnMessage));
    registration_ = SHChangeNotifyRegister(window_, SHCNRF_ShellLevel | SHCNRF_NewDelivery,
                                           SHCNE_ALLEVENTS, kShellNews, 1, &everything);
}

ShellListener::~ShellListener() {
    SHChangeNotifyDeregister(registration_);
    DestroyWindow(window_);
}

void ShellListener::Pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
}

bool ShellListener::WaitForEvents(std::size_t count) {
    return WaitFor(
        [&] {
            Pump();
            return events_.size() >= count;
        },
        Patience());
}

LRESULT CALLBACK ShellListener::OnMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == kShellNews) {
        auto* const self =
            reinterpret_cast<ShellListener*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        self->Take(reinterpret_cast<HANDLE>(first), static_cast<DWORD>(second));
        return 0;
    }
    return DefWindowProcW(window, message, first, second);
}

void ShellListener::Take(HANDLE change, DWORD process) {
    PIDLIST_ABSOLUTE* items = nullptr;
    LONG event = 0;
    const HANDLE lock = SHChangeNotification_Lock(change, process, &items, &event);
    wchar_t path[MAX_PATH] = L"";
    if (items != nullptr && items[0] != nullptr) {
        SHGetPathFromIDListW(items[0], path);
    }
    events_.push_back(std::to_string(event) + " " + PlenxSupport::ToUtf8(path));
    SHChangeNotification_Unlock(lock);
}

}  // namespace PlenxTest
