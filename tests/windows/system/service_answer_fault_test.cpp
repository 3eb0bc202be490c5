// Tests services that answer late, wrongly or not at all, and services that send messages that no
// honest service sends.

#include "support/service_state.h"
#include "support/system_habits.h"
#include "system/host.h"

namespace PlenxTest {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;

class ServiceAnswerFaults : public Host {
protected:
    /// Starts the PC service and returns the lines from the request to create the group on.
    Lines LinesOfCreateGroup(const std::string& control);
};

Lines ServiceAnswerFaults::LinesOfCreateGroup(const std::string& control) {
    Control(control);
    Init();
    manager.Start(kPcService, "group", "argument");
    Settle();
    const Lines lines = WorkerLines();
    const std::string request =
        Info("RpcManager::CreateGroup", "rpc manager create group svcType:1");
    const auto first = std::find(lines.begin(), lines.end(), request);
    return first == lines.end() ? lines : Lines(first + 1, lines.end());
}

HOST_TEST(ServiceAnswerFaults, LateAnswers_AreWaitedFor) {
    Control("[[on]]\ndelay_ms = 400\n");
    Init();
    EXPECT_TRUE(Start(kPcService));
    Settle();
    EXPECT_THAT(WorkerLines(), ElementsAreArray(Lines{StartIsInvoked(kPcService)} +
                                                LinesOfStart(kPcService, "PlenxPcSvc")));
}

// A reply that cannot be read counts as 0.
class ReplyThatCannotBeRead : public ServiceAnswerFaults {
protected:
    void CountsAsSuccess(const std::string& kind, const Lines& readerLines) {
        EXPECT_THAT(LinesOfCreateGroup("[[on]]\nrequest = 'CreateGroup'\nreply = '" + kind + "'\n"),
                    ElementsAreArray(readerLines +
                                     Lines{Error("RpcManager::CreateGroup", "read ret error")} +
                                     LinesOfStatus(kPcService, 0, true)));
    }
};

Lines RefusedAsShort(const std::string& size) {
    return {Error("RpcMessageReader::RpcMessageReader", "Short Message Size rpcMsgSize:" + size),
            Error("RpcMessageReader::ReadInt32",
                  "Invalid Args Error index:0 argCursor_:0 msgCursor_:0 rpcMsgSize_:0")};
}

HOST_TEST(ReplyThatCannotBeRead, Garbage_CountsAsSuccess) {
    CountsAsSuccess("garbage", RefusedAsShort("24"));
}

HOST_TEST(ReplyThatCannotBeRead, Empty_CountsAsSuccess) {
    CountsAsSuccess("empty", RefusedAsShort("0"));
}

HOST_TEST(ReplyThatCannotBeRead, Short_CountsAsSuccess) {
    CountsAsSuccess("short", RefusedAsShort("20"));
}

HOST_TEST(ReplyThatCannotBeRead, SizeWithoutBytes_CountsAsSuccess) {
    CountsAsSuccess("lie", RefusedAsShort("0"));
}

HOST_TEST(ReplyThatCannotBeRead, MebibyteOfZeros_CountsAsSuccess) {
    CountsAsSuccess("large", {Error("RpcMessageReader::ReadInt32",
                                    "Invalid Args Error index:0 argCursor_:0 msgCursor_:8 "
                                    "rpcMsgSize_:1048576")});
}

HOST_TEST(ReplyThatCannotBeRead, OffsetFarOutside_CountsAsSuccess) {
    CountsAsSuccess("hex:18 00 00 00 01 00 00 00 02 00 00 00 f0 ff ff ff 04 00 00 00 00 00 00 00",
                    {Error("RpcMessageReader::ReadInt32",
                           "Invalid Args offset:4294967280 rpcReqArgSize:4 rpcMsgSize_:24")});
}

HOST_TEST(ServiceAnswerFaults, RefusalInTheReply_IsPassedOn) {
    EXPECT_THAT(LinesOfCreateGroup("[[on]]\nrequest = 'CreateGroup'\nanswer = -77\n"),
                ElementsAreArray(Lines{Error("PLENXManagerInner::Start",
                                             "plenx manager create group error -77")} +
                                 LinesOfStatus(kPcService, 0, false)));
}

HOST_TEST(ServiceAnswerFaults, RefusedConfiguration_DoesNotFailTheStart) {
    Control(
        "[[on]]\nrequest = 'SetStringConfig'\nanswer = 5\n[[on]]\nrequest = "
        "'SetInt64Config'\nresult = 6\n");
    Init();
    EXPECT_TRUE(Start(kPcService));
}

HOST_TEST(ServiceAnswerFaults, ResultOfTheProcedure_IsPassedOn) {
    EXPECT_THAT(
        LinesOfCreateGroup("[[on]]\nrequest = 'CreateGroup'\nresult = 77\n"),
        ElementsAreArray(
            Lines{Error("RpcManager::SendRpcMessage", "send service message error 77"),
                  Error("RpcManager::CreateGroup", "send rpc message error ret:77"),
                  Error("PLENXManagerInner::Start", "plenx manager create group error 77")} +
            LinesOfStatus(kPcService, 0, false)));
}

HOST_TEST(ServiceAnswerFaults, FaultInTheRoutine_IsPassedOnWithItsCode) {
    EXPECT_THAT(
        LinesOfCreateGroup("[[on]]\nrequest = 'CreateGroup'\nfault = 1726\n"),
        ElementsAreArray(
            Lines{Error("RpcManager::SendRpcMessage", "send service message exception 1726"),
                  Error("RpcManager::CreateGroup", "send rpc message error ret:1726"),
                  Error("PLENXManagerInner::Start", "plenx manager create group error 1726")} +
            LinesOfStatus(kPcService, 0, false)));
}

HOST_TEST(ServiceAnswerFaults, CrashInTheMiddleOfACall_IsReportedAndTheNextStartWorks) {
    Init();
    ASSERT_TRUE(Start(kPcService));
    const std::string former = std::to_string(ProcessIdOf(L"PlenxPcSvc"));
    Settle();
    Control("[[on]]\nrequest = 'DeviceOnline'\ncrash = true\n");
    manager.RemoteDeviceOnline(kPcService, "group", "there");
    Settle();
    const Lines lines = WorkerLines();
    // Either the call was sent, or the client saw the server go before that.
    const std::string code = NumberBehind("send service message exception ", lines);
    EXPECT_TRUE(Shows(Habits::kServerThatEnds, code));
    EXPECT_THAT(
        lines,
        ElementsAreArray(
            Lines{Info("PLENXManager::RemoteDeviceOnlineFunc",
                       "plenx manager remote device online svcType(1) is invoked"),
                  Info("PLENXManagerInner::RemoteDeviceOnline",
                       "plenx manager inner remote device online service 1"),
                  Info("RpcManager::DeviceOnline", "rpc manager device online svcType:1"),
                  Error("RpcManager::SendRpcMessage", "send service message exception " + code),
                  Error("RpcManager::DeviceOnline", "send rpc message error ret:" + code),
                  Error("PLENXManagerInner::RemoteDeviceOnline",
                        "plenx manager inner remote device online error " + code)} +
            LinesOfStatus(kPcService, 2, false)));
    EXPECT_THAT(ToldByWorker(), Contains("NotifyStatus(1, group, 2, 0)"));

    Control("");
    EXPECT_TRUE(Start(kPcService));
    EXPECT_EQ(CountLines(Error("KillServiceProcess", "kill service process " + former)), 1);
}

HOST_TEST(ServiceAnswerFaults, EveryDeviceRequestThatFails_IsReportedWithItsKind) {
    Init();
    ASSERT_TRUE(Start(kPhoneService));
    Control("[[on]]\nanswer = 9\n");
    const auto trigger = DistributedFs::TriggerType{1};
    manager.LocalDeviceOnline(kPhoneService, "local", "device", 0, nullptr);
    manager.RemoteDeviceOnline(kPhoneService, "remote", "device");
    manager.LocalDeviceOffline(kPhoneService, "local", "device", trigger);
    manager.RemoteDeviceOffline(kPhoneService, "remote", "device", trigger);
    Settle();
    EXPECT_THAT(ToldByWorker(),
                ElementsAre("NotifyStatus(2, group, 0, 1)", "NotifyStatus(2, local, 2, 0)",
                            "NotifyStatus(2, remote, 2, 0)", "NotifyStatus(2, local, 3, 0)",
                            "NotifyStatus(2, remote, 3, 0)"));
}

// Of some 230 broken messages, only those that can be read reach the observer. The library does not
// judge their content.
HOST_TEST(ServiceAnswerFaults, HostileNotifications_AreRefusedAndTheLibraryGoesOn) {
    Control("[[on]]\nrequest = 'NameChanged'\nhostile = true\n");
    Init();
    ASSERT_TRUE(Start(kPcService));
    manager.DeviceNameChanged("name");
    manager.RecvRemoteMessage(DistributedFs::PLENXMessageType{1}, 4, "last");
    ASSERT_TRUE(observer.WaitFor("SendLocalMessage(1, 4, last)", 1, 60000));
    const std::string nul(1, '\0');
    EXPECT_THAT(
        ToldByServices(),
        ElementsAre("NotifyConnect(1, group)", "NotifyStatus(1, group, 100, 1)",
                    "NotifyStatus(1, group, 101, 1)",
                    "NotifyDiskName(\x18" + nul + nul + ")",    // offset into the header
                    "NotifyDiskName(" + nul + nul + nul + ")",  // total size that lies
                    "SendLocalMessage(-1, 4294967295, )",
                    "SendLocalMessage(1, 1, " + std::string(std::size_t{1} << 20, 'x') + ")",
                    "SendLocalMessage(1, 2, \xff\xc0\x80)",
                    "NotifyError(1)",  // too many arguments
                    "NotifyStatus(1, g, 4294967295, 1)", "QueryLinkStatus(1, g, 2147483649)",
                    "NotifyDiskName()", "NotifyDiskName(\xfe:)", "NotifyConnect(1, \xff)",
                    "SendLocalMessage(1, 4, last)"));
    EXPECT_TRUE(Start(kPhoneService));
}

}  // namespace
}  // namespace PlenxTest
