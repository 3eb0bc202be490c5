// Each misbehaviour of the development service in its answers trips the checks that are meant for
// it, and no other.

#include "kit/judge/misbehaviour.h"

namespace PlenxTest {
namespace {

const Numbers kEachUsualRequest = {
    "create-group/1",     "delete-group/1", "device-online/1",
    "device-offline/1",   "name-changed/1", "set-string-config/1",
    "set-int64-config/1", "ping/1",         "recv-remote-message/1",
};
Numbers With(Numbers numbers, const Numbers& more) {
    numbers.insert(more.begin(), more.end());
    return numbers;
}

// This is for a program that never comes back.
constexpr char kImpatient[] = "--patience 1";
constexpr char kSoak[] = "--soak 2 --only soak";

const Misbehaviour kMisbehaviours[] = {
    {kHonest, "title = \"honest\"\n", {}},
    {"no_reply", "[[on]]\nreply = \"empty\"\n", {"reply/1"}, kAllButManager},
    {"garbage", "[[on]]\nreply = \"garbage\"\n", {"reply/2"}, kAllButManager},
    {"short",
     "[[on]]\nrequest = \"NameChanged\"\nreply = \"short\"\n",
     {"reply/2"},
     kAllButManager},
    {"large",
     "[[on]]\nrequest = \"PingService\"\nreply = \"large\"\n",
     {"reply/2"},
     kAllButManager},
    {"total_size",
     "[[on]]\nreply = \"hex:1900000001000000020000001400000004000000 00000000\"\n",
     {"reply/2"},
     kAllButManager},
    {"lie", "[[on]]\nreply = \"lie\"\n", {"reply/3"}, kAllButManager},
    {"code_of_another", "[[on]]\nanswer = 5\n", With(kEachUsualRequest, {"reply/4"}),
     kAllButManager},
    {"one_refused",
     "[[on]]\nrequest = \"DeleteGroup\"\nanswer = 1005\n",
     {"delete-group/1"},
     kAllButManager},
    {"refused_once", "[[on]]\ntimes = 12\nanswer = 1005\n", kEachUsualRequest, kAllButManager},
    {"takes_everything",
     "[[on]]\nanswer = 0\n",
     {"refuse/1", "refuse/2", "refuse/3", "refuse/4", "refuse/5", "refuse/6", "refuse/7",
      "refuse/8", "refuse/9", "refuse/10", "refuse/11"},
     kAllButManager},
    {"result",
     "[[on]]\nrequest = \"PingService\"\nresult = 1005\n",
     {"reply/5", "ping/1"},
     kAllButManager},
    {"fault",
     "[[on]]\nrequest = \"NameChanged\"\nfault = 1005\n",
     {"call/1", "name-changed/1"},
     kAllButManager},
    {"late",
     "[[on]]\nrequest = \"NameChanged\"\ntimes = 1\ndelay_ms = 1300\n",
     {"serve/2"},
     kAllButManager},
    {"never", "[[on]]\nrequest = \"NameChanged\"\ndelay_ms = 60000\n", {"serve/1"}, kImpatient},
    {"crash",
     "[[on]]\nrequest = \"NameChanged\"\ncrash = true\n",
     {"serve/1", "name-changed/1"},
     kAllButManager},
    // The scenario counts requests, so only one check may send any.
    {"dies_of_a_broken_request",
     "[[on]]\nrequest = \"PingService\"\nskip = 3\ntimes = 1\ndie = true\n",
     {"message/1"},
     "--only message/1"},
    // Only these need time. A busy machine makes few requests in it, so each leaks much.
    {"leaks_handles", "[[on]]\nleak_handles = 4\n", {"soak/2"}, kSoak},
    {"leaks_memory", "[[on]]\nleak_kib = 1024\n", {"soak/3"}, kSoak},
};

class JudgedAnswers : public JudgedMisbehaviour {};

TEST_P(JudgedAnswers, TripsItsChecksAndNoOther) {
    ExpectTheChecksOfTheRowAndNoOther();
}

INSTANTIATE_TEST_SUITE_P(All, JudgedAnswers, testing::ValuesIn(kMisbehaviours), NameOfRow);

}  // namespace
}  // namespace PlenxTest
