#include "soak/mender.h"

#include <windows.h>

#include <tlhelp32.h>

#include <cwchar>
#include <iterator>
#include <vector>

#include "support/service_state.h"

namespace PlenxSoak {
namespace {

constexpr const wchar_t* kServices[] = {L"PlenxPcSvc", L"PlenxPhoneSvc"};

bool HasEnded(DWORD processId) {
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, processId);
    if (process == nullptr) {
        return true;
    }
    const bool ended = WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
    CloseHandle(process);
    return ended;
}

void End(DWORD processId) {
    const HANDLE process = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, processId);
    if (process != nullptr) {
        TerminateProcess(process, 0);
        WaitForSingleObject(process, 5000);
        CloseHandle(process);
    }
}

std::vector<DWORD> ServiceProcesses() {
    std::vector<DWORD> processes;
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32FirstW(snapshot, &entry); more;
         more = Process32NextW(snapshot, &entry)) {
        if (std::wcscmp(entry.szExeFile, L"plenxservice.exe") == 0) {
            processes.push_back(entry.th32ProcessID);
        }
    }
    CloseHandle(snapshot);
    return processes;
}

// Wine takes a service's status from everybody who has opened the service for it.
void ReportStopped(const wchar_t* name) {
    constexpr DWORD kSetStatus = 0x8000;
    const SC_HANDLE manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
    const SC_HANDLE service = OpenServiceW(manager, name, kSetStatus);
    if (service != nullptr) {
        SERVICE_STATUS status{};
        status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
        status.dwCurrentState = SERVICE_STOPPED;
        status.dwWin32ExitCode = ERROR_PROCESS_ABORTED;
        SetServiceStatus(reinterpret_cast<SERVICE_STATUS_HANDLE>(service), &status);
        CloseServiceHandle(service);
    }
    CloseServiceHandle(manager);
}

}  // namespace

void Mender::MendDead() {
    for (const wchar_t* service : kServices) {
        const DWORD process = PlenxTest::ProcessIdOf(service);
        if (process != 0 && HasEnded(process)) {
            ReportStopped(service);
            tally_.Count("mended", "while busy");
        }
    }
}

// Also those that the service manager has lost sight of.
void Mender::EndAll() {
    for (const DWORD process : ServiceProcesses()) {
        End(process);
    }
    for (const wchar_t* service : kServices) {
        if (PlenxTest::StateOf(service).value_or(SERVICE_STOPPED) != SERVICE_STOPPED) {
            ReportStopped(service);
            tally_.Count("mended", "at rest");
        }
    }
}

void Mender::Kill(std::size_t service) {
    const DWORD process = PlenxTest::ProcessIdOf(kServices[service % std::size(kServices)]);
    if (process != 0) {
        tally_.Count("troubles", "killed while idle");
        End(process);
    }
}

}  // namespace PlenxSoak
