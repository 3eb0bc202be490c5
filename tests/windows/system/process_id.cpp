#include "system/process_id.h"

#include "support/child_process.h"

namespace PlenxTest {
namespace {

constexpr ULONGLONG kLongest = 20000;

DWORD WINAPI Nothing(void*) {
    return 0;
}

// The id of a thread that has come and gone.
DWORD UseOneId() {
    DWORD id = 0;
    const HANDLE thread = CreateThread(nullptr, 0, Nothing, nullptr, 0, &id);
    WaitForSingleObject(thread, 5000);
    CloseHandle(thread);
    return id;
}

PROCESS_INFORMATION Sleeper() {
    std::wstring commandLine = ChildProcess::Self(L"--sleeper");
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    StartProcess(commandLine, false, CREATE_SUSPENDED, startup, process);
    CloseHandle(process.hThread);
    return process;
}

}  // namespace

ProcessOfId::ProcessOfId(DWORD id) {
    const ULONGLONG end = GetTickCount64() + kLongest;
    DWORD before = 0;  // the id whose turn is before
    for (DWORD last = 0; process_ == nullptr && GetTickCount64() < end;) {
        const DWORD used = UseOneId();
        if (used == id) {
            before = last;
        } else if (used == before) {
            const PROCESS_INFORMATION sleeper = Sleeper();
            if (sleeper.dwProcessId == id) {
                process_ = sleeper.hProcess;
            } else {
                TerminateProcess(sleeper.hProcess, 0);
                CloseHandle(sleeper.hProcess);
            }
        }
        last = used;
    }
}

ProcessOfId::~ProcessOfId() {
    if (process_ != nullptr) {
        TerminateProcess(process_, 0);
        CloseHandle(process_);
    }
}

}  // namespace PlenxTest
