// Tests what the reader makes of a scenario file without mistakes.

#include "scenario_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "wire/catalog.h"
#include "wire/render.h"

namespace PlenxService {
namespace {

using testing::IsEmpty;
using namespace std::string_literals;

std::int64_t operator""_n(unsigned long long number) {
    return static_cast<std::int64_t>(number);
}

Scenario Good(const std::string& text) {
    const ReadScenario read = ReadScenarioText(text);
    for (const Mistake& mistake : read.mistakes) {
        ADD_FAILURE() << Located("file", mistake);
    }
    return read.scenario;
}

Notification NotificationOf(const std::string& keys) {
    return Good("[[notify]]\n" + keys).schedules.at(0).notification;
}

std::string MessageOf(const std::string& keys) {
    const Notification notification = NotificationOf(keys);
    return PlenxWire::RenderMessage(notification.id, notification.message.data(),
                                    notification.message.size());
}

TEST(ScenarioReader, EmptyFile_IsAnHonestService) {
    const Scenario scenario = Good("");
    EXPECT_THAT(scenario.life, IsEmpty());
    EXPECT_THAT(scenario.steps, IsEmpty());
    EXPECT_THAT(scenario.schedules, IsEmpty());
}

TEST(ScenarioReader, TitleAndAbout_AreKept) {
    const Scenario scenario =
        Good("title = \"Gr\xc3\xbc\xc3\x9f\"\nabout = \"\"\"\ntwo\nlines\"\"\"");
    EXPECT_EQ(scenario.title, "Gr\xc3\xbc\xc3\x9f");
    EXPECT_EQ(scenario.about, "two\nlines");
}

TEST(ScenarioReader, StartAndStop_AreKeptKeyByKey) {
    const Scenario scenario = Good(R"(
[start]
hint_ms = 1
delay_ms = 2
silent_ms = 3
never = true
fail = 0xffffffff
crash = true
die = false
serve = false
[stop]
accept = false
how = "ignore"
after_ms = 4
delay_ms = 5
linger_ms = 6
)");
    ASSERT_EQ(scenario.life.size(), 2u);
    EXPECT_EQ(scenario.life[0].moment, Moment::kStart);
    EXPECT_EQ(scenario.life[0].values, Values({{"hint_ms", 1_n},
                                               {"delay_ms", 2_n},
                                               {"silent_ms", 3_n},
                                               {"never", true},
                                               {"fail", 4294967295_n},
                                               {"crash", true},
                                               {"die", false},
                                               {"serve", false}}));
    EXPECT_EQ(scenario.life[1].moment, Moment::kStop);
    EXPECT_EQ(scenario.life[1].values, Values({{"accept", false},
                                               {"how", "ignore"s},
                                               {"after_ms", 4_n},
                                               {"delay_ms", 5_n},
                                               {"linger_ms", 6_n}}));
}

TEST(ScenarioReader, SeveralStartsAndStops_AreEachForTheirService) {
    const Scenario scenario = Good(R"(
[[start]]
service = "pc"
fail = 1
[[start]]
service = "phone"
fail = 2
[[stop]]
delay_ms = 3
)");
    ASSERT_EQ(scenario.life.size(), 3u);
    EXPECT_EQ(scenario.life[0].line, 2u);
    EXPECT_EQ(scenario.life[0].scope.service, "pc");
    EXPECT_EQ(scenario.life[1].line, 5u);
    EXPECT_EQ(scenario.life[1].values.Number("fail"), 2);
    EXPECT_EQ(scenario.life[2].moment, Moment::kStop);
}

TEST(ScenarioReader, ControlFile_MayNameALogAndAScenarioBesides) {
    const ReadScenario read = ReadScenarioText(
        "log = 'C:\\a.log'\nscenario = 'mine.toml'\n[start]\nfail = 1\n", FileKind::kControl);
    EXPECT_TRUE(read.mistakes.empty());
    EXPECT_EQ(read.scenario.log, "C:\\a.log");
    EXPECT_EQ(read.scenario.below, "mine.toml");
    EXPECT_EQ(read.scenario.life.size(), 1u);
}

TEST(ScenarioReader, StepSaysWhatAndWhen) {
    const Scenario scenario = Good(R"(
[[on]]
request = "CreateGroup"
service = "phone"
runs = 2
skip = 3
times = 4
answer = -5
result = 6
fault = 0xC0000005
reply = "hex:00 ff"
delay_ms = 7
crash = true
die = true
notify = false
repeat = 8
leak_handles = 9
leak_kib = 10
hostile = true
[[on]]
request = 99
)");
    ASSERT_EQ(scenario.steps.size(), 2u);
    const Step& step = scenario.steps[0];
    EXPECT_EQ(step.request, PlenxWire::kCreateGroup);
    EXPECT_EQ(step.scope.service, "phone");
    EXPECT_EQ(step.scope.runs, 2);
    EXPECT_EQ(step.skip, 3);
    EXPECT_EQ(step.times, 4);
    EXPECT_EQ(step.values, Values({{"answer", -5_n},
                                   {"result", 6_n},
                                   {"fault", 3221225477_n},
                                   {"reply", "hex:00 ff"s},
                                   {"delay_ms", 7_n},
                                   {"crash", true},
                                   {"die", true},
                                   {"notify", false},
                                   {"repeat", 8_n},
                                   {"leak_handles", 9_n},
                                   {"leak_kib", 10_n},
                                   {"hostile", true}}));
    EXPECT_EQ(scenario.steps[1].request, 99) << "a number need not be one that is in use";
}

TEST(ScenarioReader, StepThatSaysNothing_IsForEachRequestEachTime) {
    const Step step = Good("[[on]]").steps.at(0);
    EXPECT_EQ(step.request, std::nullopt);
    EXPECT_EQ(step.skip, 0);
    EXPECT_EQ(step.times, kUnlimited);
    EXPECT_EQ(step.values, Values());
    EXPECT_TRUE(step.scope.Covers("office", 1000));
}

TEST(ScenarioReader, ServiceOfTheFile_HoldsWhereNoOtherIsNamed) {
    const Scenario scenario = Good(R"(
service = "pc"
[[on]]
[[on]]
service = "phone"
)");
    EXPECT_TRUE(scenario.steps[0].scope.Covers("pc", 1));
    EXPECT_FALSE(scenario.steps[0].scope.Covers("phone", 1));
    EXPECT_TRUE(scenario.steps[1].scope.Covers("phone", 1));
    EXPECT_FALSE(scenario.steps[1].scope.Covers("pc", 1));
}

TEST(ScenarioReader, Runs_AreTheFirstOnes) {
    const Scope scope = Good("[[on]]\nruns = 2").steps.at(0).scope;
    EXPECT_TRUE(scope.Covers("pc", 2));
    EXPECT_FALSE(scope.Covers("pc", 3));
}

TEST(ScenarioReader, ScheduleSaysWhen) {
    const Scenario scenario = Good(R"(
[[notify]]
on = "DeviceOnline"
after_ms = 1
every_ms = 2
times = 3
send = "hostile"
[[notify]]
on = "stop"
send = "hostile"
[[notify]]
send = "hostile"
)");
    ASSERT_EQ(scenario.schedules.size(), 3u);
    const Schedule& first = scenario.schedules[0];
    EXPECT_EQ(first.moment, Moment::kRequest);
    EXPECT_EQ(first.request, PlenxWire::kDeviceOnline);
    EXPECT_EQ(first.after, 1);
    EXPECT_EQ(first.every, 2);
    EXPECT_EQ(first.times, 3);
    EXPECT_TRUE(first.hostile);
    EXPECT_EQ(scenario.schedules[1].moment, Moment::kStop);
    EXPECT_EQ(scenario.schedules[2].moment, Moment::kStart);
    EXPECT_EQ(scenario.schedules[2].times, 1);
}

TEST(ScenarioReader, NotificationsAreBuiltFromTheirArguments) {
    EXPECT_EQ(MessageOf("send=\"StatusNotify\"\ngrpName=\"g_1\"\nsttsType=-1\nvalue=2"),
              "StatusNotify(14) grpName:\"g_1\" sttsType:-1 value:2");
    EXPECT_EQ(MessageOf("send=\"SendLocalMessage\"\nmsgType=7\nmsg=\"hi\""),
              "SendLocalMessage(9) msgType:7 msgLen:2 msg:\"hi\"");
    EXPECT_EQ(MessageOf("send=\"SendLocalMessage\"\nmsgType=7\nmsgLen=99\nmsg=\"hi\""),
              "SendLocalMessage(9) msgType:7 msgLen:99 msg:\"hi\"");
    EXPECT_EQ(MessageOf("send=\"UpdateWindowsExplore\"\npath=\"P:\\u00fc\\U0001f600\""),
              "UpdateWindowsExplore(17) length:12 path:[12] 50 00 3a 00 fc 00 3d d8 00 de 00 "
              "00");
}

TEST(ScenarioReader, NumberWithBytes_IsSentAsItIs) {
    const Notification notification = NotificationOf("send = -3\nhex = \"00 FF 7f\"");
    EXPECT_EQ(notification.id, -3);
    EXPECT_EQ(notification.message, (PlenxWire::Bytes{0x00, 0xff, 0x7f}));
}

}  // namespace
}  // namespace PlenxService
