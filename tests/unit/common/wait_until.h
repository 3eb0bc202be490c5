// The tests of this folder wait with this function.

#ifndef PLENXSDK_UNIT_COMMON_WAIT_UNTIL_H
#define PLENXSDK_UNIT_COMMON_WAIT_UNTIL_H

#include <chrono>
#include <thread>

/// No wait takes longer than this.
constexpr std::chrono::seconds kDeadline{20};

/// Returns whether the condition came true before the deadline.
template <class Condition>
bool WaitUntil(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + kDeadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

#endif  // PLENXSDK_UNIT_COMMON_WAIT_UNTIL_H
