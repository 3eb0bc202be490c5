// What the layer asks of its process.

#ifndef PLENXSDK_C_PROCESS_H
#define PLENXSDK_C_PROCESS_H

namespace PlenxC {

/// True once the system has ended all other threads and unloads the DLLs: any lock may belong to a
/// thread that is gone.
bool ProcessIsEnding() noexcept;

/// Keeps this module, and with it plenxsdk.dll, loaded until the process ends. Takes the lock of
/// the loader, so no lock of ours may be held.
void StayLoaded() noexcept;

/// An event of the system that stays set until it is reset. Made with the first call of Handle.
/// The caller sees to it that there is one call at a time.
class WaitEvent {
public:
    WaitEvent() = default;
    ~WaitEvent();
    WaitEvent(const WaitEvent&) = delete;
    WaitEvent& operator=(const WaitEvent&) = delete;

    /// Null when there is none to be had.
    void* Handle(bool set) noexcept;
    /// These do nothing as long as nobody has asked for the handle.
    void Set() noexcept;
    void Reset() noexcept;

private:
    void* handle_ = nullptr;
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_PROCESS_H
