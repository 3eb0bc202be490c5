#include "peers/widl_call.h"

#include <stdexcept>

#include "rpc/interface/rpc_memory.h"
#include "support/reply.h"

namespace PlenxBench {

void BindWidl(const wchar_t* endpoint, RPC_BINDING_HANDLE& binding) {
    static wchar_t protocol[] = L"ncalrpc";
    RPC_WSTR text = nullptr;
    RPC_STATUS status = RpcStringBindingComposeW(
        nullptr, reinterpret_cast<RPC_WSTR>(protocol), nullptr,
        reinterpret_cast<RPC_WSTR>(const_cast<wchar_t*>(endpoint)), nullptr, &text);
    if (status == RPC_S_OK) {
        status = RpcBindingFromStringBindingW(text, &binding);
        RpcStringFreeW(&text);
    }
    if (status != RPC_S_OK) {
        throw std::runtime_error("cannot bind");
    }
}

void CallWidl(WidlProcedure procedure, long msgType, const std::vector<unsigned char>& message) {
    long size = 0;
    unsigned char* block = nullptr;
    const error_status_t result =
        procedure(msgType, static_cast<long>(message.size()),
                  const_cast<unsigned char*>(message.data()), &size, &block);
    MIDL_user_free(block);
    if (result != 0 || size != sizeof(kReply)) {
        throw std::runtime_error("not the reply that was expected");
    }
}

}  // namespace PlenxBench
