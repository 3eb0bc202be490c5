// Tests the text of plenxkit trace --text, from the command line to the last column.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "outcome.h"
#include "story.h"

namespace PlenxTrace {
namespace {

namespace fs = std::filesystem;

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

// Gives each test a folder of its own.
class TextView : public testing::Test {
protected:
    TextView() {
        folder_ = fs::temp_directory_path() /
                  ("plenxkit-text-" +
                   std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }
    ~TextView() override { fs::remove_all(folder_); }

    std::string Write(const std::string& name, const std::vector<std::string>& lines) const {
        std::ofstream(folder_ / name, std::ios::binary) << Joined(lines);
        return (folder_ / name).u8string();
    }

    static PlenxKit::Outcome Run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"trace", "--text"});
        return PlenxKit::OutcomeOf(arguments);
    }

    // Returns the rows below the head.
    std::string Rows(const std::vector<std::string>& arguments) const {
        const PlenxKit::Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.code, 0);
        EXPECT_EQ(outcome.err, "");
        std::size_t at = outcome.out.find('\n');
        at = outcome.out.find('\n', at + 1);
        return outcome.out.substr(at + 1);
    }

    fs::path folder_;
};

std::string Command(int began, int done, const std::string& text, const std::string& rest = "") {
    return R"({"type":"command","time":")" + At(done) + R"(","began":")" + At(began) +
           R"(","text":")" + text + "\"" + rest + "}";
}

std::string Echo(int milliseconds, const std::string& text) {
    return R"({"type":"text","time":")" + At(milliseconds) + R"(","text":")" + text + "\"}";
}

std::string Heard(int milliseconds) {
    return R"({"type":"notification","time":")" + At(milliseconds) +
           R"(","name":"NotifyStatus","arguments":)"
           R"({"svcType":1,"first":"home","sttsType":0,"value":true},"returns":0})";
}

std::string Begins(int milliseconds) {
    return Info(milliseconds, kWorkerThread, "plenx manager notify status begin",
                "PLENXManager::NotifyStatus");
}

TEST_F(TextView, ThreeLogsAreOnePicture) {
    const std::string host =
        Write("host.jsonl",
              {Echo(0, "-- the service starts, with a group"),
               Command(0, 1, "start pc home", ",\"result\":0"), Heard(40),
               Command(1, 40, "expect NotifyStatus", ",\"held\":true"), Command(2, 50, "sleep 48"),
               Command(50, 60, "expect NotifyConnect",
                       ",\"held\":false,\"remark\":\"it did not come\"")});
    const std::string library = Write(
        "library.log",
        {Pushed(0, 1), Runs(1, 1),
         Info(1, kWorkerThread, "plenx manager start service 1", "PLENXManagerInner::Start"),
         Error(2, kWorkerThread, "kill service process 0", "KillServiceProcess"),
         Info(30, kWorkerThread, "rpc manager create group svcType:1", "RpcManager::CreateGroup"),
         Told(40, 1, 0, 1), Begins(40),
         Error(70, kHostThread, "plenx manager stop invalid parameter", "PLENXManager::Stop")});
    const std::string service = Write(
        "service.log", {At(20) + " pc runs", At(30) + " pc received CreateGroup(0) groupName:\"\"",
                        At(31) + " pc answered CreateGroup(0) result:0 reply:0",
                        At(80) + " pc crashes at StatusNotify(14)"});
    const PlenxKit::Outcome outcome = Run({library, "--host", host, "--service", service});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
              Joined({
                  " seconds |   host              |   library               |   service",
                  // NOLINTNEXTLINE(bugprone-suspicious-missing-comma): one line of the view.
                  "---------+---------------------+-------------------------+----------------------"
                  "--------------------",
                  "   0.000 | -- the service starts, with a group",
                  "         | > start pc home = 0 |                         |",
                  "   0.001 |                     |   Start pc runs         |",
                  "   0.002 | > sleep 48          |                         |",
                  "         |                     |   nothing is left to end",
                  "   0.020 |                     |                         |   pc: runs",
                  "   0.030 |                     | > pc: CreateGroup       |",
                  "         |                     |                         |   pc: CreateGroup(0) "
                  "received",
                  "   0.040 |                     |   Start pc: done        |",
                  "         | < NotifyStatus pc home start true             |",
                  "   0.060 | ! expect NotifyConnect: it did not come       |",
                  "   0.070 |                     | ! Stop refused: 26      |",
                  "   0.080 |                     |                         | ! pc: crashes at "
                  "StatusNotify(14)",
              }));
}

TEST_F(TextView, WithoutAHost_TheLibraryTellsItsCallsAndNotifications) {
    const std::string notified =
        Info(3, kRpcThread, "plenx manager notify error invoked errCode:13",
             "PLENXManager::NotifyError");
    EXPECT_EQ(Rows({Write("library.log", {Pushed(0, 1), Runs(1, 1), notified})}),
              Joined({"   0.000 |                     |   Start pc              |",
                      "   0.001 |                     |   Start pc runs         |",
                      "   0.003 |                     |   NotifyError 13        |"}));
}

TEST_F(TextView, ALongText_RunsOverTheNextLanes_AndIsCutBetweenWordsAtTheEdge) {
    std::string words = "--";
    for (int i = 0; i != 30; ++i) {
        words += " four";
    }
    const std::string library = Write("library.log", {});
    const std::string host = Write("host.jsonl", {Echo(0, words), Echo(0, std::string(120, 'x'))});
    const std::string rows = Rows({library, "--host", host, "--width", "80"});
    EXPECT_EQ(rows,
              "   0.000 | -- four four four four four four four four four four four four...\n"
              "         | " +
                  std::string(66, 'x') + "...\n");
}

TEST_F(TextView, WidthIsCountedInCharacters_AndNothingMovesTheCursor) {
    const std::string umlauts = "\xC3\xBC\xC3\xBC\xC3\xBC";
    const std::string host =
        Write("host.jsonl", {Command(0, 0, umlauts), Echo(1, "a\\u001b[31mb\\r\\n"), "\xff\x1b"});
    EXPECT_EQ(Rows({Write("library.log", {}), "--host", host}),
              Joined({"   0.000 | > " + umlauts + "               |                         |",
                      "   0.001 | a.[31mb..",
                      "         |   \xEF\xBF\xBD.                |                         |"}));
}

TEST_F(TextView, LinesWithoutATime_StandBeforeTheFirstSecond) {
    EXPECT_EQ(Rows({Write("library.log", {"no line of a log", Pushed(5, 1)})}),
              Joined({"         |                     |   no line of a log      |",
                      "   0.000 |                     |   Start pc              |"}));
}

TEST_F(TextView, OfTheSameMillisecond_AnotherNotificationWaitsForItsOwnLine) {
    const std::string host = Write("host.jsonl", {Heard(0), Command(0, 0, "init"), Heard(0)});
    const std::string library =
        Write("library.log", {Begins(0), Runs(0, 1), Begins(0), Runs(0, 2)});
    EXPECT_EQ(Rows({library, "--host", host}),
              Joined({"   0.000 | < NotifyStatus pc home start true             |",
                      "         | > init              |                         |",
                      "         |                     |   Start pc runs         |",
                      "         | < NotifyStatus pc home start true             |",
                      "         |                     |   Start phone runs      |"}));
}

TEST_F(TextView, AFileThatCannotBeRead_EndsWith1) {
    const std::string none = (folder_ / "none").u8string();
    const PlenxKit::Outcome outcome = Run({Write("library.log", {}), "--host", none});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "plenxkit trace: cannot read " + none + "\n");
}

TEST_F(TextView, OptionsOfThePageAndOfTheText_AreKeptApart) {
    const std::string log = Write("library.log", {});
    for (const std::vector<std::string>& rest : {std::vector<std::string>{"--output", "x.html"},
                                                 {"--title", "x"},
                                                 {"--events", "500"},
                                                 {"--width", "79"},
                                                 {"--width", "401"}}) {
        std::vector<std::string> arguments = {log};
        arguments.insert(arguments.end(), rest.begin(), rest.end());
        EXPECT_EQ(Run(arguments).code, 2) << rest[0];
    }
    EXPECT_EQ(PlenxKit::OutcomeOf({"trace", log, "--host", log}).code, 2);
    EXPECT_EQ(PlenxKit::OutcomeOf({"trace", log, "--width", "100"}).code, 2);
}

}  // namespace
}  // namespace PlenxTrace
