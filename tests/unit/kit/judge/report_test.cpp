// Tests what the judge reports to people, programs, build servers and browsers.

#include "judge/report.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "judge/selection.h"
#include "junit.h"

namespace PlenxJudge {
namespace {

using testing::HasSubstr;
using testing::Not;

Record RecordOf(const std::string& number, Level level, Outcome outcome) {
    Record record;
    record.number = number;
    record.level = level;
    record.section = "the-reply";
    record.sentence = "It does so.";
    record.outcome = std::move(outcome);
    return record;
}

Outcome Failure() {
    return Outcome::Of(
        {{"24 bytes", "20 <bytes>", "reply: 20 bytes\n\nBROKEN\n"}, {"24 bytes", "21 bytes"}});
}

RunRecord Sample() {
    RunRecord run{"C:\\mine.exe as pc service", "1.0.0", false};
    run.records = {RecordOf("reply/1", Level::kMust, Outcome::Of({})),
                   RecordOf("reply/2", Level::kMust, Failure()),
                   RecordOf("reply/4", Level::kShould, Failure()),
                   RecordOf("soak/1", Level::kMust, Outcome::NotJudged("only with --soak"))};
    return run;
}

TEST(JudgeVerdict, CountsMustAlwaysAndShouldWhenStrict) {
    RunRecord run = Sample();
    EXPECT_FALSE(run.Fails(run.records[0]));
    EXPECT_TRUE(run.Fails(run.records[1]));
    EXPECT_FALSE(run.Fails(run.records[2]));
    EXPECT_FALSE(run.Fails(run.records[3]));
    run.strict = true;
    EXPECT_TRUE(run.Fails(run.records[2]));
    run.records[2].level = Level::kMay;
    EXPECT_FALSE(run.Fails(run.records[2]));
}

TEST(JudgeVerdict, KnownFailureCountsWhenItHasGone) {
    RunRecord run = Sample();
    for (Record& record : run.records) {
        record.known = true;
    }
    EXPECT_TRUE(run.Fails(run.records[0]));
    EXPECT_FALSE(run.Fails(run.records[1]));
    EXPECT_FALSE(run.Fails(run.records[3]));
}

TEST(JudgeText, ShowsWhatWasExpectedAndWhatCame) {
    const RunRecord run = Sample();
    EXPECT_EQ(AreaText(run, {run.records[0], run.records[1]}),
              "  reply                    1 passed, 1 failed\n"
              "    FAIL reply/2 (must): It does so.\n"
              "      expected  24 bytes\n"
              "      came      20 <bytes>\n"
              "\n"
              "        reply: 20 bytes\n"
              "\n"
              "        BROKEN\n"
              "\n"
              "                and 1 more, such as: 21 bytes\n"
              "      page      wire-protocol.html#the-reply\n");
    EXPECT_THAT(AreaText(run, {run.records[2]}), HasSubstr("note reply/4 (should)"));
    EXPECT_EQ(AreaText(run, {run.records[3]}),
              "  soak                     1 not judged (only with --soak)\n");
    EXPECT_EQ(SummaryText(run), "4 checks: 1 passed, 1 failed, 1 noted, 1 not judged\n");
}

TEST(JudgeText, TellsWhatIsKnownAndWhatHasGone) {
    RunRecord run = Sample();
    run.records[0].known = true;
    run.records[1].known = true;
    run.leftBehind = "the service PlenxPcSvc";
    const std::string text = AreaText(run, {run.records[0], run.records[1]});
    EXPECT_THAT(text, HasSubstr("1 failed as is known, 1 known to fail, but passed\n"));
    EXPECT_THAT(text, HasSubstr("    GONE reply/1 (must)"));
    EXPECT_THAT(text, HasSubstr("    known reply/2 (must)"));
    EXPECT_THAT(SummaryText(run), HasSubstr("\nleft behind: the service PlenxPcSvc\n"));
}

TEST(JudgeText, TellsThatARunWasInterrupted) {
    RunRecord run = Sample();
    run.interrupted = true;
    EXPECT_EQ(SummaryText(run),
              "4 checks: 1 passed, 1 failed, 1 noted, 1 not judged\n"
              "interrupted; the other checks were not judged\n");
}

TEST(JudgeJson, IsReadBackAsItWasWritten) {
    RunRecord run = Sample();
    run.records[1].known = true;
    run.leftBehind = "something";
    run.interrupted = true;
    const std::string text = JsonOf(run);
    EXPECT_EQ(JsonOf(RunFromJson(text, "a.json")), text);
    const auto json = nlohmann::json::parse(text);
    EXPECT_EQ(json["interrupted"], true);
    EXPECT_EQ(json["checks"][1]["verdict"], "failed, as is known");
    EXPECT_EQ(json["checks"][1]["section"], "wire-protocol.html#the-reply");
    EXPECT_EQ(json["checks"][3]["why"], "only with --soak");
}

TEST(JudgeJson, OfAnotherProgram_IsRefused) {
    EXPECT_THROW(RunFromJson("{}", "a.json"), UsageError);
    EXPECT_THROW(RunFromJson("no json", "a.json"), UsageError);
}

TEST(JudgeJunit, HasFailuresAndSkippedChecks) {
    const std::string text = JunitOf(Sample());
    EXPECT_THAT(text, HasSubstr("<testsuite name=\"plenxkit judge\" tests=\"4\" failures=\"1\" "
                                "skipped=\"1\" time=\"0.0\">"));
    EXPECT_THAT(text, HasSubstr("name=\"reply/1\" time=\"0.0\"/>"));
    EXPECT_THAT(text, HasSubstr("<failure message=\"It does so.\">expected: 24 bytes\n"
                                "came: 20 &lt;bytes&gt;\n"));
    EXPECT_THAT(text, HasSubstr("<skipped message=\"only with --soak\"/>"));
}

TEST(JudgeHtml, HasAColumnForEachRunAndNothingFromTheNetwork) {
    RunRecord other = Sample();
    other.program = "version 2 & more";
    other.records.erase(other.records.begin());
    const std::string page = HtmlOf({Sample(), other});
    EXPECT_THAT(page, HasSubstr("C:\\mine.exe as pc service"));
    EXPECT_THAT(page, HasSubstr("version 2 &amp; more"));
    EXPECT_THAT(page, HasSubstr("20 &lt;bytes&gt;"));
    EXPECT_THAT(page, HasSubstr("<td>–</td>"));
    EXPECT_THAT(page, Not(HasSubstr("http")));
    EXPECT_THAT(page, Not(HasSubstr("<script")));
}

TEST(Junit, TakesFailuresOfSeveralLines) {
    const std::string text =
        PlenxKit::JunitOf("a suite", {{"a&b", 1.25, "one\ntwo", "", "x\x01<y>\nz"}});
    EXPECT_THAT(text, HasSubstr("<failure message=\"one two\">x?&lt;y&gt;\nz</failure>"));
}

}  // namespace
}  // namespace PlenxJudge
