// Tests what verify reports to people, programs, build servers and browsers.

#include "verify/report.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

namespace PlenxVerify {
namespace {

using testing::HasSubstr;
using testing::Not;

RunRecord Sample() {
    RunRecord run{"1.0.0", "2026-11-22 10:00:00", {{"Windows", "11 <Pro>"}}};
    Case recorded{"Wire.Echo", Case::Verdict::kPassed, 0.25};
    recorded.recorded = {{"transfer syntax", "NDR64"}};
    const Case failed{"Wire.Size", Case::Verdict::kFailed, 1.5, "a.cpp:9\nExpected <1>"};
    const Case skipped{"Wire.Later", Case::Verdict::kSkipped, 0, "not here"};
    run.stages = {{"wire", "Calls arrive.", {{"calls", {recorded, failed, skipped}, "", 2}}},
                  {"hostile", "It goes on.", {{"storm", {}, "it had not ended after 9 s", 9}}},
                  {"endings", "It ends.", {}, "the run was interrupted"}};
    return run;
}

TEST(VerifyText, StageHasItsCountsAndFailures) {
    const RunRecord run = Sample();
    EXPECT_EQ(StageText(run.stages[0]),
              "  wire          1 passed, 1 failed, 1 skipped, 1 recorded      2 s\n"
              "    FAIL Wire.Size\n"
              "      a.cpp:9\n"
              "      Expected <1>\n");
    EXPECT_EQ(StageText(run.stages[1]),
              "  hostile       1 failed                                       9 s\n"
              "    FAIL storm: it had not ended after 9 s\n");
    EXPECT_EQ(StageText(run.stages[2]), "  endings       not run: the run was interrupted\n");
}

TEST(VerifyText, LongFailure_IsCut) {
    RunRecord run = Sample();
    run.stages[0].parts[0].cases[1].text = "1\n2\n3\n4\n5\n6\n7\n8";
    EXPECT_THAT(StageText(run.stages[0]), HasSubstr("      6\n      ...\n"));
    EXPECT_THAT(StageText(run.stages[0]), Not(HasSubstr("      7")));
}

TEST(VerifyText, Summary_CountsAndJudges) {
    RunRecord run = Sample();
    EXPECT_EQ(SummaryText(run),
              "4 tests: 1 passed, 2 failed, 1 skipped, 1 recorded\nSomething failed.\n");
    run.interrupted = true;
    EXPECT_EQ(VerdictOf(run), "The run was interrupted. Everything was removed.");
    run.leftBehind = {"the folder C:\\root"};
    EXPECT_THAT(SummaryText(run),
                HasSubstr("left behind: the folder C:\\root\nSomething was left behind.\n"));
    EXPECT_EQ(VerdictOf(RunRecord{}), "All is as expected.");
}

TEST(VerifyText, Screen_FitsAndSaysWhatIsRemoved) {
    const std::string screen = ScreenText(Selected({}), "C:\\root", "C:\\out");
    EXPECT_LE(std::count(screen.begin(), screen.end(), '\n'), 24);
    EXPECT_THAT(screen,
                HasSubstr("What is removed again: the services, the drivers, the processes, "
                          "and C:\\root.\nWhat stays: the results, in C:\\out\n"));
    EXPECT_THAT(screen, HasSubstr("  load          The DLLs load"));
}

TEST(VerifyJson, HoldsEverything) {
    const auto json = nlohmann::json::parse(JsonOf(Sample()));
    EXPECT_EQ(json.at("verdict"), "Something failed.");
    EXPECT_EQ(json.at("system").at("Windows"), "11 <Pro>");
    const auto& tests = json.at("stages").at(0).at("parts").at(0).at("tests");
    EXPECT_EQ(tests.at(0).at("recorded").at("transfer syntax"), "NDR64");
    EXPECT_EQ(tests.at(1).at("verdict"), "failed");
    EXPECT_EQ(tests.at(1).at("text"), "a.cpp:9\nExpected <1>");
    EXPECT_EQ(json.at("stages").at(1).at("parts").at(0).at("problem"),
              "it had not ended after 9 s");
    EXPECT_EQ(json.at("stages").at(2).at("whyNotRun"), "the run was interrupted");
}

TEST(VerifyJunit, HasACaseForEachTestAndProblem) {
    const std::string xml = JunitOf(Sample());
    EXPECT_THAT(xml, HasSubstr("tests=\"5\" failures=\"2\" skipped=\"2\""));
    EXPECT_THAT(xml, HasSubstr("name=\"wire/calls/Wire.Size\""));
    EXPECT_THAT(xml, HasSubstr("recorded: transfer syntax = NDR64"));
    EXPECT_THAT(xml, HasSubstr("name=\"hostile/storm\""));
}

TEST(VerifyHtml, ShowsAllAndNeedsNoNetwork) {
    const std::string html = HtmlOf(Sample());
    EXPECT_THAT(html,
                HasSubstr("<p class=\"verdict\"><span class=\"failed\">Something failed.</span>"));
    EXPECT_THAT(html, HasSubstr("11 &lt;Pro&gt;"));
    EXPECT_THAT(html, HasSubstr("<pre>a.cpp:9\nExpected &lt;1&gt;\n</pre>"));
    EXPECT_THAT(html, HasSubstr("<td>Wire.Echo: transfer syntax</td><td>NDR64</td>"));
    EXPECT_THAT(html, HasSubstr("not run: the run was interrupted"));
    EXPECT_THAT(html, Not(HasSubstr("http")));
    EXPECT_THAT(html, Not(HasSubstr("<script")));
}

}  // namespace
}  // namespace PlenxVerify
