// A real run's JSON. It is left in plenxhost.jsonl of the current folder, where the schema's check
// of ./plenx test reads it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include "kit/host/host_process.h"
#include "support/install_folder.h"

namespace PlenxTest {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* kScript =
    "init\n"
    "start pc home argument\n"
    "expect NotifyStatus pc home start true within 50000\n"
    "expect NotifyConnect pc home within 50000\n"
    "answer-link 7\n"
    "local-online pc home laptop hex:00ff\n"
    "expect QueryLinkStatus pc home answer=7 within 50000\n"
    "expect NotifyDiskName within 50000\n"
    "remote-online pc home tablet\n"
    "expect NotifyReconnect pc home within 50000\n"
    "remote-offline pc home tablet 5\n"
    "expect NotifyError 5 within 50000\n"
    "message 3 \"not UTF-8: \\xff\"\n"
    "expect SendLocalMessage 3 within 50000\n"
    "office-dir home tablet shared\n"
    "get-string pc 1\n"
    "echo \"a text\"\n"
    "expect NotifyError 99 within 0  # never\n"
    "stop pc home\n"
    "expect NotifyDisconnect pc home within 50000\n"
    "expect NotifyStatus pc home stop false within 50000\n";

TEST(Json, OfARealRunAndOfTheDoctor_IsThere) {
    const InstallFolder folder(L"PlenxJson");
    const std::string arguments = "--install " + folder.Install() + " --data " + folder.Data();
    const std::filesystem::path script = folder.DataPath() / L"run.plenx";
    WriteFile(script, kScript);
    SetEnvironmentVariableW(L"PLENX_LOG_FILE", L"C:\\plenxhost-json-library.log");
    HostProcess run("--json --script " + script.string() + " " + arguments);
    EXPECT_EQ(run.Wait(), 1);
    SetEnvironmentVariableW(L"PLENX_LOG_FILE", nullptr);
    EXPECT_THAT(run.Output(), HasSubstr("\nplenxhost: for causes see the library's log, "
                                        "C:\\plenxhost-json-library.log, and plenxhost doctor"));
    const std::string lines = run.Printed();
    EXPECT_THAT(lines, HasSubstr("\"messageHex\":"));
    EXPECT_THAT(lines, HasSubstr("\"expectations\":10,\"failures\":[\"run.plenx:18: expect "
                                 "NotifyError 99 within 0: it did not come within 0 ms\"]"));

    HostProcess wrong("--json --script nowhere");
    EXPECT_EQ(wrong.Wait(), 2);
    HostProcess doctor("doctor --json " + arguments + " --program C:\\nowhere");
    EXPECT_EQ(doctor.Wait(), 1);
    EXPECT_THAT(doctor.Printed(), HasSubstr("\"exitCode\":1,\"problems\":6,"));
    WriteFile(L"plenxhost.jsonl", lines + wrong.Printed() + doctor.Printed());
}

TEST(FailedRun, WithoutALogFile_PointsToTheDoctorAlone) {
    HostProcess run("");
    run.Send("expect-result 1");
    EXPECT_EQ(run.Wait(), 1);
    EXPECT_THAT(run.Output(), HasSubstr("plenxhost: for causes see plenxhost doctor"));
    EXPECT_THAT(run.Printed(), Not(HasSubstr("plenxhost doctor")));
}

TEST(FailedRun, OfQuitAlone_PointsNowhere) {
    HostProcess run("");
    run.Send("quit 1");
    EXPECT_EQ(run.Wait(), 1);
    EXPECT_THAT(run.Output(), Not(HasSubstr("for causes")));
}

}  // namespace
}  // namespace PlenxTest
