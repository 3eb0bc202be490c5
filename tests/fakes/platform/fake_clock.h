// The virtual clock. Time passes only through Sleep, and through Advance in a test.

#ifndef PLENXSDK_FAKES_PLATFORM_FAKE_CLOCK_H
#define PLENXSDK_FAKES_PLATFORM_FAKE_CLOCK_H

#include <cstdint>
#include <mutex>

class FakeClock {
public:
    explicit FakeClock(std::recursive_mutex& mutex) : mutex_(mutex) {}

    void Reset();

    /// Returns the milliseconds since the test began.
    std::uint64_t Now() const;
    void Advance(std::uint64_t milliseconds);

    /// Returns the value for GetTickCount, which wraps at 32 bits.
    std::uint32_t Ticks() const;
    void SetTicks(std::uint32_t ticks);

private:
    std::recursive_mutex& mutex_;
    std::uint64_t now_ = 0;
    std::uint32_t ticksAtZero_ = kFirstTicks;

    static constexpr std::uint32_t kFirstTicks = 1'000'000;
};

#endif  // PLENXSDK_FAKES_PLATFORM_FAKE_CLOCK_H
