#include "soak/mender.h"

#include <windows.h>

#include <tlhelp32.h>

#include <cwchar>
#include <iterator>
#include <vector>

#include "support/child_process.h"
#include "support/handle.h"
#include "support/service_state.h"
#include "support/system_habits.h"
#include "support/wait.h"

namespace PlenxSoak {
namespace {

constexpr const wchar_t* kServices[] = {L"PlenxPcSvc", L"PlenxPhoneSvc"};

bool HasEnded(DWORD processId) {
    const PlenxSupport::Handle process(OpenProcess(SYNCHRONIZE, FALSE, processId));
    return !process || PlenxSupport::IsSet(process);
}

std::vector<DWORD> ServiceProcesses() {
    std::vector<DWORD> processes;
    const PlenxSupport::Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32FirstW(snapshot.Get(), &entry); more;
         more = Process32NextW(snapshot.Get(), &entry)) {
        if (std::wcscmp(entry.szExeFile, L"plenxservice.exe") == 0) {
            processes.push_back(entry.th32ProcessID);
        }
    }
    return processes;
}

bool SystemNotices() {
    return IsUsual(PlenxTest::Habits::kServiceWhoseProcessWasEnded, "stopped");
}

// Wine accepts a service's status from everybody who has opened the service for it.
void ReportStopped(const wchar_t* name) {
    constexpr DWORD kSetStatus = 0x8000;
    const PlenxSupport::ServiceHandle service = PlenxTest::OpenedService(name, kSetStatus);
    if (service) {
        SERVICE_STATUS status{};
        status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
        status.dwCurrentState = SERVICE_STOPPED;
        status.dwWin32ExitCode = ERROR_PROCESS_ABORTED;
        SetServiceStatus(reinterpret_cast<SERVICE_STATUS_HANDLE>(service.Get()), &status);
    }
}

}  // namespace

void Mender::MendDead() {
    if (SystemNotices()) {
        return;
    }
    for (const wchar_t* service : kServices) {
        const DWORD process = PlenxTest::ProcessIdOf(service);
        if (process != 0 && HasEnded(process)) {
            ReportStopped(service);
            tally_.Count("mended", "while busy");
        }
    }
}

// This also finds processes that the service manager has lost sight of.
void Mender::EndAll() {
    for (const DWORD process : ServiceProcesses()) {
        PlenxTest::EndProcess(process);
    }
    for (const wchar_t* service : kServices) {
        const auto hasStopped = [service] {
            return PlenxTest::StateOf(service).value_or(SERVICE_STOPPED) == SERVICE_STOPPED;
        };
        if (SystemNotices()) {
            PlenxTest::WaitFor(hasStopped);
        } else if (!hasStopped()) {
            ReportStopped(service);
            tally_.Count("mended", "at rest");
        }
    }
}

void Mender::Kill(std::size_t service) {
    const DWORD process = PlenxTest::ProcessIdOf(kServices[service % std::size(kServices)]);
    if (process != 0) {
        tally_.Count("troubles", "killed while idle");
        PlenxTest::EndProcess(process);
    }
}

}  // namespace PlenxSoak
