// The layer holds all state of this DLL. It is made when the DLL is loaded and never destroyed,
// because other DLLs may still call while a process ends.

#ifndef PLENXSDK_C_LAYER_H
#define PLENXSDK_C_LAYER_H

#include <memory>
#include <utility>

#include "fan_out.h"
#include "handle_table.h"
#include "result.h"

namespace PlenxC {

/// Holds a listener of that kind and keeps it alive.
template <class Kind>
class Held {
public:
    explicit Held(std::shared_ptr<Listener> listener) : listener_(std::move(listener)) {}

    Kind& operator*() const { return static_cast<Kind&>(*listener_); }
    Kind* operator->() const { return &**this; }

private:
    std::shared_ptr<Listener> listener_;
};

struct Layer {
    HandleTable handles;
    FanOut fanOut;

    static Layer& Get() noexcept;

    /// Adds the listener, which receives notifications from now on. It may throw, and then nothing
    /// has changed.
    void* Open(const std::shared_ptr<Listener>& listener);

    /// Removes the listener, which receives nothing more, and makes its handle invalid. Threads
    /// that are inside one of its functions go on.
    template <class Kind>
    Held<Kind> Close(const void* handle) {
        const Held<Kind> listener = Find<Kind>(handle);
        if (handles.Remove(handle) == nullptr) {
            RefuseHandle();  // another thread was quicker
        }
        fanOut.Remove(*listener);
        return listener;
    }

    template <class Kind>
    Held<Kind> Find(const void* handle) {
        std::shared_ptr<Listener> listener = handles.Find(handle);
        if (listener == nullptr || listener->kind != Kind::kKind) {
            RefuseHandle();
        }
        return Held<Kind>(std::move(listener));
    }

private:
    [[noreturn]] static void RefuseHandle() {
        throw Refusal{PLENX_E_HANDLE, "the handle",
                      "was closed, was never opened, or is of the other kind"};
    }
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_LAYER_H
