// The ready scenarios, and the page that describes them.

#include "ready_scenarios.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "scenario_reader.h"

namespace PlenxScenario {
namespace {

using testing::HasSubstr;

std::string Page() {
    return ReadWhole(DOCS_PAGE);
}

TEST(ReadyScenarios, EachHasATitleATextAndAScriptThatExpectsSomething) {
    const auto all = ReadyScenariosIn(READY_SCENARIOS);
    EXPECT_GE(all.size(), 20u);
    for (const ReadyScenario& scenario : all) {
        EXPECT_NE(scenario.title, "") << scenario.name;
        EXPECT_NE(scenario.about, "") << scenario.name;
        EXPECT_THAT(ReadWhole(scenario.script), HasSubstr("\nexpect NotifyStatus "))
            << scenario.name;
    }
}

// What stands in the section's block is compared with a run under Wine.
TEST(ReadyScenarios, EachHasASectionOnThePage) {
    const std::string page = Page();
    for (const ReadyScenario& scenario : ReadyScenariosIn(READY_SCENARIOS)) {
        EXPECT_THAT(page, HasSubstr("\n### " + scenario.name + ": ")) << scenario.name;
        EXPECT_THAT(page, HasSubstr("plenxscenario run " + scenario.name + " --observed\n"));
    }
}

TEST(ReadyScenarios, UnknownName_IsToldWithThoseThereAre) {
    const auto all = ReadyScenariosIn(READY_SCENARIOS);
    try {
        FindScenario(all, "slow");
        FAIL() << "it was found";
    } catch (const UsageError& error) {
        EXPECT_THAT(error.what(),
                    testing::StartsWith("there is no scenario slow; there are all-is-well "));
    }
}

TEST(ReadyScenarios, FolderWithoutAny_IsTold) {
    EXPECT_THROW(ReadyScenariosIn("/there/is/none"), UsageError);
}

// The reader tells the keys there are when one is unknown.
std::vector<std::string> KeysOf(const std::string& table) {
    const std::string text =
        PlenxService::ReadScenarioText(table + "\nnothing = 1\n").mistakes.at(0).text;
    std::string list = text.substr(text.find("there are ") + 10);
    for (std::size_t at; (at = list.find(" and ")) != std::string::npos;) {
        list.replace(at, 5, ", ");
    }
    std::vector<std::string> keys;
    std::istringstream stream(list);
    for (std::string key; std::getline(stream, key, ',');) {
        keys.push_back(key.substr(key.find_first_not_of(' ')));
    }
    return keys;
}

TEST(ScenariosPage, EveryKey_HasItsRow) {
    const std::string page = Page();
    for (const char* const table :
         {"[start]", "[stop]", "[[on]]", "[[notify]]\nsend = 1\nhex = \"\""}) {
        const std::vector<std::string> keys = KeysOf(table);
        EXPECT_GE(keys.size(), 7u) << table;
        for (const std::string& key : keys) {
            EXPECT_THAT(page, HasSubstr("`" + key)) << key << " of " << table;
        }
    }
}

}  // namespace
}  // namespace PlenxScenario
