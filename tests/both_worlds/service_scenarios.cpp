// Scenarios of the Service Control Manager and of processes.

#include "both_worlds/stage.h"

namespace BothWorlds {
namespace {

namespace Habits = PlenxTest::Habits;

constexpr wchar_t kName[] = L"PlenxPcSvc";

class Services : public Stage {
protected:
    ~Services() override {
        for (const SC_HANDLE handle : opened_) {
            CloseServiceHandle(handle);
        }
        RemoveService(kName);
        CloseServiceHandle(manager);
    }

    SC_HANDLE Create(SC_HANDLE opener, DWORD access = SERVICE_ALL_ACCESS) {
        return Keep(CreateServiceW(opener, kName, kName, access, SERVICE_WIN32_OWN_PROCESS,
                                   SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL,
                                   ServiceProgram().c_str(), nullptr, nullptr, nullptr, nullptr,
                                   nullptr));
    }
    SC_HANDLE Open(const wchar_t* name, DWORD access) {
        return Keep(OpenServiceW(manager, name, access));
    }
    void CloseAll() {
        for (const SC_HANDLE handle : opened_) {
            CloseServiceHandle(handle);
        }
        opened_.clear();
    }

    static BOOL Start(SC_HANDLE service) {
        std::vector<std::wstring> texts = ServiceArguments();
        std::vector<const wchar_t*> arguments;
        for (const std::wstring& text : texts) {
            arguments.push_back(text.c_str());
        }
        return StartServiceW(service, static_cast<DWORD>(arguments.size()), arguments.data());
    }
    static SERVICE_STATUS_PROCESS Query(SC_HANDLE service) {
        SERVICE_STATUS_PROCESS status{};
        DWORD needed = 0;
        EXPECT_TRUE(QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO,
                                         reinterpret_cast<LPBYTE>(&status), sizeof(status),
                                         &needed));
        return status;
    }
    static bool ComesTo(SC_HANDLE service, DWORD state, DWORD milliseconds = 30000) {
        constexpr DWORD kBetweenLooks = 50;
        for (DWORD passed = 0; passed < milliseconds; passed += kBetweenLooks) {
            if (Query(service).dwCurrentState == state) {
                return true;
            }
            Sleep(kBetweenLooks);
        }
        return false;
    }
    // A service says that it has stopped a moment before its process ends.
    static bool LosesItsProcess(SC_HANDLE service) {
        for (int i = 0; i != 200; ++i) {
            if (Query(service).dwProcessId == 0) {
                return true;
            }
            Sleep(50);
        }
        return false;
    }
    bool Vanishes() {
        for (int i = 0; i != 200; ++i) {
            const SC_HANDLE service = OpenServiceW(manager, kName, SERVICE_QUERY_STATUS);
            if (service == nullptr) {
                return GetLastError() == ERROR_SERVICE_DOES_NOT_EXIST;
            }
            CloseServiceHandle(service);
            Sleep(50);
        }
        return false;
    }

    const SC_HANDLE manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    SERVICE_STATUS reply{};

private:
    SC_HANDLE Keep(SC_HANDLE handle) {
        if (handle != nullptr) {
            opened_.push_back(handle);
        }
        return handle;
    }

    std::vector<SC_HANDLE> opened_;
};

TEST_F(Services, AbsentOne_IsNotOpened) {
    EXPECT_FAILS(Open(kName, SERVICE_QUERY_STATUS), ERROR_SERVICE_DOES_NOT_EXIST);
}

TEST_F(Services, Creating_NeedsTheRightAndAFreeName) {
    const SC_HANDLE guest = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
    EXPECT_FAILS(Create(guest), ERROR_ACCESS_DENIED);
    CloseServiceHandle(guest);
    EXPECT_NE(Create(manager), nullptr);
    EXPECT_FAILS(Create(manager), ERROR_SERVICE_EXISTS);
    EXPECT_NE(Open(L"PLENXPCSVC", SERVICE_QUERY_STATUS), nullptr);
}

TEST_F(Services, HandleWithoutTheRight_IsRefused) {
    ASSERT_NE(Create(manager), nullptr);
    const SC_HANDLE powerless = Open(kName, SERVICE_ENUMERATE_DEPENDENTS);
    ASSERT_NE(powerless, nullptr);
    SERVICE_STATUS_PROCESS status{};
    DWORD needed = 0;
    EXPECT_FAILS(QueryServiceStatusEx(powerless, SC_STATUS_PROCESS_INFO,
                                      reinterpret_cast<LPBYTE>(&status), sizeof(status), &needed),
                 ERROR_ACCESS_DENIED);
    EXPECT_FAILS(StartServiceW(powerless, 0, nullptr), ERROR_ACCESS_DENIED);
    EXPECT_FAILS(ControlService(powerless, SERVICE_CONTROL_STOP, &reply), ERROR_ACCESS_DENIED);
    EXPECT_FAILS(DeleteService(powerless), ERROR_ACCESS_DENIED);
}

TEST_F(Services, QueryingIntoTooLittle_IsRefused) {
    const SC_HANDLE service = Create(manager);
    SERVICE_STATUS_PROCESS status{};
    DWORD needed = 0;
    EXPECT_FAILS(
        QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<LPBYTE>(&status),
                             sizeof(status) - 1, &needed),
        ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(needed, DWORD{sizeof(status)});
}

TEST_F(Services, NewOne_IsStoppedAndHasNoProcess) {
    const SC_HANDLE service = Create(manager);
    const SERVICE_STATUS_PROCESS status = Query(service);
    EXPECT_EQ(status.dwCurrentState, DWORD{SERVICE_STOPPED});
    EXPECT_EQ(status.dwWin32ExitCode, DWORD{1077});
    EXPECT_EQ(status.dwProcessId, DWORD{0});
    EXPECT_FAILS(ControlService(service, SERVICE_CONTROL_STOP, &reply), ERROR_SERVICE_NOT_ACTIVE);
}

TEST_F(Services, StartAndStop) {
    const SC_HANDLE service = Create(manager);
    ASSERT_TRUE(Start(service));
    EXPECT_FAILS(Start(service), ERROR_SERVICE_ALREADY_RUNNING);
    ASSERT_TRUE(ComesTo(service, SERVICE_RUNNING));
    const SERVICE_STATUS_PROCESS running = Query(service);
    EXPECT_NE(running.dwProcessId, DWORD{0});
    EXPECT_EQ(running.dwServiceType, DWORD{SERVICE_WIN32_OWN_PROCESS});
    EXPECT_TRUE(ControlService(service, SERVICE_CONTROL_STOP, &reply));
    ASSERT_TRUE(ComesTo(service, SERVICE_STOPPED));
    EXPECT_EQ(Query(service).dwWin32ExitCode, DWORD{0});
    EXPECT_TRUE(LosesItsProcess(service));
    EXPECT_TRUE(Start(service)) << "and again";
    ASSERT_TRUE(ComesTo(service, SERVICE_RUNNING));
}

TEST_F(Services, StopThatIsIgnored_LeavesItRunning) {
    LetServiceIgnoreStop();
    const SC_HANDLE service = Create(manager);
    ASSERT_TRUE(Start(service));
    ASSERT_TRUE(ComesTo(service, SERVICE_RUNNING));
    EXPECT_TRUE(ControlService(service, SERVICE_CONTROL_STOP, &reply));
    Sleep(300);
    EXPECT_EQ(Query(service).dwCurrentState, DWORD{SERVICE_RUNNING});
}

TEST_F(Services, Deleting_WaitsForTheLastHandle) {
    const SC_HANDLE service = Create(manager);
    EXPECT_TRUE(DeleteService(service));
    EXPECT_FAILS(DeleteService(service), ERROR_SERVICE_MARKED_FOR_DELETE);
    EXPECT_FAILS(Create(manager), ERROR_SERVICE_MARKED_FOR_DELETE);
    const bool starts = Start(service);
    EXPECT_TRUE(Shows(Habits::kStartOfAServiceThatGoes, starts ? DWORD{0} : GetLastError()));
    if (starts) {
        EXPECT_TRUE(ComesTo(service, SERVICE_RUNNING));
        EXPECT_TRUE(ControlService(service, SERVICE_CONTROL_STOP, &reply));
        EXPECT_TRUE(ComesTo(service, SERVICE_STOPPED));
    }
    CloseAll();
    EXPECT_TRUE(Vanishes());
    EXPECT_NE(Create(manager), nullptr);
}

TEST_F(Services, DeletingARunningOne_WaitsForItsStop) {
    const SC_HANDLE service = Create(manager);
    ASSERT_TRUE(Start(service));
    ASSERT_TRUE(ComesTo(service, SERVICE_RUNNING));
    EXPECT_TRUE(DeleteService(service));
    EXPECT_EQ(Query(service).dwCurrentState, DWORD{SERVICE_RUNNING});
    EXPECT_TRUE(ControlService(service, SERVICE_CONTROL_STOP, &reply));
    ASSERT_TRUE(ComesTo(service, SERVICE_STOPPED));
    CloseAll();
    EXPECT_TRUE(Vanishes());
}

TEST_F(Services, EndedProcess_StopsItsServiceIfTheSystemNotices) {
    const SC_HANDLE service = Create(manager);
    ASSERT_TRUE(Start(service));
    ASSERT_TRUE(ComesTo(service, SERVICE_RUNNING));
    const HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, Query(service).dwProcessId);
    ASSERT_NE(process, nullptr);
    EXPECT_TRUE(TerminateProcess(process, 0));
    CloseHandle(process);
    const bool stops = ComesTo(service, SERVICE_STOPPED, 1000);
    EXPECT_TRUE(Shows(Habits::kServiceWhoseProcessWasEnded, stops ? "stopped" : "running"));
}

TEST_F(Services, Driver_RunsAtOnceAndStopsAtOnceIfTheSystemTakesIt) {
    constexpr wchar_t kDriver[] = L"Dokan1";
    CloseServiceHandle(CreateServiceW(
        manager, kDriver, kDriver, 0, SERVICE_FILE_SYSTEM_DRIVER, SERVICE_SYSTEM_START,
        SERVICE_ERROR_NORMAL, DriverFile().c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
    const SC_HANDLE driver = Open(kDriver, SERVICE_ALL_ACCESS);
    ASSERT_NE(driver, nullptr);
    const bool starts = StartServiceW(driver, 0, nullptr);
    const DWORD code = starts ? DWORD{0} : GetLastError();
    if (DriverIsSigned()) {
        EXPECT_EQ(code, DWORD{0});
    } else {
        EXPECT_TRUE(Shows(Habits::kStartOfTheDriver, code));
    }
    if (starts) {
        EXPECT_TRUE(ComesTo(driver, SERVICE_RUNNING));
        EXPECT_FAILS(StartServiceW(driver, 0, nullptr), ERROR_SERVICE_ALREADY_RUNNING);
        EXPECT_TRUE(ControlService(driver, SERVICE_CONTROL_STOP, &reply));
        EXPECT_TRUE(ComesTo(driver, SERVICE_STOPPED));
    } else {
        EXPECT_EQ(Query(driver).dwCurrentState, DWORD{SERVICE_STOPPED});
    }
    EXPECT_TRUE(DeleteService(driver));
}

class Processes : public Stage {};

TEST_F(Processes, AbsentOne_IsNotOpened) {
    EXPECT_FAILS(OpenProcess(PROCESS_ALL_ACCESS, FALSE, 0), ERROR_INVALID_PARAMETER);
    EXPECT_FAILS(OpenProcess(PROCESS_ALL_ACCESS, FALSE, 0x7ffffff0), ERROR_INVALID_PARAMETER);
}

TEST_F(Processes, HandleWithoutTheRight_IsRefused) {
    const DWORD id = StartProcess();
    FILETIME time{};
    HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id);
    ASSERT_NE(process, nullptr);
    EXPECT_FAILS(TerminateProcess(process, 0), ERROR_ACCESS_DENIED);
    EXPECT_TRUE(GetProcessTimes(process, &time, &time, &time, &time));
    CloseHandle(process);
    process = OpenProcess(PROCESS_TERMINATE, FALSE, id);
    ASSERT_NE(process, nullptr);
    EXPECT_FAILS(GetProcessTimes(process, &time, &time, &time, &time), ERROR_ACCESS_DENIED);
    EXPECT_TRUE(TerminateProcess(process, 0));
    CloseHandle(process);
}

TEST_F(Processes, TwoOfThem_WereStartedAtDifferentTimes) {
    FILETIME births[2] = {};
    for (FILETIME& birth : births) {
        const HANDLE process =
            OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, StartProcess());
        FILETIME other{};
        EXPECT_TRUE(GetProcessTimes(process, &birth, &other, &other, &other));
        CloseHandle(process);
        Sleep(20);
    }
    EXPECT_FALSE(births[0].dwLowDateTime == births[1].dwLowDateTime &&
                 births[0].dwHighDateTime == births[1].dwHighDateTime);
}

}  // namespace
}  // namespace BothWorlds
