// Makes a bare call through the IDL compiler's stubs, which is the least that a request can be.

#ifndef PLENXBENCH_WINDOWS_PEERS_WIDL_CALL_H
#define PLENXBENCH_WINDOWS_PEERS_WIDL_CALL_H

#include <windows.h>

#include <rpc.h>
#include <rpcndr.h>

#include <string>
#include <vector>

extern "C" {
extern RPC_BINDING_HANDLE widlServiceBinding;
extern RPC_BINDING_HANDLE widlManagerBinding;
error_status_t WidlCall_ServiceMessage(long msgType, long msgSize, unsigned char msg[],
                                       long* respSize, unsigned char** resp);
error_status_t WidlCall_HandleServiceMessage(long msgType, long msgSize, unsigned char msg[],
                                             long* respSize, unsigned char** resp);
}

namespace PlenxBench {

using WidlProcedure = decltype(&WidlCall_ServiceMessage);

void BindWidl(const wchar_t* endpoint, RPC_BINDING_HANDLE& binding);

/// Makes the call and releases the reply.
/// @throws std::runtime_error when the reply is not the one that all servers give.
void CallWidl(WidlProcedure procedure, long msgType, const std::vector<unsigned char>& message);

}  // namespace PlenxBench

#endif  // PLENXBENCH_WINDOWS_PEERS_WIDL_CALL_H
