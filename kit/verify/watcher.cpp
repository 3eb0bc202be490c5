#include "verify/watcher.h"

#include <memory>
#include <string>
#include <vector>

#include "support/start_process.h"
#include "verify/command.h"
#include "verify/traces.h"

namespace PlenxVerify {
namespace {

using PlenxSupport::Handle;

constexpr DWORD kUntilItEnds = 5000;

std::wstring OwnPath() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

Handle Inheritable(HANDLE handle, DWORD access) {
    HANDLE copy = nullptr;
    DuplicateHandle(GetCurrentProcess(), handle, GetCurrentProcess(), &copy, access, TRUE,
                    access == 0 ? DUPLICATE_SAME_ACCESS : 0);
    return Handle(copy);
}

// Only the handles of the list go to the child. It must not hold the streams of this process,
// because somebody may wait for their end.
class InheritedHandles {
public:
    explicit InheritedHandles(std::vector<HANDLE> handles) : handles_(std::move(handles)) {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        memory_.resize(size);
        InitializeProcThreadAttributeList(Get(), 1, 0, &size);
        UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST,
                                  static_cast<void*>(handles_.data()),
                                  handles_.size() * sizeof(HANDLE), nullptr, nullptr);
    }
    ~InheritedHandles() { DeleteProcThreadAttributeList(Get()); }
    InheritedHandles(const InheritedHandles&) = delete;
    InheritedHandles& operator=(const InheritedHandles&) = delete;

    LPPROC_THREAD_ATTRIBUTE_LIST Get() {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
    }

private:
    std::vector<HANDLE> handles_;
    std::vector<char> memory_;
};

// Only the lower 32 bits of a handle count.
std::wstring NumberOf(const Handle& handle) {
    return L" " + std::to_wstring(HandleToLong(handle.Get()));
}

}  // namespace

Watcher::Watcher(HANDLE turn) : done_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    const Handle run = Inheritable(GetCurrentProcess(), SYNCHRONIZE);
    const Handle done = Inheritable(done_.Get(), 0);
    const Handle itsTurn = Inheritable(turn, 0);
    InheritedHandles inherited({run.Get(), done.Get(), itsTurn.Get()});
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof startup;
    startup.lpAttributeList = inherited.Get();
    PROCESS_INFORMATION started{};
    std::wstring line = L"\"" + OwnPath() + L"\" verify-watcher" + NumberOf(run) + NumberOf(done) +
                        NumberOf(itsTurn);
    if (PlenxSupport::StartProcess(line, true, DETACHED_PROCESS | EXTENDED_STARTUPINFO_PRESENT,
                                   startup.StartupInfo, started)) {
        CloseHandle(started.hThread);
        process_ = Handle(started.hProcess);
    }
}

Watcher::~Watcher() {
    SetEvent(done_.Get());
    WaitForSingleObject(process_.Get(), kUntilItEnds);
}

int RunWatcher(const WatcherOptions& options, const PlenxKit::Streams&) {
    const Handle run(LongToHandle(options.run));
    const Handle done(LongToHandle(options.done));
    const Handle turn(LongToHandle(options.turn));
    const HANDLE ends[] = {done.Get(), run.Get()};
    if (WaitForMultipleObjects(2, ends, FALSE, INFINITE) != WAIT_OBJECT_0) {
        RemoveAllTraces();
    }
    return 0;
}

}  // namespace PlenxVerify
