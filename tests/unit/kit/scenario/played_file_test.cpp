// Tests which part of a file has its turn, for which service, and in which of its runs.

#include "played_file.h"

#include <gtest/gtest.h>

#include "scenario_reader.h"
#include "wire/catalog.h"

namespace PlenxService {
namespace {

const Part kPc = {"pc", 1};
constexpr std::int32_t kPing = PlenxWire::kPingService;

PlayedFile FileOf(const std::string& text) {
    return PlayedFile(ReadScenarioText(text).scenario);
}

/// Returns the answer of the step, or 0 when there is none.
std::int64_t AnswerTo(PlayedFile& file, std::int32_t request, const Part& part = kPc) {
    const Step* const step = file.StepFor(request, part);
    return step ? step->values.Number("answer") : 0;
}

TEST(PlayedFile, FirstStepThatIsForARequest_CountsAlone) {
    PlayedFile file = FileOf(
        "[[on]]\nrequest = 'PingService'\nanswer = 1\n"
        "[[on]]\nanswer = 2\ndelay_ms = 3\n");
    EXPECT_EQ(AnswerTo(file, kPing), 1);
    EXPECT_EQ(AnswerTo(file, PlenxWire::kCreateGroup), 2);
    EXPECT_FALSE(file.StepFor(kPing, kPc)->values.Has("delay_ms"));
}

TEST(PlayedFile, StepThatIsUsedUp_LeavesTheRequestToTheNext) {
    PlayedFile file = FileOf(
        "[[on]]\nskip = 1\ntimes = 2\nanswer = 1\n"
        "[[on]]\nskip = 4\nanswer = 2\n");
    for (const std::int64_t answer : {0, 1, 1, 0, 2, 2}) {
        EXPECT_EQ(AnswerTo(file, kPing), answer);
    }
}

TEST(PlayedFile, StepOfAnotherServiceOrALaterRun_IsPassedOverAndNotCounted) {
    PlayedFile file = FileOf(
        "[[on]]\nservice = 'phone'\ntimes = 1\nanswer = 1\n"
        "[[on]]\nruns = 1\nanswer = 2\n");
    EXPECT_EQ(AnswerTo(file, kPing), 2);
    EXPECT_EQ(AnswerTo(file, kPing, {"pc", 2}), 0);
    EXPECT_EQ(AnswerTo(file, kPing, {"phone", 2}), 1);
    EXPECT_EQ(AnswerTo(file, kPing, {"phone", 2}), 0);
}

TEST(PlayedFile, OfSeveralStarts_TheFirstThatSaysAKeyCounts) {
    const PlayedFile file = FileOf(
        "[[start]]\nservice = 'phone'\nfail = 1\n"
        "[[start]]\nfail = 2\n"
        "[[start]]\nfail = 3\ndelay_ms = 4\n"
        "[stop]\ndelay_ms = 5\n");
    EXPECT_EQ(file.Life(Moment::kStart, kPc),
              Values({{"fail", std::int64_t{2}}, {"delay_ms", std::int64_t{4}}}));
    EXPECT_EQ(file.Life(Moment::kStop, kPc).Number("delay_ms"), 5);
}

TEST(PlayedFile, CountsRuns_WhenAnyPartNamesThem) {
    EXPECT_FALSE(FileOf("[start]\n[[on]]\n[[notify]]\nsend = 'hostile'\n").Said().CountsRuns());
    EXPECT_TRUE(FileOf("[start]\nruns = 1\n").Said().CountsRuns());
    EXPECT_TRUE(FileOf("[[on]]\nruns = 1\n").Said().CountsRuns());
    EXPECT_TRUE(FileOf("[[notify]]\nruns = 1\nsend = 'hostile'\n").Said().CountsRuns());
}

TEST(Values, AbsentKeys_HaveTheOtherValue) {
    Values values({{"flag", false}, {"number", std::int64_t{5}}, {"text", std::string("a")}});
    EXPECT_FALSE(values.Flag("flag", true));
    EXPECT_TRUE(values.Flag("none", true));
    EXPECT_EQ(values.Number("number", 7), 5);
    EXPECT_EQ(values.Number("none", 7), 7);
    EXPECT_EQ(values.Text("text"), "a");
    EXPECT_EQ(values.Text("none"), "");
    values.Add(Values({{"number", std::int64_t{6}}, {"none", true}}));
    EXPECT_EQ(values.Number("number"), 5) << "a value that is already there must stay";
    EXPECT_TRUE(values.Flag("none"));
}

}  // namespace
}  // namespace PlenxService
