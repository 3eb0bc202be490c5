#include "scenario/registered_services.h"

#include <windows.h>

#include <cwchar>
#include <vector>

#include "support/handle.h"
#include "support/wide_text.h"

namespace PlenxScenario {
namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* kReplacedServices[] = {L"PlenxPcSvc", L"PlenxPhoneSvc"};  // by Init
constexpr const wchar_t* kServices[] = {L"PlenxPcSvc", L"PlenxPhoneSvc", L"PlenxOfficeSvc",
                                        L"PlenxDevServiceTest"};
constexpr const wchar_t* kDrivers[] = {L"Dokan1", L"PlenxDriverTest"};
constexpr DWORD kEndOfService = 5000;

PlenxSupport::ServiceHandle Open(const wchar_t* name) {
    const PlenxSupport::ServiceHandle manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
    return PlenxSupport::ServiceHandle(
        manager ? OpenServiceW(manager.Get(), name, SERVICE_ALL_ACCESS) : nullptr);
}

std::wstring ProgramOf(SC_HANDLE service) {
    DWORD size = 0;
    QueryServiceConfigW(service, nullptr, 0, &size);
    std::vector<std::uint64_t> buffer(size / sizeof(std::uint64_t) + 1);
    auto* const config = reinterpret_cast<QUERY_SERVICE_CONFIGW*>(buffer.data());
    if (!QueryServiceConfigW(service, config, size, &size)) {
        return {};
    }
    return config->lpBinaryPathName;
}

// Windows puts a prefix in front of the paths of drivers.
bool LiesIn(const std::wstring& program, const fs::path& folder) {
    const std::wstring begin = folder.wstring() + L"\\";
    const std::wstring prefix = L"\\??\\";
    const bool quoted = !program.empty() && program[0] == L'"';
    const std::size_t skipped = program.compare(0, prefix.size(), prefix) == 0 ? prefix.size()
                                : quoted                                       ? 1
                                                                               : 0;
    return _wcsnicmp(program.c_str() + skipped, begin.c_str(), begin.size()) == 0;
}

// A service that hangs does not stop, so this does not ask it to.
void EndProcessOf(SC_HANDLE service, const fs::path& folder) {
    SERVICE_STATUS_PROCESS status = {};
    DWORD needed = 0;
    if (!QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<LPBYTE>(&status),
                              sizeof status, &needed) ||
        status.dwProcessId == 0) {
        return;
    }
    const PlenxSupport::Handle process(
        OpenProcess(PROCESS_TERMINATE | PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE,
                    status.dwProcessId));
    std::wstring path(32768, L'\0');
    auto length = static_cast<DWORD>(path.size());
    // The id may have gone to another process.
    if (process && QueryFullProcessImageNameW(process.Get(), 0, path.data(), &length) &&
        LiesIn(path, folder)) {
        TerminateProcess(process.Get(), 0);
        WaitForSingleObject(process.Get(), kEndOfService);
    }
}

}  // namespace

std::vector<std::string> ServiceNames() {
    std::vector<std::string> names;
    for (const wchar_t* const name : kServices) {
        names.push_back(PlenxSupport::ToUtf8(name));
    }
    for (const wchar_t* const name : kDrivers) {
        names.push_back(PlenxSupport::ToUtf8(name));
    }
    return names;
}

void RemoveServicesOf(const fs::path& folder) {
    for (const wchar_t* const name : kServices) {
        const PlenxSupport::ServiceHandle service = Open(name);
        if (service && LiesIn(ProgramOf(service.Get()), folder)) {
            EndProcessOf(service.Get(), folder);
            DeleteService(service.Get());
        }
    }
    for (const wchar_t* const name : kDrivers) {
        const PlenxSupport::ServiceHandle driver = Open(name);
        if (driver && LiesIn(ProgramOf(driver.Get()), folder)) {
            SERVICE_STATUS status = {};
            ControlService(driver.Get(), SERVICE_CONTROL_STOP, &status);
            DeleteService(driver.Get());
        }
    }
}

std::string ServiceOfOthers(const fs::path& folder) {
    for (const wchar_t* const name : kReplacedServices) {
        const PlenxSupport::ServiceHandle service = Open(name);
        const std::wstring program = service ? ProgramOf(service.Get()) : L"";
        if (!program.empty() && !LiesIn(program, folder)) {
            return PlenxSupport::ToUtf8(name) + ", " + PlenxSupport::ToUtf8(program);
        }
    }
    return {};
}

}  // namespace PlenxScenario
