#include "devservice/service_under_test.h"

#include <gtest/gtest.h>

#include <iostream>
#include <stdexcept>

#include "support/child_process.h"
#include "support/install_folder.h"
#include "support/service_state.h"
#include "support/test_folder.h"
#include "support/wait.h"

namespace PlenxTest {
namespace {

namespace fs = std::filesystem;

const wchar_t* const kName = L"PlenxDevServiceTest";

PlenxSupport::ServiceHandle Checked(SC_HANDLE handle, const char* what) {
    if (!handle) {
        throw std::runtime_error(std::string(what) + " error " + std::to_string(GetLastError()));
    }
    return PlenxSupport::ServiceHandle(handle);
}

// The service manager keeps a deleted service until it has seen the process of the service end.
SC_HANDLE CreateOurService(SC_HANDLE manager) {
    const std::wstring program = L"\"" + ProgramFolder() + L"\\plenxservice.exe\"";
    SC_HANDLE service = nullptr;
    WaitFor([&] {
        service =
            CreateServiceW(manager, kName, kName, SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS,
                           SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL, program.c_str(), nullptr,
                           nullptr, nullptr, nullptr, nullptr);
        return service != nullptr || GetLastError() != ERROR_SERVICE_MARKED_FOR_DELETE;
    });
    return service;
}

}  // namespace

ServiceUnderTest::ServiceUnderTest(int row, const std::string& control)
    : root_(TestFolder() / L"plenxdevtest"),
      install_(root_ / L"app"),
      data_(root_ / L"data" / L"service"),
      row_(row) {
    RemoveService(kName);
    RemoveFolder(root_);
    fs::create_directories(install_);
    Control(control);
    manager_ = Checked(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS), "open manager");
    service_ = Checked(CreateOurService(manager_.Get()), "create service");
}

ServiceUnderTest::~ServiceUnderTest() {
    if (testing::Test::HasFailure()) {
        std::cout << "the service's log:\n" << Log();
    }
    const DWORD process = Status().dwProcessId;
    SendStop();
    if (!Reaches(SERVICE_STOPPED, 3000)) {
        const PlenxSupport::Handle stuck(
            OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, process));
        if (stuck) {
            TerminateProcess(stuck.Get(), 0);
            WaitForSingleObject(stuck.Get(), 3000);
        }
    }
    DeleteService(service_.Get());
    RemoveFolder(root_);
}

void ServiceUnderTest::Control(const std::string& toml) const {
    WriteFile(install_ / L"plenxservice.toml", toml);
}

DWORD ServiceUnderTest::Start() {
    return Start({install_.wstring(), data_.wstring(), std::to_wstring(row_)});
}

DWORD ServiceUnderTest::Start(const std::vector<std::wstring>& arguments) {
    std::vector<const wchar_t*> pointers;
    for (const std::wstring& argument : arguments) {
        pointers.push_back(argument.c_str());
    }
    return StartServiceW(service_.Get(), static_cast<DWORD>(pointers.size()), pointers.data())
               ? NO_ERROR
               : GetLastError();
}

bool ServiceUnderTest::StartAndRun() {
    return Start() == NO_ERROR && Reaches(SERVICE_RUNNING, 5000);
}

DWORD ServiceUnderTest::SendStop() {
    SERVICE_STATUS reply = {};
    return ControlService(service_.Get(), SERVICE_CONTROL_STOP, &reply) ? NO_ERROR : GetLastError();
}

SERVICE_STATUS_PROCESS ServiceUnderTest::Status() const {
    SERVICE_STATUS_PROCESS status = {};
    DWORD needed = 0;
    QueryServiceStatusEx(service_.Get(), SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status),
                         sizeof status, &needed);
    return status;
}

bool ServiceUnderTest::Reaches(DWORD state, DWORD milliseconds) const {
    const auto reports = Watch(state, milliseconds);
    return reports.back().dwCurrentState == state;
}

std::vector<SERVICE_STATUS_PROCESS> ServiceUnderTest::Watch(DWORD state, DWORD milliseconds) const {
    std::vector<SERVICE_STATUS_PROCESS> reports = {Status()};
    const ULONGLONG end = GetTickCount64() + milliseconds;
    while (reports.back().dwCurrentState != state && GetTickCount64() < end) {
        Sleep(5);
        const SERVICE_STATUS_PROCESS now = Status();
        if (now.dwCurrentState != reports.back().dwCurrentState ||
            now.dwCheckPoint != reports.back().dwCheckPoint) {
            reports.push_back(now);
        }
    }
    return reports;
}

std::string ServiceUnderTest::Log() const {
    return ReadFile(data_ / L"service.log");
}

std::string ServiceUnderTest::SecondLog() const {
    return ReadFile(install_ / L"second.log");
}

bool ServiceUnderTest::LogComesToSay(const std::string& text, DWORD milliseconds) const {
    return WaitFor([&] { return Log().find(text) != std::string::npos; }, milliseconds);
}

}  // namespace PlenxTest
