// The layer asks its process for these things. Visual C++ has a header process.h of its own.

#ifndef PLENXSDK_C_OWN_PROCESS_H
#define PLENXSDK_C_OWN_PROCESS_H

namespace PlenxC {

/// Returns true once the system has ended all other threads and is unloading the DLLs. From then on
/// any lock may belong to a thread that is gone.
bool ProcessIsEnding() noexcept;

/// Keeps this module, and with it plenxsdk.dll, loaded until the process ends. It takes the
/// loader's lock, so the caller must hold no lock of this layer.
void StayLoaded() noexcept;

/// An event of the system that stays set until it is reset. The first call of Handle makes it. The
/// caller must see to it that calls do not overlap.
class WaitEvent {
public:
    WaitEvent() = default;
    ~WaitEvent();
    WaitEvent(const WaitEvent&) = delete;
    WaitEvent& operator=(const WaitEvent&) = delete;

    /// Returns null when the system gives no event.
    void* Handle(bool set) noexcept;
    /// These two do nothing until somebody has asked for the handle.
    void Set() noexcept;
    void Reset() noexcept;

private:
    void* handle_ = nullptr;
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_OWN_PROCESS_H
