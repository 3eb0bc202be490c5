// Makes random choices that a seed repeats, the same in every process.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_RANDOM_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_RANDOM_H

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace PlenxTest {

class Random {
public:
    /// stream: tells users of the same seed apart.
    Random(std::uint32_t seed, std::uint32_t stream)
        : engine_((std::uint64_t{seed} << 32) | stream) {}

    std::uint32_t Word() { return static_cast<std::uint32_t>(engine_()); }
    /// Returns a number from 0 to limit - 1.
    std::size_t Below(std::size_t limit) { return static_cast<std::size_t>(engine_() % limit); }
    bool Percent(unsigned chance) { return Below(100) < chance; }

    template <class Value, std::size_t count>
    const Value& OneOf(const Value (&values)[count]) {
        return values[Below(count)];
    }

    std::vector<std::uint8_t> Bytes(std::size_t count) {
        std::vector<std::uint8_t> bytes(count);
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(engine_());
        }
        return bytes;
    }

private:
    std::mt19937_64 engine_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_RANDOM_H
