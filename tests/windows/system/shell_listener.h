// Hears what Windows Explorer is told, through a window in the same process. A listener belongs to
// one thread, which must pump messages, because the shell waits for its listeners.

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_SHELL_LISTENER_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_SHELL_LISTENER_H

#include <windows.h>

#include <shlobj.h>

#include <cstddef>
#include <string>

#include "support/system_habits.h"
#include "system/library_log.h"

namespace PlenxTest {

/// Records whether the right news came, and judges this where the system's habit is known.
inline testing::AssertionResult ShowsNews(bool right, const Lines& events) {
    std::string heard;
    for (const std::string& event : events) {
        heard += (heard.empty() ? "heard " : ", ") + event;
    }
    return Shows(Habits::kNewsOfTheShell, right ? "yes" : heard.empty() ? "heard nothing" : heard);
}

/// Writes down each event as "<event> <path>".
class ShellListener {
public:
    ShellListener();
    ~ShellListener();
    ShellListener(const ShellListener&) = delete;
    ShellListener& operator=(const ShellListener&) = delete;

    bool Listens() const { return window_ != nullptr && registration_ != 0; }

    /// Returns the events that have come.
    void Pump();
    /// Does the same, but waits for that many events. @return false when they did not come in time.
    bool WaitForEvents(std::size_t count);

    const Lines& Events() const { return events_; }

    /// Returns how long to wait for news that may not come at all.
    static DWORD Patience() { return IsOpen(Habits::kNewsOfTheShell) ? 2000 : 15000; }

private:
    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM first, LPARAM second);
    void Take(HANDLE change, DWORD process);

    HWND window_;
    ULONG registration_ = 0;
    Lines events_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_SHELL_LISTENER_H
