#include "support/server_process.h"

#include <stdexcept>

namespace PlenxBench {
namespace {

constexpr DWORD kReadyMilliseconds = 120000;
constexpr DWORD kStopMilliseconds = 60000;
constexpr DWORD kLifeMilliseconds = 600000;

std::wstring UniqueName() {
    static int count = 0;
    return L"plenx-bench-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(++count);
}

HANDLE EventOf(const std::wstring& name, const wchar_t* what) {
    return CreateEventW(nullptr, TRUE, FALSE, (name + what).c_str());
}

}  // namespace

ServerProcess::ServerProcess(const std::wstring& program, const std::wstring& arguments)
    : name_(UniqueName()),
      ready_(EventOf(name_, L"-ready")),
      stop_(EventOf(name_, L"-stop")),
      process_(L"\"" + PlenxTest::ProgramFolder() + L"\\" + program + L"\" " + arguments + L" " +
               name_) {
    if (WaitForSingleObject(ready_, kReadyMilliseconds) != WAIT_OBJECT_0) {
        throw std::runtime_error("a server does not start");
    }
}

ServerProcess::~ServerProcess() {
    SetEvent(stop_);
    process_.WaitForExit(kStopMilliseconds);
    CloseHandle(stop_);
    CloseHandle(ready_);
}

ServerLife::ServerLife(const std::string& name)
    : ready_(EventOf({name.begin(), name.end()}, L"-ready")),
      stop_(EventOf({name.begin(), name.end()}, L"-stop")) {}

void ServerLife::ServeUntilStopped() const {
    SetEvent(ready_);
    WaitForSingleObject(stop_, kLifeMilliseconds);
}

}  // namespace PlenxBench
