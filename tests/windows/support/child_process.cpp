#include "support/child_process.h"

#include "support/start_process.h"

namespace PlenxTest {

std::wstring ProgramPath() {
    std::wstring path(4096, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

std::wstring ProgramFolder() {
    const std::wstring path = ProgramPath();
    return path.substr(0, path.find_last_of(L'\\'));
}

void EndProcess(DWORD id) {
    const PlenxSupport::Handle process(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, id));
    if (process) {
        TerminateProcess(process.Get(), 0);
        WaitForSingleObject(process.Get(), 5000);
    }
}

ChildProcess::ChildProcess(std::wstring commandLine, DWORD flags) {
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (PlenxSupport::StartProcess(commandLine, false, flags, startup, process)) {
        const PlenxSupport::Handle thread(process.hThread);
        process_ = PlenxSupport::Handle(process.hProcess);
        id_ = process.dwProcessId;
    } else {
        startError_ = GetLastError();
    }
}

ChildProcess::~ChildProcess() {
    if (process_ && WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT) {
        Kill();
    }
}

std::wstring ChildProcess::Self(const std::wstring& arguments) {
    return L"\"" + ProgramPath() + L"\" " + arguments;
}

std::optional<DWORD> ChildProcess::WaitForExit(DWORD milliseconds) {
    DWORD code = 0;
    if (!process_ || WaitForSingleObject(process_.Get(), milliseconds) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(process_.Get(), &code)) {
        return std::nullopt;
    }
    return code;
}

void ChildProcess::Kill() {
    if (process_) {
        TerminateProcess(process_.Get(), 0xDEAD);
        WaitForSingleObject(process_.Get(), 5000);
    }
}

}  // namespace PlenxTest
