// Runs plenxkit message inside the test, as its command line would.

#ifndef PLENXMSG_TEST_TOOL_H
#define PLENXMSG_TEST_TOOL_H

#include <string>
#include <vector>

#include "outcome.h"

namespace PlenxMessage {

using Outcome = PlenxKit::Outcome;

inline Outcome Tool(std::vector<std::string> arguments, const std::string& input = "") {
    arguments.insert(arguments.begin(), "message");
    return PlenxKit::OutcomeOf(arguments, input);
}

/// Returns one good message of each id and a reply, each as the words that encode takes.
inline std::vector<std::vector<std::string>> EachMessage() {
    return {
        {"CreateGroup", "groupName=g_1", "groupArg=a"},
        {"DeleteGroup", "groupName=g_1"},
        {"DeviceOnline", "groupName=g_1", "deviceId=dev", "isRemote=0", "data=01,02,ff"},
        {"DeviceOffline", "groupName=g_1", "deviceId=dev", "isRemote=1", "trigger=-1"},
        {"NameChanged", "name=Gr\xc3\xbcn"},
        {"RecvRemoteMessage", "msgType=3", "msgLen=2", "message=hi"},
        {"SetStringConfig", "cfgType=1", "value=en_US"},
        {"SetInt64Config", "cfgType=5", "value=-9000000000"},
        {"SendLocalMessage", "msgType=3", "msgLen=2", "msg=hi"},
        {"ConnectNotify", "grpName=group_3"},
        {"DisconnectNotify", "grpName=group_3"},
        {"ReconnectNotify", "grpName=a_b_7"},
        {"LinkTypeQuery", "grpName=group_3", "linkType=1"},
        {"StatusNotify", "grpName=group_3", "sttsType=100", "value=1"},
        {"ErrorNotify", "errCode=5"},
        {"DiskNameNotify", "diskName=P:"},
        {"UpdateWindowsExplore", "path=utf16:C:\\D"},
        {"ExploreFlushNotify", "disk=E:", "expFlushType=2"},
        {"PingService", "number=7"},
        {"reply", "result=1001"},
    };
}

inline Outcome Encoded(std::vector<std::string> words) {
    words.insert(words.begin(), "encode");
    return Tool(words);
}

}  // namespace PlenxMessage

#endif  // PLENXMSG_TEST_TOOL_H
