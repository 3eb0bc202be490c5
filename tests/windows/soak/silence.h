// Checks whether the services still get through to the host. It counts rests instead of seconds,
// because a slow machine takes longer for everything.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_SILENCE_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_SILENCE_H

#include <cstdint>

namespace PlenxSoak {

class Silence {
public:
    /// Takes the totals since the beginning, at each rest.
    void AtRest(std::uint64_t goodStarts, std::uint64_t notifications) {
        if (notifications != notifications_) {
            rests_ = 0;
        } else if (goodStarts != goodStarts_) {
            ++rests_;
        }
        goodStarts_ = goodStarts;
        notifications_ = notifications;
    }

    /// A mix of troubles may keep the services quiet for one rest or two, but not for this many.
    bool TooLong() const { return rests_ >= kMostRests; }

    static constexpr int kMostRests = 6;

private:
    std::uint64_t goodStarts_ = 0;
    std::uint64_t notifications_ = 0;
    int rests_ = 0;  // how many rests in a row had started services that said nothing
};

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_SILENCE_H
