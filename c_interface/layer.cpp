#include "layer.h"

#include <new>

namespace PlenxC {
namespace {

alignas(Layer) unsigned char storage[sizeof(Layer)];
Layer* const kLayer = new (storage) Layer;

}  // namespace

Layer& Layer::Get() noexcept {
    return *kLayer;
}

void* Layer::Open(const std::shared_ptr<Listener>& listener) {
    StayLoaded();
    void* const handle = handles.Add(listener);
    try {
        fanOut.Add(listener);
    } catch (...) {
        handles.Remove(handle);
        throw;
    }
    return handle;
}

}  // namespace PlenxC
