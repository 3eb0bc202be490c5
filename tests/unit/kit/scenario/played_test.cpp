// Tests which tables of a scenario a run has played.

#include "scenario/played.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario_reader.h"

namespace PlenxScenario {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kScenario[] = R"(service = "pc"
[start]
serve = true
[stop]
service = "phone"
delay_ms = 1
[[on]]
[[on]]
request = 99
[[notify]]
send = "hostile"
[[notify]]
on = "stop"
send = "hostile"
[[notify]]
on = "NameChanged"
send = "hostile"
)";

std::vector<Table> Tables() {
    return TablesOf(PlenxService::ReadScenarioText(kScenario).scenario);
}

std::vector<std::string> Told(const std::vector<Table>& tables) {
    std::vector<std::string> told;
    for (const Table& table : tables) {
        told.push_back(std::to_string(table.line) + " " + table.what);
    }
    return told;
}

std::string LogOf(const std::vector<Table>& tables) {
    std::string log;
    for (const Table& table : tables) {
        log += "2026-01-31 12:34:56.789 pc " + PlenxService::TurnOfLine(table.line) + "\n";
    }
    return log;
}

TEST(Played, EachTable_IsKnownByItsLineAndByWhatItWaitsFor) {
    EXPECT_THAT(Told(Tables()),
                ElementsAre("2 [start] (pc)", "4 [stop] (phone)", "7 [[on]] any request (pc)",
                            "8 [[on]] request 99 (pc)", "10 [[notify]] on start (pc)",
                            "12 [[notify]] on stop (pc)", "15 [[notify]] on NameChanged (pc)"));
    EXPECT_THAT(Told(TablesOf(PlenxService::ReadScenarioText("[[on]]").scenario)),
                ElementsAre("1 [[on]] any request"))
        << "a table without a service is for each service";
}

TEST(Played, TableWhoseTurnIsInTheLog_IsNotMissing) {
    EXPECT_THAT(NotPlayed(Tables(), LogOf(Tables())), IsEmpty());
    std::vector<Table> some = Tables();
    some.erase(some.begin() + 1, some.begin() + 4);
    EXPECT_THAT(
        Told(NotPlayed(Tables(), LogOf(some))),
        ElementsAre("4 [stop] (phone)", "7 [[on]] any request (pc)", "8 [[on]] request 99 (pc)"));
}

TEST(Played, TextOfTheHostInTheLog_IsNoTurn) {
    EXPECT_THAT(NotPlayed({{2, "[start]"}},
                          "pc received NameChanged(5) name:\" plays line 2 of the scenario\"\n"
                          "pc plays line 22 of the scenario\n"),
                testing::SizeIs(1));
}

TEST(Played, Text_GroupsTablesThatWaitForTheSame) {
    EXPECT_EQ(TextOfNotPlayed({}, 3), "");
    EXPECT_EQ(TextOfNotPlayed({{7, "a"}, {8, "b"}, {9, "a"}, {12, "a"}}, 5),
              "4 of 5 tables not played: a, lines 7, 9 and 12; b, line 8");
}

}  // namespace
}  // namespace PlenxScenario
