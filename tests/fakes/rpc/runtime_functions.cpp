// The functions of the RPC runtime and of the two interfaces. Each calls FakeRpc.

#include <rpc.h>

#include <algorithm>
#include <string>

#include "platform/call_text.h"
#include "platform/fake_scope.h"
#include "rpc/fake_rpc.h"
#include "rpc/interface/manager_interface.h"
#include "rpc/interface/rpc_memory.h"
#include "rpc/interface/service_call.h"

namespace {

const wchar_t* Wide(RPC_WSTR text) {
    return reinterpret_cast<const wchar_t*>(text);
}

char managerInterface;  // only its address counts

std::string Presence(const void* pointer) {
    return pointer == nullptr ? "null" : "set";
}

}  // namespace

extern "C" {

RPC_STATUS RpcStringBindingComposeW(RPC_WSTR objectUuid, RPC_WSTR protocol, RPC_WSTR networkAddress,
                                    RPC_WSTR endpoint, RPC_WSTR options, RPC_WSTR* stringBinding) {
    const FakeScope inside;
    return FakeRpc::Get().Compose(Wide(objectUuid), Wide(protocol), Wide(networkAddress),
                                  Wide(endpoint), Wide(options), stringBinding);
}

RPC_STATUS RpcBindingFromStringBindingW(RPC_WSTR stringBinding, RPC_BINDING_HANDLE* binding) {
    const FakeScope inside;
    return FakeRpc::Get().Bind(stringBinding, binding);
}

RPC_STATUS RpcStringFreeW(RPC_WSTR* string) {
    const FakeScope inside;
    return FakeRpc::Get().FreeString(string);
}

RPC_STATUS RpcBindingFree(RPC_BINDING_HANDLE* binding) {
    const FakeScope inside;
    return FakeRpc::Get().FreeBinding(binding);
}

RPC_STATUS RpcServerUseProtseqEpW(RPC_WSTR protocol, unsigned int maximumCalls, RPC_WSTR endpoint,
                                  void* securityDescriptor) {
    const FakeScope inside;
    return FakeRpc::Get().Record("RpcServerUseProtseqEpW", Narrow(Wide(protocol)) + ", " +
                                                               std::to_string(maximumCalls) + ", " +
                                                               Narrow(Wide(endpoint)) + ", " +
                                                               Presence(securityDescriptor));
}

RPC_STATUS RpcServerRegisterIf(RPC_IF_HANDLE interfaceHandle, UUID* managerType,
                               RPC_MGR_EPV* entryPoints) {
    const FakeScope inside;
    const bool ours = interfaceHandle == plenxManagerInterface;
    return FakeRpc::Get().Record("RpcServerRegisterIf",
                                 std::string(ours ? "manager interface" : "unknown interface") +
                                     ", " + Presence(managerType) + ", " + Presence(entryPoints));
}

RPC_STATUS RpcServerListen(unsigned int minimumThreads, unsigned int maximumCalls,
                           unsigned int doNotWait) {
    const FakeScope inside;
    return FakeRpc::Get().Listen(std::to_string(minimumThreads) + ", " +
                                 std::to_string(maximumCalls) + ", " + std::to_string(doNotWait));
}

void* MIDL_user_allocate(size_t size) {
    const FakeScope inside;
    return FakeRpc::Get().Allocate(size);
}

void MIDL_user_free(void* block) {
    const FakeScope inside;
    FakeRpc::Get().Free(block);
}

RPC_BINDING_HANDLE plenxServiceBinding = nullptr;
RPC_IF_HANDLE plenxManagerInterface = &managerInterface;

void PlenxCallService(long msgType, long msgSize, const unsigned char* msg,
                      PlenxServiceReply* reply) {
    const FakeScope inside;
    ServiceCall call;
    call.msgType = static_cast<std::int32_t>(msgType);
    call.msgSize = static_cast<std::int32_t>(msgSize);
    call.msg.assign(msg, msg + msgSize);
    const ServiceAnswer answer = FakeRpc::Get().CallService(plenxServiceBinding, call);

    *reply = PlenxServiceReply{};
    if (answer.exception) {
        reply->raised = 1;
        reply->exceptionCode = *answer.exception;
        return;
    }
    reply->result = answer.result;
    reply->size = answer.statedSize.value_or(static_cast<long>(answer.reply.size()));
    if (!answer.nullBlock) {
        reply->block = static_cast<unsigned char*>(MIDL_user_allocate(answer.reply.size()));
        if (reply->block == nullptr) {
            *reply = PlenxServiceReply{};
            reply->raised = 1;
            reply->exceptionCode = RPC_S_OUT_OF_MEMORY;
            return;
        }
        std::copy(answer.reply.begin(), answer.reply.end(), reply->block);
    }
}

}  // extern "C"
