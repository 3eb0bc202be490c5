// Says how much the tests of this program send, and with which seed.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_SCALE_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_SCALE_H

#include <windows.h>

#include <cstdint>

namespace PlenxTest {

/// Returns how many messages go each way: PLENX_TEST_HOSTILE, or a few hundred.
unsigned HostileMessages();

/// Returns the seed: PLENX_TEST_HOSTILE_SEED, or 1.
std::uint32_t HostileSeed();

/// Returns a deadline that is long enough for that many messages on a machine ten times slower than
/// ours.
DWORD LongestStorm();

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_SCALE_H
