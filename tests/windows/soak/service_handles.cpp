#include "soak/service_handles.h"

#include <windows.h>

#include <atomic>
#include <cstring>

namespace PlenxSoak {
namespace {

std::atomic<std::uint64_t> open{0};

// The system's own, past the counters.
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

void Redirect(ULONG_PTR& slot, void* counter) {
    DWORD before = 0;
    VirtualProtect(&slot, sizeof(slot), PAGE_READWRITE, &before);
    slot = reinterpret_cast<ULONG_PTR>(counter);
    VirtualProtect(&slot, sizeof(slot), before, &before);
}

// The import table lists, beside each slot, the name of what the loader put there.
void RedirectImports(HMODULE module) {
    auto* const image = reinterpret_cast<unsigned char*>(module);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos->e_lfanew);
    const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* library =
        reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(image + table.VirtualAddress);
    for (; library->Name != 0; ++library) {
        const auto* name =
            reinterpret_cast<const IMAGE_THUNK_DATA*>(image + library->OriginalFirstThunk);
        auto* slot = reinterpret_cast<IMAGE_THUNK_DATA*>(image + library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++slot) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
                continue;
            }
            const auto* const import =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(image + name->u1.AddressOfData);
            for (const Detour& detour : kDetours) {
                if (std::strcmp(reinterpret_cast<const char*>(import->Name), detour.name) == 0) {
                    Redirect(slot->u1.Function, detour.counter);
                }
            }
        }
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
