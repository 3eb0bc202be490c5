// Tests the doctor against the real system.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <aclapi.h>

#include "kit/host/diagnosis.h"
#include "kit/kit_process.h"
#include "support/child_process.h"
#include "support/handle.h"
#include "support/install_folder.h"
#include "support/service_state.h"
#include "support/wait.h"
#include "system/endpoint_holder.h"

namespace PlenxTest {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

std::string ArgumentsOf(const InstallFolder& folder) {
    return "--install " + folder.Install() + " --data " + folder.Data();
}

class Doctor : public testing::Test {
protected:
    Doctor() { LetOnlyAdministratorsWrite(folder_.InstallPath().parent_path()); }

    Finished Examine(const std::string& more = "") {
        return RunKit("doctor " + ArgumentsOf(folder_) + more);
    }

    InstallFolder folder_{L"PlenxDoctor"};
};

constexpr wchar_t kHasLooked[] = L"plenx-test-has-looked";

// Returns the last lines of the doctor's text.
std::string Ending(int problemsOfTheTest, const std::string& notes) {
    const int problems = ReportedProblems(problemsOfTheTest);
    return "\n" + std::to_string(problems) + (problems == 1 ? " problem, " : " problems, ") +
           notes + "\nexit code " + std::to_string(DoctorsExitCode(problemsOfTheTest)) + "\n";
}

// Returns what the doctor must leave as it was: files and services.
std::string Trace(const InstallFolder& folder) {
    std::string trace;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(folder.InstallPath().parent_path())) {
        trace += entry.path().string() + "\n";
    }
    for (const wchar_t* service : {L"PlenxOfficeSvc", L"PlenxPcSvc", L"PlenxPhoneSvc", L"Dokan1"}) {
        trace += IsRegistered(service) ? "1" : "0";
    }
    return trace;
}

TEST_F(Doctor, FreshSystem_IsWellAndLeftAsItIs) {
    const std::string before = Trace(folder_);
    const Finished printed = Examine();
    EXPECT_EQ(printed.exitCode, DoctorsExitCode(0)) << printed.output;
    const bool misses =
        printed.output.find("  problem  this program does not run as administrator\n") !=
        std::string::npos;
    EXPECT_TRUE(Shows(Habits::kElevation, misses ? "all, not elevated" : "elevated"));
    EXPECT_EQ(
        printed.output.find("  ok       this program runs as administrator\n") == std::string::npos,
        misses);
    EXPECT_THAT(printed.output, EndsWith(Ending(0, "0 notes")));
    for (const char* line :
         {"  ok       plenxsdk.dll 1.0.0.0\n", "  ok       plenxservice.exe 1.0.0.0\n",
          "  ok       dokan1.sys 1.0.0.0\n",
          "  ok       PlenxPcSvc is not registered; Init registers it\n",
          "  ok       Dokan1 is not registered; Init registers it\n",
          "  ok       Manager is free: no host is running\n",
          "  ok       PLENXPCService is free: its service is not running\n",
          "  ok       the next Init works in C:\\PlenxDoctor\\data\\plenx\n"}) {
        EXPECT_THAT(printed.output, HasSubstr(line));
    }
    EXPECT_THAT(printed.output, Not(HasSubstr("\x1b")));
    EXPECT_EQ(Trace(folder_), before);
}

TEST_F(Doctor, RunningHostAndService_AreSeenAndNotDisturbed) {
    KitProcess host("host " + ArgumentsOf(folder_));
    host.Send("init");
    host.Send("start pc home argument");
    host.Send("expect NotifyStatus pc home start true within 50000");
    ASSERT_TRUE(host.Prints("within 50000: yes")) << host.Output();
    const DWORD process = ProcessIdOf(L"PlenxPcSvc");
    const Finished printed = Examine();
    EXPECT_EQ(printed.exitCode, DoctorsExitCode(0)) << printed.output;
    EXPECT_THAT(printed.output,
                HasSubstr("  ok       PlenxPcSvc is registered, starts on demand, is running as "
                          "process " +
                          std::to_string(process) + ": C:\\PlenxDoctor\\app\\plenxservice.exe\n"));
    EXPECT_THAT(printed.output, HasSubstr("  ok       PLENXPCService answers a ping ("));
    EXPECT_THAT(printed.output, HasSubstr("  note     Manager is taken: a host is running\n"));
    EXPECT_THAT(printed.output, HasSubstr("  ok       Dokan1 is registered, starts with the "
                                          "system, is " +
                                          std::string(DriverStarts() ? "running" : "stopped")));
    EXPECT_THAT(printed.output, HasSubstr(": C:\\PlenxDoctor\\app\\dokan1.sys"));
    EXPECT_THAT(printed.output,
                HasSubstr("  ok       a host is running, so its working folder is left alone\n"));
    const Finished again =
        RunKit("doctor --install " + folder_.Install() + "\\ --data " + folder_.Data() + "\\");
    EXPECT_EQ(again.exitCode, DoctorsExitCode(0)) << again.output;
    EXPECT_THAT(again.output, EndsWith(Ending(0, DriverStarts() ? "2 notes" : "3 notes")))
        << "the notes are on the separator, on Manager, and on a driver that does not run";
    host.Send("stop pc home");
    host.Send("expect NotifyDisconnect pc home within 50000");
    host.Send("expect NotifyStatus pc home stop false within 50000");
    EXPECT_EQ(host.Wait(), 0) << host.Output();
}

// The server of an endpoint that is a pipe can go deaf when a client looks at the pipe at the wrong
// moment. The doctor must not be such a client.
TEST_F(Doctor, LookingAgainAndAgain_DisturbsNoHostThatBegins) {
    const PlenxSupport::Handle hasLooked = PlenxSupport::MakeEvent(kHasLooked);
    ChildProcess looker(ChildProcess::Self(std::wstring(L"--look ") + kHasLooked));
    ASSERT_EQ(WaitForSingleObject(hasLooked.Get(), 10000), WAIT_OBJECT_0);
    KitProcess host("host " + ArgumentsOf(folder_));
    host.Send("init");
    host.Send("start pc home argument");
    host.Send("expect NotifyConnect pc home within 50000");
    EXPECT_EQ(host.Wait(), 0) << host.Output();
    EXPECT_FALSE(looker.WaitForExit(0).has_value())
        << "the looker has ended, so it may have looked at nothing";
}

TEST_F(Doctor, MissingFiles_AreProblems) {
    std::filesystem::remove(folder_.InstallPath() / L"plenxservice.exe");
    std::filesystem::remove(folder_.InstallPath() / L"dokan1.dll");
    const Finished printed = Examine(" --program " + folder_.Data());
    EXPECT_EQ(printed.exitCode, 1);
    EXPECT_THAT(printed.output,
                HasSubstr("  problem  plenxservice.exe is missing\n"
                          "           Install it; without it every Start of the PC or phone "
                          "service fails.\n"));
    EXPECT_THAT(printed.output, HasSubstr("  problem  dokan1.dll is missing\n"));
    EXPECT_THAT(printed.output, HasSubstr("  problem  plenxsdk.dll is missing\n"));
    EXPECT_THAT(printed.output, EndsWith(Ending(5, "0 notes")));
}

TEST_F(Doctor, ServiceProgramWhoseDllsAreMissing_IsAProblem) {
    // The library's own DLL stands for a program that needs some.
    std::filesystem::copy_file(ProgramFolder() + L"\\plenxsdk.dll",
                               folder_.InstallPath() / L"plenxservice.exe",
                               std::filesystem::copy_options::overwrite_existing);
    const Finished printed = Examine();
    EXPECT_EQ(printed.exitCode, 1);
    EXPECT_THAT(printed.output,
                HasSubstr("  problem  LogHelper.dll is missing: plenxservice.exe needs it\n"
                          "           Install it beside plenxservice.exe; without it Windows "
                          "cannot start the services.\n"));
}

TEST_F(Doctor, WaitingUpgrade_IsReportedWithItsVersion) {
    folder_.AddUpgrade();
    EXPECT_THAT(Examine().output, HasSubstr("  note     dokan1.sys 1.1.0.0 waits in upgrade\n"));
}

TEST_F(Doctor, EndpointTakenBySomebodyElse_IsAProblem) {
    const EndpointHolder holder(EndpointHolder::By::kServing);
    ASSERT_TRUE(holder.Holds());
    const Finished printed = Examine();
    EXPECT_EQ(printed.exitCode, 1);
    EXPECT_THAT(
        printed.output,
        HasSubstr("  problem  Manager is taken, but no host has registered its services\n"));
}

TEST_F(Doctor, HostThatWasKilled_LeavesTracesThatAreReported) {
    {
        KitProcess host("host " + ArgumentsOf(folder_));
        host.Send("init");
        host.Send("start pc home argument");
        host.Send("expect NotifyStatus pc home start true within 50000");
        ASSERT_TRUE(host.Prints("within 50000: yes")) << host.Output();
        host.Kill();
    }
    const HANDLE held = CreateFileW((folder_.WorkingFolder() / L"held.txt").c_str(), GENERIC_WRITE,
                                    FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    const Finished printed = Examine();
    CloseHandle(held);
    EXPECT_THAT(printed.output,
                HasSubstr("  note     PlenxPcSvc is left over: no host is running\n"));
    EXPECT_THAT(printed.output, HasSubstr("  note     plenx cannot be removed: "
                                          "C:\\PlenxDoctor\\data\\plenx\\"));
    EXPECT_THAT(printed.output,
                HasSubstr("  ok       the next Init works in C:\\PlenxDoctor\\data\\plenx0\n"));
}

TEST_F(Doctor, ServiceThatHangs_IsReportedInTime) {
    folder_.SetServiceControl("[[on]]\nrequest = 'PingService'\ndelay_ms = 60000\n");
    {
        KitProcess host("host " + ArgumentsOf(folder_));
        host.Send("init");
        host.Send("start pc home argument");
        ASSERT_TRUE(
            WaitFor([] { return StateOf(L"PlenxPcSvc") == DWORD{SERVICE_RUNNING}; }, 60000));
        const Finished printed = Examine();
        EXPECT_EQ(printed.exitCode, 1);
        EXPECT_THAT(printed.output,
                    HasSubstr("  problem  PLENXPCService has not answered a ping within "));
        host.Kill();
    }
    EndService(L"PlenxPcSvc");
}

TEST_F(Doctor, ServiceOfAnotherFolder_IsAProblem) {
    const SC_HANDLE manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    const SC_HANDLE service = CreateServiceW(
        manager, L"PlenxPcSvc", L"PlenxPcSvc", SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS,
        SERVICE_DISABLED, SERVICE_ERROR_NORMAL, L"C:\\No Such\\plenxservice.exe", nullptr, nullptr,
        nullptr, nullptr, nullptr);
    ASSERT_NE(service, nullptr);
    const Finished printed = Examine();
    CloseServiceHandle(service);
    CloseServiceHandle(manager);
    for (const char* line :
         {"  problem  PlenxPcSvc is registered with a program outside of the install folder\n",
          "  problem  C:\\No Such\\plenxservice.exe is missing\n",
          "  problem  PlenxPcSvc is disabled\n",
          "  note     PlenxPcSvc is registered with blanks and without quotes\n"}) {
        EXPECT_THAT(printed.output, HasSubstr(line));
    }
}

// The group's rights are part of the folder's list, so the doctor need not try to write.
TEST_F(Doctor, FolderThatEverybodyMayWriteTo_IsAProblem) {
    wchar_t path[] = L"C:\\PlenxDoctor\\app";
    unsigned char list[256] = {};
    unsigned char everyone[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof(everyone);
    ASSERT_TRUE(CreateWellKnownSid(WinWorldSid, nullptr, everyone, &size));
    auto* const acl = reinterpret_cast<PACL>(list);
    ASSERT_TRUE(InitializeAcl(acl, sizeof(list), ACL_REVISION));
    ASSERT_TRUE(AddAccessAllowedAce(acl, ACL_REVISION, FILE_ALL_ACCESS, everyone));
    ASSERT_EQ(SetNamedSecurityInfoW(path, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                    nullptr, acl, nullptr),
              DWORD{ERROR_SUCCESS});
    EXPECT_THAT(Examine().output,
                HasSubstr("  problem  C:\\PlenxDoctor\\app may be written to by Everyone\n"));
}

}  // namespace
}  // namespace PlenxTest
