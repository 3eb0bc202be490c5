// Each ready scenario: its script's expectations hold, each of its tables has its turn, and the
// observer gets what the page shows.

#include "scenario/ready_scenarios.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "kit/scenario/page.h"
#include "kit/scenario/tool.h"
#include "support/child_process.h"

namespace PlenxTest {
namespace {

using testing::Each;
using testing::IsSubsetOf;
using testing::UnorderedElementsAreArray;

std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const auto& scenario :
         PlenxScenario::ReadyScenariosIn(std::filesystem::path(ProgramFolder()) / "scenarios")) {
        names.push_back(scenario.name);
    }
    return names;
}

class ReadyScenarios : public testing::TestWithParam<std::string> {};

TEST_P(ReadyScenarios, PlayedToPlenxkitHost_GivesItsObserverWhatThePageShows) {
    const Tool tool;
    const std::wstring name(GetParam().begin(), GetParam().end());
    const Tool::Outcome run = tool.RunScenario(name + L" --observed --strict");
    ASSERT_EQ(run.code, 0u) << run.output << tool.Read("work\\" + GetParam() + "\\host.txt");
    const std::vector<std::string> observed = ObservedLines(run.output);
    const Shown shown = ShownOnPage(GetParam());
    if (shown.shortened) {
        EXPECT_THAT(shown.lines, IsSubsetOf(observed));
        EXPECT_THAT(observed, Each(testing::AnyOfArray(shown.lines)));
    } else {
        EXPECT_THAT(observed, UnorderedElementsAreArray(shown.lines));
    }
}

std::string PlainName(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, ReadyScenarios, testing::ValuesIn(Names()), PlainName);

TEST(ReadyScenarioFolder, HoldsThemAll) {
    EXPECT_GE(Names().size(), 20u);
}

}  // namespace
}  // namespace PlenxTest
