// Tests requests and replies whose arguments cannot be written into a message. A message has the
// size that its arguments need, and a small one needs no memory, so hardly any write can really
// fail. Here the linker sends the writer's callers to this program first, which refuses on demand.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "companion/recorded_log.h"
#include "rpc/fake_rpc.h"
#include "rpc/manager_calls.h"
#include "rpc/rpc_message_writer.h"

#define WRITER(name) "_ZN13DistributedFs16RpcMessageWriter" name
#define WRITE_INT32 WRITER("10WriteInt32Eji")
#define WRITE_INT64 WRITER("10WriteInt64Ejl")
#define WRITE_STRING WRITER("11WriteStringEjNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE")
#define WRITE_INT8_ARRAY WRITER("14WriteInt8ArrayEjPKhi")

namespace {

using DistributedFs::ConfigType;
using DistributedFs::RpcManager;
using DistributedFs::RpcMessageWriter;
using DistributedFs::ServiceType;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t kRefused = 21;

unsigned writes = 0;    // how many there have been
unsigned firstBad = 0;  // 0 means that none fails
bool onlyOneBad = false;

bool Refuses() {
    ++writes;
    return firstBad != 0 && (onlyOneBad ? writes == firstBad : writes >= firstBad);
}

// Makes the n-th write from now on fail, or that one and all later ones.
class FailingWrite {
public:
    explicit FailingWrite(unsigned n, bool onlyThis = true) {
        writes = 0;
        firstBad = n;
        onlyOneBad = onlyThis;
    }
    ~FailingWrite() { firstBad = 0; }
    FailingWrite(const FailingWrite&) = delete;
    FailingWrite& operator=(const FailingWrite&) = delete;
};

}  // namespace

// NOLINTBEGIN(misc-use-internal-linkage): the linker joins them with the library by these names.
std::int32_t RealInt32(RpcMessageWriter*, std::uint32_t, std::int32_t) asm("__real_" WRITE_INT32);
std::int32_t RealInt64(RpcMessageWriter*, std::uint32_t, std::int64_t) asm("__real_" WRITE_INT64);
std::int32_t RealString(RpcMessageWriter*, std::uint32_t, std::string*) asm("__real_" WRITE_STRING);
std::int32_t RealInt8Array(RpcMessageWriter*, std::uint32_t, const std::uint8_t*,
                           std::int32_t) asm("__real_" WRITE_INT8_ARRAY);

std::int32_t WrappedInt32(RpcMessageWriter*, std::uint32_t,
                          std::int32_t) asm("__wrap_" WRITE_INT32);
std::int32_t WrappedInt64(RpcMessageWriter*, std::uint32_t,
                          std::int64_t) asm("__wrap_" WRITE_INT64);
std::int32_t WrappedString(RpcMessageWriter*, std::uint32_t,
                           std::string*) asm("__wrap_" WRITE_STRING);
std::int32_t WrappedInt8Array(RpcMessageWriter*, std::uint32_t, const std::uint8_t*,
                              std::int32_t) asm("__wrap_" WRITE_INT8_ARRAY);
// NOLINTEND(misc-use-internal-linkage)

std::int32_t WrappedInt32(RpcMessageWriter* writer, std::uint32_t index, std::int32_t value) {
    return Refuses() ? kRefused : RealInt32(writer, index, value);
}

std::int32_t WrappedInt64(RpcMessageWriter* writer, std::uint32_t index, std::int64_t value) {
    return Refuses() ? kRefused : RealInt64(writer, index, value);
}

// A string by value is passed as the address where it lies.
std::int32_t WrappedString(RpcMessageWriter* writer, std::uint32_t index, std::string* value) {
    return Refuses() ? kRefused : RealString(writer, index, value);
}

std::int32_t WrappedInt8Array(RpcMessageWriter* writer, std::uint32_t index,
                              const std::uint8_t* bytes, std::int32_t length) {
    return Refuses() ? kRefused : RealInt8Array(writer, index, bytes, length);
}

namespace {

std::string Line(const std::string& text, const std::string& function) {
    return "L4 " + text + "(DistributedFs::RpcManager::" + function + ")";
}

struct Request {
    std::string function;
    std::vector<std::string> failures;  // those of its arguments
    std::function<std::int32_t(RpcManager&)> send;
};

void PrintTo(const Request& request, std::ostream* out) {
    *out << request.function;
}

constexpr auto kService = static_cast<ServiceType>(1);
constexpr auto kKey = static_cast<ConfigType>(1);
const std::string kString = "[PLENXSDK] write string error index:";
const std::string kInt32 = "[PLENXSDK] write int32 error index:";

const Request kRequests[] = {
    {"CreateGroup",
     {kString, kInt32, kString},
     [](RpcManager& rpc) { return rpc.CreateGroup(kService, "g", "a"); }},
    {"DeleteGroup", {kString}, [](RpcManager& rpc) { return rpc.DeleteGroup(kService, "g"); }},
    {"DeviceOnline",
     {kString, kString, kInt32, kInt32, "[PLENXSDK] write int8array error index:"},
     [](RpcManager& rpc) { return rpc.DeviceOnline(kService, "g", "d", 0, nullptr, 0); }},
    {"DeviceOffline",
     {kString, kString, kInt32, kInt32},
     [](RpcManager& rpc) { return rpc.DeviceOffline(kService, "g", "d", 0, 0); }},
    {"NameChanged", {kString}, [](RpcManager& rpc) { return rpc.NameChanged("n"); }},
    {"RecvRemoteMessage",
     {kInt32, kInt32, kString},
     [](RpcManager& rpc) { return rpc.RecvRemoteMessage(kService, 1, 2, "m"); }},
    {"SetStringConfig",
     {kInt32, kString},
     [](RpcManager& rpc) { return rpc.SetStringConfig(kService, kKey, "v"); }},
    {"SetInt64Config",
     {kInt32, "[PLENXSDK] write int64 Error index:"},
     [](RpcManager& rpc) { return rpc.SetInt64Config(kService, kKey, 7); }},
    {"PingService",
     {"[PLENXSDK] write int64 error index:"},
     [](RpcManager& rpc) { return rpc.PingService(kService, 7); }},
};

class RequestWriteFailure : public testing::TestWithParam<Request> {};

TEST_P(RequestWriteFailure, Returns19WithTheLineOfTheArgumentAndSendsNothing) {
    const Request& request = GetParam();
    for (unsigned n = 1; n <= request.failures.size(); ++n) {
        RecordedLog::Get().Clear();
        const FailingWrite failing(n);
        EXPECT_EQ(request.send(RpcManager::GetInstance()), 19);
        ASSERT_EQ(RecordedLog::Get().Texts().size(), 2U);
        EXPECT_EQ(RecordedLog::Get().Texts()[1],
                  Line(request.failures[n - 1] + std::to_string(n), request.function));
        EXPECT_THAT(FakeRpc::Get().Calls(), IsEmpty());
    }
    const FailingWrite none(static_cast<unsigned>(request.failures.size()) + 1);
    EXPECT_EQ(request.send(RpcManager::GetInstance()), 0) << "the list lacks an argument";
}

INSTANTIATE_TEST_SUITE_P(All, RequestWriteFailure, testing::ValuesIn(kRequests));

void ExpectNoReply(const ManagerReply& reply) {
    EXPECT_EQ(reply.result, 19);
    EXPECT_FALSE(reply.hasBlock);
    EXPECT_EQ(reply.size, 0);
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
}

const std::string kDefaultReplyLine =
    Line("[PLENXSDK] write int32 error index:1", "RpcDefaultResponse");

TEST(ReplyWriteFailure, OfTheDefaultReplyIs19ForEveryIdThatHasIt) {
    const Bytes group = MessageOf({StringArg("g_1"), Int32Arg(1), Int32Arg(1)});
    const Bytes local = MessageOf({Int32Arg(1), Int32Arg(1), StringArg("m")});
    const Bytes path = MessageOf({Int32Arg(4), ArrayArg({'E', 0, 0, 0})});
    const std::vector<std::pair<std::int32_t, Bytes>> messages = {
        {9, local},  {10, group}, {11, group}, {12, group}, {14, group},
        {15, local}, {16, group}, {17, path},  {100, {}},
    };
    for (const auto& [id, message] : messages) {
        SCOPED_TRACE(id);
        RecordedLog::Get().Clear();
        const FailingWrite failing(1);
        ExpectNoReply(CallManager(id, message));
        EXPECT_EQ(RecordedLog::Get().Texts().back(), kDefaultReplyLine);
    }
}

TEST(ReplyWriteFailure, OfALinkTypeQueryIs19WithALineOfItsOwn) {
    const FailingWrite failing(1);
    ExpectNoReply(CallManager(13, MessageOf({StringArg("g_1"), Int32Arg(1)})));
    EXPECT_EQ(RecordedLog::Get().Texts().back(),
              Line("[RPCMANAGER] query link status write string error index:1", "LinkTypeQuery"));
}

// The reply is written twice, and the second one counts.
TEST(ReplyWriteFailure, OfTheFirstReplyOfId18IsNeverSeenByTheService) {
    const Bytes message = MessageOf({StringArg("e:"), Int32Arg(2)});
    {
        const FailingWrite failing(1);
        const ManagerReply reply = CallManager(18, message);
        EXPECT_EQ(reply.result, 0);
        EXPECT_EQ(reply.bytes, Int32Message(0));
        EXPECT_THAT(RecordedLog::Get().Texts(), ElementsAre(kDefaultReplyLine));
    }
    RecordedLog::Get().Clear();
    const FailingWrite both(1, false);
    ExpectNoReply(CallManager(18, message));
    EXPECT_THAT(RecordedLog::Get().Texts(), ElementsAre(kDefaultReplyLine, kDefaultReplyLine));
}

}  // namespace
