// Tells how the module ends. When a Windows process exits, the system ends every other thread,
// whatever that thread is doing, and then runs the destructors of the DLLs' statics. Locks may then
// belong to threads that are gone, and a wait for any thread would last for ever.
//
// A DLL of the host may be detached before this one or after it, and its statics may still call
// the library. So each public operation asks ProcessIsEnding before it takes a lock.

#ifndef PLENXSDK_COMMON_PROCESS_LIFE_H
#define PLENXSDK_COMMON_PROCESS_LIFE_H

#include <exception>
#include <new>

namespace DistributedFs {

/// Returns true once the system has ended all threads but the calling one and is detaching the
/// DLLs.
bool ProcessIsEnding() noexcept;

/// Keeps this module loaded until the process ends. Call it before the first thread is started: a
/// thread cannot be ended safely while its module is being unloaded.
void PinModule() noexcept;

/// Prepares what the C++ run time keeps for exceptions. Otherwise the first thread that needs it
/// does so under a lock, and the run time takes this lock once more while the process ends. If the
/// system ended that thread in the middle, the host would never exit. Call it before the first
/// thread is started.
inline void PrepareExceptions() noexcept {
    // The compiler drops this call unless its result is used.
    [[maybe_unused]] const volatile int underWay = std::uncaught_exceptions();
}

/// Holds a singleton for the life of the module. When the module is unloaded, this destroys the
/// object. When the process ends, this leaves the object as it is and only calls its OnProcessEnd.
template <class T>
class ModuleObject {
public:
    ModuleObject() { new (storage_) T; }
    ~ModuleObject() {
        if (ProcessIsEnding()) {
            Get().OnProcessEnd();
        } else {
            Get().~T();
        }
    }
    ModuleObject(const ModuleObject&) = delete;
    ModuleObject& operator=(const ModuleObject&) = delete;

    T& Get() noexcept { return *std::launder(reinterpret_cast<T*>(storage_)); }

private:
    alignas(T) unsigned char storage_[sizeof(T)];
};

}  // namespace DistributedFs

#endif  // PLENXSDK_COMMON_PROCESS_LIFE_H
