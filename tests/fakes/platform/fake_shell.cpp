#include "platform/fake_shell.h"

#include <shlobj.h>

#include <cstring>
#include <utility>

#include "platform/call_text.h"
#include "platform/platform_call.h"

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

}  // namespace

void FakeShell::Reset() {
    const Lock lock(mutex_);
    notifications_.clear();
    loads_ = 0;
}

int FakeShell::Loads() const {
    const Lock lock(mutex_);
    return loads_;
}

void FakeShell::CountLoads(int change) {
    const Lock lock(mutex_);
    loads_ += change;
}

void FakeShell::Add(Notification notification) {
    const Lock lock(mutex_);
    notifications_.push_back(std::move(notification));
}

std::vector<FakeShell::Notification> FakeShell::Notifications() const {
    const Lock lock(mutex_);
    return notifications_;
}

// The fake machine has no other library. The caller must load the shell library and ask for its one
// function.
HMODULE LoadLibraryExW(LPCWSTR name, HANDLE, DWORD flags) {
    const PlatformCall call("LoadLibraryExW");
    call.Record({Quoted(name), Hex(flags)});
    const bool found =
        call.Run([&] { return Folded(name) == L"shell32.dll" ? 0 : ERROR_MOD_NOT_FOUND; });
    if (!found) {
        return nullptr;
    }
    call.Platform().Shell().CountLoads(1);
    return reinterpret_cast<HMODULE>(&call.Platform().Shell());
}

FARPROC GetProcAddress(HMODULE module, const char* name) {
    const PlatformCall call("GetProcAddress");
    call.Record({Quoted(std::wstring(name, name + std::strlen(name)).c_str())});
    const bool found = call.Run([&] {
        const bool isIt = reinterpret_cast<FakeShell*>(module) == &call.Platform().Shell() &&
                          std::strcmp(name, "SHChangeNotify") == 0;
        return isIt ? 0 : ERROR_PROC_NOT_FOUND;
    });
    return found ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&SHChangeNotify)) : nullptr;
}

BOOL FreeLibrary(HMODULE) {
    const PlatformCall call("FreeLibrary");
    call.Record({});
    call.Platform().Shell().CountLoads(-1);
    return TRUE;
}

void SHChangeNotify(LONG eventId, UINT flags, LPCVOID item1, LPCVOID item2) {
    // The product passes paths as items, in this platform's wide characters.
    const auto path = static_cast<const wchar_t*>(item1);
    const PlatformCall call("SHChangeNotify");
    call.Record({Hex(static_cast<DWORD>(eventId)), Hex(flags), Quoted(path),
                 Quoted(static_cast<const wchar_t*>(item2))});
    call.Platform().Shell().Add({eventId, flags, path == nullptr ? L"" : path, item2 != nullptr});
}
