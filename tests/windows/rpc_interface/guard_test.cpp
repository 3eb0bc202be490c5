// Tests the guard around a call: an exception of the runtime becomes a code, a fault of our own
// does not.

#include <gtest/gtest.h>

#include <thread>

#include "rpc_interface/allocation_count.h"
#include "rpc_interface/calls.h"
#include "rpc_interface/faulting_client.h"
#include "rpc_interface/peer_process.h"
#include "rpc_interface/server_routines.h"
#include "support/system_habits.h"

namespace PlenxTest {
namespace {

class Guard : public testing::TestWithParam<Interface> {
protected:
    void SetUp() override { ASSERT_TRUE(peer_.Ready()) << "error " << peer_.StartError(); }

    Reply CallWith(std::function<void*()> allocate) {
        const Binding binding(Stubs::kOurs, GetParam(), peer_.Endpoint());
        const AllocationReplacement replacement(std::move(allocate));
        return binding.Call(kEcho, Pattern(24));
    }

    void ExpectRaisedCode(unsigned long code) {
        const Reply reply = CallWith([code]() -> void* {
            RaiseException(code, 0, 0, nullptr);
            return nullptr;
        });
        EXPECT_TRUE(reply.raised);
        EXPECT_EQ(reply.exceptionCode, code);
        EXPECT_EQ(reply.result, 0);
        EXPECT_EQ(reply.size, 0);
        EXPECT_FALSE(reply.hasBlock);
    }

    /// The client's last filter must see the fault.
    testing::AssertionResult EndsTheProcess(const std::wstring& fault, DWORD expected) {
        ChildProcess client(
            ChildProcess::Self(L"--faulting-client " + fault + L" " + peer_.Endpoint()));
        const DWORD code = client.WaitForExit(30000).value_or(0);
        return Shows(Habits::kFaultInACall,
                     code == expected ? "ends the process" : "exit code " + std::to_string(code));
    }

    PeerProcess peer_{Stubs::kOurs, GetParam()};
};

TEST_P(Guard, RaisedRpcStatusIsTheCode) {
    ExpectRaisedCode(1722);
}

TEST_P(Guard, RaisedCodeOfItsOwnIsTheCode) {
    ExpectRaisedCode(0xE0001234);
}

TEST_P(Guard, RaisedAccessViolationIsTheCode) {
    ExpectRaisedCode(0xC0000005);
}

TEST_P(Guard, RaisedSmallNumberIsTheCode) {
    ExpectRaisedCode(1);
}

// Its record is like that of a raised one: the guard cannot tell them apart.
TEST_P(Guard, HardwareFaultWithoutParametersIsTheCode) {
    const Reply reply = CallWith([]() -> void* {
        volatile int zero = 0;
        zero = 7 / zero;  // 1 / zero would need no division
        return nullptr;
    });
    EXPECT_TRUE(reply.raised);
    EXPECT_EQ(reply.exceptionCode, EXCEPTION_INT_DIVIDE_BY_ZERO);
    EXPECT_FALSE(reply.hasBlock);
}

TEST_P(Guard, FailedAllocationOfTheReplyGives14) {
    const Reply reply = CallWith([]() -> void* { return nullptr; });
    EXPECT_TRUE(reply.raised);
    EXPECT_EQ(reply.exceptionCode, 14u);
    EXPECT_EQ(reply.size, 0);
    EXPECT_FALSE(reply.hasBlock);
}

// The call has a thread of its own, because afterwards Wine 8 cannot bring an exception of the same
// thread to its handler.
TEST_P(Guard, NullHandleLeavesNothingInTheReply) {
    Reply reply;
    std::thread([&reply] {
        reply = CallWithoutABinding(Stubs::kOurs, GetParam(), kEcho, Pattern(24));
    }).join();
    EXPECT_TRUE(Shows(Habits::kCallWithoutABinding, reply.exceptionCode));
    EXPECT_EQ(reply.raised, reply.exceptionCode != 0);
    EXPECT_EQ(reply.result, 0);
    EXPECT_EQ(reply.size, 0);
    EXPECT_FALSE(reply.hasBlock);
}

TEST_P(Guard, NextCallAfterARaisedOneWorks) {
    ExpectRaisedCode(0xE0001234);
    const Reply reply = CallOnce(Stubs::kOurs, GetParam(), peer_.Endpoint(), kEcho, Pattern(24));
    EXPECT_FALSE(reply.raised);
    EXPECT_EQ(reply.bytes, Pattern(24));
}

INSTANTIATE_TEST_SUITE_P(Interfaces, Guard,
                         testing::Values(Interface::kService, Interface::kManager),
                         [](const auto& info) {
                             return info.param == Interface::kService ? "Service" : "Manager";
                         });

class FaultOfOurOwn : public Guard {};

TEST_P(FaultOfOurOwn, UnreadableMessage_EndsTheProcess) {
    EXPECT_TRUE(EndsTheProcess(L"message", kFaultGotOut));
}

TEST_P(FaultOfOurOwn, FaultInTheAllocationOfTheReply_EndsTheProcess) {
    EXPECT_TRUE(EndsTheProcess(L"allocation", kFaultGotOut));
}

// What the runtime raises for a peer's fault has no parameters, so this exception comes from
// somewhere else.
TEST_P(FaultOfOurOwn, RaisedExceptionWithParameters_EndsTheProcess) {
    EXPECT_TRUE(EndsTheProcess(L"raised-with-parameters", kOtherExceptionGotOut));
}

INSTANTIATE_TEST_SUITE_P(Interfaces, FaultOfOurOwn, testing::Values(Interface::kService),
                         [](const auto&) { return "Service"; });

}  // namespace
}  // namespace PlenxTest
