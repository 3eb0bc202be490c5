#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "companion/recorded_log.h"
#include "facade/recording_observer.h"
#include "rpc/fake_rpc.h"
#include "rpc/interface/manager_interface.h"
#include "rpc/manager_calls.h"

using DistributedFs::PLENXManager;
using DistributedFs::RpcManager;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::int32_t kInt32Max = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kInt32Min = std::numeric_limits<std::int32_t>::min();

// The codes are 24, 1, 2, 20, 4 and 0.
const Bytes kDefaultReply = FromHex("18000000 01000000 02000000 14000000 04000000 00000000");

std::vector<std::string> Texts() {
    return RecordedLog::Get().Texts();
}

std::string Handler(const std::string& name) {
    return "(DistributedFs::RpcManager::" + name + ")";
}

// Registers an observer before the test looks at the log.
class RpcServer : public testing::Test {
protected:
    RpcServer() {
        PLENXManager::GetInstance().RegisterPLENXServiceObserver(&observer_);
        RecordedLog::Get().Clear();
    }
    ~RpcServer() override {
        PLENXManager::GetInstance().UnregisterPLENXServiceObserver(&observer_);
    }
    static void ExpectDefault(const ManagerReply& reply) {
        EXPECT_EQ(reply.result, 0);
        EXPECT_EQ(reply.size, 24);
        EXPECT_EQ(reply.bytes, kDefaultReply);
        EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
    }
    static void ExpectRefused(const ManagerReply& reply, std::int32_t result) {
        EXPECT_EQ(reply.result, result);
        EXPECT_EQ(reply.size, 0);
        EXPECT_FALSE(reply.hasBlock);
        EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
    }

    RecordingObserver observer_;
};

// The tests below send ids 9 to 16 and look at what reaches the observer.

TEST_F(RpcServer, SendLocalMessagePassesTypeLengthAndMessage) {
    ExpectDefault(CallManager(9, MessageOf({Int32Arg(-4), Int32Arg(500), StringArg("hello")})));
    EXPECT_THAT(observer_.Events(), ElementsAre("SendLocalMessage(-4, 500, hello)"));
    EXPECT_THAT(Texts(), ElementsAre("L3 [PLENXSDK] plenx manager send local message invoked"
                                     "(DistributedFs::PLENXManager::SendLocalMessage)",
                                     "L3 [PLENXSDK] plenx manager send local message begin"
                                     "(DistributedFs::PLENXManager::SendLocalMessage)",
                                     "L3 [PLENXSDK] plenx manager send local message end"
                                     "(DistributedFs::PLENXManager::SendLocalMessage)"));
}

TEST_F(RpcServer, SendLocalMessagePassesANegativeLengthAsItsBitPattern) {
    ExpectDefault(
        CallManager(9, MessageOf({Int32Arg(1), Int32Arg(-1), StringArg(std::string("a\0b", 3))})));
    EXPECT_THAT(observer_.Events(),
                ElementsAre(std::string("SendLocalMessage(1, 4294967295, a\0b)", 36)));
}

TEST_F(RpcServer, ConnectDisconnectAndReconnectPassNumberAndName) {
    ExpectDefault(CallManager(10, MessageOf({StringArg("group_3")})));
    ExpectDefault(CallManager(11, MessageOf({StringArg("a_b_7")})));
    ExpectDefault(CallManager(12, MessageOf({StringArg("g_1")})));
    EXPECT_THAT(observer_.Events(),
                ElementsAre("NotifyConnect(3, group)", "NotifyDisconnect(7, a_b)",
                            "NotifyReconnect(1, g)"));
}

TEST_F(RpcServer, LinkTypeQueryAnswersWithTheStatusThatTheObserverLeft) {
    observer_.linkStatus = -9;
    const ManagerReply reply = CallManager(13, MessageOf({StringArg("group_2"), Int32Arg(-1)}));
    EXPECT_EQ(reply.result, 0);
    EXPECT_EQ(reply.bytes, FromHex("18000000 01000000 02000000 14000000 04000000 f7ffffff"));
    EXPECT_THAT(observer_.Events(), ElementsAre("QueryLinkStatus(2, group, 4294967295, 0)"));
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
}

TEST_F(RpcServer, LinkTypeQueryAnswersWith0WhenNobodyWritesTheStatus) {
    ExpectDefault(CallManager(13, MessageOf({StringArg("group_2"), Int32Arg(5)})));
}

TEST_F(RpcServer, LinkTypeQueryAnswersAlsoWhenTheObserverFails) {
    observer_.linkStatus = 6;
    observer_.code = 5;
    const ManagerReply reply = CallManager(13, MessageOf({StringArg("group_2"), Int32Arg(5)}));
    EXPECT_EQ(reply.result, 0);
    EXPECT_EQ(reply.bytes, Int32Message(6));
}

TEST_F(RpcServer, StatusNotifyTakesEveryValueButZeroForTrue) {
    for (const std::int32_t value : {0, 1, -1, 256, kInt32Min}) {
        ExpectDefault(
            CallManager(14, MessageOf({StringArg("g_1"), Int32Arg(-2), Int32Arg(value)})));
    }
    EXPECT_THAT(
        observer_.Events(),
        ElementsAre("NotifyStatus(1, g, 4294967294, false)", "NotifyStatus(1, g, 4294967294, true)",
                    "NotifyStatus(1, g, 4294967294, true)", "NotifyStatus(1, g, 4294967294, true)",
                    "NotifyStatus(1, g, 4294967294, true)"));
}

TEST_F(RpcServer, ErrorNotifyPassesTheCode) {
    ExpectDefault(CallManager(15, MessageOf({Int32Arg(-17)})));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyError(-17)"));
}

TEST_F(RpcServer, DiskNameNotifyPassesTheBytesAndShowsReplacements) {
    ExpectDefault(CallManager(16, MessageOf({StringArg("d\xFFk")})));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyDiskName(d\xFFk)"));
    EXPECT_EQ(Texts().at(0),
              "L3 [PLENXSDK] plenx manager notify diskName invoked "
              "diskName:d\xEF\xBF\xBDk"
              "(DistributedFs::PLENXManager::NotifyDiskName)");
}

TEST_F(RpcServer, FailingObserverDoesNotChangeTheReply) {
    observer_.code = 5;
    ExpectDefault(CallManager(10, MessageOf({StringArg("g_1")})));
    ExpectDefault(CallManager(15, MessageOf({Int32Arg(1)})));
}

TEST_F(RpcServer, ArgumentsAfterThoseThatAreReadDoNotMatter) {
    ExpectDefault(CallManager(15, MessageOf({Int32Arg(8), StringArg("more")})));
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyError(8)"));
}

// The table has every read of every handler that can fail.

struct FailedRead {
    std::int32_t id;
    const char* handler;
    std::vector<MessageArg> before;  // the arguments that can be read
    const char* operation;           // the reader's operation
    const char* text;
};

void PrintTo(const FailedRead& read, std::ostream* out) {
    *out << read.handler << read.before.size();
}

class EveryRead : public RpcServer, public testing::WithParamInterface<FailedRead> {
protected:
    static std::string Line() {
        return std::string("L4 ") + GetParam().text + Handler(GetParam().handler);
    }
    static std::int32_t Result() { return GetParam().id == 18 ? 0 : 20; }
};

TEST_P(EveryRead, FailsWhenTheArgumentHasAnotherType) {
    std::vector<MessageArg> arguments = GetParam().before;
    arguments.push_back(Int64Arg(1));
    const ManagerReply reply = CallManager(GetParam().id, MessageOf(arguments));
    if (GetParam().id == 18) {
        ExpectDefault(reply);
    } else {
        ExpectRefused(reply, 20);
    }
    EXPECT_THAT(Texts(), ElementsAre(std::string("L4 [PLENXSDK] Invalid Args rpcReqArgType:3"
                                                 "(DistributedFs::RpcMessageReader::") +
                                         GetParam().operation + ")",
                                     Line()));
    EXPECT_THAT(observer_.Events(), IsEmpty());
}

TEST_P(EveryRead, FailsWhenTheArgumentIsMissing) {
    Bytes message = MessageOf(GetParam().before);
    message.push_back(0);  // a message needs one byte behind its table
    const ManagerReply reply = CallManager(GetParam().id, message);
    EXPECT_EQ(reply.result, Result());
    const std::vector<std::string> texts = Texts();
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_THAT(texts[0], testing::StartsWith("L4 [PLENXSDK] Invalid Args Error index:" +
                                              std::to_string(GetParam().before.size())));
    EXPECT_EQ(texts[1], Line());
}

const MessageArg kGroup = StringArg("g_1");

INSTANTIATE_TEST_SUITE_P(
    Reads, EveryRead,
    testing::Values(
        FailedRead{9, "SendLocalMessage", {}, "ReadInt32", "[PLENXSDK] read msgType error"},
        FailedRead{
            9, "SendLocalMessage", {Int32Arg(1)}, "ReadInt32", "[PLENXSDK] read msgLen error"},
        FailedRead{9,
                   "SendLocalMessage",
                   {Int32Arg(1), Int32Arg(2)},
                   "ReadString",
                   "[PLENXSDK] read msg error"},
        FailedRead{10, "ConnectNotify", {}, "ReadString", "[PLENXSDK] read grpName error"},
        FailedRead{11, "DisconnectNotify", {}, "ReadString", "[PLENXSDK] read grpName error"},
        FailedRead{12, "ReconnectNotify", {}, "ReadString", "[PLENXSDK] read grpName error"},
        FailedRead{13, "LinkTypeQuery", {}, "ReadString", "[PLENXSDK] read grpName error"},
        FailedRead{13, "LinkTypeQuery", {kGroup}, "ReadInt32", "[RPCMANAGER] read linkType error"},
        FailedRead{14, "StatusNotify", {}, "ReadString", "[PLENXSDK] read grpName error"},
        FailedRead{14, "StatusNotify", {kGroup}, "ReadInt32", "[PLENXSDK] read sttsType error"},
        FailedRead{
            14, "StatusNotify", {kGroup, Int32Arg(1)}, "ReadInt32", "[PLENXSDK] read value error"},
        FailedRead{15, "ErrorNotify", {}, "ReadInt32", "[PLENXSDK] read errCode error"},
        FailedRead{16, "DiskNameNotify", {}, "ReadString", "[PLENXSDK] read diskName error"},
        FailedRead{17, "UpdateWindowsExplore", {}, "ReadInt32", "[PLENXSDK] read msgLen error"},
        FailedRead{17,
                   "UpdateWindowsExplore",
                   {Int32Arg(4)},
                   "ReadInt8Array",
                   "[PLENXSDK] read update path error"},
        FailedRead{18, "ExploreFlushNotify", {}, "ReadString", "[PLENXSDK] read disk error"},
        FailedRead{18,
                   "ExploreFlushNotify",
                   {StringArg("E")},
                   "ReadInt32",
                   "[PLENXSDK] read expFlushType error"}));

class IdWithArguments : public RpcServer, public testing::WithParamInterface<std::int32_t> {};

TEST_P(IdWithArguments, Returns20ForANullEmptyOrNegativeMessage) {
    const Bytes bytes(24);
    ExpectRefused(CallManager(GetParam(), nullptr, 0), 20);
    ExpectRefused(CallManager(GetParam(), nullptr, 24), 20);
    ExpectRefused(CallManager(GetParam(), bytes.data(), 0), 20);
    ExpectRefused(CallManager(GetParam(), bytes.data(), -1), 20);
    ExpectRefused(CallManager(GetParam(), bytes.data(), kInt32Min), 20);
    ExpectRefused(CallManager(GetParam(), bytes.data(), 7), 20);
    ExpectRefused(CallManager(GetParam(), bytes.data(), 8), 20);
    EXPECT_THAT(observer_.Events(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Ids, IdWithArguments, testing::Range(9, 18));

TEST_F(RpcServer, NullMessageOfId18StillGetsTheDefaultReply) {
    ExpectDefault(CallManager(18, nullptr, 0));
    EXPECT_EQ(Texts().back(), "L4 [PLENXSDK] read disk error" + Handler("ExploreFlushNotify"));
}

TEST_F(RpcServer, LinesOfAnEmptyMessage) {
    ExpectRefused(CallManager(15, nullptr, 0), 20);
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] Short Message Size rpcMsgSize:0"
                                     "(DistributedFs::RpcMessageReader::RpcMessageReader)",
                                     "L4 [PLENXSDK] Invalid Args Error index:0 argCursor_:0 "
                                     "msgCursor_:0 rpcMsgSize_:0"
                                     "(DistributedFs::RpcMessageReader::ReadInt32)",
                                     "L4 [PLENXSDK] read errCode error" + Handler("ErrorNotify")));
}

class UnknownId : public RpcServer, public testing::WithParamInterface<std::int32_t> {};

TEST_P(UnknownId, GetsTheDefaultReplyWhateverItsMessage) {
    ExpectDefault(CallManager(GetParam(), Int32Message(5)));
    ExpectDefault(CallManager(GetParam(), nullptr, 0));
    ExpectDefault(CallManager(GetParam(), nullptr, -1));
    EXPECT_THAT(Texts(), IsEmpty());
    EXPECT_THAT(observer_.Events(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Ids, UnknownId,
                         testing::Values(6, 100, 0, 1, 2, 3, 4, 5, 7, 8, 19, 20, -1, -10, kInt32Max,
                                         kInt32Min));

// The tests below split a group name.

struct Split {
    std::string grpName;
    const char* event;
};

void PrintTo(const Split& split, std::ostream* out) {
    *out << testing::PrintToString(split.grpName);
}

class GoodGroupName : public RpcServer, public testing::WithParamInterface<Split> {};

TEST_P(GoodGroupName, IsSplitAtItsLastUnderscore) {
    ExpectDefault(CallManager(10, MessageOf({StringArg(GetParam().grpName)})));
    EXPECT_THAT(observer_.Events(), ElementsAre(GetParam().event));
}

INSTANTIATE_TEST_SUITE_P(
    Names, GoodGroupName,
    testing::Values(Split{"group_3", "NotifyConnect(3, group)"},
                    Split{"a_b_7", "NotifyConnect(7, a_b)"}, Split{"_3", "NotifyConnect(3, )"},
                    Split{"__3", "NotifyConnect(3, _)"}, Split{"g_0", "NotifyConnect(0, g)"},
                    Split{"g_007", "NotifyConnect(7, g)"}, Split{"g_99", "NotifyConnect(99, g)"},
                    Split{"g_2147483647", "NotifyConnect(2147483647, g)"},
                    Split{"g_00000000000000000000002", "NotifyConnect(2, g)"},
                    Split{"g 1_1", "NotifyConnect(1, g 1)"},
                    Split{"\xC3\xBC\xFF_1", "NotifyConnect(1, \xC3\xBC\xFF)"}));

class BadGroupName : public RpcServer, public testing::WithParamInterface<std::string> {};

TEST_P(BadGroupName, Returns16WithALine) {
    ExpectRefused(CallManager(10, MessageOf({StringArg(GetParam())})), 16);
    EXPECT_THAT(observer_.Events(), IsEmpty());
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] invalid parameter" + Handler("ConnectNotify")));
}

INSTANTIATE_TEST_SUITE_P(Names, BadGroupName,
                         testing::Values("", "group", "group3", "g_", "_", "g_3x", "g_x3", "g_ 3",
                                         "g_3 ", "g_+3", "g_-1", "g_3.0", "g_0x3", "g_2147483648",
                                         "g_4294967296", "g_18446744073709551617",
                                         "g_99999999999999999999999999", std::string("g_3\0", 4),
                                         std::string("g_\0", 3), "g_\xD9\xA3", "3_g"));

struct GroupHandler {
    std::int32_t id;
    const char* name;
    std::vector<MessageArg> more;
};

void PrintTo(const GroupHandler& handler, std::ostream* out) {
    *out << handler.name;
}

class EveryGroupHandler : public RpcServer, public testing::WithParamInterface<GroupHandler> {};

TEST_P(EveryGroupHandler, RefusesABadGroupNameUnderItsOwnName) {
    std::vector<MessageArg> arguments{StringArg("group")};
    arguments.insert(arguments.end(), GetParam().more.begin(), GetParam().more.end());
    ExpectRefused(CallManager(GetParam().id, MessageOf(arguments)), 16);
    EXPECT_THAT(observer_.Events(), IsEmpty());
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] invalid parameter" + Handler(GetParam().name)));
}

INSTANTIATE_TEST_SUITE_P(
    Handlers, EveryGroupHandler,
    testing::Values(GroupHandler{10, "ConnectNotify", {}}, GroupHandler{11, "DisconnectNotify", {}},
                    GroupHandler{12, "ReconnectNotify", {}},
                    GroupHandler{13, "LinkTypeQuery", {Int32Arg(1)}},
                    GroupHandler{14, "StatusNotify", {Int32Arg(1), Int32Arg(1)}}));

TEST_F(RpcServer, AllArgumentsAreReadBeforeTheGroupNameIsSplit) {
    ExpectRefused(CallManager(13, MessageOf({StringArg("group")})), 20);
    EXPECT_EQ(Texts().back(), "L4 [RPCMANAGER] read linkType error" + Handler("LinkTypeQuery"));
    ExpectRefused(CallManager(14, MessageOf({StringArg("group"), Int32Arg(1)})), 20);
    EXPECT_EQ(Texts().back(), "L4 [PLENXSDK] read value error" + Handler("StatusNotify"));
}

// The tests below are for the reply block and for exceptions.

TEST_F(RpcServer, ReplyThatCannotBeAllocatedReturns22) {
    FakeRpc::Get().SetAllocationFails(true);
    ExpectRefused(CallManager(15, MessageOf({Int32Arg(1)})), 22);
    ExpectRefused(CallManager(100, nullptr, 0), 22);
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyError(1)"));
}

TEST_F(RpcServer, ObserversExceptionReturns1726AndReleasesTheObservers) {
    observer_.hook = [](const std::string&) { throw std::runtime_error("observer"); };
    ExpectRefused(CallManager(10, MessageOf({StringArg("g_1")})), 1726);
    EXPECT_THAT(Texts(), ElementsAre("L3 [PLENXSDK] plenx manager notify connect invoked "
                                     "svcType:1(DistributedFs::PLENXManager::NotifyConnect)",
                                     "L3 [PLENXSDK] plenx manager notify connect begin"
                                     "(DistributedFs::PLENXManager::NotifyConnect)"));
    observer_.hook = nullptr;
    ExpectDefault(CallManager(10, MessageOf({StringArg("g_1")})));
}

TEST_F(RpcServer, ForeignExceptionReturns1726) {
    observer_.hook = [](const std::string&) { throw 5; };
    ExpectRefused(CallManager(15, MessageOf({Int32Arg(1)})), 1726);
}

TEST_F(RpcServer, BadAllocReturns22) {
    observer_.hook = [](const std::string&) { throw std::bad_alloc(); };
    ExpectRefused(CallManager(16, MessageOf({StringArg("d")})), 22);
}

TEST_F(RpcServer, ServerRoutineGivesWhatTheManagerGives) {
    Bytes message = MessageOf({Int32Arg(3)});
    long size = 99;
    unsigned char* block = nullptr;
    EXPECT_EQ(PlenxHandleManagerMessage(15, static_cast<long>(message.size()), message.data(),
                                        &size, &block),
              0);
    EXPECT_EQ(size, 24);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(Bytes(block, block + size), kDefaultReply);
    FakeRpc::Get().Free(block);
    EXPECT_THAT(observer_.Events(), ElementsAre("NotifyError(3)"));

    EXPECT_EQ(PlenxHandleManagerMessage(15, 0, nullptr, &size, &block), 20);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(block, nullptr);
}

TEST_F(RpcServer, CallsOfTenThreadsReachTheObserverOneAtATime) {
    std::vector<std::thread> threads;
    for (int i = 0; i != 10; ++i) {
        threads.emplace_back([i] {
            for (int n = 0; n != 50; ++n) {
                const ManagerReply reply =
                    n % 2 == 0
                        ? CallManager(10, MessageOf({StringArg("g_1")}))
                        : CallManager(9, MessageOf({Int32Arg(i), Int32Arg(n), StringArg("m")}));
                EXPECT_EQ(reply.bytes, kDefaultReply);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(observer_.Events().size(), 500U);
    EXPECT_EQ(observer_.MostAtOnce(), 1U);
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
}

// The tests below are for Start.

TEST(RpcServerStart, UsesTheEndpointRegistersAndListens) {
    FakeRpc::Get().SetListenReturns(0);
    RpcManager::GetInstance().Start();
    EXPECT_THAT(FakeRpc::Get().Calls(),
                ElementsAre("RpcServerUseProtseqEpW(ncalrpc, 10, Manager, null)",
                            "RpcServerRegisterIf(manager interface, null, null)",
                            "RpcServerListen(1, 10, 0)"));
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST(RpcServerStart, RefusedEndpointIsLoggedAndEndsIt) {
    FakeRpc::Get().Fail("RpcServerUseProtseqEpW", 1740);
    RpcManager::GetInstance().Start();
    EXPECT_EQ(FakeRpc::Get().Calls().size(), 1U);
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] rpc use protseq error 1740"
                                     "(DistributedFs::RpcManager::Start)"));
}

TEST(RpcServerStart, RefusedInterfaceIsLoggedAndEndsIt) {
    FakeRpc::Get().Fail("RpcServerRegisterIf", 1711);
    RpcManager::GetInstance().Start();
    EXPECT_EQ(FakeRpc::Get().Calls().size(), 2U);
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] rpc server register error 1711"
                                     "(DistributedFs::RpcManager::Start)"));
}

TEST(RpcServerStart, FailedListeningIsLogged) {
    FakeRpc::Get().Fail("RpcServerListen", 1713);
    RpcManager::GetInstance().Start();
    EXPECT_EQ(FakeRpc::Get().Calls().size(), 3U);
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] rpc start server listen error 1713"
                                     "(DistributedFs::RpcManager::Start)"));
}

}  // namespace
