#include "platform/fake_clock.h"

#include <windows.h>

#include "platform/platform_call.h"

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

}  // namespace

void FakeClock::Reset() {
    const Lock lock(mutex_);
    now_ = 0;
    ticksAtZero_ = kFirstTicks;
}

std::uint64_t FakeClock::Now() const {
    const Lock lock(mutex_);
    return now_;
}

void FakeClock::Advance(std::uint64_t milliseconds) {
    const Lock lock(mutex_);
    now_ += milliseconds;
}

std::uint32_t FakeClock::Ticks() const {
    const Lock lock(mutex_);
    return ticksAtZero_ + static_cast<std::uint32_t>(now_);
}

void FakeClock::SetTicks(std::uint32_t ticks) {
    const Lock lock(mutex_);
    ticksAtZero_ = ticks - static_cast<std::uint32_t>(now_);
}

DWORD GetTickCount() {
    PlatformCall call("GetTickCount");
    call.Record({});
    return call.Platform().Clock().Ticks();
}

void Sleep(DWORD milliseconds) {
    PlatformCall call("Sleep");
    call.Record({std::to_string(milliseconds)});
    // A sleep of 0 gives the processor away. It must take some time, because otherwise a loop that
    // polls with it would never end.
    call.Platform().Clock().Advance(milliseconds == 0 ? 1 : milliseconds);
}
