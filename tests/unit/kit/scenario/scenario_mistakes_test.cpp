// Tests that each mistake in a scenario file is reported with its line and with what is allowed.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario_reader.h"

namespace PlenxService {
namespace {

std::string MistakesIn(const std::string& text) {
    std::string all;
    for (const Mistake& mistake : ReadScenarioText(text).mistakes) {
        all += Located("file.toml", mistake) + "\n";
    }
    return all;
}

TEST(ScenarioMistakes, TextThatIsNotToml_IsReportedWithItsLine) {
    EXPECT_THAT(MistakesIn("title = \"a\"\n[[on]\nanswer = 5\n"),
                testing::StartsWith("file.toml:2: this is not valid TOML: "));
    EXPECT_THAT(MistakesIn("[start]\nfail = 1\nfail = 2\n"),
                testing::StartsWith("file.toml:3: this is not valid TOML: "));
    EXPECT_THAT(MistakesIn("title = \"\xff\"\n"),
                testing::StartsWith("file.toml:1: this is not valid TOML: "));
}

TEST(ScenarioMistakes, UnknownKeys_AreReportedWithTheKnownOnes) {
    EXPECT_EQ(MistakesIn("titel = \"a\"\n"),
              "file.toml:1: unknown key titel; there are [[notify]], [[on]], [start], [stop], "
              "about, service and title\n");
    EXPECT_EQ(MistakesIn("\n[stat]\nfail = 5\n"),
              "file.toml:2: unknown key stat; there are [[notify]], [[on]], [start], [stop], "
              "about, service and title\n");
    EXPECT_EQ(MistakesIn("[start]\nserve = true\nfial = 5\n"),
              "file.toml:3: unknown key fial in [start]; there are crash, delay_ms, die, fail, "
              "hint_ms, never, runs, serve, service and silent_ms\n");
    EXPECT_EQ(MistakesIn("[stop]\nfail = 5\n"),
              "file.toml:2: unknown key fail in [stop]; there are accept, after_ms, delay_ms, how, "
              "linger_ms, runs and service\n");
    EXPECT_EQ(MistakesIn("[[on]]\n\nanswers = 5\n"),
              "file.toml:3: unknown key answers in [[on]]; there are answer, crash, delay_ms, die, "
              "fault, hostile, leak_handles, leak_kib, notify, repeat, reply, request, result, "
              "runs, service, skip and "
              "times\n");
    EXPECT_EQ(MistakesIn("[[notify]]\nsend = \"ErrorNotify\"\nerrCode = 5\ncode = 5\n"),
              "file.toml:4: unknown key code in [[notify]]; there are after_ms, errCode, every_ms, "
              "on, runs, send, service and times\n");
}

TEST(ScenarioMistakes, WrongTypes_AreReportedWithTheRightOnes) {
    EXPECT_EQ(MistakesIn("title = 5\n"),
              "file.toml:1: title = 5 in the file must be a text in quotes\n");
    EXPECT_EQ(MistakesIn("[start]\nnever = \"yes\"\n"),
              "file.toml:2: never = 'yes' in [start] must be true or false\n");
    EXPECT_EQ(MistakesIn("[[on]]\nanswer = \"5\"\n"),
              "file.toml:2: answer = '5' in [[on]] must be an integer from -2147483648 to "
              "4294967295\n");
    EXPECT_EQ(MistakesIn("[[on]]\nanswer = 5.0\n"),
              "file.toml:2: answer = 5.0 in [[on]] must be an integer from -2147483648 to "
              "4294967295\n");
}

TEST(ScenarioMistakes, NumbersOutOfRange_AreReportedWithTheRange) {
    EXPECT_EQ(MistakesIn("[[on]]\nresult = 4294967296\n"),
              "file.toml:2: result = 4294967296 in [[on]] must be an integer from -2147483648 to "
              "4294967295\n");
    EXPECT_EQ(MistakesIn("[stop]\ndelay_ms = -1\n"),
              "file.toml:2: delay_ms = -1 in [stop] must be an integer from 0 to 600000\n");
    EXPECT_EQ(MistakesIn("[[on]]\ntimes = 0\nskip = 10001\n"),
              "file.toml:2: times = 0 in [[on]] must be an integer from 1 to 10000\n"
              "file.toml:3: skip = 10001 in [[on]] must be an integer from 0 to 10000\n");
}

TEST(ScenarioMistakes, UnknownWords_AreReportedWithTheKnownOnes) {
    EXPECT_EQ(MistakesIn("service = \"PC\"\n"),
              "file.toml:1: service = 'PC' in the file must be \"office\", \"pc\" or \"phone\"\n");
    EXPECT_EQ(MistakesIn("[stop]\nhow = \"slowly\"\n"),
              "file.toml:2: how = 'slowly' in [stop] must be \"normal\", \"ignore\" or "
              "\"never\"\n");
    EXPECT_EQ(MistakesIn("[[on]]\nreply = \"hex:0\"\n"),
              "file.toml:2: reply = 'hex:0' in [[on]] must be \"normal\", \"empty\", \"garbage\", "
              "\"short\", \"large\" or \"lie\", or \"hex:\" with pairs of hexadecimal digits\n");
    EXPECT_EQ(MistakesIn("[[on]]\nrequest = \"ConnectNotify\"\n"),
              "file.toml:2: request = 'ConnectNotify' in [[on]] must be \"CreateGroup\", "
              "\"DeleteGroup\", \"DeviceOnline\", \"DeviceOffline\", \"NameChanged\", "
              "\"RecvRemoteMessage\", \"SetStringConfig\", \"SetInt64Config\" or \"PingService\", "
              "or a number\n");
    EXPECT_EQ(MistakesIn("[[notify]]\non = \"end\"\nsend = \"hostile\"\n"),
              "file.toml:2: on = 'end' in [[notify]] must be \"start\", \"stop\", \"CreateGroup\", "
              "\"DeleteGroup\", \"DeviceOnline\", \"DeviceOffline\", \"NameChanged\", "
              "\"RecvRemoteMessage\", \"SetStringConfig\", \"SetInt64Config\" or \"PingService\", "
              "or a number\n");
}

TEST(ScenarioMistakes, TablesOfTheWrongKind_AreReportedWithTheRightOne) {
    EXPECT_EQ(MistakesIn("[on]\nanswer = 5\n"), "file.toml:1: on must be tables, [[on]]\n");
    EXPECT_EQ(MistakesIn("notify = 5\n"), "file.toml:1: notify must be tables, [[notify]]\n");
    EXPECT_EQ(MistakesIn("start = 5\n"),
              "file.toml:1: start must be a table, [start], or tables, [[start]]\n");
    EXPECT_EQ(MistakesIn("stop = [5]\n"),
              "file.toml:1: stop must be a table, [stop], or tables, [[stop]]\n");
}

TEST(ScenarioMistakes, IncompleteNotification_IsReportedWithItsMissingArguments) {
    EXPECT_EQ(MistakesIn("\n[[notify]]\nafter_ms = 5\n"),
              "file.toml:2: [[notify]] has no send; it must be \"SendLocalMessage\", "
              "\"ConnectNotify\", \"DisconnectNotify\", \"ReconnectNotify\", \"LinkTypeQuery\", "
              "\"StatusNotify\", \"ErrorNotify\", \"DiskNameNotify\", \"UpdateWindowsExplore\", "
              "\"ExploreFlushNotify\" or \"hostile\", or a number\n");
    EXPECT_EQ(MistakesIn("[[notify]]\nsend = \"StatusNotify\"\nvalue = true\n"),
              "file.toml:1: [[notify]] has no grpName, which StatusNotify needs: a text in "
              "quotes\n"
              "file.toml:1: [[notify]] has no sttsType, which StatusNotify needs: an integer\n"
              "file.toml:3: value = true in [[notify]] must be an integer from -2147483648 to "
              "2147483647\n");
    EXPECT_THAT(MistakesIn("[[notify]]\nsend = \"CreateGroup\"\ngroupName = \"g_1\"\n"),
                testing::MatchesRegex("file.toml:2: send = 'CreateGroup' in ..notify.. must be "
                                      "\"SendLocalMessage\", .*, or a number\n"));
    EXPECT_EQ(MistakesIn("[[notify]]\nsend = 15\n"),
              "file.toml:1: [[notify]] sends a number and has no hex, the bytes of the message\n");
    EXPECT_EQ(MistakesIn("[[notify]]\nsend = 15\nhex = \"0g\"\n"),
              "file.toml:3: hex = '0g' in [[notify]] must be pairs of hexadecimal digits\n");
}

TEST(ScenarioMistakes, KeysOfTheControlFile_AreUnknownInAScenario) {
    EXPECT_EQ(MistakesIn("log = 'a.log'\n"),
              "file.toml:1: unknown key log; there are [[notify]], [[on]], [start], [stop], about, "
              "service and title\n");
}

TEST(ScenarioMistakes, OfTheControlFile_AreReportedWithItsKeys) {
    const auto mistakes =
        ReadScenarioText("log = 5\nscenario = true\nlogs = 'a.log'\n", FileKind::kControl).mistakes;
    ASSERT_EQ(mistakes.size(), 3u);
    EXPECT_EQ(mistakes[0].text, "log = 5 in the file must be a text in quotes");
    EXPECT_EQ(mistakes[1].text, "scenario = true in the file must be a text in quotes");
    EXPECT_EQ(
        mistakes[2].text,
        "unknown key logs; there are [[notify]], [[on]], [start], [stop], about, log, scenario, "
        "service and title");
}

TEST(ScenarioMistakes, AllOfThem_AreReportedInTheOrderOfTheirLines) {
    EXPECT_EQ(MistakesIn("[[on]]\nanswer = true\n[start]\nfail = true\n[[on]]\nskip = true\n"),
              "file.toml:2: answer = true in [[on]] must be an integer from -2147483648 to "
              "4294967295\n"
              "file.toml:4: fail = true in [start] must be an integer from -2147483648 to "
              "4294967295\n"
              "file.toml:6: skip = true in [[on]] must be an integer from 0 to 10000\n");
}

}  // namespace
}  // namespace PlenxService
