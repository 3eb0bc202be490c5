// All that the layer holds. It is made when the DLL is loaded and never destroyed: while a process
// ends, other DLLs may still call.

#ifndef PLENXSDK_C_LAYER_H
#define PLENXSDK_C_LAYER_H

#include <memory>
#include <utility>

#include "fan_out.h"
#include "handle_table.h"
#include "result.h"

namespace PlenxC {

/// A listener of that kind, which lives at least as long as this.
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

    /// The listener hears from now on. May throw; then nothing has happened.
    void* Open(const std::shared_ptr<Listener>& listener);

    /// The listener hears nothing more, and its handle is worth nothing; whoever is inside a call
    /// of it is left alone.
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
