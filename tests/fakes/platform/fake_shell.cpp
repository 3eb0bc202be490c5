#include "platform/fake_shell.h"

#include <shlobj.h>

#include <utility>

#include "platform/call_text.h"
#include "platform/platform_call.h"

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

}  // namespace

void FakeShell::Reset() {
    const Lock lock(mutex_);
    notifications_.clear();
}

void FakeShell::Add(Notification notification) {
    const Lock lock(mutex_);
    notifications_.push_back(std::move(notification));
}

std::vector<FakeShell::Notification> FakeShell::Notifications() const {
    const Lock lock(mutex_);
    return notifications_;
}

void SHChangeNotify(LONG eventId, UINT flags, LPCVOID item1, LPCVOID item2) {
    // The product passes paths as items, in this platform's wide characters.
    const auto path = static_cast<const wchar_t*>(item1);
    const PlatformCall call("SHChangeNotify");
    call.Record({Hex(static_cast<DWORD>(eventId)), Hex(flags), Quoted(path),
                 Quoted(static_cast<const wchar_t*>(item2))});
    call.Platform().Shell().Add({eventId, flags, path == nullptr ? L"" : path, item2 != nullptr});
}
