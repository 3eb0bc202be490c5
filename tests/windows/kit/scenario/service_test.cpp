// Tests scenarios in the service itself, without the runner.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kit/scenario/tool.h"

namespace PlenxTest {
namespace {

using testing::HasSubstr;
using testing::Not;

class ServiceOnConsole : public testing::Test {
protected:
    /// Runs the PC service for at most that many seconds.
    std::string Played(const std::wstring& more = L"", const std::wstring& seconds = L"1") const {
        const auto run =
            tool.Run(L"plenxservice", L"--console pc --seconds " + seconds + L" --install " +
                                          tool.Folder().wstring() + L" --data " +
                                          (tool.Folder() / "data").wstring() + more);
        EXPECT_EQ(run.code, 0u) << run.output;
        return run.output;
    }
    std::wstring Mine() const { return (tool.Folder() / "mine.toml").wstring(); }

    Tool tool;
};

TEST_F(ServiceOnConsole, ScenarioOfTheControlFile_IsPlayedAndItsRunsCounted) {
    tool.Write("plenxservice.toml", "scenario = 'mine.toml'\n");
    tool.Write("mine.toml",
               "title = \"A\"\n[start]\nruns = 1\nserve = false\n"
               "[[notify]]\nruns = 1\nafter_ms = 1\ntimes = 2\nevery_ms = 1\n"
               "send = \"ErrorNotify\"\nerrCode = 5\n");
    const std::string first = Played();
    EXPECT_THAT(first, HasSubstr(" pc plays scenario \"A\", run 1\n"));
    EXPECT_THAT(first, HasSubstr(" pc does not serve PLENXPCService\n"));
    EXPECT_THAT(first, HasSubstr(" pc plays line 2 of the scenario\n"));
    EXPECT_THAT(first, HasSubstr(" pc plays line 5 of the scenario\n"));
    EXPECT_THAT(first, HasSubstr(" pc sends ErrorNotify(15) errCode:5\n"));
    const std::string second = Played();
    EXPECT_THAT(second, HasSubstr(" pc plays scenario \"A\", run 2\n"));
    EXPECT_THAT(second, HasSubstr(" pc serves PLENXPCService\n"));
    EXPECT_THAT(second, Not(HasSubstr("ErrorNotify")));
    EXPECT_THAT(second, Not(HasSubstr("plays line")));
}

TEST_F(ServiceOnConsole, ScenarioOfTheCommandLine_CountsBeforeThatOfTheControlFile) {
    tool.Write("plenxservice.toml", "scenario = 'other.toml'\n");
    tool.Write("mine.toml", "title = \"mine\"\n[stop]\nafter_ms = 1\n");
    EXPECT_THAT(Played(L" --scenario " + Mine()),
                HasSubstr(" pc plays scenario \"mine\", run 1\n"));
}

TEST_F(ServiceOnConsole, KeyOfTheControlFile_CountsBeforeTheScenario) {
    tool.Write("plenxservice.toml",
               "scenario = 'mine.toml'\n[start]\nserve = true\n[stop]\nafter_ms = 1\n");
    tool.Write("mine.toml", "[start]\nserve = false\n");
    EXPECT_THAT(Played(), HasSubstr(" pc serves PLENXPCService\n"));
}

TEST_F(ServiceOnConsole, ScenarioWithMistakes_IsNamedAndTheServiceIsHonest) {
    tool.Write("plenxservice.toml", "scenario = 'mine.toml'\n[stop]\nafter_ms = 1\n");
    tool.Write("mine.toml", "[start]\nserve = false\nfial = 5\n");
    const std::string log = Played();
    EXPECT_THAT(log, HasSubstr(" pc scenario C:\\plenx-scenarios\\mine.toml:3: unknown key fial in "
                               "[start]; there are "));
    EXPECT_THAT(log, HasSubstr(" pc does not play a scenario with mistakes\n"));
    EXPECT_THAT(log, HasSubstr(" pc serves PLENXPCService\n"));
}

TEST_F(ServiceOnConsole, ScenarioThatIsMissing_IsNamedAndTheServiceIsHonest) {
    tool.Write("plenxservice.toml", "scenario = 'none.toml'\n[stop]\nafter_ms = 1\n");
    const std::string log = Played();
    EXPECT_THAT(log,
                HasSubstr(" pc cannot read scenario \"C:\\\\plenx-scenarios\\\\none.toml\"\n"));
    EXPECT_THAT(log, HasSubstr(" pc runs\n"));
}

TEST_F(ServiceOnConsole, ServiceThatStopsByItself_EndsBeforeItsTime) {
    tool.Write("mine.toml", "[stop]\nafter_ms = 1\n");
    EXPECT_THAT(Played(L" --scenario " + Mine(), L"3600"), HasSubstr(" pc has stopped\n"));
}

TEST_F(ServiceOnConsole, CheckOfAFile_ReportsItsMistakesAndEndsWith2) {
    tool.Write("mine.toml", "[[on]]\n\nskip = -1\n");
    auto run = tool.Run(L"plenxservice", L"--check " + Mine());
    EXPECT_EQ(run.code, 2u);
    EXPECT_EQ(run.output,
              "C:\\plenx-scenarios\\mine.toml:3: skip = -1 in [[on]] must be an integer "
              "from 0 to 10000\n");
    tool.Write("mine.toml", "[[on]]\nskip = 1\n");
    run = tool.Run(L"plenxservice", L"--check " + Mine());
    EXPECT_EQ(run.code, 0u);
    EXPECT_EQ(run.output, "C:\\plenx-scenarios\\mine.toml: no mistakes\n");
    run = tool.Run(L"plenxservice", L"--check C:\\none.toml");
    EXPECT_EQ(run.code, 2u);
    EXPECT_EQ(run.output, "plenxservice: cannot read C:\\none.toml\n");
}

}  // namespace
}  // namespace PlenxTest
