#include "common/process_life.h"

#include <windows.h>

namespace DistributedFs {
namespace {

bool processIsEnding = false;

}  // namespace

bool ProcessIsEnding() noexcept {
    return processIsEnding;
}

void PinModule() noexcept {
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&processIsEnding), &self);
}

}  // namespace DistributedFs

// Runs before the destructors of this module's statics. On detach, reserved is null for
// FreeLibrary and non-null for the end of the process.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_DETACH && reserved != nullptr) {
        DistributedFs::processIsEnding = true;
    }
    return TRUE;
}
