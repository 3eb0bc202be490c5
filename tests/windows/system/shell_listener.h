// What Windows Explorer is told, as a window in the same process hears it. A listener belongs to
// one thread, which must pump: the shell waits for whoever listens.

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_SHELL_LISTENER_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_SHELL_LISTENER_H

#include <windows.h>

#include <shlobj.h>

#include <cstddef>

#include "system/library_log.h"

namespace PlenxTest {

/// Writes down each event as "<event> <path>".
class ShellListener {
public:
    ShellListener();
    ~ShellListener();
    ShellListener(const ShellListener&) = delete;
    ShellListener& operator=(const ShellListener&) = delete;

    bool Listens() const { return window_ != nullptr && registration_ != 0; }

    /// Takes what has come.
    void Pump();
    /// The same, until there are so many events. @return false when they did not come in time.
    bool WaitForEvents(std::size_t count);

    const Lines& Events() const { return events_; }

private:
    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM first, LPARAM second);
    void Take(HANDLE change, DWORD process);

    HWND window_;
    ULONG registration_ = 0;
    Lines events_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_SHELL_LISTENER_H
