// The functions of the Service Control Manager.

#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/call_text.h"
#include "platform/platform_call.h"

namespace {

constexpr DWORD kNotAManager = ERROR_INVALID_HANDLE;

std::wstring TextOrEmpty(LPCWSTR text) {
    return text == nullptr ? L"" : text;
}

FakeScm::Handle Known(const PlatformCall& call, SC_HANDLE handle) {
    const auto number = reinterpret_cast<std::uintptr_t>(handle);
    const FakeScm::Handle* const found = call.Platform().Scm().Handles().Find(number);
    if (found == nullptr) {
        call.RejectHandle(handle);
    }
    return *found;
}

// Returns a service handle, and rejects a handle of the manager in its place.
FakeScm::Handle KnownService(const PlatformCall& call, SC_HANDLE handle) {
    FakeScm::Handle found = Known(call, handle);
    if (!found.service) {
        call.RejectHandle(handle);
    }
    return found;
}

SC_HANDLE AsHandle(std::uintptr_t number) {
    return reinterpret_cast<SC_HANDLE>(number);
}

}  // namespace

SC_HANDLE OpenSCManagerW(LPCWSTR machine, LPCWSTR database, DWORD access) {
    const PlatformCall call("OpenSCManagerW");
    call.Record({Quoted(machine), Quoted(database), Hex(access)});
    std::uintptr_t handle = 0;
    call.Run([&] { return call.Platform().Scm().OpenManager(access, handle); });
    return AsHandle(handle);
}

SC_HANDLE OpenServiceW(SC_HANDLE manager, LPCWSTR name, DWORD access) {
    const PlatformCall call("OpenServiceW");
    const FakeScm::Handle opener = Known(call, manager);
    call.Record({Quoted(name), Hex(access)});
    std::uintptr_t handle = 0;
    call.Run([&] {
        return opener.service ? kNotAManager
                              : call.Platform().Scm().Open(opener, name, access, handle);
    });
    return AsHandle(handle);
}

SC_HANDLE CreateServiceW(SC_HANDLE manager, LPCWSTR name, LPCWSTR displayName, DWORD access,
                         DWORD type, DWORD startType, DWORD errorControl, LPCWSTR binaryPath,
                         LPCWSTR loadOrderGroup, LPDWORD tagId, LPCWSTR dependencies,
                         LPCWSTR account, LPCWSTR password) {
    const PlatformCall call("CreateServiceW");
    const FakeScm::Handle opener = Known(call, manager);
    call.Record({Quoted(name), Quoted(displayName), Hex(access), Hex(type),
                 std::to_string(startType), std::to_string(errorControl), Quoted(binaryPath),
                 Quoted(loadOrderGroup), tagId == nullptr ? "null" : "tag", Quoted(dependencies),
                 Quoted(account), Quoted(password)});
    std::uintptr_t handle = 0;
    call.Run([&] {
        const FakeServiceConfig config = {name,         TextOrEmpty(displayName), type, startType,
                                          errorControl, TextOrEmpty(binaryPath)};
        return opener.service ? kNotAManager
                              : call.Platform().Scm().Create(opener, config, access, handle);
    });
    return AsHandle(handle);
}

BOOL StartServiceW(SC_HANDLE service, DWORD count, LPCWSTR* arguments) {
    const PlatformCall call("StartServiceW");
    const FakeScm::Handle handle = KnownService(call, service);
    std::string texts = arguments == nullptr ? "null" : "";
    std::vector<std::wstring> copies;
    for (DWORD i = 0; i != count; ++i) {
        texts += (i == 0 ? "" : ", ") + Quoted(arguments[i]);
        copies.push_back(arguments[i]);
    }
    call.Record({FakeScm::NameOf(handle), std::to_string(count), texts});
    return call.Run([&] { return call.Platform().Scm().Start(handle, copies); });
}

BOOL ControlService(SC_HANDLE service, DWORD control, LPSERVICE_STATUS status) {
    const PlatformCall call("ControlService");
    const FakeScm::Handle handle = KnownService(call, service);
    call.Record({FakeScm::NameOf(handle), std::to_string(control)});
    return call.Run([&] { return call.Platform().Scm().Control(handle, control, *status); });
}

BOOL QueryServiceStatusEx(SC_HANDLE service, SC_STATUS_TYPE level, LPBYTE buffer, DWORD size,
                          LPDWORD bytesNeeded) {
    const PlatformCall call("QueryServiceStatusEx");
    const FakeScm::Handle handle = KnownService(call, service);
    call.Record({FakeScm::NameOf(handle), std::to_string(level), std::to_string(size)});
    return call.Run([&]() -> DWORD {
        SERVICE_STATUS_PROCESS status;
        if (level != SC_STATUS_PROCESS_INFO) {
            return ERROR_INVALID_LEVEL;
        }
        *bytesNeeded = sizeof(status);
        if (size < sizeof(status)) {
            return ERROR_INSUFFICIENT_BUFFER;
        }
        const DWORD error = call.Platform().Scm().Query(handle, status);
        if (error == 0) {
            std::memcpy(buffer, &status, sizeof(status));
        }
        return error;
    });
}

BOOL DeleteService(SC_HANDLE service) {
    const PlatformCall call("DeleteService");
    const FakeScm::Handle handle = KnownService(call, service);
    call.Record({FakeScm::NameOf(handle)});
    return call.Run([&] { return call.Platform().Scm().Delete(handle); });
}

BOOL CloseServiceHandle(SC_HANDLE handle) {
    const PlatformCall call("CloseServiceHandle");
    const FakeScm::Handle closed = Known(call, handle);
    call.Record({FakeScm::NameOf(closed)});
    call.Platform().Scm().Close(reinterpret_cast<std::uintptr_t>(handle));
    call.Succeed();
    return TRUE;
}
