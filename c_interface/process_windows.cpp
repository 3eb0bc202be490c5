#include "own_process.h"

#include <windows.h>

// Every ntdll since Windows XP exports this, but no header of the toolchain declares it.
extern "C" BOOLEAN NTAPI RtlDllShutdownInProgress(void);

namespace PlenxC {

bool ProcessIsEnding() noexcept {
    return RtlDllShutdownInProgress() != FALSE;
}

void StayLoaded() noexcept {
    static const char here = 0;
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&here), &self);
}

WaitEvent::~WaitEvent() {
    if (handle_ != nullptr) {
        CloseHandle(handle_);
    }
}

void* WaitEvent::Handle(bool set) noexcept {
    if (handle_ == nullptr) {
        handle_ = CreateEventW(nullptr, TRUE, set ? TRUE : FALSE, nullptr);
    }
    return handle_;
}

void WaitEvent::Set() noexcept {
    if (handle_ != nullptr) {
        SetEvent(handle_);
    }
}

void WaitEvent::Reset() noexcept {
    if (handle_ != nullptr) {
        ResetEvent(handle_);
    }
}

}  // namespace PlenxC
