#include "soak/service_handles.h"

#include <windows.h>

#include <atomic>

#include "support/imports.h"

namespace PlenxSoak {
namespace {

std::atomic<std::uint64_t> open{0};

// These are the system's own functions, past the counters.
template <class Function>
Function* Own(const char* name) {
    const HMODULE system = GetModuleHandleW(L"advapi32.dll");
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(system, name)));
}

SC_HANDLE Counted(SC_HANDLE handle) {
    const DWORD error = GetLastError();
    open += handle != nullptr ? 1 : 0;
    SetLastError(error);
    return handle;
}

SC_HANDLE WINAPI OpenManager(const wchar_t* machine, const wchar_t* database, DWORD access) {
    static auto* const own = Own<decltype(OpenSCManagerW)>("OpenSCManagerW");
    return Counted(own(machine, database, access));
}

SC_HANDLE WINAPI Open(SC_HANDLE manager, const wchar_t* name, DWORD access) {
    static auto* const own = Own<decltype(OpenServiceW)>("OpenServiceW");
    return Counted(own(manager, name, access));
}

SC_HANDLE WINAPI Create(SC_HANDLE manager, const wchar_t* name, const wchar_t* shownName,
                        DWORD access, DWORD type, DWORD start, DWORD errorControl,
                        const wchar_t* path, const wchar_t* group, DWORD* tag,
                        const wchar_t* dependencies, const wchar_t* account,
                        const wchar_t* password) {
    static auto* const own = Own<decltype(CreateServiceW)>("CreateServiceW");
    return Counted(own(manager, name, shownName, access, type, start, errorControl, path, group,
                       tag, dependencies, account, password));
}

BOOL WINAPI Close(SC_HANDLE handle) {
    static auto* const own = Own<decltype(CloseServiceHandle)>("CloseServiceHandle");
    open -= handle != nullptr ? 1 : 0;
    return own(handle);
}

struct Detour {
    const char* name;
    void* counter;
};

const Detour kDetours[] = {
    {"OpenSCManagerW", reinterpret_cast<void*>(OpenManager)},
    {"OpenServiceW", reinterpret_cast<void*>(Open)},
    {"CreateServiceW", reinterpret_cast<void*>(Create)},
    {"CloseServiceHandle", reinterpret_cast<void*>(Close)},
};

void RedirectImports(HMODULE module) {
    for (const Detour& detour : kDetours) {
        PlenxTest::RedirectImport(module, detour.name, detour.counter);
    }
}

}  // namespace

void CountServiceHandles() {
    RedirectImports(GetModuleHandleW(L"plenxsdk.dll"));
    RedirectImports(GetModuleHandleW(nullptr));
}

std::uint64_t ServiceHandles() {
    return open;
}

}  // namespace PlenxSoak
