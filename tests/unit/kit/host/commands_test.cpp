// Each command makes the call of the library that it stands for, with its arguments.

#include "host/commands.h"

#include <gmock/gmock.h>

#include "captured_output.h"
#include "recorded_manager.h"

namespace PlenxHost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class CommandsTest : public testing::Test {
protected:
    CommandsTest() { RecordedManager::Reset(); }

    void Run(const std::string& line) { session_.Run(ParseStep(line, "")); }

    // Returns the calls that the line leads to.
    std::vector<std::string> Calls(const std::string& line) {
        const std::size_t before = RecordedManager::Calls().size();
        Run(line);
        const auto calls = RecordedManager::Calls();
        return {calls.begin() + static_cast<std::ptrdiff_t>(before), calls.end()};
    }

    CapturedOutput captured_{MakeTextFormat()};
    Session session_{{"C:\\i", "C:\\d", "third", true}, captured_.Get()};
};

std::string Complaint(const std::string& line) {
    try {
        ParseStep(line, "");
    } catch (const ScriptError& error) {
        return error.what();
    }
    return "none";
}

TEST_F(CommandsTest, InitTakesTheArgumentsOfTheCommandLineOrItsOwn) {
    EXPECT_THAT(Calls("init"), ElementsAre(R"(Init("C:\i","C:\d","third",true))"));
    EXPECT_THAT(Calls(R"(init C:\a "")"), ElementsAre(R"(Init("C:\a","","",false))"));
    EXPECT_THAT(Calls("init a b c on"), ElementsAre(R"(Init("a","b","c",true))"));
    EXPECT_THAT(Calls("destroy"), ElementsAre("Destroy()"));
}

TEST_F(CommandsTest, InitWithoutFoldersIsAUsageError) {
    Session session({}, captured_.Get());
    EXPECT_THROW(session.Run(ParseStep("init", "")), ScriptError);
    EXPECT_THAT(RecordedManager::Calls(), IsEmpty());
}

TEST_F(CommandsTest, SettingsAreReadAndWritten) {
    EXPECT_THAT(Calls("get-int pc 5"), ElementsAre("GetInt64Config(1,5)"));
    EXPECT_EQ(session_.Last().number, 1);
    EXPECT_THAT(Calls("get-string all 1"), ElementsAre("GetStringConfig(3,1)"));
    EXPECT_EQ(session_.Last().text, "");
    EXPECT_THAT(Calls("set-string phone 1 de"), ElementsAre(R"(SetConfig(2,1,"de"))"));
    EXPECT_THAT(Calls("set-int 1 0 -9223372036854775808"),
                ElementsAre("SetConfig(1,0,-9223372036854775808)"));
}

TEST_F(CommandsTest, ServicesAreStartedAndStopped) {
    EXPECT_THAT(Calls("start pc g a"), ElementsAre(R"(Start(1,"g","a"))"));
    EXPECT_EQ(session_.Last().number, 0);
    EXPECT_THAT(Calls("start 4294967295 \"\" a"), ElementsAre(R"(Start(4294967295,"","a"))"));
    EXPECT_EQ(session_.Last().number, 26);
    EXPECT_THAT(Calls("stop office g"), ElementsAre(R"(Stop(0,"g"))"));
}

TEST_F(CommandsTest, DevicesComeAndGo) {
    EXPECT_THAT(Calls("local-online pc g d hex:00ff"),
                ElementsAre(R"(LocalDeviceOnline(1,"g","d",2,"0 255"))"));
    EXPECT_THAT(Calls("local-online pc g d null:7"),
                ElementsAre(R"(LocalDeviceOnline(1,"g","d",7,"null"))"));
    EXPECT_THAT(Calls("local-online pc g d bytes:2 4294967298"),
                ElementsAre(R"(LocalDeviceOnline(1,"g","d",4294967298,"0 1"))"));
    EXPECT_THAT(Calls("remote-online all g d"), ElementsAre(R"(RemoteDeviceOnline(3,"g","d"))"));
    EXPECT_THAT(Calls("local-offline pc g d"), ElementsAre(R"(LocalDeviceOffline(1,"g","d",0))"));
    EXPECT_THAT(Calls("remote-offline pc g d -2147483648"),
                ElementsAre(R"(RemoteDeviceOffline(1,"g","d",-2147483648))"));
}

TEST_F(CommandsTest, NamesAndMessagesArePassedOn) {
    EXPECT_THAT(Calls("rename \"\""), ElementsAre(R"(DeviceNameChanged(""))"));
    EXPECT_THAT(Calls("message 3 hello"), ElementsAre(R"(RecvRemoteMessage(3,5,"hello"))"));
    EXPECT_THAT(Calls("message -1 hello 4294967295"),
                ElementsAre(R"(RecvRemoteMessage(-1,4294967295,"hello"))"));
}

TEST_F(CommandsTest, OfficeDirGivesACodeAndAFolder) {
    EXPECT_THAT(Calls("office-dir g d docs"), ElementsAre(R"(GetOfficeDir("g","d","docs"))"));
    EXPECT_EQ(session_.Last().number, 5);
    EXPECT_EQ(session_.Last().text, "C:\\office\\docs");
}

TEST_F(CommandsTest, ObserversHaveNames) {
    EXPECT_THAT(Calls("register"), ElementsAre("Register(true)"));
    Run("register second");
    int called = 0;
    RecordedManager::Notify([&](auto& observer) {
        observer.NotifyError(1);
        ++called;
    });
    EXPECT_EQ(called, 2);
    EXPECT_THAT(Calls("expect NotifyError 1 observer=second within 0"), IsEmpty());
    EXPECT_EQ(session_.Finish(false).failures.size(), 0U);
    EXPECT_THAT(Calls("register null"), ElementsAre("Register(false)"));
    EXPECT_THAT(Calls("unregister null"), ElementsAre("Unregister(false)"));
}

TEST_F(CommandsTest, FinishUnregistersEveryObserver) {
    Run("register");
    Run("register second");
    session_.Finish(false);
    EXPECT_THAT(RecordedManager::Calls(), ElementsAre("Register(true)", "Register(true)",
                                                      "Unregister(true)", "Unregister(true)"));
}

TEST_F(CommandsTest, ReactionsAreSet) {
    Run("answer 9");
    Run("answer-link -3");
    Run("slow 5");
    Run("throw on");
    const Reaction reaction = session_.Reactions().Next();
    EXPECT_EQ(reaction.answer, 9);
    EXPECT_EQ(reaction.linkStatus, -3);
    EXPECT_EQ(reaction.delay.count(), 5);
    EXPECT_TRUE(reaction.throws);
    Run("answer-link keep");
    Run("throw on");
    Run("throw off");
    EXPECT_EQ(session_.Reactions().Next().linkStatus, std::nullopt);
    EXPECT_FALSE(session_.Reactions().Next().throws);
}

TEST_F(CommandsTest, UsageErrorsNameTheUsage) {
    EXPECT_EQ(Complaint("start pc g"), "argument is missing; usage: start SERVICE GROUP ARGUMENT");
    EXPECT_EQ(Complaint("stop pc g more"),
              "unexpected argument: \"more\"; usage: stop SERVICE GROUP");
    EXPECT_EQ(Complaint("expect NotifyError 5"),
              "within is missing; usage: expect NOTIFICATION [ARGUMENT...] within MILLISECONDS");
    EXPECT_EQ(Complaint("throw maybe"), "write on or off, not \"maybe\"; usage: throw on|off");
    EXPECT_EQ(Complaint("strat"), "unknown command \"strat\"; help lists all commands");
}

TEST_F(CommandsTest, EndProcessGoesToTheSystemAndNotToTheLibrary) {
    EXPECT_THAT(Calls("end-process pc"), IsEmpty());
    EXPECT_EQ(session_.Last().number, 0);
    EXPECT_THAT(Calls("end-process phone"), IsEmpty());
    EXPECT_EQ(session_.Last().number, 1062);
    EXPECT_EQ(Complaint("end-process all"),
              "the service must be office, pc or phone; usage: end-process SERVICE");
}

TEST_F(CommandsTest, EveryCommandIsInTheHelp) {
    const std::string overview = CommandOverview();
    for (const Command& command : Commands()) {
        EXPECT_THAT(overview, HasSubstr("\n  " + std::string(command.name) + " "));
        EXPECT_THAT(CommandHelp(command.name), StartsWith(command.name));
    }
    EXPECT_THROW(CommandHelp("nothing"), ScriptError);
}

TEST_F(CommandsTest, OverviewGroupsByEachSubjectOnce) {
    std::vector<std::string> subjects;
    for (const Command& command : Commands()) {
        if (subjects.empty() || subjects.back() != command.subject) {
            subjects.push_back(command.subject);
        }
    }
    EXPECT_THAT(
        subjects,
        ElementsAre("The library", "Settings", "Services and groups", "Devices, names and messages",
                    "Observers, and how they react", "Expectations", "The run itself"));
    EXPECT_THAT(CommandOverview(),
                StartsWith("The library\n"
                           "  init                Make the library ready.\n"
                           "  destroy             Uninstall the office packages; the library keeps "
                           "working.\n"
                           "\n"
                           "Settings\n"));
}

TEST_F(CommandsTest, HelpOfACommandIsWhole) {
    EXPECT_EQ(CommandHelp("start"),
              "start SERVICE GROUP ARGUMENT\n"
              "  Purpose  Start a service and create a group in it.\n"
              "           ARGUMENT goes to the service unchanged. all starts the PC service,\n     "
              "      then the office service.\n"
              "  Result   0: the call was queued, or dropped before init. 26: GROUP or ARGUMENT is "
              "empty, and\n           nothing was queued\n"
              "  Outcome  NotifyStatus(SERVICE, GROUP, start, value) comes; value says whether it "
              "succeeded. With\n           all, one comes for pc and one for office. The services' "
              "own NotifyConnect may come before\n           or after it.\n"
              "  Example  start pc home \"an argument\"");
    EXPECT_EQ(CommandHelp("forget"),
              "forget\n"
              "  Purpose  Drop the notifications that nothing has taken "
              "yet.\n"
              "  Result   none\n"
              "  Outcome  No notification comes.\n"
              "  Example  forget");
}

TEST_F(CommandsTest, HelpIsNotWiderThanAConsole) {
    for (const Command& command : Commands()) {
        std::string line;
        for (const char letter : CommandHelp(command.name) + "\n") {
            if (letter != '\n') {
                line.push_back(letter);
                continue;
            }
            EXPECT_LE(line.size(), 100U) << line;
            line.clear();
        }
    }
}

TEST_F(CommandsTest, EveryExampleIsACommandOfItsOwn) {
    for (const Command& command : Commands()) {
        EXPECT_EQ(ParseStep(command.example, "").name, command.name);
    }
}

}  // namespace
}  // namespace PlenxHost
