// Tests what the runner says about hosts that do not pass, and about what it cannot run.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "kit/scenario/tool.h"
#include "support/child_process.h"
#include "support/service_state.h"

namespace PlenxTest {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr char kScenario[] = "[[on]]\nrequest = \"CreateGroup\"\nanswer = 5\n";

class Runner : public testing::Test {
protected:
    Tool tool;
    /// Returns the path of a scenario that this test wrote.
    std::wstring Mine() const { return (tool.Folder() / "mine.toml").wstring(); }
};

TEST_F(Runner, HostWhoseExpectationFails_IsTheReason) {
    tool.Write("mine.toml", kScenario);
    tool.Write("mine.plenx",
               "init\nstart pc g a\nexpect NotifyStatus pc g start false within 20000\n"
               "expect NotifyError 5 within 10\n");
    const auto files =
        (tool.Folder() / "r.json").wstring() + L" --junit " + (tool.Folder() / "r.xml").wstring();
    const Tool::Outcome run = tool.RunScenario(Mine() + L" all-is-well --json " + files);
    EXPECT_EQ(run.code, 1u) << run.output;
    EXPECT_THAT(run.output, StartsWith("FAIL  mine "));
    EXPECT_THAT(run.output, HasSubstr("mine.plenx:4: expect NotifyError 5 within 10"));
    EXPECT_THAT(run.output, HasSubstr("\n      logs in C:\\plenx-scenarios\\work\\mine\n"));
    EXPECT_THAT(run.output, HasSubstr("\nok    all-is-well "));
    EXPECT_THAT(run.output, HasSubstr("\n1 passed, 1 failed\n"));
    EXPECT_THAT(tool.Read("r.json"), HasSubstr("\"name\": \"mine\""));
    EXPECT_THAT(tool.Read("r.xml"), HasSubstr("tests=\"2\" failures=\"1\""));
    EXPECT_THAT(tool.Read("work\\mine\\service.log"),
                HasSubstr(" pc plays scenario \"\", run 1\n"));
    EXPECT_THAT(tool.Read("work\\mine\\library.log"), HasSubstr("create group error 5"));
    EXPECT_FALSE(std::filesystem::exists(tool.Folder() / "work" / "mine" / "app"));
    EXPECT_FALSE(IsRegistered(L"PlenxPcSvc"));
    EXPECT_FALSE(IsRegistered(L"Dokan1"));
}

TEST_F(Runner, TableThatNeverHadItsTurn_IsReportedAndFailsAStrictRun) {
    tool.Write(
        "mine.toml",
        "[[on]]\nrequest = \"CreateGroup\"\nanswer = 5\n[[notify]]\n"
        "on = \"NameChanged\"\nsend = \"ErrorNotify\"\nerrCode = 5\n[stop]\naccept = false\n");
    tool.Write("mine.plenx", "init\nstart pc g a\nexpect NotifyStatus pc g start within 20000\n");
    Tool::Outcome run = tool.RunScenario(Mine());
    EXPECT_EQ(run.code, 0u) << run.output;
    EXPECT_THAT(run.output, StartsWith("ok    mine "));
    EXPECT_THAT(run.output,
                HasSubstr(" s  1 of 3 tables not played: [[notify]] on NameChanged, line 4\n"
                          "1 passed, 0 failed; 1 not played in full\n"));
    run = tool.RunScenario(Mine() + L" --strict");
    EXPECT_EQ(run.code, 1u) << run.output;
    EXPECT_THAT(run.output, StartsWith("FAIL  mine "));
    EXPECT_THAT(run.output,
                HasSubstr(" s  1 of 3 tables not played: [[notify]] on NameChanged, line 4\n"));
    EXPECT_THAT(run.output, HasSubstr("\n0 passed, 1 failed\n"));
}

// The host hears the same as with good replies, so the library's log must show the difference.
TEST_F(Runner, BrokenReplies_AreSeenByTheLibrary) {
    EXPECT_EQ(tool.RunScenario(L"broken-replies").code, 0u);
    const std::string log = tool.Read("work\\broken-replies\\library.log");
    int errors = 0;
    for (std::size_t at = 0; (at = log.find("read ret error", at)) != std::string::npos; ++at) {
        ++errors;
    }
    EXPECT_EQ(errors, 7)
        << "the seven are three settings, a group, two devices that come and one that goes";
}

TEST_F(Runner, OwnHost_LearnsItsFoldersAndItsExitCodeCounts) {
    const Tool::Outcome run = tool.RunScenario(
        L"slow-stop --host \"cmd /c echo %PLENX_SCENARIO% in %PLENX_INSTALL% & exit 3\"");
    EXPECT_EQ(run.code, 1u);
    EXPECT_THAT(run.output, HasSubstr("the host ended with 3, its last line: slow-stop in "
                                      "C:\\plenx-scenarios\\work\\slow-stop\\app"));
}

TEST_F(Runner, HostThatStartsNoService_Fails) {
    const Tool::Outcome run = tool.RunScenario(L"slow-stop --host \"cmd /c exit 0\"");
    EXPECT_EQ(run.code, 1u);
    EXPECT_THAT(run.output, HasSubstr("no service was started from the install folder"));
}

TEST_F(Runner, HostThatHangs_IsEndedWhenItsTimeIsOver) {
    tool.Write("hang.plenx", "sleep 60000\n");
    const std::wstring host = L"\\\"" + ProgramFolder() + L"\\plenxkit.exe\\\" host --script " +
                              (tool.Folder() / "hang.plenx").wstring();
    const ULONGLONG begin = GetTickCount64();
    const Tool::Outcome run = tool.RunScenario(L"slow-stop --timeout 2 --host \"" + host + L"\"");
    EXPECT_EQ(run.code, 1u);
    EXPECT_THAT(run.output, HasSubstr("the host did not end within 2 s"));
    EXPECT_LT(GetTickCount64() - begin, 50000u)
        << "the runner has waited until the host ended by itself";
}

TEST_F(Runner, HostThatCannotBeStarted_IsWrongUsage) {
    const Tool::Outcome run = tool.RunScenario(L"slow-stop --host C:\\none.exe");
    EXPECT_EQ(run.code, 2u);
    EXPECT_EQ(run.output, "plenxkit scenario: cannot start C:\\none.exe, error 2\n");
}

TEST_F(Runner, WrongUsage_EndsWith2AndSaysWhy) {
    Tool::Outcome run = tool.RunScenario(L"slow");
    EXPECT_EQ(run.code, 2u);
    EXPECT_THAT(run.output, StartsWith("plenxkit scenario: there is no scenario slow; there are "));
    run = tool.RunScenario(L"");
    EXPECT_EQ(run.code, 2u);
    EXPECT_EQ(run.output, "plenxkit scenario: run needs either names or --all\n");
    run = tool.RunScenario(L"slow-stop --host \"cmd /c exit 0\" --work \"C:\\with blank\"");
    EXPECT_EQ(run.code, 2u) << run.output;
    tool.Write("mine.toml", "[[on]]\nanwser = 5\n");
    run = tool.RunScenario(Mine());
    EXPECT_EQ(run.code, 2u);
    EXPECT_THAT(run.output, HasSubstr("mine.toml:2: unknown key anwser in [[on]]"));
}

TEST_F(Runner, ListAndShow_DescribeTheReadyScenarios) {
    Tool::Outcome run = tool.Run(L"plenxkit", L"scenario list");
    EXPECT_EQ(run.code, 0u);
    EXPECT_THAT(
        run.output,
        HasSubstr("\nnotifications-while-stopping  Notifications while the service stops\n"));
    EXPECT_THAT(run.output, HasSubstr("\nslow-stop                     A slow stop\n"));
    run = tool.Run(L"plenxkit", L"scenario show slow-stop");
    EXPECT_EQ(run.code, 0u);
    EXPECT_THAT(run.output, HasSubstr("\n[stop]\ndelay_ms = 2500\n"));
    EXPECT_THAT(run.output, HasSubstr("\ninit\nstart pc home argument\n"));
}

// The library would take such a service over.
TEST_F(Runner, ServiceOfAnInstalledHost_IsNotTouched) {
    const SC_HANDLE manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    const SC_HANDLE service =
        CreateServiceW(manager, L"PlenxPcSvc", L"PlenxPcSvc", SERVICE_ALL_ACCESS,
                       SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL,
                       L"C:\\Other\\plenxservice.exe", nullptr, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(service, nullptr);
    const Tool::Outcome run = tool.RunScenario(L"slow-stop");
    EXPECT_EQ(run.code, 2u);
    EXPECT_EQ(run.output,
              "plenxkit scenario: a host is installed here, and its service would be replaced: "
              "PlenxPcSvc, C:\\Other\\plenxservice.exe\n");
    EXPECT_TRUE(IsRegistered(L"PlenxPcSvc"));
    DeleteService(service);
    CloseServiceHandle(service);
    CloseServiceHandle(manager);
}

TEST_F(Runner, OwnInstallFolder_GetsTheControlFileAndGivesItBack) {
    const auto install = tool.Folder() / "own";
    std::filesystem::create_directories(install);
    for (const char* const file :
         {"plenxservice.exe", "dokan1.sys", "dokan1.dll", "dokanfuse1.dll"}) {
        std::filesystem::copy_file(std::filesystem::path(ProgramFolder()) / file, install / file);
    }
    Tool::Outcome run = tool.RunScenario(L"all-is-well --install " + install.wstring());
    EXPECT_EQ(run.code, 0u) << run.output;
    EXPECT_FALSE(std::filesystem::exists(install / "plenxservice.toml"));
    EXPECT_FALSE(std::filesystem::exists(install / "plenxservice.pc.runs"));
    EXPECT_TRUE(std::filesystem::exists(install / "plenxservice.exe"));
    tool.Write("own\\plenxservice.toml", "[[on]]\ndelay_ms = 1\n");
    run = tool.RunScenario(L"all-is-well --install " + install.wstring());
    EXPECT_EQ(run.code, 2u);
    EXPECT_THAT(run.output, HasSubstr("there is a control file already"));
    EXPECT_EQ(tool.Read("own\\plenxservice.toml"), "[[on]]\ndelay_ms = 1\n");
}

}  // namespace
}  // namespace PlenxTest
