#include "fake_process.h"

#include <new>

#include "own_process.h"

namespace {

struct FakeEvent {
    std::atomic<bool> set;
};

FakeEvent* EventOf(void* handle) {
    return static_cast<FakeEvent*>(handle);
}

}  // namespace

bool LayerProcess::IsSet(void* handle) {
    return EventOf(handle)->set;
}

namespace PlenxC {

bool ProcessIsEnding() noexcept {
    return LayerProcess::ending;
}

void StayLoaded() noexcept {
    ++LayerProcess::pins;
}

WaitEvent::~WaitEvent() {
    if (handle_ != nullptr) {
        delete EventOf(handle_);
        --LayerProcess::liveEvents;
    }
}

void* WaitEvent::Handle(bool set) noexcept {
    if (handle_ == nullptr && LayerProcess::givesEvents) {
        handle_ = new (std::nothrow) FakeEvent{{set}};
        LayerProcess::liveEvents += handle_ != nullptr ? 1 : 0;
    }
    return handle_;
}

void WaitEvent::Set() noexcept {
    if (handle_ != nullptr) {
        EventOf(handle_)->set = true;
    }
}

void WaitEvent::Reset() noexcept {
    if (handle_ != nullptr) {
        EventOf(handle_)->set = false;
    }
}

}  // namespace PlenxC
