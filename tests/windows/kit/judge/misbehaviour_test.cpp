// Each misbehaviour of the development service at a request trips the checks that are meant for it,
// and no other.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kit/judge/judgement.h"
#include "support/child_process.h"

namespace PlenxTest {
namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;

using Numbers = std::set<std::string>;

std::string ConsoleWith(const std::string& scenario) {
    const std::wstring folder = ProgramFolder();
    return "--console \"" + std::string(folder.begin(), folder.end()) +
           "\\plenxservice.exe --console pc --data C:\\judged\\data --scenario " + scenario + "\"";
}

struct Misbehaviour {
    const char* name;
    const char* scenario;
    Numbers failed;
    const char* options = "";
};

const Numbers kEachUsualRequest = {
    "create-group/1",     "delete-group/1", "device-online/1",
    "device-offline/1",   "name-changed/1", "set-string-config/1",
    "set-int64-config/1", "ping/1",         "recv-remote-message/1",
};
// Whatever asks for a 0.
const Numbers kEachGoodRequest = {
    "create-group/1",
    "create-group/2",
    "delete-group/1",
    "delete-group/2",
    "device-online/1",
    "device-online/2",
    "device-offline/1",
    "device-offline/2",
    "name-changed/1",
    "recv-remote-message/1",
    "flag/1",
    "ping/1",
    "recv-remote-message/2",
    "set-string-config/1",
    "set-int64-config/1",
    "ping/2",
    "set-int64-config/2",
    "text/1",
    "text/2",
    "text/3",
    "text/4",
};

Numbers With(Numbers numbers, const Numbers& more) {
    numbers.insert(more.begin(), more.end());
    return numbers;
}

// The checks of the answers of "Manager" mostly wait, and a reply does not concern them.
constexpr char kRequests[] =
    "--only serve,reply,create-group,delete-group,device-online,device-offline,name-changed,"
    "recv-remote-message,set-string-config,set-int64-config,ping,text,flag,message,call,refuse,"
    "notify";
// For a program that never comes back, or does nothing but what the row says.
constexpr char kFew[] = "--patience 1 --only serve,reply,create-group,ping,call,message/1,refuse/1";

const Misbehaviour kMisbehaviours[] = {
    {"none", "title = \"honest\"\n", {}, kFew},
    {"no_reply", "[[on]]\nreply = \"empty\"\n", {"reply/1"}, kFew},
    {"garbage", "[[on]]\nreply = \"garbage\"\n", {"reply/2"}, kFew},
    {"short", "[[on]]\nrequest = \"NameChanged\"\nreply = \"short\"\n", {"reply/2"}, kRequests},
    {"large", "[[on]]\nrequest = \"PingService\"\nreply = \"large\"\n", {"reply/2"}, kFew},
    {"total_size",
     "[[on]]\nreply = \"hex:1900000001000000020000001400000004000000 00000000\"\n",
     {"reply/2"},
     kFew},
    {"lie", "[[on]]\nreply = \"lie\"\n", {"reply/3"}, kFew},
    {"code_of_another", "[[on]]\nanswer = 5\n", With(kEachGoodRequest, {"reply/4"}), kRequests},
    {"one_refused",
     "[[on]]\nrequest = \"DeleteGroup\"\nanswer = 1005\n",
     {"delete-group/1", "delete-group/2", "text/2", "text/3", "text/4"},
     kRequests},
    {"refused_once", "[[on]]\ntimes = 12\nanswer = 1005\n", kEachUsualRequest, kRequests},
    {"takes_everything",
     "[[on]]\nanswer = 0\n",
     {"refuse/1", "refuse/2", "refuse/3", "refuse/4", "refuse/5", "refuse/6", "refuse/7",
      "refuse/8", "refuse/9", "refuse/10", "refuse/11"},
     kRequests},
    {"result",
     "[[on]]\nrequest = \"PingService\"\nresult = 1005\n",
     {"reply/5", "ping/1", "ping/2"},
     kFew},
    {"fault", "[[on]]\nrequest = \"NameChanged\"\nfault = 1005\n", {"call/1"}, kFew},
    {"late",
     "[[on]]\nrequest = \"NameChanged\"\ntimes = 1\ndelay_ms = 1300\n",
     {"serve/2"},
     "--only serve,reply,name-changed"},
    {"never",
     "[[on]]\nrequest = \"NameChanged\"\ndelay_ms = 60000\n",
     {"serve/1", "message/1"},
     kFew},
    {"crash", "[[on]]\nrequest = \"NameChanged\"\ncrash = true\n", {"serve/1", "message/1"}, kFew},
    {"dies_of_a_broken_request",
     "[[on]]\nrequest = \"PingService\"\nskip = 3\ntimes = 1\ndie = true\n",
     {"message/1"},
     "--only message/1"},
    {"quiet", "[[on]]\nnotify = false\n", {}, "--only reply,notify,manager"},
    {"repeats", "[[on]]\nrepeat = 3\n", {}, "--only reply,notify,status-notify"},
    {"hostile",
     "[[on]]\nrequest = \"NameChanged\"\nhostile = true\n",
     {"notify/1", "notify/2", "notify/3", "notify/4", "status-notify/1", "send-local-message/1",
      "update-windows-explore/1", "explore-flush-notify/1"},
     "--only reply,notify,status-notify,send-local-message,update-windows-explore,"
     "explore-flush-notify"},
    {"broken_notification",
     "[[notify]]\non = \"NameChanged\"\nsend = 15\nhex = \"01 02\"\n",
     {"notify/2"},
     "--only reply,notify,status-notify"},
    {"unknown_notification",
     "[[notify]]\non = \"NameChanged\"\nsend = 19\nhex = \"18000000010000000200000014000000 "
     "0400000000000000\"\n",
     {"notify/1"},
     "--only reply,notify,status-notify"},
    {"group_without_a_digit",
     "[[notify]]\non = \"NameChanged\"\nsend = \"ConnectNotify\"\ngrpName = \"judge\"\n",
     {"notify/3", "notify/4"},
     "--only reply,notify,status-notify"},
    {"unknown_group",
     "[[notify]]\non = \"NameChanged\"\nsend = \"ConnectNotify\"\ngrpName = \"other_1\"\n",
     {"notify/4"},
     "--only reply,notify,status-notify"},
    {"kind_of_the_library",
     "[[notify]]\non = \"NameChanged\"\nsend = \"StatusNotify\"\ngrpName = \"judge_1\"\n"
     "sttsType = 3\nvalue = 1\n",
     {"status-notify/1"},
     "--only reply,notify,status-notify"},
    {"length_of_another_text",
     "[[notify]]\non = \"NameChanged\"\nsend = \"SendLocalMessage\"\nmsgType = 1\nmsgLen = 9\n"
     "msg = \"hello\"\n",
     {"send-local-message/1"},
     "--only notify,send-local-message"},
};

std::string NameOf(const testing::TestParamInfo<Misbehaviour>& info) {
    return info.param.name;
}

class JudgedMisbehaviour : public testing::TestWithParam<Misbehaviour> {
protected:
    JudgeFolder folder;
};

TEST_P(JudgedMisbehaviour, TripsItsChecksAndNoOther) {
    const std::string scenario = folder.Write("mine.toml", GetParam().scenario);
    const Judgement judgement =
        RunJudge("--strict " + std::string(GetParam().options) + " " + ConsoleWith(scenario));
    EXPECT_THAT(judgement.Failed(), ElementsAreArray(GetParam().failed)) << judgement.output;
    EXPECT_EQ(judgement.code, GetParam().failed.empty() ? 0 : 1) << judgement.output;
    EXPECT_THAT(judgement.Judged(), testing::Not(IsEmpty()));
}

INSTANTIATE_TEST_SUITE_P(All, JudgedMisbehaviour, testing::ValuesIn(kMisbehaviours), NameOf);

}  // namespace
}  // namespace PlenxTest
