#include "line_format.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <ctime>
#include <nlohmann/json.hpp>

namespace PlenxHost {
namespace {

using nlohmann::json;
using std::chrono::milliseconds;

const Stamp kStamp{std::chrono::system_clock::time_point(milliseconds(1700000000007)),
                   milliseconds(12034), 77};

const Notification kDisk{"NotifyDiskName", {{"diskName", std::string("P\xFF")}}, "main"};

class LineFormatTest : public testing::Test {
protected:
    LineFormatTest() {
        setenv("TZ", "UTC-1", 1);
        tzset();
    }

    template <class Report>
    json Json(const Report& report) {
        return json::parse(MakeJsonFormat()->Format(kStamp, report));
    }

    template <class Report>
    std::string Text(const Report& report) {
        return MakeTextFormat()->Format(kStamp, report);
    }
};

TEST_F(LineFormatTest, JsonTellsTheLocalTimeAsTheLogsDo) {
    const json object = Json(Note{NoteKind::kText, "x"});
    EXPECT_EQ(object["time"], "2023-11-14 23:13:20.007");
    EXPECT_EQ(object["seconds"], 12.034);
    EXPECT_EQ(object["thread"], 77);
    EXPECT_EQ(object["type"], "text");
}

TEST_F(LineFormatTest, JsonKeepsBytesThatAreNotUtf8InASecondKey) {
    const json object = Json(NotificationReport{kDisk, 5, false});
    EXPECT_EQ(object["arguments"]["diskName"], "P\xEF\xBF\xBD");
    EXPECT_EQ(object["arguments"]["diskNameHex"], "50ff");
    EXPECT_EQ(object["returns"], 5);
    EXPECT_FALSE(object.contains("throws"));
}

TEST_F(LineFormatTest, JsonOfACommandHasWhatTheCommandGave) {
    Outcome outcome;
    outcome.number = 26;
    const json object = Json(CommandReport{"s:3", "start", "start pc \"\" a", outcome,
                                           kStamp.time - milliseconds(8), milliseconds(8)});
    EXPECT_EQ(object["began"], "2023-11-14 23:13:19.999");
    EXPECT_EQ(object["milliseconds"], 8);
    EXPECT_EQ(object["place"], "s:3");
    EXPECT_EQ(object["name"], "start");
    EXPECT_EQ(object["text"], "start pc \"\" a");
    EXPECT_EQ(object["result"], 26);
    EXPECT_FALSE(object.contains("held"));
    EXPECT_FALSE(object.contains("resultText"));
}

TEST_F(LineFormatTest, JsonOfTheEndHasTheFailures) {
    const json object = Json(EndReport{1, 2, {"s:3: expect x"}, {"NotifyError(errCode=1)"}});
    EXPECT_EQ(object["type"], "end");
    EXPECT_EQ(object["exitCode"], 1);
    EXPECT_EQ(object["expectations"], 2);
    EXPECT_EQ(object["failures"], json({"s:3: expect x"}));
    EXPECT_EQ(object["leftovers"], json({"NotifyError(errCode=1)"}));
}

TEST_F(LineFormatTest, TextOfANotification) {
    EXPECT_EQ(Text(NotificationReport{kDisk, 0, false}),
              "    12.034 [77] < NotifyDiskName(diskName=\"P\\xff\")");
    EXPECT_EQ(Text(NotificationReport{kDisk, 5, false}),
              "    12.034 [77] < NotifyDiskName(diskName=\"P\\xff\") returns 5");
    EXPECT_EQ(Text(NotificationReport{kDisk, 5, true}),
              "    12.034 [77] < NotifyDiskName(diskName=\"P\\xff\") throws");
}

TEST_F(LineFormatTest, TextOfACommand) {
    Outcome outcome;
    const auto line = [&](const std::string& text, int took) {
        return Text(CommandReport{"", "", text, outcome, kStamp.time, milliseconds(took)});
    };
    EXPECT_EQ(line("init", 0), "    12.034 [77] > init");
    outcome.number = 5;
    outcome.text = "a\nb";
    EXPECT_EQ(line("office-dir g d \x1b", 50),
              "    12.034 [77] > office-dir g d \\x1b = 5, \"a\\nb\" (50 ms)");
    outcome = Outcome();
    outcome.held = false;
    outcome.remark = "why";
    EXPECT_EQ(line("expect x", 0), "    12.034 [77] > expect x: NO, why");
}

TEST_F(LineFormatTest, TextOfTheEndTellsWhatWasMissing) {
    EXPECT_EQ(Text(EndReport{0, 0, {}, {"unused"}}), "no expectations\nexit code 0");
    EXPECT_EQ(Text(EndReport{0, 4, {}, {}}), "all 4 expectations held\nexit code 0");
    EXPECT_EQ(Text(EndReport{1, 4, {"s:3: expect x: why"}, {"NotifyError(errCode=1)"}}),
              "1 failed, of 4 expectations:\n  s:3: expect x: why\n"
              "came and was not taken by an expectation:\n  NotifyError(errCode=1)\n"
              "exit code 1");
}

}  // namespace
}  // namespace PlenxHost
