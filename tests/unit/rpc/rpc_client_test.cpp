#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "companion/recorded_log.h"
#include "rpc/fake_rpc.h"
#include "rpc/interface/service_call.h"
#include "rpc/rpc_manager.h"

using DistributedFs::ConfigType;
using DistributedFs::RpcManager;
using DistributedFs::RpcMessage;
using DistributedFs::ServiceType;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr std::int32_t kInt32Min = std::numeric_limits<std::int32_t>::min();

RpcManager& Rpc() {
    return RpcManager::GetInstance();
}

std::vector<std::string> Texts() {
    return RecordedLog::Get().Texts();
}

ServiceType Type(std::uint32_t number) {
    return static_cast<ServiceType>(number);
}

ConfigType Key(std::uint32_t number) {
    return static_cast<ConfigType>(number);
}

void AnswerWith(const ServiceAnswer& answer) {
    FakeRpc::Get().SetService([answer](const ServiceCall&) { return answer; });
}

ServiceAnswer Reply(const Bytes& bytes) {
    ServiceAnswer answer;
    answer.reply = bytes;
    return answer;
}

// These are the runtime's calls that one request to the endpoint makes.
std::vector<std::string> CallsOfRequest(const std::string& endpoint, int msgType, int size) {
    const std::string call =
        endpoint + ", " + std::to_string(msgType) + ", " + std::to_string(size);
    return {"RpcStringBindingComposeW(null, ncalrpc, null, " + endpoint + ", null)",
            "RpcBindingFromStringBindingW(ncalrpc:[" + endpoint + "])",
            "ServiceMessage(" + call + ")", "RpcStringFreeW(ncalrpc:[" + endpoint + "])",
            "RpcBindingFree(" + endpoint + ")"};
}

// The table has every request, with the message that it must send.
struct Request {
    const char* name;
    std::function<std::int32_t()> send;
    const char* endpoint;
    std::int32_t msgType;
    const char* bytes;
    const char* line;
};

void PrintTo(const Request& request, std::ostream* out) {
    *out << request.name;
}

const std::uint8_t kData[] = {1, 2, 3};

const Request kRequests[] = {
    {"CreateGroup", [] { return Rpc().CreateGroup(Type(1), "g_1", "arg"); }, "PLENXPCService", 0,
     "38000000 03000000"
     "04000000 2c000000 04000000"
     "02000000 30000000 04000000"
     "04000000 34000000 04000000"
     "675f3100 02000000 61726700",
     "L3 [PLENXSDK] rpc manager create group svcType:1(DistributedFs::RpcManager::CreateGroup)"},
    {"DeleteGroup", [] { return Rpc().DeleteGroup(Type(2), "g_2"); }, "PLENXPhoneService", 1,
     "18000000 01000000 04000000 14000000 04000000 675f3200",
     "L3 [PLENXSDK] delete group svcType:2(DistributedFs::RpcManager::DeleteGroup)"},
    {"LocalDeviceOnline", [] { return Rpc().DeviceOnline(Type(1), "g_1", "dev", 0, kData, 3); },
     "PLENXPCService", 2,
     "57000000 05000000"
     "04000000 44000000 04000000"
     "04000000 48000000 04000000"
     "02000000 4c000000 04000000"
     "02000000 50000000 04000000"
     "05000000 54000000 03000000"
     "675f3100 64657600 00000000 03000000 010203",
     "L3 [PLENXSDK] rpc manager device online svcType:1"
     "(DistributedFs::RpcManager::DeviceOnline)"},
    {"RemoteDeviceOnline", [] { return Rpc().DeviceOnline(Type(2), "g_2", "dev", 1, nullptr, 0); },
     "PLENXPhoneService", 2,
     "54000000 05000000"
     "04000000 44000000 04000000"
     "04000000 48000000 04000000"
     "02000000 4c000000 04000000"
     "02000000 50000000 04000000"
     "05000000 54000000 00000000"
     "675f3200 64657600 01000000 00000000",
     "L3 [PLENXSDK] rpc manager device online svcType:2"
     "(DistributedFs::RpcManager::DeviceOnline)"},
    {"DeviceOffline", [] { return Rpc().DeviceOffline(Type(2), "g_2", "dev", 1, -2); },
     "PLENXPhoneService", 3,
     "48000000 04000000"
     "04000000 38000000 04000000"
     "04000000 3c000000 04000000"
     "02000000 40000000 04000000"
     "02000000 44000000 04000000"
     "675f3200 64657600 01000000 feffffff",
     "L3 [PLENXSDK] rpc manager device offline svcType:2"
     "(DistributedFs::RpcManager::DeviceOffline)"},
    {"NameChanged", [] { return Rpc().NameChanged("pc"); }, "PLENXPCService", 4,
     "17000000 01000000 04000000 14000000 03000000 706300",
     "L3 [PLENXSDK] rpc manager name changed svcType:1(DistributedFs::RpcManager::NameChanged)"},
    {"RecvRemoteMessage", [] { return Rpc().RecvRemoteMessage(Type(2), 7, -1, "hi"); },
     "PLENXPhoneService", 5,
     "37000000 03000000"
     "02000000 2c000000 04000000"
     "02000000 30000000 04000000"
     "04000000 34000000 03000000"
     "07000000 ffffffff 686900",
     "L3 [PLENXSDK] rpc manager receive remote message svcType:2"
     "(DistributedFs::RpcManager::RecvRemoteMessage)"},
    {"RecvRemoteMessageWithoutServiceType", [] { return Rpc().RecvRemoteMessage(7, 2, "hi"); },
     "PLENXPCService", 5,
     "37000000 03000000"
     "02000000 2c000000 04000000"
     "02000000 30000000 04000000"
     "04000000 34000000 03000000"
     "07000000 02000000 686900",
     "L3 [PLENXSDK] rpc manager receive remote message svcType:1"
     "(DistributedFs::RpcManager::RecvRemoteMessage)"},
    {"SetStringConfig", [] { return Rpc().SetStringConfig(Type(1), Key(1), "de_DE"); },
     "PLENXPCService", 7,
     "2a000000 02000000"
     "02000000 20000000 04000000"
     "04000000 24000000 06000000"
     "01000000 64655f444500",
     "L3 [PLENXSDK] rpc manager set string config svcType:1 cfgType:1 cfgValue:de_DE"
     "(DistributedFs::RpcManager::SetStringConfig)"},
    {"SetInt64Config", [] { return Rpc().SetInt64Config(Type(2), Key(2), -5); },
     "PLENXPhoneService", 8,
     "2c000000 02000000"
     "02000000 20000000 04000000"
     "03000000 24000000 08000000"
     "02000000 fbffffffffffffff",
     "L3 [PLENXSDK] rpc manager set int64 config svcType:2 cfgType:2 cfgValue:-5"
     "(DistributedFs::RpcManager::SetInt64Config)"},
    {"PingService", [] { return Rpc().PingService(Type(1), 25); }, "PLENXPCService", 19,
     "1c000000 01000000 03000000 14000000 08000000 1900000000000000",
     "L3 [PLENXSDK] rpc manager ping service No:25(DistributedFs::RpcManager::PingService)"},
    {"OfficeEndpoint", [] { return Rpc().PingService(Type(0), 0); }, "PLENXOfficeService", 19,
     "1c000000 01000000 03000000 14000000 08000000 0000000000000000",
     "L3 [PLENXSDK] rpc manager ping service No:0(DistributedFs::RpcManager::PingService)"},
};

std::string FunctionOf(const Request& request) {
    const std::string line = request.line;
    return line.substr(line.rfind('('));
}

class EveryRequest : public testing::TestWithParam<Request> {};

TEST_P(EveryRequest, SendsItsBytesAndLogsOneLine) {
    const Request& request = GetParam();
    EXPECT_EQ(request.send(), 0);

    const std::vector<ServiceCall> calls = FakeRpc::Get().ServiceCalls();
    ASSERT_THAT(calls, SizeIs(1));
    EXPECT_EQ(calls[0].endpoint, request.endpoint);
    EXPECT_EQ(calls[0].msgType, request.msgType);
    EXPECT_EQ(calls[0].msg, FromHex(request.bytes));
    EXPECT_EQ(FakeRpc::Get().Calls(),
              CallsOfRequest(request.endpoint, request.msgType,
                             static_cast<int>(FromHex(request.bytes).size())));
    EXPECT_THAT(Texts(), ElementsAre(request.line));
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
    EXPECT_EQ(FakeRpc::Get().LiveStrings(), 0U);
    EXPECT_EQ(FakeRpc::Get().LiveBindings(), 0U);
}

TEST_P(EveryRequest, ReturnsTheServicesOwnCodeWithoutALine) {
    AnswerWith(Reply(Int32Message(-77)));
    EXPECT_EQ(GetParam().send(), -77);
    EXPECT_THAT(Texts(), ElementsAre(GetParam().line));
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
}

TEST_P(EveryRequest, ReturnsTheCodeOfAFailedSend) {
    ServiceAnswer answer;
    answer.exception = 1722;
    AnswerWith(answer);
    EXPECT_EQ(GetParam().send(), 1722);
    EXPECT_THAT(Texts(), ElementsAre(GetParam().line,
                                     "L4 [PLENXSDK] send service message exception 1722"
                                     "(DistributedFs::RpcManager::SendRpcMessage)",
                                     "L4 [PLENXSDK] send rpc message error ret:1722" +
                                         FunctionOf(GetParam())));
}

TEST_P(EveryRequest, TakesAnEmptyReplyForSuccess) {
    AnswerWith(Reply({}));
    EXPECT_EQ(GetParam().send(), 0);
    EXPECT_THAT(Texts(), ElementsAre(GetParam().line,
                                     "L4 [PLENXSDK] Short Message Size rpcMsgSize:0"
                                     "(DistributedFs::RpcMessageReader::RpcMessageReader)",
                                     "L4 [PLENXSDK] Invalid Args Error index:0 argCursor_:0 "
                                     "msgCursor_:0 rpcMsgSize_:0"
                                     "(DistributedFs::RpcMessageReader::ReadInt32)",
                                     "L4 [PLENXSDK] read ret error" + FunctionOf(GetParam())));
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
}

TEST_P(EveryRequest, TakesAReplyWithoutAnInt32ForSuccess) {
    AnswerWith(Reply(MessageOf({StringArg("5")})));
    EXPECT_EQ(GetParam().send(), 0);
    EXPECT_THAT(Texts(), ElementsAre(GetParam().line,
                                     "L4 [PLENXSDK] Invalid Args rpcReqArgType:4"
                                     "(DistributedFs::RpcMessageReader::ReadInt32)",
                                     "L4 [PLENXSDK] read ret error" + FunctionOf(GetParam())));
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Requests, EveryRequest, testing::ValuesIn(kRequests),
                         [](const testing::TestParamInfo<Request>& request) {
                             return std::string(request.param.name);
                         });

TEST(RpcRequest, StringsKeepTheirBytes) {
    Rpc().NameChanged(std::string("\xC3\xBC\0\xFF", 4));
    EXPECT_EQ(FakeRpc::Get().ServiceCalls().at(0).msg,
              FromHex("19000000 01000000 04000000 14000000 05000000 c3bc00ff00"));
}

TEST(RpcRequest, EmptyStringsAreSentAsOneNul) {
    Rpc().CreateGroup(Type(1), "", "");
    EXPECT_EQ(FakeRpc::Get().ServiceCalls().at(0).msg, FromHex("32000000 03000000"
                                                               "04000000 2c000000 01000000"
                                                               "02000000 2d000000 04000000"
                                                               "04000000 31000000 01000000"
                                                               "00 02000000 00"));
}

TEST(RpcRequest, ConfigValueThatIsNotUtf8IsSentAsItIsAndShownWithReplacements) {
    Rpc().SetStringConfig(Type(1), Key(4), "\xFF");
    EXPECT_THAT(Texts(), ElementsAre("L3 [PLENXSDK] rpc manager set string config svcType:1 "
                                     "cfgType:4 cfgValue:\xEF\xBF\xBD"
                                     "(DistributedFs::RpcManager::SetStringConfig)"));
    const Bytes sent = FakeRpc::Get().ServiceCalls().at(0).msg;
    EXPECT_EQ(Bytes(sent.end() - 2, sent.end()), (Bytes{0xFF, 0}));
}

// A negative length makes the message too short. Each case shortens it so far that another argument
// does not fit.

struct TooShort {
    std::int32_t length;
    std::string writer;  // its operation, index, cursor and size
    std::string line;
};

void PrintTo(const TooShort& value, std::ostream* out) {
    *out << "Length" << value.length;
}

class DeviceOnlineOfNegativeLength : public testing::TestWithParam<TooShort> {};

TEST_P(DeviceOnlineOfNegativeLength, Returns19AndSendsNothing) {
    EXPECT_EQ(Rpc().DeviceOnline(Type(1), "g_1", "dev", 0, kData, GetParam().length), 19);
    EXPECT_THAT(Texts(), ElementsAre("L3 [PLENXSDK] rpc manager device online svcType:1"
                                     "(DistributedFs::RpcManager::DeviceOnline)",
                                     "L4 [PLENXSDK] " + GetParam().writer,
                                     "L4 [PLENXSDK] " + GetParam().line +
                                         "(DistributedFs::RpcManager::DeviceOnline)"));
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
}

std::string WriterLine(int index, int cursor, int size, const std::string& operation) {
    const std::string number = std::to_string(index);
    return "index:" + number + " argCursor_:" + number + " msgCursor_:" + std::to_string(cursor) +
           " rpcMsgSize_:" + std::to_string(size) +
           "(DistributedFs::RpcMessageWriter::" + operation + ")";
}

INSTANTIATE_TEST_SUITE_P(
    Lengths, DeviceOnlineOfNegativeLength,
    testing::Values(
        TooShort{-1, WriterLine(3, 80, 83, "WriteInt32"), "write int32 error index:4"},
        TooShort{-5, WriterLine(2, 76, 79, "WriteInt32"), "write int32 error index:3"},
        TooShort{-9, WriterLine(1, 72, 75, "WriteString"), "write string error index:2"},
        TooShort{-13, WriterLine(0, 68, 71, "WriteString"), "write string error index:1"}));

TEST(RpcRequest, DeviceOnlineWhoseSizeIsBelowItsTableReturns19) {
    EXPECT_EQ(Rpc().DeviceOnline(Type(1), "g_1", "dev", 0, kData, -17), 19);
    EXPECT_THAT(Texts(), ElementsAre("L3 [PLENXSDK] rpc manager device online svcType:1"
                                     "(DistributedFs::RpcManager::DeviceOnline)",
                                     "L4 [PLENXSDK] Short Message Size rpcMsgSize:67 rpcMsgArgs:5"
                                     "(DistributedFs::RpcMessageWriter::RpcMessageWriter)",
                                     "L4 [PLENXSDK] " + WriterLine(0, 0, 0, "WriteString"),
                                     "L4 [PLENXSDK] write string error index:1"
                                     "(DistributedFs::RpcManager::DeviceOnline)"));
}

TEST(RpcRequest, DeviceOnlineWhoseSizeIsNegativeMakesAWriterOfSize0) {
    EXPECT_EQ(Rpc().DeviceOnline(Type(1), "g_1", "dev", 0, kData, kInt32Min), 19);
    EXPECT_THAT(Texts(), ElementsAre("L3 [PLENXSDK] rpc manager device online svcType:1"
                                     "(DistributedFs::RpcManager::DeviceOnline)",
                                     "L4 [PLENXSDK] Short Message Size rpcMsgSize:0 rpcMsgArgs:5"
                                     "(DistributedFs::RpcMessageWriter::RpcMessageWriter)",
                                     "L4 [PLENXSDK] " + WriterLine(0, 0, 0, "WriteString"),
                                     "L4 [PLENXSDK] write string error index:1"
                                     "(DistributedFs::RpcManager::DeviceOnline)"));
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
}

TEST(RpcRequest, DeviceOnlineWhoseSizeDoesNotFit31BitsMakesAWriterOfSize0) {
    EXPECT_EQ(Rpc().DeviceOnline(Type(1), "g_1", "dev", 0, kData, 0x7FFFFFFF), 19);
    EXPECT_THAT(Texts(), ElementsAre("L3 [PLENXSDK] rpc manager device online svcType:1"
                                     "(DistributedFs::RpcManager::DeviceOnline)",
                                     "L4 [PLENXSDK] Short Message Size rpcMsgSize:0 rpcMsgArgs:5"
                                     "(DistributedFs::RpcMessageWriter::RpcMessageWriter)",
                                     "L4 [PLENXSDK] " + WriterLine(0, 0, 0, "WriteString"),
                                     "L4 [PLENXSDK] write string error index:1"
                                     "(DistributedFs::RpcManager::DeviceOnline)"));
}

TEST(RpcRequest, DeviceOnlineOfNullDataWithALengthReturns19) {
    EXPECT_EQ(Rpc().DeviceOnline(Type(1), "g_1", "dev", 0, nullptr, 3), 19);
    EXPECT_THAT(Texts(), ElementsAre("L3 [PLENXSDK] rpc manager device online svcType:1"
                                     "(DistributedFs::RpcManager::DeviceOnline)",
                                     "L4 [PLENXSDK] " + WriterLine(4, 84, 87, "WriteInt8Array"),
                                     "L4 [PLENXSDK] write int8array error index:5"
                                     "(DistributedFs::RpcManager::DeviceOnline)"));
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
}

// The tests below are for SendRpcMessage.

class SendRpcMessage : public testing::Test {
protected:
    SendRpcMessage() {
        message_.msgType = 42;
        message_.msgSize = static_cast<std::int32_t>(bytes_.size());
        message_.msgBuffer = bytes_.data();
    }
    std::int32_t Send(std::uint32_t type = 1) {
        return Rpc().SendRpcMessage(Type(type), &message_);
    }
    Bytes Response() const {
        return Bytes(message_.respBuffer.get(), message_.respBuffer.get() + message_.respSize);
    }
    void ExpectNoReply() const {
        EXPECT_EQ(message_.respSize, 0);
        EXPECT_EQ(message_.respBuffer, nullptr);
        EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
    }

    const std::vector<std::string> allCalls_ = CallsOfRequest("PLENXPCService", 42, 4);
    const Bytes bytes_{9, 8, 7, 6};
    RpcMessage message_;
};

TEST_F(SendRpcMessage, ComposesBindsCallsAndFreesInThisOrder) {
    AnswerWith(Reply({1, 2, 3}));
    EXPECT_EQ(Send(), 0);
    EXPECT_EQ(FakeRpc::Get().Calls(), allCalls_);
    EXPECT_EQ(FakeRpc::Get().ServiceCalls().at(0).msg, bytes_);
    EXPECT_EQ(Response(), (Bytes{1, 2, 3}));
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST_F(SendRpcMessage, EachServiceHasItsOwnEndpoint) {
    for (const std::uint32_t type : {0U, 1U, 2U}) {
        EXPECT_EQ(Send(type), 0);
    }
    const std::vector<ServiceCall> calls = FakeRpc::Get().ServiceCalls();
    ASSERT_THAT(calls, SizeIs(3));
    EXPECT_EQ(calls[0].endpoint, "PLENXOfficeService");
    EXPECT_EQ(calls[1].endpoint, "PLENXPCService");
    EXPECT_EQ(calls[2].endpoint, "PLENXPhoneService");
}

TEST_F(SendRpcMessage, TypeAbove2Returns16BeforeAnyCallAndWithoutALine) {
    EXPECT_EQ(Send(3), 16);
    EXPECT_EQ(Send(4), 16);
    EXPECT_EQ(Send(0xFFFFFFFFU), 16);
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
    EXPECT_THAT(Texts(), IsEmpty());
    ExpectNoReply();
}

TEST_F(SendRpcMessage, FailedComposeReturnsAtOnce) {
    FakeRpc::Get().Fail("RpcStringBindingComposeW", 1701);
    EXPECT_EQ(Send(), 1701);
    EXPECT_THAT(FakeRpc::Get().Calls(), ElementsAre(allCalls_[0]));
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] rpc string binding compose error 1701"
                                     "(DistributedFs::RpcManager::SendRpcMessage)"));
    ExpectNoReply();
}

TEST_F(SendRpcMessage, FailedBindingReturnsAtOnceAndLeavesTheString) {
    FakeRpc::Get().Fail("RpcBindingFromStringBindingW", 1700);
    EXPECT_EQ(Send(), 1700);
    EXPECT_THAT(FakeRpc::Get().Calls(), ElementsAre(allCalls_[0], allCalls_[1]));
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] rpc binding from string binding error 1700"
                                     "(DistributedFs::RpcManager::SendRpcMessage)"));
    EXPECT_EQ(FakeRpc::Get().LiveStrings(), 1U);
    ExpectNoReply();
}

TEST_F(SendRpcMessage, ResultOfTheServiceIsReturnedAndItsReplyReleased) {
    ServiceAnswer answer = Reply({1, 2, 3});
    answer.result = -5;
    AnswerWith(answer);
    EXPECT_EQ(Send(), -5);
    EXPECT_EQ(FakeRpc::Get().Calls(), allCalls_);
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] send service message error -5"
                                     "(DistributedFs::RpcManager::SendRpcMessage)"));
    EXPECT_EQ(FakeRpc::Get().Allocations(), 1U);
    ExpectNoReply();
}

TEST_F(SendRpcMessage, ExceptionBecomesTheResultAndBothAreFreed) {
    ServiceAnswer answer;
    answer.exception = 1722;
    AnswerWith(answer);
    EXPECT_EQ(Send(), 1722);
    EXPECT_EQ(FakeRpc::Get().Calls(), allCalls_);
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] send service message exception 1722"
                                     "(DistributedFs::RpcManager::SendRpcMessage)"));
    ExpectNoReply();
}

// Whoever watches the runtime sees the reason of a failure before the calls that follow it.
TEST_F(SendRpcMessage, FailureIsLoggedBeforeAnythingIsFreed) {
    std::vector<std::vector<std::string>> callsAtLine;
    RecordedLog::Get().SetHook(
        [&callsAtLine](const std::string&) { callsAtLine.push_back(FakeRpc::Get().Calls()); });
    ServiceAnswer raised;
    raised.exception = 1722;
    AnswerWith(raised);
    EXPECT_EQ(Send(), 1722);

    FakeRpc::Get().ClearRecord();
    ServiceAnswer refused;
    refused.result = 5;
    AnswerWith(refused);
    EXPECT_EQ(Send(), 5);
    RecordedLog::Get().SetHook(nullptr);
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] send service message exception 1722"
                                     "(DistributedFs::RpcManager::SendRpcMessage)",
                                     "L4 [PLENXSDK] send service message error 5"
                                     "(DistributedFs::RpcManager::SendRpcMessage)"));
    const auto upToTheCall = ElementsAre(allCalls_[0], allCalls_[1], allCalls_[2]);
    EXPECT_THAT(callsAtLine, ElementsAre(upToTheCall, upToTheCall));
}

TEST_F(SendRpcMessage, ExceptionOfCode0IsStillAnException) {
    ServiceAnswer answer;
    answer.exception = 0;
    AnswerWith(answer);
    EXPECT_EQ(Send(), 0);
    EXPECT_EQ(FakeRpc::Get().Calls(), allCalls_);
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] send service message exception 0"
                                     "(DistributedFs::RpcManager::SendRpcMessage)"));
    ExpectNoReply();
}

TEST_F(SendRpcMessage, ExceptionCodeIsShownAsASignedNumber) {
    ServiceAnswer answer;
    answer.exception = 0xC0000005UL;
    AnswerWith(answer);
    EXPECT_EQ(Send(), -1073741819);
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] send service message exception -1073741819"
                                     "(DistributedFs::RpcManager::SendRpcMessage)"));
}

TEST_F(SendRpcMessage, FailedStringFreeLeavesTheBindingAndTheResult) {
    FakeRpc::Get().Fail("RpcStringFreeW", 1700);
    AnswerWith(Reply({1}));
    EXPECT_EQ(Send(), 0);
    EXPECT_THAT(FakeRpc::Get().Calls(),
                ElementsAre(allCalls_[0], allCalls_[1], allCalls_[2], allCalls_[3]));
    EXPECT_EQ(Response(), (Bytes{1}));
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST_F(SendRpcMessage, HandleThatWasLeftIsNotUsedAgain) {
    FakeRpc::Get().Fail("RpcStringFreeW", 1700);
    EXPECT_EQ(Send(), 0);
    FakeRpc::Get().Fail("RpcBindingFromStringBindingW", 1700);
    FakeRpc::Get().ClearRecord();
    EXPECT_EQ(Send(), 1700);  // the fake stops the test when the old handle is still in it
    EXPECT_THAT(FakeRpc::Get().ServiceCalls(), IsEmpty());
    EXPECT_EQ(plenxServiceBinding, nullptr);
}

TEST_F(SendRpcMessage, FailedBindingFreeChangesNothing) {
    FakeRpc::Get().Fail("RpcBindingFree", 1702);
    AnswerWith(Reply({1}));
    EXPECT_EQ(Send(), 0);
    EXPECT_EQ(FakeRpc::Get().Calls(), allCalls_);
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST_F(SendRpcMessage, EmptyReplyIsReleasedAndLeavesNoBuffer) {
    AnswerWith(Reply({}));
    EXPECT_EQ(Send(), 0);
    EXPECT_EQ(FakeRpc::Get().Allocations(), 1U);
    ExpectNoReply();
}

TEST_F(SendRpcMessage, SizeWithoutABlockIsNoReply) {
    ServiceAnswer answer;
    answer.nullBlock = true;
    answer.statedSize = 24;
    AnswerWith(answer);
    EXPECT_EQ(Send(), 0);
    ExpectNoReply();
}

TEST_F(SendRpcMessage, NegativeSizeIsNoReplyAndItsBlockIsReleased) {
    ServiceAnswer answer = Reply({1, 2});
    answer.statedSize = -1;
    AnswerWith(answer);
    EXPECT_EQ(Send(), 0);
    EXPECT_EQ(FakeRpc::Get().Allocations(), 1U);
    ExpectNoReply();
}

TEST_F(SendRpcMessage, NegativeSizeWithoutABlockIsNoReply) {
    ServiceAnswer answer;
    answer.nullBlock = true;
    answer.statedSize = kInt32Min;
    AnswerWith(answer);
    EXPECT_EQ(Send(), 0);
    ExpectNoReply();
}

TEST(RpcClient, RequestsOfManyThreadsNeverRunAtTheSameTime) {
    constexpr int kThreads = 6;
    constexpr int kRequestsEach = 20;
    FakeRpc::Get().SetService([](const ServiceCall& call) {
        std::this_thread::yield();
        return Reply(Int32Message(call.msgType));
    });
    std::vector<std::thread> threads;
    std::vector<int> wrong(kThreads, 0);
    for (int i = 0; i != kThreads; ++i) {
        threads.emplace_back([i, &wrong] {
            for (int n = 0; n != kRequestsEach; ++n) {
                const bool ping = (i + n) % 2 == 0;
                const std::int32_t code =
                    ping ? Rpc().PingService(Type(1), n) : Rpc().NameChanged("n");
                wrong[static_cast<std::size_t>(i)] += code == (ping ? 19 : 4) ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<int>(kThreads, 0));
    EXPECT_EQ(FakeRpc::Get().MostCallsAtOnce(), 1U);

    const std::vector<std::string> calls = FakeRpc::Get().Calls();
    ASSERT_EQ(calls.size(), 5U * kThreads * kRequestsEach);
    for (std::size_t i = 0; i != calls.size(); ++i) {
        const char* const functions[] = {"RpcStringBindingComposeW(",
                                         "RpcBindingFromStringBindingW(", "ServiceMessage(",
                                         "RpcStringFreeW(", "RpcBindingFree("};
        EXPECT_THAT(calls[i], testing::StartsWith(functions[i % 5]));
    }
    EXPECT_EQ(FakeRpc::Get().LiveStrings(), 0U);
    EXPECT_EQ(FakeRpc::Get().LiveBindings(), 0U);
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
}

}  // namespace
