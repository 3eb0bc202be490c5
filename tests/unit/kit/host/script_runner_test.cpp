// Tests whole scripts: what they expect, what is reported and how the run ends.

#include "host/script_runner.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <set>
#include <stdexcept>
#include <string>
#include <thread>

#include "captured_output.h"
#include "common/asleep.h"
#include "common/wait_until.h"
#include "host/exit_code.h"
#include "host/run_limit.h"
#include "host/script_parser.h"
#include "recorded_manager.h"

namespace PlenxHost {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

class ScriptTest : public testing::Test {
protected:
    ScriptTest() { RecordedManager::Reset(); }

    EndReport Run(const std::string& script) {
        RunSteps(ParseScript(script, "s"), session_);
        return session_.Finish(false);
    }

    CapturedOutput captured_{MakeTextFormat()};
    Session session_{{"C:\\i", "C:\\d", "", false}, captured_.Get()};
};

std::string Complaint(const std::string& script) {
    try {
        ParseScript(script, "s");
    } catch (const ScriptError& error) {
        return error.what();
    }
    return "none";
}

void NotifyErrorOnStart(int code) {
    RecordedManager::When("Start", [=] {
        RecordedManager::Notify([=](auto& observer) { observer.NotifyError(code); });
    });
}

TEST_F(ScriptTest, ExpectationsThatHoldGive0) {
    NotifyErrorOnStart(4);
    const EndReport report =
        Run("register\nstart pc g a\nexpect-result 0\n"
            "expect NotifyError 4 within 0\nexpect-none * for 0\n"
            "get-string pc 1\nexpect-result-text \"\"\n");
    EXPECT_EQ(report.exitCode, kAllHeld);
    EXPECT_EQ(report.expectations, 4);
    EXPECT_THAT(report.failures, IsEmpty());
}

TEST_F(ScriptTest, AllExpectationsThatFailAreReportedWithTheirLines) {
    NotifyErrorOnStart(4);
    const EndReport report =
        Run("register\nstart pc g a\n\n"
            "expect NotifyError 5 within 1  # never\n"
            "expect-none NotifyError for 0\nexpect-result 26\n"
            "expect-result-text x\necho on\n");
    EXPECT_EQ(report.exitCode, kNotAllHeld);
    EXPECT_EQ(report.expectations, 4);
    EXPECT_THAT(report.failures,
                ElementsAre("s:4: expect NotifyError 5 within 1: it did not come within 1 ms; came "
                            "instead: NotifyError(errCode=4)",
                            "s:5: expect-none NotifyError for 0: this came: NotifyError(errCode=4)",
                            "s:6: expect-result 26: it gave 0",
                            "s:7: expect-result-text x: it gave no text"));
    EXPECT_EQ(captured_.Lines().back(), "on");
}

TEST_F(ScriptTest, FailedExpectListsWhatTheSameServiceSentInstead) {
    RecordedManager::When("Start", [] {
        RecordedManager::Notify([](auto& observer) {
            observer.NotifyConnect(DistributedFs::kPcService, "home");
            observer.NotifyStatus(DistributedFs::kPhoneService, "home", 0, true);
            observer.NotifyStatus(DistributedFs::kPcService, "home", 0, false);
        });
    });
    Run("register\nstart pc home a\nexpect NotifyStatus pc home online true within 1");
    EXPECT_THAT(captured_.Lines().back(),
                HasSubstr("> expect NotifyStatus pc home online true within 1: NO, it did not come "
                          "within 1 ms; came instead: NotifyStatus(svcType=1, first=\"home\", "
                          "sttsType=0, value=false)"));
}

TEST_F(ScriptTest, ExpectFailsAtOnceWhenTheOppositeComes) {
    std::thread service;
    RecordedManager::When("Start", [&] {
        service = std::thread([waiting = std::to_string(gettid())] {
            EXPECT_TRUE(WaitUntil([&] { return IsAsleep(waiting); }));
            RecordedManager::Notify([](auto& observer) {
                observer.NotifyStatus(DistributedFs::kPcService, "home", 0, false);
            });
        });
    });
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THAT(
        Run("register\nstart pc home a\nexpect NotifyStatus pc home start true within 60000")
            .failures,
        ElementsAre("s:3: expect NotifyStatus pc home start true within 60000: the opposite came: "
                    "NotifyStatus(svcType=1, first=\"home\", sttsType=0, value=false)"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
    service.join();
}

TEST_F(ScriptTest, OppositeThatCameAsWellDoesNotHideTheExpectedOne) {
    RecordedManager::When("Start", [] {
        RecordedManager::Notify([](auto& observer) {
            observer.NotifyStatus(DistributedFs::kPcService, "home", 0, false);
            observer.NotifyStatus(DistributedFs::kPcService, "home", 0, true);
        });
    });
    EXPECT_EQ(Run("register\nstart pc home a\nexpect NotifyStatus pc home start true within 0\n"
                  "expect NotifyStatus pc home start false within 0")
                  .exitCode,
              kAllHeld);
}

// Otherwise it would make a statement about a time that it has not waited for.
TEST_F(ScriptTest, ExpectNoneWaitsOnWhenTheOppositeComes) {
    RecordedManager::When("Start", [] {
        RecordedManager::Notify([](auto& observer) {
            observer.NotifyStatus(DistributedFs::kPcService, "home", 0, false);
        });
    });
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(Run("register\nstart pc home a\nexpect-none NotifyStatus pc home start true for 50")
                  .exitCode,
              kAllHeld);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, milliseconds(50));
}

TEST_F(ScriptTest, FailedExpectListsTheLatestFiveAtMost) {
    RecordedManager::When("Start", [] {
        RecordedManager::Notify([](auto& observer) {
            for (int code = 1; code != 8; ++code) {
                observer.NotifyError(code);
            }
        });
    });
    EXPECT_THAT(Run("register\nstart pc g a\nexpect NotifyError 9 within 0").failures,
                ElementsAre("s:3: expect NotifyError 9 within 0: it did not come within 0 ms; came "
                            "instead: NotifyError(errCode=3), NotifyError(errCode=4), "
                            "NotifyError(errCode=5), NotifyError(errCode=6), "
                            "NotifyError(errCode=7)"));
}

TEST_F(ScriptTest, NotificationsThatNothingTookAreListed) {
    NotifyErrorOnStart(4);
    EXPECT_THAT(Run("register\nstart pc g a\nexpect NotifyError 5 within 0").leftovers,
                ElementsAre("NotifyError(errCode=4)"));
}

TEST_F(ScriptTest, ForgetDropsWhatCame) {
    NotifyErrorOnStart(4);
    EXPECT_EQ(Run("register\nstart pc g a\nforget\nexpect-none * for 0").exitCode, kAllHeld);
}

TEST_F(ScriptTest, ExpectWaitsForANotificationOfAnotherThread) {
    std::thread service;
    RecordedManager::When("Start", [&] {
        service = std::thread([waiting = std::to_string(gettid())] {
            EXPECT_TRUE(WaitUntil([&] { return IsAsleep(waiting); }));
            RecordedManager::Notify([](auto& observer) { observer.NotifyError(4); });
        });
    });
    EXPECT_EQ(Run("register\nstart pc g a\nexpect NotifyError 4 within 20000").exitCode, kAllHeld);
    service.join();
}

TEST_F(ScriptTest, QuitEndsTheScriptWithItsCodeUnlessAnExpectationFailed) {
    EXPECT_EQ(Run("quit 7\nstop pc g").exitCode, 7);
    EXPECT_THAT(RecordedManager::Calls(), IsEmpty());
}

TEST_F(ScriptTest, FailedExpectationOverridesTheCodeOfQuit) {
    EXPECT_EQ(Run("expect-result 1\nquit 7").exitCode, kNotAllHeld);
}

TEST_F(ScriptTest, ExceptionOfTheLibraryIsAFailure) {
    RecordedManager::When("Stop", [] { throw std::runtime_error("no memory"); });
    const EndReport report = Run("stop pc g\nstart pc g a");
    EXPECT_THAT(report.failures, ElementsAre("s:1: stop pc g: exception: no memory"));
    EXPECT_THAT(RecordedManager::Calls(), testing::SizeIs(2));
}

TEST_F(ScriptTest, InterruptEndsTheWaitAndTheScript) {
    const auto steps = ParseScript("sleep 60000\nstop pc g", "s");
    std::thread interrupter([&, waiting = std::to_string(gettid())] {
        EXPECT_TRUE(WaitUntil([&] { return IsAsleep(waiting); }));
        session_.Interrupt();
    });
    RunSteps(steps, session_);
    interrupter.join();
    EXPECT_THAT(RecordedManager::Calls(), IsEmpty());
    EXPECT_EQ(session_.Finish(true).exitCode, kTimedOut);
}

TEST_F(ScriptTest, InterruptedExpectNoneDoesNotHold) {
    session_.Interrupt();
    session_.Run(ParseScript("expect-none * for 60000", "s")[0]);
    EXPECT_THAT(captured_.Lines().back(), EndsWith("> expect-none * for 60000: NO, interrupted"));
}

TEST(ParseScript, NamesTheFirstLineThatIsWrong) {
    EXPECT_EQ(Complaint("init\r\n\r\nnonsense\r\nmore"),
              "s:3: unknown command \"nonsense\"; help lists all commands");
    EXPECT_EQ(Complaint("\xEF\xBB\xBFinit\n# x\n"), "none");
}

TEST(ParseScript, MissingFileIsReported) {
    EXPECT_THROW(LoadScript("/nowhere/at all"), ScriptError);
}

// The demo shows all that a host can ask for and hear, and it never waits without a limit.
TEST_F(ScriptTest, DemoAsksForEveryOperationAndExpectsEveryNotification) {
    std::set<std::string> expected;
    for (const Step& step : LoadScript(DEMO_SCRIPT)) {
        SCOPED_TRACE(step.place);
        if (step.name == "expect") {
            expected.insert(SplitWords(step.text).words.at(1).text);
            EXPECT_THAT(step.text, HasSubstr(" within "));
        } else if (step.name.rfind("expect", 0) != 0 && step.name != "sleep") {
            EXPECT_FALSE(session_.HasEnded());
            session_.Run(step);
        }
    }
    EXPECT_TRUE(session_.HasEnded()) << "the last step must be quit";
    std::set<std::string> asked;
    for (const std::string& call : RecordedManager::Calls()) {
        asked.insert(call.substr(0, call.find('(')));
    }
    EXPECT_THAT(asked, ElementsAre("Destroy", "DeviceNameChanged", "GetInt64Config", "GetOfficeDir",
                                   "GetStringConfig", "Init", "LocalDeviceOffline",
                                   "LocalDeviceOnline", "RecvRemoteMessage", "RemoteDeviceOffline",
                                   "RemoteDeviceOnline", "SetConfig", "Start", "Stop"));
    EXPECT_THAT(expected, ElementsAre("NotifyConnect", "NotifyDisconnect", "NotifyDiskName",
                                      "NotifyError", "NotifyReconnect", "NotifyStatus",
                                      "QueryLinkStatus", "SendLocalMessage"));
    EXPECT_EQ(RecordedManager::Calls().front().substr(0, 5), "Init(");
    const EndReport report = session_.Finish(false);
    EXPECT_EQ(report.exitCode, kAllHeld);
    EXPECT_THAT(report.failures, IsEmpty());
}

TEST_F(ScriptTest, LinesRunAsTheyComeAndEndAtTheFirstThatIsWrong) {
    std::vector<std::string> lines = {"stop pc a", "nonsense", "stop pc b"};
    std::size_t next = 0;
    const auto read = [&](std::string& line) {
        if (next == lines.size()) {
            return false;
        }
        line = lines[next];
        ++next;
        return true;
    };
    EXPECT_THROW(RunLines(read, nullptr, session_), ScriptError);
    EXPECT_THAT(RecordedManager::Calls(), ElementsAre(R"(Stop(1,"a"))"));
    std::string complaint;
    next = 1;
    RunLines(read, [&](const std::string& text) { complaint = text; }, session_);
    EXPECT_THAT(complaint, HasSubstr("input:1: unknown command \"nonsense\""));
    EXPECT_THAT(RecordedManager::Calls(), ElementsAre(R"(Stop(1,"a"))", R"(Stop(1,"b"))"));
}

TEST(RunLimit, CallsBackWhenItIsReachedAndNotWhenTheRunIsOver) {
    bool called = false;
    {
        const RunLimit limit(milliseconds(60000), [&] { called = true; });
        EXPECT_FALSE(limit.Expired());
    }
    EXPECT_FALSE(called);
    Inbox inbox;
    const RunLimit limit(milliseconds(20), [&] { inbox.Interrupt(); });
    inbox.Pause(milliseconds(60000));
    EXPECT_TRUE(limit.Expired());
}

using RunLimitDeathTest = testing::Test;

TEST_F(RunLimitDeathTest, EndsAProcessThatDoesNotEndItself) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const RunLimit limit(milliseconds(10), [] {});
            pause();  // nothing else ends it
        },
        testing::ExitedWithCode(kTimedOut), "");
}

}  // namespace
}  // namespace PlenxHost
