#include "common/process_life.h"

#include <windows.h>

// Exported by every ntdll since Windows XP, but declared in no header of the toolchain.
extern "C" BOOLEAN NTAPI RtlDllShutdownInProgress(void);

namespace DistributedFs {

bool ProcessIsEnding() noexcept {
    return RtlDllShutdownInProgress() != FALSE;
}

void PinModule() noexcept {
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&PinModule), &self);
}

}  // namespace DistributedFs
