// Tests the ready scenarios, and the page that describes them.

#include "scenario/ready_scenarios.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <utility>

#include "scenario_reader.h"
#include "text_file.h"

namespace PlenxScenario {
namespace {

using testing::HasSubstr;

std::string Page() {
    return PlenxKit::ReadText(DOCS_PAGE);
}

TEST(ReadyScenarios, EachHasATitleATextAndAScriptThatExpectsSomething) {
    const auto all = ReadyScenariosIn(READY_SCENARIOS);
    EXPECT_GE(all.size(), 20u);
    for (const ReadyScenario& scenario : all) {
        EXPECT_NE(scenario.title, "") << scenario.name;
        EXPECT_NE(scenario.about, "") << scenario.name;
        EXPECT_THAT(PlenxKit::ReadText(scenario.script), HasSubstr("\nexpect NotifyStatus "))
            << scenario.name;
    }
}

// A test under Wine compares the section's block with a run.
TEST(ReadyScenarios, EachHasASectionOnThePage) {
    const std::string page = Page();
    for (const ReadyScenario& scenario : ReadyScenariosIn(READY_SCENARIOS)) {
        EXPECT_THAT(page, HasSubstr("\n### " + scenario.name + ": ")) << scenario.name;
        EXPECT_THAT(page, HasSubstr("plenxkit scenario run " + scenario.name + " --observed\n"));
    }
}

// These are the calls with which a host gives a table its turn. Start also brings the start of the
// service and its settings.
const std::pair<const char*, const char*> kCauses[] = {
    {"[start]", "`Start`"},
    {"[stop]", "`Start`"},
    {"on CreateGroup", "`Start`"},
    {"on] DeviceOnline", "DeviceOnline`"},
    {"on] DeviceOffline", "DeviceOffline`"},
    {"NameChanged", "`DeviceNameChanged`"},
    {"RecvRemoteMessage", "`RecvRemoteMessage`"},
    {"(pc)", "`Start` pc"},
    {"(phone)", " phone"},
};

TEST(ReadyScenarios, EachHasARowThatSaysWhatAHostHasToDo) {
    const std::string page = Page();
    for (const ReadyScenario& scenario : ReadyScenariosIn(READY_SCENARIOS)) {
        std::smatch row;
        const std::regex form("\n\\| \\[" + scenario.name +
                              "\\]\\(#[^)]*\\) \\| ([^|\n]+) \\| ([^|\n]+) \\|\n");
        ASSERT_TRUE(std::regex_search(page, row, form)) << scenario.name;
        EXPECT_EQ(row[1], scenario.title);
        EXPECT_THAT(row[2].str(), HasSubstr("`Start`")) << scenario.name;
        for (const Table& table : scenario.tables) {
            for (const auto& [what, call] : kCauses) {
                if (table.what.find(what) != std::string::npos) {
                    EXPECT_THAT(row[2].str(), HasSubstr(call)) << scenario.name << table.what;
                }
            }
        }
    }
}

TEST(ReadyScenarios, UnknownName_IsReportedWithTheKnownOnes) {
    const auto all = ReadyScenariosIn(READY_SCENARIOS);
    try {
        FindScenario(all, "slow");
        FAIL() << "it was found";
    } catch (const UsageError& error) {
        EXPECT_THAT(error.what(),
                    testing::StartsWith("there is no scenario slow; there are all-is-well "));
    }
}

TEST(ReadyScenarios, FolderWithoutAny_IsReported) {
    EXPECT_THROW(ReadyScenariosIn("/there/is/none"), UsageError);
}

// The reader lists the keys that it knows when it finds an unknown one.
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

// Returns the example that begins with this line, as a user would copy it.
std::string ExampleThatBegins(const std::string& line) {
    constexpr char kIndent[] = "    ";
    std::istringstream page(Page());
    std::string example;
    for (std::string text; std::getline(page, text);) {
        const bool indented = text.compare(0, sizeof kIndent - 1, kIndent) == 0;
        if (indented && (!example.empty() || text == kIndent + line)) {
            example += text.substr(sizeof kIndent - 1) + "\n";
        } else if (!example.empty() && text.empty()) {
            example += "\n";
        } else if (!example.empty()) {
            break;
        }
    }
    return example;
}

TEST(ScenariosPage, ExampleOfAFile_HasNoMistakes) {
    const std::string example = ExampleThatBegins("title = \"The first group is refused\"");
    const PlenxService::ReadScenario read = PlenxService::ReadScenarioText(example);
    EXPECT_TRUE(read.mistakes.empty()) << PlenxService::Located("example", read.mistakes.at(0));
    EXPECT_EQ(read.scenario.steps.size(), 1u);
    EXPECT_EQ(read.scenario.schedules.size(), 1u);
    EXPECT_EQ(read.scenario.life.size(), 1u);
}

TEST(ScenariosPage, ExampleOfAControlFile_HasNoMistakes) {
    const PlenxService::ReadScenario read = PlenxService::ReadScenarioText(
        ExampleThatBegins("log = 'C:\\Plenx\\service.log'"), PlenxService::FileKind::kControl);
    EXPECT_TRUE(read.mistakes.empty()) << PlenxService::Located("example", read.mistakes.at(0));
    EXPECT_EQ(read.scenario.log, "C:\\Plenx\\service.log");
    EXPECT_EQ(read.scenario.below, "C:\\Plenx\\mine.toml");
    EXPECT_EQ(read.scenario.steps.size(), 1u);
}

TEST(ScenariosPage, ExampleOfMistakes_IsAsTheReaderReportsThem) {
    const PlenxService::ReadScenario read = PlenxService::ReadScenarioText(
        "[[on]]\nrequest = \"CreateGroup\"\nanwser = 5\n\n"
        "[[notify]]\nsend = \"ErrorNotify\"\nerrCode = 5\n\ntimes = 0\n");
    ASSERT_EQ(read.mistakes.size(), 2u);
    for (const PlenxService::Mistake& mistake : read.mistakes) {
        EXPECT_THAT(Page(), HasSubstr("    " + PlenxService::Located("mine.toml", mistake) + "\n"));
    }
}

}  // namespace
}  // namespace PlenxScenario
