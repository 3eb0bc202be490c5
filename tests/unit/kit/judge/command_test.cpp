// Tests the command line of the judge, as far as it does not need Windows.

#include <gmock/gmock.h>

#include <fstream>

#include "judge/report.h"
#include "outcome.h"

namespace PlenxJudge {
namespace {

using PlenxKit::OutcomeOf;
using testing::HasSubstr;
using testing::StartsWith;

TEST(JudgeCommand, List_NamesTheChecksWithTheirLevels) {
    const auto all = OutcomeOf({"judge", "--list"});
    EXPECT_EQ(all.code, 0);
    EXPECT_THAT(all.out, StartsWith("  start/1                   must    It reports running"));
    const auto some = OutcomeOf({"judge", "--list", "--only", "ping"});
    EXPECT_EQ(some.out,
              "  ping/1                    must    A ping is answered with 0.\n"
              "  ping/2                    must    Any number is taken, including 0 again.\n");
}

TEST(JudgeCommand, DryRun_SaysWhatWouldBeDone) {
    const auto outcome = OutcomeOf(
        {"judge", "--endpoint", "PLENXPhoneService", "--dry-run", "--only", "stop/1,ping"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.out, StartsWith("would judge whoever serves PLENXPhoneService\n"));
    EXPECT_THAT(outcome.out, HasSubstr("gives up. Not judged: only with --service.\n"));
}

TEST(JudgeCommand, WrongUsage_EndsWith2) {
    EXPECT_EQ(OutcomeOf({"judge"}).code, 2);
    EXPECT_EQ(OutcomeOf({"judge", "--list", "--only", "nonsense"}).err,
              "plenxkit judge: there is no check \"nonsense\"; --list shows them all\n");
    EXPECT_EQ(OutcomeOf({"judge", "--service", "a", "--console", "b"}).code, 2);
    EXPECT_EQ(OutcomeOf({"judge", "--endpoint", "a", "--role", "tablet"}).code, 2);
    EXPECT_EQ(OutcomeOf({"judge", "--with", "/nonexistent", "--html", "x"}).code, 2);
}

TEST(JudgeCommand, OfAProgram_IsRefusedWithoutWindows) {
    const auto outcome = OutcomeOf({"judge", "--endpoint", "PLENXPCService"});
    EXPECT_EQ(outcome.code, 3);
    EXPECT_EQ(outcome.err, "plenxkit judge: refused to begin: this command needs Windows\n");
}

TEST(JudgeCommand, EarlierRuns_AreComparedOnOnePage) {
    const std::string folder = testing::TempDir();
    RunRecord run{"version 1", "1.0.0", false};
    std::ofstream(folder + "judge-one.json") << JsonOf(run);
    run.program = "version 2";
    std::ofstream(folder + "judge-two.json") << JsonOf(run);
    const auto outcome = OutcomeOf({"judge", "--with", folder + "judge-one.json", "--with",
                                    folder + "judge-two.json", "--html", folder + "judge.html"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    std::ifstream page(folder + "judge.html");
    const std::string text{std::istreambuf_iterator<char>(page), {}};
    EXPECT_THAT(text, HasSubstr("version 1"));
    EXPECT_THAT(text, HasSubstr("version 2"));
}

}  // namespace
}  // namespace PlenxJudge
