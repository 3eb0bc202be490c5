// Each call of the RPC runtime fails once alone, and once together with all later ones. Each
// allocation fails once.

#include <functional>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <vector>

#include "rpc/manager_calls.h"
#include "rpc_fault_tables.h"

using DistributedFs::ConfigType;
using DistributedFs::RpcManager;
using DistributedFs::ServiceType;
using testing::AnyOf;
using testing::Contains;

namespace {

using namespace rpc_faults;

constexpr auto kPc = static_cast<ServiceType>(1);
constexpr auto kKey = static_cast<ConfigType>(1);

RpcManager& Rpc() {
    return RpcManager::GetInstance();
}

FaultLines LinesAndHeld() {
    return RecordedLog::Get().Texts() + HeldNow();
}

// The tests below make requests.

struct Case {
    Request request;
    std::function<std::int32_t()> send;
};

const std::uint8_t kData[] = {1, 2, 3};

const std::vector<Case>& EveryRequest() {
    static const std::vector<Case> cases = {
        {{"CreateGroup", "rpc manager create group svcType:1"},
         [] { return Rpc().CreateGroup(kPc, "g_1", "a"); }},
        {{"DeleteGroup", "delete group svcType:1"}, [] { return Rpc().DeleteGroup(kPc, "g_1"); }},
        {{"DeviceOnline", "rpc manager device online svcType:1"},
         [] { return Rpc().DeviceOnline(kPc, "g_1", "d", 0, kData, 3); }},
        {{"DeviceOffline", "rpc manager device offline svcType:1"},
         [] { return Rpc().DeviceOffline(kPc, "g_1", "d", 1, 2); }},
        {{"NameChanged", "rpc manager name changed svcType:1"},
         [] { return Rpc().NameChanged("n"); }},
        {{"RecvRemoteMessage", "rpc manager receive remote message svcType:1"},
         [] { return Rpc().RecvRemoteMessage(kPc, 1, 2, "m"); }},
        {{"SetStringConfig", "rpc manager set string config svcType:1 cfgType:1 cfgValue:v"},
         [] { return Rpc().SetStringConfig(kPc, kKey, "v"); }},
        {{"SetInt64Config", "rpc manager set int64 config svcType:1 cfgType:1 cfgValue:5"},
         [] { return Rpc().SetInt64Config(kPc, kKey, 5); }},
        {{"PingService", "rpc manager ping service No:7"},
         [] { return Rpc().PingService(kPc, 7); }},
    };
    return cases;
}

TEST(RpcFaultTable, EveryRequestToAService) {
    for (const Case& each : EveryRequest()) {
        SCOPED_TRACE(each.request.function);
        CheckFaults(
            Whole(each.request), [] { return std::make_unique<FreshRuntime>(); },
            [&](const auto&) { return each.send(); }, LinesAndHeld);
    }
}

// The tests below start and run the server.

TEST(RpcFaultTable, ServingTheEndpoint) {
    FakeRpc::Get().SetListenReturns(0);
    const auto fails = [](const std::string& text) {
        return [=](const Fault& fault) {
            return Outcome{0, FaultLines{RpcError(text + fault.Error(), "Start")} + Holding({})};
        };
    };
    CheckFaults(
        {{0, Holding({})},
         {{"RpcServerUseProtseqEpW", fails("rpc use protseq error ")},
          {"RpcServerRegisterIf", fails("rpc server register error ")},
          {"RpcServerListen", fails("rpc start server listen error ")}}},
        [] { return std::make_unique<FreshRuntime>(); },
        [](const auto&) {
            Rpc().Start();
            return 0;
        },
        LinesAndHeld);
}

struct Notification {
    std::int32_t id;
    Bytes message;
};

const std::vector<Notification>& EveryNotification() {
    static const std::vector<Notification> all = {
        {9, MessageOf({Int32Arg(1), Int32Arg(2), StringArg("m")})},
        {10, MessageOf({StringArg("g_1")})},
        {11, MessageOf({StringArg("g_1")})},
        {12, MessageOf({StringArg("g_1")})},
        {13, MessageOf({StringArg("g_1"), Int32Arg(1)})},
        {14, MessageOf({StringArg("g_1"), Int32Arg(1), Int32Arg(1)})},
        {15, MessageOf({Int32Arg(1)})},
        {16, MessageOf({StringArg("disk")})},
        {17, MessageOf({Int32Arg(4), ArrayArg({1, 0, 0, 0})})},
        {18, MessageOf({StringArg("E:"), Int32Arg(2)})},
        {100, {}},
    };
    return all;
}

// The reply cannot be handed to the runtime, but everything else has been done.
TEST(RpcFaultTable, EveryNotificationOfAService) {
    for (const Notification& each : EveryNotification()) {
        SCOPED_TRACE(each.id);
        FaultLines lines;
        CallManager(each.id, each.message);
        RecordedLog::Get().Clear();
        CallManager(each.id, each.message);
        lines = LinesAndHeld();
        CheckFaults(
            {{0, lines},
             {{"MIDL_user_allocate", [=](const Fault&) { return Outcome{22, lines}; }}}},
            [] { return std::make_unique<FreshRuntime>(); },
            [&](const auto&) {
                const ManagerReply reply = CallManager(each.id, each.message);
                EXPECT_EQ(reply.hasBlock, reply.result == 0);
                EXPECT_EQ(reply.size, reply.result == 0 ? 24 : 0);
                return reply.result;
            },
            LinesAndHeld);
    }
}

// Every allocation of an operation fails in turn. Nothing stays allocated or held, and the same
// operation works afterwards.

/// Runs the operation with its n-th allocation failing, until it has no such allocation. Returns
/// how many allocations could be made to fail.
unsigned WithEveryAllocationFailing(const std::function<bool(unsigned n)>& operation) {
    constexpr unsigned kEndless = 5000;
    for (unsigned n = 1; n != kEndless; ++n) {
        SCOPED_TRACE(testing::Message() << "allocation " << n);
        bool hit = false;
        std::int64_t before = 0;
        for (int round = 0; round != 2;
             ++round) {  // the second round has no allocation that is made once per process
            FakeRpc::Get().Reset();
            FakePlatform::Get().Reset();
            RecordedLog::Get().Clear();
            before = LiveAllocations();
            hit = operation(n);
            EXPECT_EQ(FakeRpc::Get().LiveStrings(), 0U);
            EXPECT_EQ(FakeRpc::Get().LiveBindings(), 0U);
            EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
            FakeRpc::Get().Reset();
            FakePlatform::Get().Reset();
            RecordedLog::Get().Clear();
        }
        EXPECT_EQ(LiveAllocations(), before);
        if (!hit) {
            return n - 1;
        }
    }
    ADD_FAILURE() << "the operation does not end";
    return kEndless;
}

// A request says that it has failed, either by its code or by the exception that the engine's job
// keeps. A request that could only not write its line succeeds.
TEST(RpcAllocations, EveryRequestToAService) {
    for (const Case& each : EveryRequest()) {
        SCOPED_TRACE(each.request.function);
        std::set<std::int32_t> codes;
        const unsigned allocations = WithEveryAllocationFailing([&](unsigned n) {
            const FailingAllocation failing(n);
            std::int32_t code = 0;
            try {
                code = each.send();
            } catch (const std::bad_alloc&) {
                return true;
            }
            const bool hit = failing.End();
            EXPECT_THAT(code, AnyOf(0, 22));
            EXPECT_EQ(FakeRpc::Get().ServiceCalls().size(), 1U);
            codes.insert(code);
            return hit;
        });
        EXPECT_GE(allocations, 1U);
        EXPECT_THAT(codes, Contains(22));  // its reply
        EXPECT_EQ(each.send(), 0);
    }
}

// A routine that a service calls answers with one of its codes, and lets no exception out.
TEST(RpcAllocations, EveryNotificationOfAService) {
    for (const Notification& each : EveryNotification()) {
        SCOPED_TRACE(each.id);
        std::set<std::int32_t> codes;
        const unsigned allocations = WithEveryAllocationFailing([&](unsigned n) {
            std::uint8_t stale = 0;
            std::int32_t size = 99;
            std::uint8_t* block = &stale;
            const FailingAllocation failing(n);
            const std::int32_t code =
                Rpc().HandleServiceMessage(each.id, static_cast<std::int32_t>(each.message.size()),
                                           each.message.data(), &size, &block);
            const bool hit = failing.End();
            EXPECT_THAT(code, AnyOf(0, 20, 22));
            EXPECT_EQ(size, code == 0 ? 24 : 0);
            EXPECT_EQ(block != nullptr, code == 0);
            if (block != nullptr) {
                FakeRpc::Get().Free(block);
            }
            codes.insert(code);
            return hit;
        });
        EXPECT_GE(allocations, 1U);
        EXPECT_THAT(codes, Contains(22));  // its block
        EXPECT_EQ(CallManager(each.id, each.message).result, 0);
    }
}

}  // namespace
