#include "support/imports.h"

#include <cstring>

namespace PlenxTest {
namespace {

void* Replace(ULONG_PTR& slot, void* other) {
    void* const former = reinterpret_cast<void*>(slot);
    DWORD protection = 0;
    VirtualProtect(&slot, sizeof(slot), PAGE_READWRITE, &protection);
    slot = reinterpret_cast<ULONG_PTR>(other);
    VirtualProtect(&slot, sizeof(slot), protection, &protection);
    return former;
}

}  // namespace

// Beside each slot, the import table has the name of the function that the loader put there.
void* RedirectImport(HMODULE module, const char* function, void* other) {
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
            if (std::strcmp(reinterpret_cast<const char*>(import->Name), function) == 0) {
                return Replace(slot->u1.Function, other);
            }
        }
    }
    return nullptr;
}

}  // namespace PlenxTest
