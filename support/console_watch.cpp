#include "support/console_watch.h"

#include <windows.h>

#include <mutex>

#include "support/interruption.h"

namespace PlenxSupport {
namespace {

// Windows calls the handler on a thread of its own, which may still run when the watch is
// destroyed.
std::mutex watchMutex;
Interruption* watchedFor = nullptr;

// @return whether this was the first interruption.
bool RaiseIt() {
    const std::lock_guard<std::mutex> lock(watchMutex);
    const bool isFirst = watchedFor != nullptr && !watchedFor->IsRaised();
    if (isFirst) {
        watchedFor->Raise();
    }
    return isFirst;
}

BOOL WINAPI OnConsoleEvent(DWORD event) {
    const bool isFirst = RaiseIt();
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        // Windows ends the process as soon as this returns, so the process ends itself first.
        Sleep(INFINITE);
    }
    // A handler that returns FALSE leaves the event to Windows, which ends the process.
    return isFirst ? TRUE : FALSE;
}

}  // namespace

ConsoleWatch::ConsoleWatch(Interruption& interruption) {
    {
        const std::lock_guard<std::mutex> lock(watchMutex);
        watchedFor = &interruption;
    }
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

ConsoleWatch::~ConsoleWatch() {
    SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
    const std::lock_guard<std::mutex> lock(watchMutex);
    watchedFor = nullptr;
}

}  // namespace PlenxSupport
