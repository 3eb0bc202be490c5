#include "common/process_life.h"

#include <windows.h>

// Every ntdll since Windows XP exports this, but no header of the toolchain declares it.
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
