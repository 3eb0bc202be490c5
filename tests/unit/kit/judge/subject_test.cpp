// Tests what the judge says about an honest peer, and about one that misbehaves in its replies.

#include <gmock/gmock.h>

#include "judge/piped_program.h"
#include "judge/runner.h"
#include "judge/selection.h"

namespace PlenxJudge {
namespace {

using testing::ElementsAre;

// The peer is not a service, and its notifications come with its answers, so "Manager" cannot hold
// them.
const std::vector<std::string> kRequests = {
    "serve,reply,create-group,delete-group,device-online,device-offline,name-changed",
    "recv-remote-message,set-string-config,set-int64-config,ping,text,flag,message,call,refuse",
    "notify,status-notify,send-local-message,update-windows-explore,explore-flush-notify"};

std::vector<Record> Judged(const std::vector<std::string>& misbehaviour,
                           const std::vector<std::string>& only = kRequests) {
    std::vector<std::string> command = {JUDGE_SUBJECT};
    command.insert(command.end(), misbehaviour.begin(), misbehaviour.end());
    const PlenxSupport::Interruption none;
    PipedProgram program(command, none);
    Trial trial(program, std::chrono::seconds(0), none);
    const std::vector<const Check*> selected = Selected(only);
    std::vector<Record> records =
        RunChecks(selected, trial, {}, {[](const Check&, std::size_t) {}, [](const Record&) {}});
    EXPECT_EQ(records.size(), selected.size());
    EXPECT_FALSE(records.empty());
    return records;
}

std::vector<std::string> FailuresOf(const std::vector<Record>& records) {
    std::vector<std::string> numbers;
    for (const Record& record : records) {
        if (record.Failed()) {
            numbers.push_back(record.number);
        }
    }
    return numbers;
}

TEST(Subject, ThatIsHonest_PassesAllChecksOfRequests) {
    for (const Record& record : Judged({})) {
        EXPECT_TRUE(record.Passed()) << record.number << ": " << record.outcome.why;
    }
}

TEST(Subject, ThatSendsNoNotification_IsNotJudgedByThem) {
    for (const Record& record : Judged({"quiet"}, {"notify", "manager", "status-notify"})) {
        EXPECT_FALSE(record.WasJudged()) << record.number;
    }
}

TEST(Subject, WithRepliesOfItsOwn_FailsTheChecksOfReplies) {
    EXPECT_THAT(FailuresOf(Judged({"reply=empty"})), ElementsAre("reply/1"));
    EXPECT_THAT(FailuresOf(Judged({"reply=garbage"})), ElementsAre("reply/2"));
    EXPECT_THAT(FailuresOf(Judged({"reply=short"})), ElementsAre("reply/2"));
    EXPECT_THAT(FailuresOf(Judged({"reply=lie"})), ElementsAre("reply/3"));
    EXPECT_THAT(
        FailuresOf(Judged({"reply=hex:19000000010000000200000014000000040000000000000000"})),
        ElementsAre("reply/2"));
}

TEST(Subject, ThatRefusesEverything_FailsEachRequest) {
    EXPECT_THAT(FailuresOf(Judged({"answer=5"}, {"reply", "create-group/1", "ping/1"})),
                ElementsAre("reply/4", "create-group/1", "ping/1"));
    EXPECT_THAT(FailuresOf(Judged({"answer=1005"}, {"reply", "create-group/1", "ping/1"})),
                ElementsAre("create-group/1", "ping/1"));
    EXPECT_THAT(FailuresOf(Judged({"result=5"}, {"reply", "ping/1"})),
                ElementsAre("reply/5", "ping/1"));
}

TEST(Subject, ThatTakesEverything_FailsTheChecksOfBrokenMessages) {
    EXPECT_THAT(FailuresOf(Judged({"answer=0"})),
                ElementsAre("refuse/1", "refuse/2", "refuse/3", "refuse/4", "refuse/5", "refuse/6",
                            "refuse/7", "refuse/8", "refuse/9", "refuse/10", "refuse/11"));
}

TEST(Subject, ThatSendsNothingAfterABrokenRequest_FailsTheCheckOfThat) {
    EXPECT_THAT(FailuresOf(Judged({"mute"}, {"reply", "message", "refuse", "notify"})),
                ElementsAre("message/12"));
}

TEST(Subject, ThatRefusesTheUsualRequest_IsNotJudgedByItsOtherForms) {
    for (const Record& record :
         Judged({"answer=1005"}, {"create-group/2", "device-online/2", "text", "flag", "ping/2"})) {
        EXPECT_EQ(record.outcome.why, "the usual request is not answered with 0 either")
            << record.number;
    }
}

TEST(Exchange, ThatWasLost_IsReportedWithTheRequestBefore) {
    Answer hung;
    hung.way = Answer::Way::kHung;
    hung.took = std::chrono::milliseconds(5000);
    EXPECT_EQ(Told(Exchange{{"NameChanged", {}}, hung, false, {}}),
              "NameChanged: no answer within 5000 ms");
    EXPECT_EQ(
        Told(Exchange{{"NameChanged", {}}, hung, false, "PingService: result 0"}),
        "NameChanged: no answer within 5000 ms; the request before it was PingService: result "
        "0");
    Answer raised;
    raised.way = Answer::Way::kRaised;
    raised.exception = 1726;
    EXPECT_EQ(Told(Exchange{{"NameChanged", {}}, raised, false, {}}),
              "NameChanged: the call raised exception 1726 (the call failed: the program has ended "
              "in it, or an exception has left it), and the program was gone");
}

TEST(Subject, ThatRaises_FailsTheCheckOfExceptions) {
    const std::vector<Record> records = Judged({"fault=998"}, {"call/1", "message/1"});
    EXPECT_THAT(FailuresOf(records), ElementsAre("call/1"));
    EXPECT_EQ(records[1].outcome.faults.front().came,
              "PingService: the call raised exception 998 (access violation in the program)");
}

TEST(Subject, ThatCannotRun_IsNotJudged) {
    const PlenxSupport::Interruption none;
    PipedProgram program({"/nonexistent"}, none);
    Trial trial(program, std::chrono::seconds(0), none);
    const std::vector<Record> records =
        RunChecks(Selected({"reply", "ping"}), trial, {},
                  {[](const Check&, std::size_t) {}, [](const Record&) {}});
    EXPECT_FALSE(trial.Over().empty());
    EXPECT_FALSE(records.back().WasJudged());
}

TEST(Subject, InterruptedRun_KeepsWhatWasJudgedBefore) {
    PlenxSupport::Interruption interruption;
    PipedProgram program({JUDGE_SUBJECT}, interruption);
    Trial trial(program, std::chrono::seconds(0), interruption);
    const std::vector<Record> records = RunChecks(Selected({"reply", "ping"}), trial, {},
                                                  {[&](const Check& check, std::size_t) {
                                                       if (std::string(check.number) == "reply/3") {
                                                           interruption.Raise();
                                                       }
                                                   },
                                                   [](const Record&) {}});
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].number, "reply/1");
    EXPECT_EQ(records[1].number, "reply/2");
    EXPECT_TRUE(records[1].Passed());
}

}  // namespace
}  // namespace PlenxJudge
