#include "rpc_interface/server_routines.h"

#include <rpcndr.h>

#include <string>

#include "rpc/interface/manager_interface.h"
#include "rpc/interface/rpc_memory.h"
#include "rpc/interface/service_interface.h"
#include "rpc_interface/allocation_count.h"
#include "rpc_interface/chosen_syntax.h"

namespace PlenxTest {
namespace {

constexpr long kNoMemory = 22;

long GiveReply(const Bytes& reply, long* respSize, unsigned char** resp) {
    *resp = static_cast<unsigned char*>(MIDL_user_allocate(reply.size()));
    if (*resp == nullptr) {
        return kNoMemory;
    }
    *respSize = static_cast<long>(reply.size());
    if (!reply.empty()) {
        std::memcpy(*resp, reply.data(), reply.size());
    }
    return 0;
}

Bytes CallManagerBack(const Bytes& endpoint) {
    const std::wstring name(endpoint.begin(), endpoint.end());
    return CallOnce(Stubs::kOurs, Interface::kManager, name, kEcho, endpoint).bytes;
}

long Answer(long msgType, long msgSize, const unsigned char* msg, long* respSize,
            unsigned char** resp) {
    const bool entryState = *respSize == 0 && *resp == nullptr;
    *respSize = 0;
    *resp = nullptr;
    const Bytes message(msg, msg + msgSize);
    const std::uint32_t number = NumberIn(message);
    switch (msgType) {
    case kEcho:
        return GiveReply(message, respSize, resp);
    case kReplyOfSize:
        return GiveReply(Pattern(number), respSize, resp);
    case kNullReply:
        return 0;
    case kResult:
        return static_cast<long>(number);
    case kResultWithReply:
        GiveReply(Pattern(3), respSize, resp);
        return static_cast<long>(number);
    case kSizeWithoutBlock:
        *respSize = static_cast<long>(number);
        return 0;
    case kRaise:
        RaiseException(number, 0, 0, nullptr);
        return 0;
    case kFault:
        Fault();
        return 0;
    case kEndProcess:
        TerminateProcess(GetCurrentProcess(), 0);
        return 0;
    case kCallManagerBack:
        return GiveReply(CallManagerBack(message), respSize, resp);
    case kEntryState:
        return GiveReply(Number(entryState), respSize, resp);
    case kBlocksOut:
        return GiveReply(Number(static_cast<std::uint32_t>(BlocksOut())), respSize, resp);
    case kSyntax:
        return GiveReply(Number(SyntaxOfThisCall()), respSize, resp);
    default:
        return -1;
    }
}

}  // namespace
}  // namespace PlenxTest

long PlenxHandleServiceMessage(long msgType, long msgSize, unsigned char* msg, long* respSize,
                               unsigned char** resp) noexcept {
    return PlenxTest::Answer(msgType, msgSize, msg, respSize, resp);
}

long PlenxHandleManagerMessage(long msgType, long msgSize, unsigned char* msg, long* respSize,
                               unsigned char** resp) noexcept {
    return PlenxTest::Answer(msgType, msgSize, msg, respSize, resp);
}

// The same for the IDL compiler's servers, whose prototypes are in C.
extern "C" {

error_status_t WidlServe_ServiceMessage(long msgType, long msgSize, unsigned char msg[],
                                        long* respSize, unsigned char** resp) {
    return static_cast<error_status_t>(PlenxTest::Answer(msgType, msgSize, msg, respSize, resp));
}

error_status_t WidlServe_HandleServiceMessage(long msgType, long msgSize, unsigned char msg[],
                                              long* respSize, unsigned char** resp) {
    return static_cast<error_status_t>(PlenxTest::Answer(msgType, msgSize, msg, respSize, resp));
}

}  // extern "C"
