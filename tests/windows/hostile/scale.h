// How much the tests of this program send, and from which seed.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_SCALE_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_SCALE_H

#include <windows.h>

#include <cstdint>

namespace PlenxTest {

/// Messages each way: PLENX_TEST_HOSTILE, or a few hundred.
unsigned HostileMessages();

/// PLENX_TEST_HOSTILE_SEED, or 1.
std::uint32_t HostileSeed();

/// For so many messages on a machine that is ten times slower than thought.
DWORD LongestStorm();

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_SCALE_H
