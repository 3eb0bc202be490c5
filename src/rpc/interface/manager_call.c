#include "rpc/interface/manager_call.h"

#include "rpc/interface/guarded_call.h"

RPC_BINDING_HANDLE plenxManagerBinding;

#define INTERFACE_ID PLENX_MANAGER_INTERFACE_ID
#define INTERFACE_BINDING plenxManagerBinding
#include "rpc/interface/client_tables.inc"

RPC_IF_HANDLE plenxManagerClientInterface = (RPC_IF_HANDLE)&clientInterface;

void PlenxCallManager(long msgType, long msgSize, const unsigned char* msg,
                      PlenxManagerReply* reply) {
    PlenxGuardedCall(&proxyInfo, msgType, msgSize, msg, reply);
}
