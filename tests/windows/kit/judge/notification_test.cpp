// Each misbehaviour of the development service in its notifications trips the checks that are meant
// for it, and no other.

#include "kit/judge/misbehaviour.h"

namespace PlenxTest {
namespace {

const Misbehaviour kMisbehaviours[] = {
    {"quiet", "[[on]]\nnotify = false\n", {}},
    {"repeats", "[[on]]\nrepeat = 3\n", {}},
    // Each NameChanged brings 230 notifications, and the broken ones would bring more than the
    // judge waits for.
    {"hostile",
     "[[on]]\nrequest = \"NameChanged\"\nhostile = true\n",
     {"notify/1", "notify/2", "notify/3", "notify/4", "status-notify/1", "send-local-message/1",
      "update-windows-explore/1", "explore-flush-notify/1"},
     "--only reply,notify,status-notify,send-local-message,update-windows-explore,"
     "explore-flush-notify"},
    {"broken_notification",
     "[[notify]]\non = \"NameChanged\"\nsend = 15\nhex = \"01 02\"\n",
     {"notify/2"},
     kAllButManager},
    {"unknown_notification",
     "[[notify]]\non = \"NameChanged\"\nsend = 19\nhex = \"18000000010000000200000014000000 "
     "0400000000000000\"\n",
     {"notify/1"},
     kAllButManager},
    {"group_without_a_digit",
     "[[notify]]\non = \"NameChanged\"\nsend = \"ConnectNotify\"\ngrpName = \"judge\"\n",
     {"notify/3", "notify/4"},
     kAllButManager},
    {"unknown_group",
     "[[notify]]\non = \"NameChanged\"\nsend = \"ConnectNotify\"\ngrpName = \"other_1\"\n",
     {"notify/4"},
     kAllButManager},
    {"kind_of_the_library",
     "[[notify]]\non = \"NameChanged\"\nsend = \"StatusNotify\"\ngrpName = \"judge_1\"\n"
     "sttsType = 3\nvalue = 1\n",
     {"status-notify/1"},
     kAllButManager},
    {"length_of_another_text",
     "[[notify]]\non = \"NameChanged\"\nsend = \"SendLocalMessage\"\nmsgType = 1\nmsgLen = 9\n"
     "msg = \"hello\"\n",
     {"send-local-message/1"},
     kAllButManager},
};

class JudgedNotifications : public JudgedMisbehaviour {};

TEST_P(JudgedNotifications, TripsItsChecksAndNoOther) {
    ExpectTheChecksOfTheRowAndNoOther();
}

INSTANTIATE_TEST_SUITE_P(All, JudgedNotifications, testing::ValuesIn(kMisbehaviours), NameOfRow);

}  // namespace
}  // namespace PlenxTest
