// Tests requests, the notifications that they cause, and every way in which the service can
// misbehave at one.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "devservice/fake_manager.h"
#include "devservice/service_client.h"
#include "devservice/service_under_test.h"
#include "support/handle.h"
#include "support/system_habits.h"
#include "wire/catalog.h"
#include "wire/render.h"

namespace PlenxTest {
namespace {

using PlenxWire::Arguments;
using PlenxWire::Bytes;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::wstring kEndpoint = L"PLENXPCService";
const Arguments kGroup = {std::string("g_1"), 2, std::string("arg")};

ServiceAnswer Ping() {
    return CallService(kEndpoint, PlenxWire::kPingService, {std::int64_t{0}});
}

// Nobody may have served the endpoint in this process yet. GoogleTest runs suites with such a name
// before all others, while each linker puts the sources in an order of its own.
TEST(AnAbsentManagerDeathTest, IsTriedAgainUntilItIsThere) {
    ASSERT_FALSE(FakeManager::WasEverShown());
    ServiceUnderTest service(1);
    ASSERT_TRUE(service.StartAndRun());
    ASSERT_EQ(CallService(kEndpoint, PlenxWire::kCreateGroup, kGroup).Code(), 0);
    EXPECT_TRUE(
        service.LogComesToSay("Manager answered ConnectNotify(10) exception 1722, trying again\n"));
    FakeManager::Show();
    EXPECT_THAT(FakeManager::Await(2),
                ElementsAre("ConnectNotify(10) grpName:\"g_1\"",
                            "StatusNotify(14) grpName:\"g_1\" sttsType:100 value:1"));
}

TEST(AManagerThatIsAbsent, IsGivenUpAfterFiveSeconds) {
    FakeManager::Show();
    FakeManager::Hide();
    ServiceUnderTest service(1);
    ASSERT_TRUE(service.StartAndRun());
    ASSERT_EQ(CallService(kEndpoint, PlenxWire::kCreateGroup, kGroup).Code(), 0);
    EXPECT_TRUE(service.LogComesToSay("Manager answered ConnectNotify(10) exception 1717, trying"));
    EXPECT_TRUE(service.LogComesToSay("Manager answered StatusNotify(14) exception 1717\n", 20000));
    FakeManager::Show();
    EXPECT_THAT(FakeManager::Received(), IsEmpty());
}

class Request : public testing::Test {
protected:
    void SetUp() override {
        FakeManager::Show();
        ASSERT_TRUE(service.StartAndRun());
    }

    /// Returns the messages that have come in once the service has stopped. It sends its queued
    /// messages before it stops.
    std::vector<std::string> ReceivedInAll() {
        EXPECT_EQ(service.SendStop(), DWORD{NO_ERROR});
        EXPECT_TRUE(service.Reaches(SERVICE_STOPPED, 2000));
        return FakeManager::Received();
    }

    static ServiceAnswer Send(std::int32_t id, const Arguments& arguments) {
        return CallService(kEndpoint, id, arguments);
    }

    ServiceUnderTest service{1};
};

TEST_F(Request, OfEachKind_LeadsToItsNotifications) {
    const std::string group = "g_1";
    const std::string device = "dev";
    Bytes path;
    for (const wchar_t unit : service.DataFolder().wstring() + L'\0') {
        path.push_back(static_cast<std::uint8_t>(unit & 0xff));
        path.push_back(static_cast<std::uint8_t>(unit >> 8));
    }
    const struct {
        std::int32_t id;
        Arguments arguments;
        std::vector<std::string> notifications;
    } kCases[] = {
        {PlenxWire::kPingService, {std::int64_t{3}}, {}},
        {PlenxWire::kSetStringConfig, {7, std::string("value")}, {}},
        {PlenxWire::kSetInt64Config, {8, std::int64_t{1} << 40}, {}},
        {PlenxWire::kCreateGroup,
         kGroup,
         {"ConnectNotify(10) grpName:\"g_1\"",
          "StatusNotify(14) grpName:\"g_1\" sttsType:100 value:1"}},
        {PlenxWire::kDeviceOnline,
         {group, device, 0, 3, Bytes{1, 2, 3}},
         {"LinkTypeQuery(13) grpName:\"g_1\" linkType:0", "DiskNameNotify(16) diskName:\"P:\""}},
        {PlenxWire::kDeviceOnline,
         {group, device, 1, 0, Bytes{}},
         {"ReconnectNotify(12) grpName:\"g_1\"",
          PlenxWire::RenderMessage(PlenxWire::kUpdateWindowsExplore,
                                   Arguments{static_cast<std::int32_t>(path.size()), path}),
          "ExploreFlushNotify(18) disk:\"P:\" expFlushType:0"}},
        {PlenxWire::kDeviceOffline,
         {group, device, 0, 5},
         {"ExploreFlushNotify(18) disk:\"P:\" expFlushType:2"}},
        {PlenxWire::kDeviceOffline, {group, device, 1, 5}, {"ErrorNotify(15) errCode:5"}},
        {PlenxWire::kNameChanged,
         {std::string("new")},
         {"StatusNotify(14) grpName:\"g_1\" sttsType:101 value:1"}},
        {PlenxWire::kRecvRemoteMessage,
         {4, 5, std::string("hello")},
         {"SendLocalMessage(9) msgType:4 msgLen:5 msg:\"hello\""}},
        {PlenxWire::kDeleteGroup, {group}, {"DisconnectNotify(11) grpName:\"g_1\""}},
    };
    std::vector<std::string> expected;
    for (const auto& one : kCases) {
        EXPECT_EQ(Send(one.id, one.arguments).Code(), 0) << PlenxWire::RenderId(one.id);
        expected.insert(expected.end(), one.notifications.begin(), one.notifications.end());
        FakeManager::Await(expected.size());
    }
    EXPECT_THAT(ReceivedInAll(), ElementsAreArray(expected));
}

TEST_F(Request, IsAnsweredWith24Bytes) {
    const ServiceAnswer answer = Ping();
    EXPECT_EQ(answer.exception, 0u);
    EXPECT_EQ(answer.result, 0);
    EXPECT_EQ(answer.reply, PlenxWire::Encode({0}));
}

TEST_F(Request, AndWhatIsKeptOfIt_StandInTheLog) {
    Send(PlenxWire::kSetStringConfig, {7, std::string("w\xc3\xa4rt")});
    Send(PlenxWire::kSetInt64Config, {8, std::int64_t{-5}});
    Send(PlenxWire::kCreateGroup, kGroup);
    const std::string log = service.Log();
    EXPECT_THAT(log,
                HasSubstr(" pc received SetStringConfig(7) cfgType:7 value:\"w\xc3\xa4rt\"\n"));
    EXPECT_THAT(log, HasSubstr(" pc received SetInt64Config(8) cfgType:8 value:-5\n"));
    EXPECT_THAT(log, HasSubstr(" pc holds groups:{\"g_1\" \"arg\"} devices:{} "
                               "strings:{7:\"w\xc3\xa4rt\"} numbers:{8:-5} name:\"\"\n"));
    EXPECT_THAT(log, HasSubstr(" pc answered CreateGroup(0) result:0 reply:0\n"));
    for (std::size_t line = 0; line < log.size(); line = log.find('\n', line) + 1) {
        EXPECT_TRUE(std::regex_search(
            log.substr(line, 40),
            std::regex("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} pc [a-zM]")))
            << log.substr(line, 40);
    }
}

TEST_F(Request, ThatIsBroken_GetsACodeOfItsOwnAndALine) {
    EXPECT_EQ(CallServiceWith(kEndpoint, PlenxWire::kPingService, Bytes{1, 2, 3}).Code(), 1001);
    EXPECT_THAT(service.Log(), HasSubstr("received PingService(19) broken: 3 bytes are too few: "
                                         "the header alone has 8\n"));
    EXPECT_EQ(CallServiceWith(kEndpoint, PlenxWire::kPingService, Bytes{}).Code(), 1001);
    EXPECT_EQ(Send(PlenxWire::kCreateGroup, {std::string("g_1"), 3, std::string("")}).Code(), 1001);
    EXPECT_THAT(service.Log(), HasSubstr("argument 1 (kind): 3 where it must always be 2\n"));
    EXPECT_THAT(ReceivedInAll(), IsEmpty());
}

TEST_F(Request, ThatDoesNotExist_GetsAnotherCode) {
    EXPECT_EQ(Send(6, {1}).Code(), 1002);
    EXPECT_EQ(Send(PlenxWire::kConnectNotify, {std::string("g_1")}).Code(), 1002);
    EXPECT_EQ(Send(-1, {1}).Code(), 1002);
}

TEST_F(Request, LinkTypeQuery_LogsTheStatusThatTheLibraryAnswers) {
    FakeManager::Answer(42);
    Send(PlenxWire::kDeviceOnline, {std::string("g_1"), std::string("d"), 0, 0, Bytes{}});
    EXPECT_TRUE(service.LogComesToSay("Manager answered LinkTypeQuery(13) result:0 reply:42\n"));
}

TEST_F(Request, QueuedNotifications_AreStillSentWhenItStops) {
    service.Control("[[on]]\nrepeat = 5\n");
    Send(PlenxWire::kDeleteGroup, {std::string("g_1")});
    EXPECT_EQ(ReceivedInAll().size(), 5u);
}

struct Misbehaviour {
    const char* name;
    const char* control;
    long result;
    long statedSize;
    bool hasBlock;
    Bytes reply;
};

class Misbehaving : public Request, public testing::WithParamInterface<Misbehaviour> {};

TEST_P(Misbehaving, AnswersAsTold) {
    service.Control(GetParam().control);
    const ServiceAnswer answer = Ping();
    EXPECT_EQ(answer.exception, 0u);
    EXPECT_EQ(answer.result, GetParam().result);
    EXPECT_EQ(answer.statedSize, GetParam().statedSize);
    EXPECT_EQ(answer.hasBlock, GetParam().hasBlock);
    EXPECT_EQ(answer.reply, GetParam().reply);

    service.Control("");
    EXPECT_EQ(Ping().Code(), 0);
}

const Bytes kShortReply = {24, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 20, 0, 0, 0, 4, 0, 0, 0};

INSTANTIATE_TEST_SUITE_P(
    Each, Misbehaving,
    testing::Values(
        Misbehaviour{"Answer", "[[on]]\nanswer = 5", 0, 24, true, PlenxWire::Encode({5})},
        Misbehaviour{"AnswerNegative", "[[on]]\nanswer = -5", 0, 24, true, PlenxWire::Encode({-5})},
        Misbehaviour{"Empty", "[[on]]\nreply = 'empty'", 0, 0, false, {}},
        Misbehaviour{"Garbage", "[[on]]\nreply = 'garbage'", 0, 24, true, Bytes(24, 0xee)},
        Misbehaviour{"Short", "[[on]]\nreply = 'short'", 0, 20, true, kShortReply},
        Misbehaviour{"Large", "[[on]]\nreply = 'large'", 0, 1 << 20, true, Bytes(1 << 20, 0)},
        Misbehaviour{"Lie", "[[on]]\nreply = 'lie'", 0, 24, false, {}},
        Misbehaviour{"Hex", "[[on]]\nreply = 'hex:01 02ff'", 0, 3, true, {1, 2, 255}},
        Misbehaviour{"Result", "[[on]]\nresult = 31", 31, 0, false, {}},
        Misbehaviour{"OfThisService",
                     "[[on]]\nservice = 'phone'\nanswer = 7\n"
                     "[[on]]\nservice = 'pc'\nanswer = 5\n[[on]]\nanswer = 6",
                     0, 24, true, PlenxWire::Encode({5})},
        Misbehaviour{"OfThisRequest",
                     "[[on]]\nrequest = 2\nanswer = 7\n"
                     "[[on]]\nrequest = 'PingService'\nanswer = 5\n"
                     "[[on]]\nservice = 'pc'\nanswer = 6",
                     0, 24, true, PlenxWire::Encode({5})},
        Misbehaviour{"OfThisRequestByNumber", "[[on]]\nrequest = 19\nanswer = 5", 0, 24, true,
                     PlenxWire::Encode({5})},
        Misbehaviour{"OfAnotherRequest", "[[on]]\nrequest = 'CreateGroup'\nresult = 31", 0, 24,
                     true, PlenxWire::Encode({0})},
        Misbehaviour{"AfterAByteOrderMark", "\xef\xbb\xbf# comment\r\n[[on]]\r\nanswer = 5\r\n", 0,
                     24, true, PlenxWire::Encode({5})},
        Misbehaviour{"NotUnderstood", "[[on]]\nanswer = 5\n[[on]]\nanswer = 'x'", 0, 24, true,
                     PlenxWire::Encode({0})}),
    [](const auto& test) { return test.param.name; });

TEST_F(Request, ControlFileWithMistakes_IsNamedInTheLogAndHasNoEffectButForItsLog) {
    service.Control(
        "log = 'second.log'\nansver = 1\n[[on]]\nanswer = 5\nrequest = 'Pong'\n"
        "serve = false\n[[start]]\nfail = 'x'\n");
    EXPECT_EQ(Ping().Code(), 0);
    for (const char* const line :
         {"line 2: unknown key ansver; there are [[notify]], [[on]], [start], [stop], about, log, "
          "scenario, service and title\n",
          "line 5: request = 'Pong' in [[on]] must be \"CreateGroup\", ",
          "line 6: unknown key serve in [[on]]; there are answer, ",
          "line 8: fail = 'x' in [start] must be an integer from -2147483648 to 4294967295\n"}) {
        EXPECT_THAT(service.Log(), HasSubstr(std::string(" pc control file ") + line));
        EXPECT_THAT(service.SecondLog(), HasSubstr(std::string(" pc control file ") + line));
    }
    service.Control("this is none");
    EXPECT_EQ(Ping().Code(), 0);
    EXPECT_THAT(service.Log(), HasSubstr(" pc control file says \"this is none\"\n"));
    EXPECT_THAT(service.Log(), HasSubstr(" pc control file line 1: this is not valid TOML: "));
}

TEST_F(Request, ThatIsDelayed_IsAnsweredLater) {
    service.Control("[[on]]\nrequest = 'PingService'\ndelay_ms = 400\n");
    const ULONGLONG begin = GetTickCount64();
    EXPECT_EQ(Ping().Code(), 0);
    EXPECT_GE(GetTickCount64() - begin, 390u);
    EXPECT_LT(GetTickCount64() - begin, 2000u);
}

TEST_F(Request, MisbehavesOnlyTheFirstTimes) {
    service.Control("[[on]]\nrequest = 'PingService'\nanswer = 9\ntimes = 2\n");
    EXPECT_EQ(Ping().Code(), 9);
    EXPECT_EQ(Ping().Code(), 9);
    EXPECT_EQ(Ping().Code(), 0);
}

TEST_F(Request, ThatIsRefused_ChangesNothingAndNotifiesNobody) {
    for (const char* const control : {"[[on]]\nanswer = 5", "[[on]]\nresult = 5"}) {
        service.Control(control);
        Send(PlenxWire::kCreateGroup, kGroup);
    }
    service.Control("[[on]]\nfault = 1726\n");
    EXPECT_EQ(ExceptionOfCall(kEndpoint, PlenxWire::kDeleteGroup), DWORD{1726});
    service.Control("[[on]]\nreply = 'garbage'\nnotify = false\n");
    Send(PlenxWire::kCreateGroup, {std::string("kept_1"), 2, std::string("")});
    EXPECT_THAT(ReceivedInAll(), IsEmpty());
    EXPECT_THAT(service.Log(), HasSubstr("holds groups:{\"kept_1\" \"\"} "));
    EXPECT_THAT(service.Log(), Not(HasSubstr("{\"g_1\"")));
}

TEST_F(Request, ThatRaises_GivesTheCallerTheCode) {
    std::string others;
    for (const DWORD code : {0xE0001234ul, 5ul, 1722ul}) {
        service.Control("[[on]]\nfault = " + std::to_string(code));
        const DWORD seen = ExceptionOfCall(kEndpoint, PlenxWire::kPingService).value_or(0);
        if (seen != code) {
            others += std::to_string(seen) + " for " + std::to_string(code) + " ";
        }
    }
    EXPECT_TRUE(Shows(Habits::kCodeThatTheServerRaises, others.empty() ? "yes" : others));
    service.Control("");
    EXPECT_EQ(Ping().Code(), 0);
}

TEST_F(Request, ThatCrashesIt_LeavesTheServiceStopped) {
    service.Control("[[on]]\nrequest = 'DeleteGroup'\ncrash = true\n");
    EXPECT_EQ(Ping().Code(), 0);
    EXPECT_TRUE(Shows(Habits::kServerThatEnds,
                      ExceptionOfCall(kEndpoint, PlenxWire::kDeleteGroup).value_or(0)));
    EXPECT_TRUE(service.Reaches(SERVICE_STOPPED, 2000));
    service.Control("");
    EXPECT_TRUE(service.StartAndRun());
    EXPECT_EQ(Ping().Code(), 0);
}

TEST_F(Request, ThatKillsIt_LeavesNoProcess) {
    const PlenxSupport::Handle process(
        OpenProcess(SYNCHRONIZE, FALSE, service.Status().dwProcessId));
    ASSERT_TRUE(process);
    service.Control("[[on]]\nrequest = 1\ndie = true\n");
    EXPECT_TRUE(Shows(Habits::kServerThatEnds,
                      ExceptionOfCall(kEndpoint, PlenxWire::kDeleteGroup).value_or(0)));
    EXPECT_EQ(WaitForSingleObject(process.Get(), 2000), WAIT_OBJECT_0);
    EXPECT_EQ(ExceptionOfCall(kEndpoint, PlenxWire::kPingService), DWORD{RPC_S_SERVER_UNAVAILABLE});
}

TEST_F(Request, HostileNotifications_AllReachTheLibrary) {
    service.Control("[[on]]\nrequest = 'NameChanged'\nhostile = true\n");
    EXPECT_EQ(Send(PlenxWire::kNameChanged, {std::string("n")}).Code(), 0);
    EXPECT_TRUE(
        service.LogComesToSay("hostile (bad group name) ConnectNotify(10) "
                              "grpName:\"\\xff_1\"\n",
                              60000));
    const std::vector<std::string> received = FakeManager::Await(201);
    EXPECT_GT(received.size(), 200u);
    EXPECT_THAT(received, testing::Contains("DiskNameNotify(16) broken: 0 bytes are too few: "
                                            "the header alone has 8; bytes [0]"));
    EXPECT_EQ(Ping().Code(), 0);
}

}  // namespace
}  // namespace PlenxTest
