#include "trace/host_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "story.h"

namespace PlenxTrace {
namespace {

// Returns a record of this type, 9 ms after noon.
Event Record(const std::string& type, const std::string& rest) {
    return ClassifyHostLine(
        AsLine(R"({"type":")" + type + R"(","time":")" + At(9) + "\"," + rest + "}"), kNoTime);
}

Event Notified(const std::string& rest) {
    return Record("notification", R"("name":"NotifyX",)" + rest);
}

TEST(HostLine, CommandStandsWhereItBegan_WithItsResult) {
    const std::string began = "\"began\":\"" + At(3) + "\",";
    const Event event = Record("command", began + R"("text":"start pc home \"\"","result":26)");
    EXPECT_EQ(event.kind, Kind::kHostCommand);
    EXPECT_EQ(event.time, kNoon + 3);
    EXPECT_EQ(event.label, "start pc home \"\" = 26");
    EXPECT_FALSE(event.failure);
    EXPECT_EQ(Record("command", began + R"("text":"destroy")").label, "destroy");
    EXPECT_EQ(Record("command", began + R"("text":"get-string pc 1","resultText":"a b")").label,
              "get-string pc 1 = \"a b\"");
    EXPECT_EQ(
        Record("command", began + R"("text":"office-dir","result":0,"resultText":"C:")").label,
        "office-dir = 0 = \"C:\"");
}

TEST(HostLine, ExpectationThatHeld_IsADetail) {
    const Event event =
        Record("command", "\"began\":\"" + At(3) + R"(","text":"expect","held":true)");
    EXPECT_EQ(event.kind, Kind::kDetail);
    EXPECT_FALSE(event.failure);
}

TEST(HostLine, ExpectationThatDidNotHold_IsAFailure_AtItsEnd_WithTheReason) {
    const Event event = Record(
        "command", "\"began\":\"" + At(3) + R"(","text":"expect X","held":false,"remark":"why")");
    EXPECT_EQ(event.kind, Kind::kHostError);
    EXPECT_TRUE(event.failure);
    EXPECT_EQ(event.time, kNoon + 9);
    EXPECT_EQ(event.label, "expect X: why");
}

TEST(HostLine, NotificationNamesItsServiceAndStatus_AndKeepsTheOrderOfItsArguments) {
    const Event event = Notified(
        R"("arguments":{"svcType":1,"first":"home","sttsType":3,"value":true},"returns":0)");
    EXPECT_EQ(event.kind, Kind::kHostTold);
    EXPECT_EQ(event.time, kNoon + 9);
    EXPECT_EQ(event.label, "NotifyX pc home offline true");
    EXPECT_EQ(Notified(R"("arguments":{"sttsType":100,"svcType":7})").label,
              "NotifyX 100 service 7");
    EXPECT_EQ(Notified(R"("arguments":{"linkType":0,"linkStatus":5,"answer":7})").label,
              "NotifyX 0 -> 7");
}

TEST(HostLine, NotificationTellsWhatTheObserverDoes) {
    EXPECT_EQ(Notified(R"("arguments":{},"returns":0)").label, "NotifyX");
    EXPECT_EQ(Notified(R"("arguments":{},"returns":-5)").label, "NotifyX -> -5");
    EXPECT_EQ(Notified(R"("arguments":{},"throws":true)").label, "NotifyX throws");
}

TEST(HostLine, TextErrorAndEnd_AreShown) {
    EXPECT_EQ(Record("text", R"("text":"-- now")").kind, Kind::kHostText);
    EXPECT_EQ(Record("text", R"("text":"-- now")").label, "-- now");
    EXPECT_EQ(Record("error", R"("text":"no such file")").kind, Kind::kHostError);
    EXPECT_TRUE(Record("error", R"("text":"no such file")").failure);
    const Event good = Record("end", R"("exitCode":0,"expectations":3,"failures":[])");
    EXPECT_EQ(good.kind, Kind::kHostText);
    EXPECT_EQ(good.label, "end: 3 expectations, 0 failed");
    const Event bad = Record("end", R"("exitCode":1,"expectations":3,"failures":["a"])");
    EXPECT_TRUE(bad.failure);
    EXPECT_EQ(bad.label, "end: 3 expectations, 1 failed");
}

TEST(HostLine, LineThatIsNoRecord_IsShownAsItIs_AtTheTimeOfTheLineBefore) {
    for (const std::string text :
         {"", "wine: a warning", "[]", "7", "{}", R"({"type":"text","time":"soon","text":"x"})",
          R"({"type":"text","time":"2026-11-21 12:00:00.000","text":7})",
          R"({"type":"end","time":"2026-11-21 12:00:00.000","exitCode":1})"}) {
        const Event event = ClassifyHostLine(AsLine(text), kNoon + 1);
        EXPECT_EQ(event.kind, Kind::kForeign) << text;
        EXPECT_EQ(event.label, text);
        EXPECT_EQ(event.time, kNoon + 1) << text;
        EXPECT_FALSE(event.failure) << text;
    }
}

}  // namespace
}  // namespace PlenxTrace
