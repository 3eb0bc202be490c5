// Tests what happens when there is no memory.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "companion/recorded_log.h"
#include "rpc/failing_allocations.h"
#include "rpc/fake_rpc.h"
#include "rpc/manager_calls.h"
#include "rpc/rpc_message_reader.h"
#include "rpc/rpc_message_writer.h"

namespace {

using DistributedFs::ConfigType;
using DistributedFs::RpcManager;
using DistributedFs::ServiceType;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

// A message with this text needs an allocation.
const std::string kLong(DistributedFs::MessageBlock::kSmall, 'l');

// One array allocation fails after the given number that succeed.
class FailingArray {
public:
    explicit FailingArray(int after) { goodArrays = after; }
    ~FailingArray() { goodArrays = kEvery; }
};

std::vector<std::string> Texts() {
    return RecordedLog::Get().Texts();
}

TEST(Allocation, WriterWithoutABufferFailsEveryWrite) {
    const std::uint8_t array[] = {1};
    const FailingArray failing(0);
    DistributedFs::RpcMessageWriter writer(DistributedFs::MessageBlock::kSmall + 1, 1);
    EXPECT_THAT(Texts(), IsEmpty());
    EXPECT_EQ(writer.Buffer(), nullptr);
    EXPECT_EQ(writer.Size(), 0);
    EXPECT_EQ(writer.WriteInt32(0, 1), 21);
    EXPECT_EQ(writer.WriteInt8Array(0, array, 1), 21);
    EXPECT_EQ(writer.WriteInt8Array(0, nullptr, 0), 21);
    EXPECT_EQ(Texts().back(),
              "L4 [PLENXSDK] index:0 argCursor_:0 msgCursor_:0 rpcMsgSize_:0"
              "(DistributedFs::RpcMessageWriter::WriteInt8Array)");
}

TEST(Allocation, ReaderWithoutABufferFailsEveryRead) {
    const Bytes bytes = MessageOf({Int32Arg(5), StringArg(kLong)});
    const FailingArray failing(0);
    DistributedFs::RpcMessageReader reader(bytes.data(), static_cast<std::int32_t>(bytes.size()));
    EXPECT_THAT(Texts(), IsEmpty());
    std::int32_t number = 0;
    std::string text;
    std::uint8_t stale = 0;
    std::uint8_t* block = &stale;
    EXPECT_EQ(reader.ReadInt32(0, &number), 21);
    EXPECT_EQ(reader.ReadString(0, &text), 21);
    EXPECT_EQ(reader.ReadInt8Array(0, &block, 3), 21);
    EXPECT_EQ(block, nullptr);
    const std::string line =
        "L4 [PLENXSDK] Invalid Args Error index:0 argCursor_:0 msgCursor_:0 "
        "rpcMsgSize_:0(DistributedFs::RpcMessageReader::";
    EXPECT_THAT(Texts(),
                ElementsAre(line + "ReadInt32)", line + "ReadString)", line + "ReadInt8Array)"));
}

TEST(Allocation, ArrayWithoutABlockFailsAndCanBeReadLater) {
    const Bytes bytes = MessageOf({ArrayArg({1, 2, 3})});
    DistributedFs::RpcMessageReader reader(bytes.data(), static_cast<std::int32_t>(bytes.size()));
    std::uint8_t stale = 0;
    std::uint8_t* block = &stale;
    {
        const FailingArray failing(0);
        EXPECT_EQ(reader.ReadInt8Array(0, &block, 3), 21);
    }
    EXPECT_EQ(block, nullptr);
    EXPECT_EQ(Texts().size(), 1U);
    EXPECT_EQ(reader.ReadInt8Array(0, &block, 3), 0);
    const std::unique_ptr<std::uint8_t[]> owner(block);
    EXPECT_EQ(Bytes(block, block + 3), (Bytes{1, 2, 3}));
}

// The message of this request cannot be made, because its first write fails.

struct Request {
    const char* function;
    const char* kind;
    std::function<std::int32_t(RpcManager&)> send;
};

TEST(Allocation, RequestWithoutAMessageReturns19AndSendsNothing) {
    const auto service = static_cast<ServiceType>(1);
    const auto key = static_cast<ConfigType>(1);
    const Request requests[] = {
        {"CreateGroup", "string",
         [=](RpcManager& rpc) { return rpc.CreateGroup(service, kLong, "a"); }},
        {"DeleteGroup", "string", [=](RpcManager& rpc) { return rpc.DeleteGroup(service, kLong); }},
        {"DeviceOnline", "string",
         [=](RpcManager& rpc) { return rpc.DeviceOnline(service, kLong, "d", 0, nullptr, 0); }},
        {"DeviceOffline", "string",
         [=](RpcManager& rpc) { return rpc.DeviceOffline(service, kLong, "d", 0, 0); }},
        {"NameChanged", "string", [](RpcManager& rpc) { return rpc.NameChanged(kLong); }},
        {"RecvRemoteMessage", "int32",
         [=](RpcManager& rpc) { return rpc.RecvRemoteMessage(service, 1, 2, kLong); }},
        {"SetStringConfig", "int32",
         [=](RpcManager& rpc) { return rpc.SetStringConfig(service, key, kLong); }},
    };
    for (const Request& request : requests) {
        const FailingArray failing(0);
        EXPECT_EQ(request.send(RpcManager::GetInstance()), 19);
        EXPECT_EQ(Texts().back(),
                  std::string("L4 [PLENXSDK] write ") + request.kind +
                      " error index:1(DistributedFs::RpcManager::" + request.function + ")");
    }
    EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
}

TEST(Allocation, SmallRequestNeedsMemoryForItsReplyOnly) {
    const FailingArray failing(0);
    EXPECT_EQ(RpcManager::GetInstance().PingService(static_cast<ServiceType>(1), 5), 22);
    EXPECT_EQ(FakeRpc::Get().ServiceCalls().size(), 1U);
    EXPECT_THAT(Texts(), ElementsAre("L3 [PLENXSDK] rpc manager ping service No:5"
                                     "(DistributedFs::RpcManager::PingService)",
                                     "L4 [PLENXSDK] send rpc message error ret:22"
                                     "(DistributedFs::RpcManager::PingService)"));
}

TEST(Allocation, ReplyThatCannotBeCopiedReturns22AndEverythingIsReleased) {
    const Bytes bytes = Int32Message(1);
    DistributedFs::RpcMessage message;
    message.msgSize = 24;
    message.msgBuffer = bytes.data();
    const FailingArray failing(0);
    EXPECT_EQ(RpcManager::GetInstance().SendRpcMessage(static_cast<ServiceType>(1), &message), 22);
    EXPECT_EQ(message.respSize, 0);
    EXPECT_EQ(message.respBuffer, nullptr);
    EXPECT_THAT(Texts(), IsEmpty());
    EXPECT_EQ(FakeRpc::Get().Calls().size(), 5U);
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
    EXPECT_EQ(FakeRpc::Get().LiveStrings(), 0U);
    EXPECT_EQ(FakeRpc::Get().LiveBindings(), 0U);
}

// Each allocation of the replies to the services fails in turn.

struct Round {
    std::int32_t result;
    std::string lastLine;  // the end of that line
};

void ExpectRounds(std::int32_t id, const Bytes& message, const std::vector<Round>& rounds) {
    for (std::size_t i = 0; i != rounds.size(); ++i) {
        RecordedLog::Get().Clear();
        const FailingArray failing(static_cast<int>(i));
        const ManagerReply reply = CallManager(id, message);
        EXPECT_EQ(reply.result, rounds[i].result) << "round " << i;
        EXPECT_EQ(reply.hasBlock, rounds[i].result == 0);
        EXPECT_EQ(reply.size, rounds[i].result == 0 ? 24 : 0);
        if (!rounds[i].lastLine.empty()) {
            EXPECT_THAT(Texts(), testing::Not(IsEmpty()));
            EXPECT_THAT(Texts().back(), EndsWith(rounds[i].lastLine));
        }
    }
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
}

TEST(Allocation, DefaultReply) {
    ExpectRounds(100, {}, {{22, ""}, {0, ""}});
}

TEST(Allocation, ReplyOfALinkTypeQuery) {
    ExpectRounds(13, MessageOf({StringArg("g_1"), Int32Arg(1)}), {{22, ""}, {0, ""}});
    ExpectRounds(13, MessageOf({StringArg(kLong + "_1"), Int32Arg(1)}),
                 {{20,
                   "L4 [PLENXSDK] read grpName error"
                   "(DistributedFs::RpcManager::LinkTypeQuery)"},
                  {22, ""},
                  {0, ""}});
}

TEST(Allocation, PathOfAnExplorerUpdate) {
    ExpectRounds(17, MessageOf({Int32Arg(9000), ArrayArg(Bytes(9000))}),
                 {{20,
                   "L4 [PLENXSDK] read msgLen error"
                   "(DistributedFs::RpcManager::UpdateWindowsExplore)"},
                  {20,
                   "L4 [PLENXSDK] read update path error"
                   "(DistributedFs::RpcManager::UpdateWindowsExplore)"},
                  {22, ""},
                  {0, ""}});
}

TEST(Allocation, StringThatIsTooLargeReturns22) {
    const Bytes name = MessageOf({StringArg(std::string(6000, 'd'))});
    const Bytes local = MessageOf({Int32Arg(1), Int32Arg(2), StringArg(std::string(6000, 'd'))});
    const auto call = [](std::int32_t id, const Bytes& message) {
        tooLarge = 5000;
        const ManagerReply reply = CallManager(id, message);
        tooLarge = SIZE_MAX;
        EXPECT_FALSE(reply.hasBlock);
        EXPECT_EQ(reply.size, 0);
        return reply.result;
    };
    EXPECT_EQ(call(16, name), 22);
    EXPECT_EQ(call(10, name), 22);
    EXPECT_EQ(call(9, local), 22);
}

TEST(Allocation, StringThatIsTooLargeLeavesId18ItsDefaultReply) {
    const Bytes message = MessageOf({StringArg(std::string(6000, 'E')), Int32Arg(2)});
    tooLarge = 5000;
    const ManagerReply reply = CallManager(18, message);
    tooLarge = SIZE_MAX;
    EXPECT_EQ(reply.result, 0);
    EXPECT_EQ(reply.bytes, Int32Message(0));
}

TEST(Allocation, PathThatIsTooLargeReturns22) {
    const Bytes path(6000, 1);
    const Bytes message = MessageOf({Int32Arg(6000), ArrayArg(path)});
    tooLarge = 5000;
    const ManagerReply reply = CallManager(17, message);
    tooLarge = SIZE_MAX;
    EXPECT_EQ(reply.result, 22);
    EXPECT_FALSE(reply.hasBlock);
}

}  // namespace
