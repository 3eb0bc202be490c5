// Tests what the judge refuses to begin with, what it leaves behind, and what it writes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kit/judge/judgement.h"
#include "support/child_process.h"
#include "support/install_folder.h"
#include "support/wait.h"
#include "support/wide_text.h"

namespace PlenxTest {
namespace {

using testing::HasSubstr;

constexpr DWORD kUntilItServes = 60000;

std::string Program(const std::string& name) {
    return PlenxSupport::ToUtf8(ProgramFolder()) + "\\" + name;
}

class JudgeUsage : public testing::Test {
protected:
    JudgeFolder folder;

    std::string ServiceWith(const std::string& scenario) const {
        return R"(--console "\")" + Program("plenxservice.exe") +
               R"(\" --console pc --data C:\plenx-judged\data --scenario )" +
               folder.Write("mine.toml", scenario) + "\"";
    }
};

TEST_F(JudgeUsage, EndpointThatNobodyServes_IsRefused) {
    const Judgement judgement = RunJudge("--endpoint PLENXPCService");
    EXPECT_EQ(judgement.code, 3);
    EXPECT_EQ(judgement.output, "plenxkit judge: refused to begin: nobody serves PLENXPCService\n");
}

TEST_F(JudgeUsage, ProgramThatCannotBeStarted_IsRefused) {
    const Judgement judgement = RunJudge("--console C:\\none.exe --only ping");
    EXPECT_EQ(judgement.code, 3);
    EXPECT_THAT(judgement.output, HasSubstr("cannot start C:\\none.exe, error 2\n"));
}

TEST_F(JudgeUsage, ServedEndpoint_IsJudgedAndLeftRunning) {
    ChildProcess service(
        L"\"" + ProgramFolder() +
            L"\\plenxservice.exe\" --console phone --install C:\\plenx-judged --data "
            L"C:\\plenx-judged\\data",
        DETACHED_PROCESS);
    ASSERT_TRUE(
        WaitFor([] { return RunJudge("--endpoint PLENXPhoneService --only ping").code == 0; },
                kUntilItServes));
    const Judgement judgement = RunJudge("--endpoint PLENXPhoneService --only reply,stop,notify");
    EXPECT_EQ(judgement.code, 0) << judgement.output;
    EXPECT_THAT(judgement.output, HasSubstr("only with --service"));
    EXPECT_EQ(service.WaitForExit(0), std::nullopt);
    // The program goes away, and the judge says so.
    folder.Write("plenxservice.toml", "[[on]]\nrequest = \"NameChanged\"\ndie = true\n");
    const Judgement gone = RunJudge("--endpoint PLENXPhoneService --only serve,reply");
    EXPECT_EQ(gone.code, 1) << gone.output;
    EXPECT_EQ(gone.Failed(), std::set<std::string>{"serve/1"}) << gone.output;
    EXPECT_THAT(gone.output, HasSubstr("the program is gone: NameChanged was the last request"));
}

TEST_F(JudgeUsage, KnownFailure_CountsOnlyWhenItHasGone) {
    const std::string known = "--known " + folder.Write("known.txt", "ping/1  # ours\nreply/1\n");
    const Judgement failing =
        RunJudge("--only ping/1 " + known + " " +
                 ServiceWith("[[on]]\nrequest = \"PingService\"\nanswer = 1005\n"));
    EXPECT_EQ(failing.code, 0) << failing.output;
    EXPECT_EQ(failing.verdicts.at("ping/1"), "failed, as is known");
    const Judgement gone = RunJudge("--only ping/1 " + known + " " + ServiceWith(""));
    EXPECT_EQ(gone.code, 1) << gone.output;
    EXPECT_THAT(gone.output, HasSubstr("GONE ping/1"));
}

TEST_F(JudgeUsage, ShouldCountsWhenStrict) {
    const std::string service =
        ServiceWith("[[on]]\nrequest = \"NameChanged\"\nanswer = 1005\n") + " --only name-changed";
    EXPECT_EQ(RunJudge(service).code, 0);
    EXPECT_EQ(RunJudge(service + " --strict").code, 1);
}

TEST_F(JudgeUsage, Reports_AreWritten) {
    const Judgement judgement =
        RunJudge("--only reply --junit C:\\plenx-judged\\r.xml --html C:\\plenx-judged\\r.html " +
                 ServiceWith("[[on]]\nreply = \"short\"\n"));
    EXPECT_EQ(judgement.code, 1);
    EXPECT_THAT(ReadFile(folder.Path() / "r.xml"), HasSubstr("failures=\"1\""));
    EXPECT_THAT(ReadFile(folder.Path() / "r.html"), HasSubstr("a reply of 20 bytes"));
    EXPECT_THAT(judgement.output, HasSubstr("the total size at offset 0 says 24"));
}

TEST_F(JudgeUsage, Soak_WatchesMemoryAndHandles) {
    const Judgement judgement = RunJudge("--only soak --soak 2 " + ServiceWith(""));
    EXPECT_EQ(judgement.code, 0) << judgement.output;
    EXPECT_EQ(judgement.verdicts.at("soak/2"), "passed") << judgement.output;
    EXPECT_EQ(judgement.verdicts.at("soak/3"), "passed") << judgement.output;
}

}  // namespace
}  // namespace PlenxTest
