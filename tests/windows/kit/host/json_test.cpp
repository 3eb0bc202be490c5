// Tests the JSON of a real run. The test leaves it in plenxkit-host.jsonl in the current folder,
// where ./plenx test reads it and checks it against the schema.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include "kit/host/diagnosis.h"
#include "kit/kit_process.h"
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
    LetOnlyAdministratorsWrite(folder.InstallPath().parent_path());
    const std::string arguments = "--install " + folder.Install() + " --data " + folder.Data();
    const std::filesystem::path script = folder.DataPath() / L"run.plenx";
    WriteFile(script, kScript);
    SetEnvironmentVariableW(L"PLENX_LOG_FILE", L"C:\\plenxkit-json-library.log");
    KitProcess run("host --json --script " + script.string() + " " + arguments);
    EXPECT_EQ(run.Wait(), 1);
    SetEnvironmentVariableW(L"PLENX_LOG_FILE", nullptr);
    EXPECT_THAT(run.Output(),
                HasSubstr("\nplenxkit host: to find the cause, see the library's log, "
                          "C:\\plenxkit-json-library.log, and plenxkit doctor"));
    const std::string lines = run.Printed();
    EXPECT_THAT(lines, HasSubstr("\"messageHex\":"));
    EXPECT_THAT(lines, HasSubstr("\"expectations\":10,\"failures\":[\"run.plenx:18: expect "
                                 "NotifyError 99 within 0: it did not come within 0 ms\"]"));

    KitProcess wrong("host --json --script nowhere");
    EXPECT_EQ(wrong.Wait(), 2);
    KitProcess doctor("doctor --json " + arguments + " --program C:\\nowhere");
    EXPECT_EQ(doctor.Wait(), 1);
    EXPECT_THAT(
        doctor.Printed(),
        HasSubstr("\"exitCode\":1,\"problems\":" + std::to_string(ReportedProblems(3)) + ","));
    WriteFile(L"plenxkit-host.jsonl", lines + wrong.Printed() + doctor.Printed());
}

TEST(FailedRun, WithoutALogFile_PointsToTheDoctorAlone) {
    KitProcess run("host");
    run.Send("expect-result 1");
    EXPECT_EQ(run.Wait(), 1);
    EXPECT_THAT(run.Output(), HasSubstr("plenxkit host: to find the cause, see plenxkit doctor"));
    EXPECT_THAT(run.Printed(), Not(HasSubstr("plenxkit doctor")));
}

TEST(FailedRun, OfQuitAlone_PointsNowhere) {
    KitProcess run("host");
    run.Send("quit 1");
    EXPECT_EQ(run.Wait(), 1);
    EXPECT_THAT(run.Output(), Not(HasSubstr("to find the cause")));
}

}  // namespace
}  // namespace PlenxTest
