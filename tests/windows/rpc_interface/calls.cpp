#include "rpc_interface/calls.h"

#include <cstring>
#include <stdexcept>

#include "rpc/interface/manager_call.h"
#include "rpc/interface/manager_interface.h"
#include "rpc/interface/rpc_memory.h"
#include "rpc/interface/service_call.h"
#include "rpc/interface/service_interface.h"
#include "rpc_interface/widl_calls.h"

namespace PlenxTest {
namespace {

struct Client {
    RPC_BINDING_HANDLE* binding;
    void (*call)(long, long, const unsigned char*, PlenxMessageReply*);
};

Client ClientOf(Stubs stubs, Interface which) {
    const bool service = which == Interface::kService;
    if (stubs == Stubs::kOurs) {
        return service ? Client{&plenxServiceBinding, PlenxCallService}
                       : Client{&plenxManagerBinding, PlenxCallManager};
    }
    return service ? Client{&widlServiceBinding, WidlCallService}
                   : Client{&widlManagerBinding, WidlCallManager};
}

Reply CallThrough(const Client& client, long msgType, const Bytes& msg) {
    static constexpr unsigned char kNothing[1] = {};
    PlenxMessageReply raw;
    std::memset(&raw, 0xFF, sizeof(raw));  // the call must set all of it
    client.call(msgType, static_cast<long>(msg.size()), msg.empty() ? kNothing : msg.data(), &raw);

    Reply reply;
    reply.raised = raw.raised != 0;
    reply.exceptionCode = raw.exceptionCode;
    reply.result = raw.result;
    reply.size = raw.size;
    reply.hasBlock = raw.block != nullptr;
    if (reply.hasBlock) {
        if (raw.size > 0) {
            reply.bytes.assign(raw.block, raw.block + raw.size);
        }
        MIDL_user_free(raw.block);
    }
    return reply;
}

}  // namespace

Binding::Binding(Stubs stubs, Interface which, const std::wstring& endpoint)
    : stubs_(stubs), interface_(which), handle_(*ClientOf(stubs, which).binding) {
    std::wstring protocol = L"ncalrpc";
    std::wstring name = endpoint;
    RPC_WSTR text = nullptr;
    if (RpcStringBindingComposeW(nullptr, reinterpret_cast<RPC_WSTR>(protocol.data()), nullptr,
                                 reinterpret_cast<RPC_WSTR>(name.data()), nullptr,
                                 &text) != RPC_S_OK) {
        throw std::runtime_error("no string binding");
    }
    const RPC_STATUS status = RpcBindingFromStringBindingW(text, &handle_);
    RpcStringFreeW(&text);
    if (status != RPC_S_OK) {
        throw std::runtime_error("no binding");
    }
}

Binding::~Binding() {
    RpcBindingFree(&handle_);
}

Reply Binding::Call(long msgType, const Bytes& msg) const {
    return CallThrough(ClientOf(stubs_, interface_), msgType, msg);
}

Reply CallOnce(Stubs stubs, Interface which, const std::wstring& endpoint, long msgType,
               const Bytes& msg) {
    return Binding(stubs, which, endpoint).Call(msgType, msg);
}

Reply CallWithoutABinding(Stubs stubs, Interface which, long msgType, const Bytes& msg) {
    const Client client = ClientOf(stubs, which);
    *client.binding = nullptr;
    return CallThrough(client, msgType, msg);
}

RPC_IF_HANDLE ServerInterface(Stubs stubs, Interface which) {
    const bool service = which == Interface::kService;
    if (stubs == Stubs::kOurs) {
        return service ? plenxServiceInterface : plenxManagerInterface;
    }
    return service ? WidlServe_PlenxService_v1_0_s_ifspec : WidlServe_PlenxManager_v1_0_s_ifspec;
}

}  // namespace PlenxTest
