// Makes random choices from a seed. The same seed and stream give the same choices on every run and
// platform.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_DICE_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_DICE_H

#include <cstddef>
#include <cstdint>
#include <random>

namespace PlenxSoak {

class Dice {
public:
    /// stream: tells users of the same seed apart.
    Dice(std::uint64_t seed, std::uint64_t stream) {
        std::seed_seq sequence{static_cast<std::uint32_t>(seed),
                               static_cast<std::uint32_t>(seed >> 32),
                               static_cast<std::uint32_t>(stream)};
        engine_.seed(sequence);
    }

    /// Returns a number from 0 to count - 1. The standard's distributions differ between libraries;
    /// this does not.
    std::size_t Below(std::size_t count) { return static_cast<std::size_t>(engine_() % count); }
    bool OneIn(std::size_t count) { return Below(count) == 0; }
    std::uint64_t Bits() { return engine_(); }

    template <class List>
    const auto& Pick(const List& list) {
        return list[Below(std::size(list))];
    }

private:
    std::mt19937_64 engine_;
};

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_DICE_H
