#include "host/line_format.h"

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

TEST_F(LineFormatTest, JsonHasTheLocalTimeAsTheLogsDo) {
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

TEST_F(LineFormatTest, JsonOfACommandHasItsResults) {
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

TEST_F(LineFormatTest, TextOfTheEndListsTheFailuresAndTheLeftovers) {
    EXPECT_EQ(Text(EndReport{0, 0, {}, {"unused"}}), "there were no expectations\nexit code 0");
    EXPECT_EQ(Text(EndReport{0, 4, {}, {}}), "all 4 expectations held\nexit code 0");
    EXPECT_EQ(Text(EndReport{1, 4, {"s:3: expect x: why"}, {"NotifyError(errCode=1)"}}),
              "1 failed, of 4 expectations:\n  s:3: expect x: why\n"
              "no expectation took these notifications:\n  NotifyError(errCode=1)\n"
              "exit code 1");
}

TEST_F(LineFormatTest, TextWithColoursDistinguishesTheKinds) {
    const auto format = MakeTextFormat(Colours::kSome);
    const std::string stamp = "\x1b[90m    12.034 [77]\x1b[0m ";
    EXPECT_EQ(format->Format(kStamp, NotificationReport{kDisk, 0, false}),
              stamp + "\x1b[36m< NotifyDiskName(diskName=\"P\\xff\")\x1b[0m");
    const Notification error{"NotifyError", {{"errCode", std::int64_t{5}}}, "main"};
    EXPECT_EQ(format->Format(kStamp, NotificationReport{error, 0, false}),
              stamp + "\x1b[1;31m< NotifyError(errCode=5)\x1b[0m");
    Outcome outcome;
    outcome.held = true;
    const CommandReport report{"", "", "expect x", outcome, kStamp.time, milliseconds(0)};
    EXPECT_EQ(format->Format(kStamp, report),
              stamp + "\x1b[1m> expect x\x1b[0m: \x1b[32myes\x1b[0m");
    outcome.held = false;
    EXPECT_EQ(format->Format(kStamp, report),
              stamp + "\x1b[1m> expect x\x1b[0m: \x1b[1;31mNO\x1b[0m");
    EXPECT_EQ(format->Format(kStamp, EndReport{0, 4, {}, {}}),
              "\x1b[32mall 4 expectations held\x1b[0m\nexit code 0");
}

const std::vector<Finding> kFindings = {{Level::kOk, "a.dll 1.0.0.0", ""},
                                        {Level::kProblem, "b.dll is missing", "Install it."}};

TEST_F(LineFormatTest, TextOfTheDoctor) {
    const Check check{"files", "Files", nullptr};
    EXPECT_EQ(Text(CheckReport{check, kFindings}),
              "Files\n"
              "  ok       a.dll 1.0.0.0\n"
              "  problem  b.dll is missing\n"
              "           Install it.\n");
    Diagnosis diagnosis;
    diagnosis.problems = 1;
    EXPECT_EQ(
        Text(DiagnosisReport{diagnosis, 1}),
        "The doctor does not look at:\n"
        "  the driver's signature, and whether Windows is in test mode\n"
        "  what the services need beyond plenxservice.exe and the DLLs that Windows loads with it\n"
        "\n"
        "1 problem, 0 notes\n"
        "exit code 1");
}

TEST_F(LineFormatTest, JsonOfTheDoctorIsOneLineForEachFinding) {
    const Check check{"files", "Files", nullptr};
    const std::string lines = MakeJsonFormat()->Format(kStamp, CheckReport{check, kFindings});
    const std::size_t end = lines.find('\n');
    const json first = json::parse(lines.substr(0, end));
    const json second = json::parse(lines.substr(end + 1));
    EXPECT_EQ(first["type"], "finding");
    EXPECT_EQ(first["check"], "files");
    EXPECT_EQ(first["level"], "ok");
    EXPECT_EQ(first["text"], "a.dll 1.0.0.0");
    EXPECT_FALSE(first.contains("advice"));
    EXPECT_EQ(second["level"], "problem");
    EXPECT_EQ(second["advice"], "Install it.");
    Diagnosis diagnosis;
    diagnosis.notes = 2;
    const json last = Json(DiagnosisReport{diagnosis, 0});
    EXPECT_EQ(last["type"], "diagnosis");
    EXPECT_EQ(last["exitCode"], 0);
    EXPECT_EQ(last["problems"], 0);
    EXPECT_EQ(last["notes"], 2);
}

}  // namespace
}  // namespace PlenxHost
