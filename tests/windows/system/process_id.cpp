#include "system/process_id.h"

namespace PlenxTest {
namespace {

constexpr ULONGLONG kLongest = 20000;

DWORD WINAPI Nothing(void*) {
    return 0;
}

// Starts a thread, waits for its end and returns its id.
DWORD UseOneId() {
    DWORD id = 0;
    const PlenxSupport::Handle thread(CreateThread(nullptr, 0, Nothing, nullptr, 0, &id));
    WaitForSingleObject(thread.Get(), 5000);
    return id;
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
            process_ =
                std::make_unique<ChildProcess>(ChildProcess::Self(L"--sleeper"), CREATE_SUSPENDED);
            if (process_->Id() != id) {
                process_.reset();
            }
        }
        last = used;
    }
}

}  // namespace PlenxTest
