// Tests the promises of the fake platform. The numbers come from a real system.

#include <direct.h>
#include <io.h>

#include <cerrno>
#include <thread>

#include "service_room_test.h"

using testing::ElementsAre;

namespace {

class FakePlatformTest : public ServiceRoomTest {
protected:
    FakeFiles& files = platform.Files();
    FakeScm& scm = platform.Scm();
};

#define EXPECT_FAILS(call, error)                \
    do {                                         \
        EXPECT_FALSE(call);                      \
        EXPECT_EQ(GetLastError(), DWORD{error}); \
    } while (false)

#define EXPECT_CRT_FAILS(call, error, number)    \
    do {                                         \
        EXPECT_EQ((call), -1);                   \
        EXPECT_EQ(errno, number);                \
        EXPECT_EQ(GetLastError(), DWORD{error}); \
    } while (false)

constexpr int kNotEmpty = 41;  // the number of the Windows C runtime

// Files

TEST_F(FakePlatformTest, MakingFolders) {
    files.AddFile(L"C:\\p\\f");
    EXPECT_CRT_FAILS(_wmkdir(L"C:\\p"), 183, EEXIST);
    EXPECT_CRT_FAILS(_wmkdir(L"C:\\p\\f"), 183, EEXIST);
    EXPECT_CRT_FAILS(_wmkdir(L"C:\\no\\x"), 3, ENOENT);
    EXPECT_CRT_FAILS(_wmkdir(L"C:\\p\\f\\x"), 3, ENOENT);
    EXPECT_CRT_FAILS(_wmkdir(L""), 3, ENOENT);
    EXPECT_CRT_FAILS(_wmkdir(L"C:\\p\\a?b"), 123, EINVAL);
    EXPECT_EQ(_wmkdir(L"C:\\P\\x"), 0);
    EXPECT_TRUE(files.Exists(L"c:\\p\\X"));
}

TEST_F(FakePlatformTest, RemovingFolders) {
    files.AddFile(L"C:\\p\\d\\x");
    files.AddFile(L"C:\\p\\f");
    files.AddFolder(L"C:\\p\\e");
    files.Give(L"C:\\p\\e", FileTrait::kHeldOpen);
    EXPECT_CRT_FAILS(_wrmdir(L"C:\\p\\no"), 2, ENOENT);
    EXPECT_CRT_FAILS(_wrmdir(L"C:\\no\\no"), 3, ENOENT);
    EXPECT_CRT_FAILS(_wrmdir(L"C:\\p\\f"), 267, EINVAL);
    EXPECT_CRT_FAILS(_wrmdir(L"C:\\p\\d"), 145, kNotEmpty);
    EXPECT_CRT_FAILS(_wrmdir(L"C:\\p\\f\\x"), 3, ENOENT);
    EXPECT_CRT_FAILS(_wrmdir(L"C:\\p\\e"), 32, EACCES);
}

TEST_F(FakePlatformTest, RemovingFiles) {
    files.AddFolder(L"C:\\p\\d");
    for (const wchar_t* file : {L"C:\\p\\ro", L"C:\\p\\used", L"C:\\p\\held", L"C:\\p\\f"}) {
        files.AddFile(file);
    }
    files.Give(L"C:\\p\\ro", FileTrait::kReadOnly);
    files.Give(L"C:\\p\\used", FileTrait::kInUse);
    files.Give(L"C:\\p\\held", FileTrait::kHeldOpen);
    EXPECT_CRT_FAILS(_wunlink(L"C:\\p\\no"), 2, ENOENT);
    EXPECT_CRT_FAILS(_wunlink(L"C:\\no\\no"), 3, ENOENT);
    EXPECT_CRT_FAILS(_wunlink(L"C:\\p\\d"), 5, EACCES);
    EXPECT_CRT_FAILS(_wunlink(L"C:\\p\\ro"), 5, EACCES);
    EXPECT_CRT_FAILS(_wunlink(L"C:\\p\\held"), 32, EACCES);
    EXPECT_FAILS(DeleteFileW(L"C:\\p\\no"), 2);
    EXPECT_FAILS(DeleteFileW(L"C:\\no\\no"), 3);
    EXPECT_FAILS(DeleteFileW(L"C:\\p\\d"), 5);
    EXPECT_FAILS(DeleteFileW(L"C:\\p\\ro"), 5);
    EXPECT_FAILS(DeleteFileW(L"C:\\p\\used"), 5);
    EXPECT_FAILS(DeleteFileW(L"C:\\p\\held"), 32);
    EXPECT_TRUE(DeleteFileW(L"c:\\P\\F"));
    EXPECT_FALSE(files.Exists(L"C:\\p\\f"));
}

TEST_F(FakePlatformTest, Attributes) {
    files.AddFile(L"C:\\p\\ro");
    files.Give(L"C:\\p\\ro", FileTrait::kReadOnly);
    files.AddFolderLink(L"C:\\p\\link", L"C:\\p");
    EXPECT_EQ(GetFileAttributesW(L"C:\\p\\ro"), 33U);
    EXPECT_EQ(GetFileAttributesW(L"C:\\p"), 16U);
    EXPECT_EQ(GetFileAttributesW(L"C:\\p\\link"), 0x410U);
    EXPECT_EQ(GetFileAttributesW(L"C:\\p\\no"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), 2U);
    EXPECT_EQ(_waccess(L"C:\\p\\", 0), 0);
    EXPECT_EQ(_waccess(L"C:", 0), 0);
    EXPECT_EQ(_waccess(L"C:\\p\\ro", 0), 0);
    EXPECT_CRT_FAILS(_waccess(L"C:\\p\\ro", 2), 5, EACCES);
    EXPECT_CRT_FAILS(_waccess(L"C:\\no\\no", 0), 3, ENOENT);
}

TEST_F(FakePlatformTest, Moving) {
    files.AddFile(L"C:\\p\\f", "f");
    files.AddFile(L"C:\\p\\b", "b");
    files.AddFile(L"C:\\p\\d\\x", "x");
    files.AddFile(L"C:\\p\\held");
    files.AddFolder(L"D:\\p");
    files.Give(L"C:\\p\\held", FileTrait::kHeldOpen);
    EXPECT_FAILS(MoveFileExW(L"C:\\p\\no", L"C:\\p\\new", 2), 2);
    EXPECT_FAILS(MoveFileExW(L"C:\\no\\no", L"C:\\p\\new", 2), 3);
    EXPECT_FAILS(MoveFileExW(L"C:\\p\\f", L"C:\\no\\new", 2), 3);
    EXPECT_FAILS(MoveFileExW(L"C:\\p\\f", L"C:\\p\\b", 2), 183);
    EXPECT_FAILS(MoveFileExW(L"C:\\p\\f", L"C:\\p\\d", 2), 183);
    EXPECT_FAILS(MoveFileExW(L"C:\\p\\f", L"C:\\p\\d", 1), 5);
    EXPECT_FAILS(MoveFileExW(L"C:\\p\\held", L"C:\\p\\new", 1), 32);
    EXPECT_FAILS(MoveFileExW(L"C:\\p\\f", L"D:\\p\\f", 0), 17);
    EXPECT_TRUE(MoveFileExW(L"C:\\p\\f", L"C:\\p\\b", 1));
    EXPECT_EQ(files.Content(L"C:\\p\\b"), "f");
    EXPECT_TRUE(MoveFileExW(L"C:\\p\\b", L"C:\\p\\B", 0));
    EXPECT_TRUE(MoveFileExW(L"C:\\p\\d", L"C:\\p\\d2", 1));
    EXPECT_TRUE(MoveFileExW(L"C:\\p\\B", L"D:\\p\\b", 2));
    EXPECT_THAT(files.Tree(L"C:\\p"), ElementsAre("C:\\p\\d2\\", "C:\\p\\d2\\x", "C:\\p\\held"));
    EXPECT_EQ(files.Content(L"D:\\p\\b"), "f");
}

std::vector<std::wstring> List(const wchar_t* pattern) {
    std::vector<std::wstring> names;
    _wfinddata64i32_t data;
    const intptr_t listing = _wfindfirst64i32(pattern, &data);
    do {
        names.emplace_back(data.name);
    } while (_wfindnext64i32(listing, &data) == 0);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_MORE_FILES});
    _findclose(listing);
    return names;
}

TEST_F(FakePlatformTest, Listing) {
    for (const wchar_t* file : {L"C:\\p\\Zed", L"C:\\p\\alpha", L"C:\\p\\B", L"C:\\p\\d\\deep"}) {
        files.AddFile(file);
    }
    files.AddFolderLink(L"C:\\link", L"C:\\p\\d");
    EXPECT_THAT(List(L"C:\\p\\*.*"), ElementsAre(L".", L"..", L"alpha", L"B", L"d", L"Zed"));
    EXPECT_THAT(List(L"C:\\link\\*.*"), ElementsAre(L".", L"..", L"deep"));
    EXPECT_THAT(List(L"C:\\*.*"), ElementsAre(L"link", L"p"));
    _wfinddata64i32_t data;
    EXPECT_CRT_FAILS(_wfindfirst64i32(L"C:\\no\\*.*", &data), 3, ENOENT);
    EXPECT_EQ(_wfindfirst64i32(L"C:\\p\\B\\*.*", &data), -1);
    EXPECT_EQ(errno, EINVAL);
}

// Services

TEST_F(FakePlatformTest, ServicesAndTheirRights) {
    const SC_HANDLE manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    const SC_HANDLE guest = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
    const auto create = [](SC_HANDLE opener) {
        return CreateServiceW(opener, L"probe", L"probe", 0, SERVICE_WIN32_OWN_PROCESS,
                              SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL, L"C:\\p.exe", nullptr,
                              nullptr, nullptr, nullptr, nullptr);
    };
    SERVICE_STATUS_PROCESS status;
    SERVICE_STATUS reply;
    DWORD needed = 0;
    const auto bytes = reinterpret_cast<LPBYTE>(&status);
    EXPECT_FAILS(OpenServiceW(manager, L"probe", SERVICE_QUERY_STATUS), 1060);
    EXPECT_FAILS(create(guest), 5);
    const SC_HANDLE powerless = create(manager);
    ASSERT_NE(powerless, nullptr);
    EXPECT_FAILS(create(manager), 1073);
    EXPECT_FAILS(QueryServiceStatusEx(powerless, SC_STATUS_PROCESS_INFO, bytes, 36, &needed), 5);
    EXPECT_FAILS(StartServiceW(powerless, 0, nullptr), 5);
    EXPECT_FAILS(ControlService(powerless, SERVICE_CONTROL_STOP, &reply), 5);
    EXPECT_FAILS(DeleteService(powerless), 5);

    const SC_HANDLE service = OpenServiceW(manager, L"PROBE", SERVICE_ALL_ACCESS);
    EXPECT_FAILS(QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, bytes, 35, &needed), 122);
    EXPECT_EQ(needed, 36U);
    EXPECT_TRUE(QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, bytes, 36, &needed));
    EXPECT_EQ(status.dwCurrentState, DWORD{SERVICE_STOPPED});
    EXPECT_EQ(status.dwProcessId, 0U);
    EXPECT_EQ(status.dwWin32ExitCode, 1077U);
    EXPECT_FAILS(ControlService(service, SERVICE_CONTROL_STOP, &reply), 1062);
    EXPECT_TRUE(StartServiceW(service, 0, nullptr));
    EXPECT_FAILS(StartServiceW(service, 0, nullptr), 1056);
    platform.Clock().Advance(100);
    EXPECT_EQ(scm.Find(L"probe")->status.dwCurrentState, DWORD{SERVICE_RUNNING});
    EXPECT_TRUE(ControlService(service, SERVICE_CONTROL_STOP, &reply));
    EXPECT_EQ(reply.dwCurrentState, DWORD{SERVICE_STOP_PENDING});
    platform.Clock().Advance(100);

    EXPECT_TRUE(DeleteService(service));
    EXPECT_FAILS(DeleteService(service), 1072);
    EXPECT_FAILS(create(manager), 1072);
    CloseServiceHandle(powerless);
    const SC_HANDLE late = OpenServiceW(manager, L"probe", SERVICE_QUERY_STATUS);
    EXPECT_NE(late, nullptr);
    CloseServiceHandle(late);
    CloseServiceHandle(service);
    EXPECT_FAILS(OpenServiceW(manager, L"probe", SERVICE_QUERY_STATUS), 1060);
    CloseServiceHandle(guest);
    CloseServiceHandle(manager);
}

TEST_F(FakePlatformTest, KilledProcess_StopsItsServiceIfThatIsNoticed) {
    for (const bool noticed : {true, false}) {
        StartAfresh();
        scm.NoticeDeadProcesses(noticed);
        scm.AddService(L"probe");
        scm.SetStatus(L"probe", SERVICE_RUNNING);
        const DWORD id = scm.Find(L"probe")->status.dwProcessId;
        const HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, id);
        EXPECT_TRUE(TerminateProcess(process, 0));
        EXPECT_FAILS(TerminateProcess(process, 0), 5);
        CloseHandle(process);
        EXPECT_EQ(scm.Find(L"probe")->status.dwCurrentState == SERVICE_STOPPED, noticed);
    }
}

// Processes

TEST_F(FakePlatformTest, ProcessesAndTheirRights) {
    const DWORD id = platform.Processes().Start();
    EXPECT_FAILS(OpenProcess(PROCESS_ALL_ACCESS, FALSE, 0), 87);
    EXPECT_FAILS(OpenProcess(PROCESS_ALL_ACCESS, FALSE, id + 1), 87);
    FILETIME time;
    HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id);
    EXPECT_FAILS(TerminateProcess(process, 0), 5);
    EXPECT_TRUE(GetProcessTimes(process, &time, &time, &time, &time));
    CloseHandle(process);
    process = OpenProcess(PROCESS_TERMINATE, FALSE, id);
    EXPECT_FAILS(GetProcessTimes(process, &time, &time, &time, &time), 5);
    CloseHandle(process);
}

// Handles and faults

using FakePlatformDeathTest = FakePlatformTest;

TEST_F(FakePlatformDeathTest, UsingAClosedHandle_StopsTheTest) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const SC_HANDLE manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    CloseServiceHandle(manager);
    EXPECT_DEATH(CloseServiceHandle(manager), "CloseServiceHandle on handle .* not open");
    EXPECT_DEATH(CloseHandle(INVALID_HANDLE_VALUE), "CloseHandle on handle .* not open");
    EXPECT_DEATH(_findclose(-1), "_findclose on handle .* not open");
}

TEST_F(FakePlatformTest, OpenHandles_AreNamed) {
    files.AddFolder(L"C:\\p");
    scm.AddService(L"probe");
    const DWORD id = platform.Processes().Start();
    const SC_HANDLE manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    const SC_HANDLE service = OpenServiceW(manager, L"probe", 0);
    const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, id);
    _wfinddata64i32_t data;
    const intptr_t listing = _wfindfirst64i32(L"C:\\p\\*.*", &data);
    EXPECT_THAT(platform.OpenHandles(),
                ElementsAre("manager", "service probe", "process 1000", "listing C:\\p"));
    _findclose(listing);
    CloseHandle(process);
    CloseServiceHandle(service);
    CloseServiceHandle(manager);
}

TEST_F(FakePlatformTest, Faults_HitTheCallsTheyAreSetFor) {
    FakeFaults& faults = platform.Faults();
    files.AddFile(L"C:\\f");
    faults.FailCall("_waccess", 2, ERROR_ACCESS_DENIED);
    EXPECT_EQ(_waccess(L"C:\\f", 0), 0);
    EXPECT_CRT_FAILS(_waccess(L"C:\\f", 0), 5, EACCES);
    EXPECT_EQ(_waccess(L"C:\\f", 0), 0);
    EXPECT_EQ(faults.Hits(), 1U);

    faults.Reset();
    faults.FailAnyCallsFrom(2, ERROR_SHARING_VIOLATION);
    GetTickCount();  // cannot fail and does not count
    EXPECT_EQ(_waccess(L"C:\\f", 0), 0);
    EXPECT_FAILS(DeleteFileW(L"C:\\f"), 32);
    EXPECT_CRT_FAILS(_wmkdir(L"C:\\d"), 32, EACCES);
    EXPECT_FALSE(files.Exists(L"C:\\d"));
}

// Time

TEST_F(FakePlatformTest, OnlySleepingTakesTime) {
    const DWORD start = GetTickCount();
    EXPECT_EQ(GetTickCount() - start, 0U);
    Sleep(5000);
    EXPECT_EQ(GetTickCount() - start, 5000U);
    Sleep(0);
    EXPECT_EQ(GetTickCount() - start, 5001U);
    EXPECT_THAT(platform.CallsWithout({"GetTickCount"}), ElementsAre("Sleep(5000)", "Sleep(0)"));
}

TEST_F(FakePlatformTest, LastError_BelongsToTheThread) {
    SetLastError(7);
    std::thread([] {
        EXPECT_EQ(GetLastError(), 0U);
        SetLastError(8);
    }).join();
    EXPECT_EQ(GetLastError(), 7U);
}

}  // namespace
