// Tests calls between processes, with the library's stubs and those of the IDL compiler in all four
// combinations of client and server, for both interfaces. Under Wine they speak NDR 2.0.

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "rpc_interface/allocation_count.h"
#include "rpc_interface/calls.h"
#include "rpc_interface/chosen_syntax.h"
#include "rpc_interface/peer_process.h"
#include "rpc_interface/server_routines.h"
#include "support/system_habits.h"

namespace PlenxTest {
namespace {

constexpr unsigned long kServerUnavailable = 1722;
constexpr unsigned long kUnknownInterface = 1717;

using Pairing = std::tuple<Interface, Stubs, Stubs>;  // client, server

std::string PairingName(const testing::TestParamInfo<Pairing>& info) {
    const auto stubs = [](Stubs kind) { return kind == Stubs::kOurs ? "Ours" : "Widl"; };
    return std::string(std::get<0>(info.param) == Interface::kService ? "Service" : "Manager") +
           stubs(std::get<1>(info.param)) + "Calls" + stubs(std::get<2>(info.param));
}

class Interoperation : public testing::TestWithParam<Pairing> {
protected:
    Interoperation() : peer_(std::get<2>(GetParam()), Served()) {}

    void SetUp() override {
        ASSERT_TRUE(peer_.Ready()) << "error " << peer_.StartError();
        blocksBefore_ = BlocksOut();
    }

    // Whatever a test does, no block may stay behind on either side.
    void TearDown() override {
        EXPECT_EQ(BlocksOut(), blocksBefore_);
        if (!peerEnded_) {
            EXPECT_TRUE(PeerHasNoBlocks());
        }
    }

    static Interface Served() { return std::get<0>(GetParam()); }

    Reply Call(long msgType, const Bytes& msg) {
        return CallOnce(std::get<1>(GetParam()), Served(), peer_.Endpoint(), msgType, msg);
    }

    void ExpectException(const Reply& reply, unsigned long code) {
        EXPECT_TRUE(reply.raised);
        EXPECT_EQ(reply.exceptionCode, code);
        EXPECT_EQ(reply.size, 0);
        EXPECT_FALSE(reply.hasBlock);
    }

    /// Where nobody knows what the system does with such a server, the server may be gone.
    void ExpectNothingButTheException(const Habit& habit, const Reply& reply) {
        if (IsOpen(habit)) {
            peerEnded_ = true;
            return;
        }
        ExpectException(reply, reply.exceptionCode);
        ExpectReply(Call(kEcho, Pattern(24)), Pattern(24));
    }

    void ExpectAccessViolation(const Reply& reply) {
        EXPECT_TRUE(Shows(Habits::kAccessViolationOfTheServer, reply.exceptionCode));
        ExpectNothingButTheException(Habits::kAccessViolationOfTheServer, reply);
    }

    void ExpectReply(const Reply& reply, const Bytes& bytes) {
        EXPECT_FALSE(reply.raised);
        EXPECT_EQ(reply.exceptionCode, 0u);
        EXPECT_EQ(reply.result, 0);
        EXPECT_EQ(reply.size, static_cast<long>(bytes.size()));
        EXPECT_TRUE(reply.hasBlock);
        EXPECT_TRUE(reply.bytes == bytes) << "the " << bytes.size() << " bytes differ";
    }

    // The server releases a reply after it has sent it, so this asks until it has done so.
    bool PeerHasNoBlocks() {
        for (int i = 0; i < 200; ++i) {
            if (NumberIn(Call(kBlocksOut, {}).bytes) == 0) {
                return true;
            }
            Sleep(10);
        }
        return false;
    }

    PeerProcess peer_;
    bool peerEnded_ = false;
    long blocksBefore_ = 0;
};

TEST_P(Interoperation, MessagesOfEverySize_ComeBackUnchanged) {
    for (const std::size_t size : {0, 1, 24, 4096, 1048576}) {
        SCOPED_TRACE(size);
        ExpectReply(Call(kEcho, Pattern(size)), Pattern(size));
    }
}

TEST_P(Interoperation, RepliesOfEverySize_Arrive) {
    for (const std::uint32_t size : {0, 1, 24, 4096, 1048576}) {
        SCOPED_TRACE(size);
        ExpectReply(Call(kReplyOfSize, Number(size)), Pattern(size));
    }
}

TEST_P(Interoperation, NullReply_IsSize0AndNoBlock) {
    const Reply reply = Call(kNullReply, Pattern(24));
    EXPECT_FALSE(reply.raised);
    EXPECT_EQ(reply.result, 0);
    EXPECT_EQ(reply.size, 0);
    EXPECT_FALSE(reply.hasBlock);
}

TEST_P(Interoperation, NonZeroResult_ArrivesWithoutABlock) {
    for (const std::uint32_t result : {1u, 22u, 0x1234u, 0x80004005u, 0xFFFFFFFFu}) {
        const Reply reply = Call(kResult, Number(result));
        EXPECT_FALSE(reply.raised);
        EXPECT_EQ(reply.result, static_cast<long>(result));
        EXPECT_EQ(reply.size, 0);
        EXPECT_FALSE(reply.hasBlock);
    }
}

TEST_P(Interoperation, NonZeroResultWithAReply_BringsTheBlockToRelease) {
    const Reply reply = Call(kResultWithReply, Number(22));
    EXPECT_FALSE(reply.raised);
    EXPECT_EQ(reply.result, 22);
    EXPECT_EQ(reply.size, 3);
    EXPECT_EQ(reply.bytes, Pattern(3));
}

TEST_P(Interoperation, SizeAndBlock_AreEmptyWhenTheServerRoutineBegins) {
    EXPECT_EQ(NumberIn(Call(kEntryState, {}).bytes), 1u);
}

// A system may refuse such a reply or pass it on, but it must not give a block to copy from.
TEST_P(Interoperation, SizeWithoutABlock_NeverBringsABlock) {
    for (const std::uint32_t size : {5u, 0xFFFFFFFBu}) {
        const Reply reply = Call(kSizeWithoutBlock, Number(size));
        EXPECT_FALSE(reply.hasBlock);
        EXPECT_EQ(reply.size, reply.raised ? 0 : static_cast<long>(size));
    }
}

TEST_P(Interoperation, ServerRaisesACode_CodeIsTheException) {
    constexpr unsigned long kCode = 0xE0001234;
    const Reply reply = Call(kRaise, Number(kCode));
    EXPECT_TRUE(Shows(Habits::kCodeThatTheServerRaises,
                      reply.exceptionCode == kCode ? "yes" : std::to_string(reply.exceptionCode)));
    ExpectNothingButTheException(Habits::kCodeThatTheServerRaises, reply);
}

TEST_P(Interoperation, ServerRaisesAnAccessViolation_ExceptionIsOfTheSystem) {
    ExpectAccessViolation(Call(kRaise, Number(0xC0000005)));
}

TEST_P(Interoperation, ServerRoutineFaults_ExceptionIsOfTheSystem) {
    ExpectAccessViolation(Call(kFault, Pattern(24)));
}

TEST_P(Interoperation, ServerEndsDuringTheCall_ExceptionSaysSo) {
    peerEnded_ = true;
    const Reply reply = Call(kEndProcess, Pattern(24));
    EXPECT_TRUE(Shows(Habits::kServerThatEnds, reply.exceptionCode));
    ExpectException(reply, reply.exceptionCode);
    EXPECT_TRUE(peer_.WaitForExit(5000));
    ExpectException(Call(kEcho, Pattern(24)), kServerUnavailable);
}

TEST_P(Interoperation, NobodyServesTheEndpoint_ExceptionIs1722) {
    ExpectException(CallOnce(std::get<1>(GetParam()), Served(), UniqueName(L"plenx-nobody"), kEcho,
                             Pattern(24)),
                    kServerUnavailable);
}

TEST_P(Interoperation, ServerOfTheOtherInterface_ExceptionIs1717) {
    const Interface other =
        Served() == Interface::kService ? Interface::kManager : Interface::kService;
    ExpectException(CallOnce(std::get<1>(GetParam()), other, peer_.Endpoint(), kEcho, Pattern(24)),
                    kUnknownInterface);
}

TEST_P(Interoperation, CallsOfManyThreads_AreAnsweredToTheirOwnCallers) {
    constexpr int kThreads = 8;
    constexpr int kCalls = 25;
    const Binding binding(std::get<1>(GetParam()), Served(), peer_.Endpoint());
    std::vector<int> right(kThreads, 0);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&binding, &right, thread] {
            for (int call = 0; call < kCalls; ++call) {
                const Bytes msg = Number(static_cast<std::uint32_t>(thread * kCalls + call));
                right[static_cast<std::size_t>(thread)] += binding.Call(kEcho, msg).bytes == msg;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, std::vector<int>(kThreads, kCalls));
}

// The service calls the library's interface before it has answered, as services may.
TEST_P(Interoperation, CallBackDuringACall_IsServed) {
    std::wstring endpoint = UniqueName(L"plenx-manager");
    std::wstring protocol = L"ncalrpc";
    const RPC_IF_HANDLE manager = ServerInterface(std::get<1>(GetParam()), Interface::kManager);
    ASSERT_EQ(RpcServerUseProtseqEpW(reinterpret_cast<RPC_WSTR>(protocol.data()), 10,
                                     reinterpret_cast<RPC_WSTR>(endpoint.data()), nullptr),
              RPC_S_OK);
    ASSERT_EQ(RpcServerRegisterIfEx(manager, nullptr, nullptr, RPC_IF_AUTOLISTEN, 10, nullptr),
              RPC_S_OK);
    const long blocksEver = BlocksEver();
    const Bytes name(endpoint.begin(), endpoint.end());
    ExpectReply(Call(kCallManagerBack, name), name);
    EXPECT_EQ(BlocksEver(), blocksEver + 2);  // the manager's reply and the service's
    EXPECT_EQ(RpcServerUnregisterIf(manager, nullptr, 1), RPC_S_OK);
}

INSTANTIATE_TEST_SUITE_P(Pairings, Interoperation,
                         testing::Combine(testing::Values(Interface::kService, Interface::kManager),
                                          testing::Values(Stubs::kOurs, Stubs::kWidl),
                                          testing::Values(Stubs::kOurs, Stubs::kWidl)),
                         PairingName);

class TransferSyntax : public Interoperation {};

// The clients that Wine's IDL compiler makes know NDR 2.0 alone.
TEST_P(TransferSyntax, OfACall_IsOneThatBothEndsOffer) {
    const auto syntax = static_cast<Syntax>(NumberIn(Call(kSyntax, {}).bytes));
    EXPECT_NE(syntax, kUnknownSyntax);
    if (std::get<1>(GetParam()) == Stubs::kOurs) {
        EXPECT_TRUE(Shows(Habits::kSyntaxOfTwoThatOfferBoth, NameOf(syntax)));
    } else {
        RecordProperty("transfer_syntax", NameOf(syntax));
        EXPECT_EQ(syntax, kNdr20);
    }
}

INSTANTIATE_TEST_SUITE_P(Pairings, TransferSyntax,
                         testing::Combine(testing::Values(Interface::kService, Interface::kManager),
                                          testing::Values(Stubs::kOurs, Stubs::kWidl),
                                          testing::Values(Stubs::kOurs)),
                         PairingName);

}  // namespace
}  // namespace PlenxTest
