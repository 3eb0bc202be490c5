#include "hostile/scale.h"

#include <cstdlib>

namespace PlenxTest {
namespace {

unsigned long Variable(const char* name, unsigned long otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr ? std::strtoul(text, nullptr, 10) : otherwise;
}

}  // namespace

unsigned HostileMessages() {
    return static_cast<unsigned>(Variable("PLENX_TEST_HOSTILE", 500));
}

std::uint32_t HostileSeed() {
    return static_cast<std::uint32_t>(Variable("PLENX_TEST_HOSTILE_SEED", 1));
}

DWORD LongestStorm() {
    return 60 * 1000 + HostileMessages() * 30;
}

}  // namespace PlenxTest
