// Waits with a deadline.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_WAIT_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_WAIT_H

#include <windows.h>

namespace PlenxTest {

/// @return false when the condition did not come true in time.
template <class Condition>
bool WaitFor(Condition condition, DWORD milliseconds = 15000) {
    const ULONGLONG end = GetTickCount64() + milliseconds;
    while (!condition()) {
        if (GetTickCount64() > end) {
            return false;
        }
        Sleep(5);
    }
    return true;
}

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_WAIT_H
