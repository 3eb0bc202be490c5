#include "rpc/interface/service_call.h"

#include "rpc/interface/guarded_call.h"

RPC_BINDING_HANDLE plenxServiceBinding;

#define INTERFACE_ID PLENX_SERVICE_INTERFACE_ID
#define INTERFACE_BINDING plenxServiceBinding
#include "rpc/interface/client_tables.inc"

RPC_IF_HANDLE plenxServiceClientInterface = (RPC_IF_HANDLE)&clientInterface;

void PlenxCallService(long msgType, long msgSize, const unsigned char* msg,
                      PlenxServiceReply* reply) {
    PlenxGuardedCall(&proxyInfo, msgType, msgSize, msg, reply);
}
