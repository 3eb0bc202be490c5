// How the module ends. When a Windows process exits, the system ends every other thread
// at whatever it was doing and then runs the destructors of the DLLs' statics: locks may
// belong to threads that are gone, and waiting for anybody waits for ever.
//
// A DLL of the host may be detached before this one or after it, and its statics may still call
// the library. So each public operation asks ProcessIsEnding before it takes a lock.

#ifndef PLENXSDK_COMMON_PROCESS_LIFE_H
#define PLENXSDK_COMMON_PROCESS_LIFE_H

#include <new>

namespace DistributedFs {

/// True once the system has ended all threads but the calling one and detaches the DLLs.
bool ProcessIsEnding() noexcept;

/// Keeps this module loaded until the process ends. To be called before the first thread
/// is started: a thread cannot be ended safely while its module is being unloaded.
void PinModule() noexcept;

/// Holds a singleton for the life of the module. When the module is unloaded, the object
/// is destroyed; when the process ends, the object is left as it is and only told so by
/// OnProcessEnd.
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
