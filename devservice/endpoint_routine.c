/* The server routine is in C, because a fault that it raises must not pass C++ frames. */

#include "endpoint.h"
#include "rpc/interface/service_interface.h"

long PlenxHandleServiceMessage(long msgType, long msgSize, unsigned char* msg, long* respSize,
                               unsigned char** resp) {
    long result = 0;
    const unsigned long fault = PlenxAnswerRequest(msgType, msgSize, msg, respSize, resp, &result);
    if (fault != 0) {
        RpcRaiseException((RPC_STATUS)fault);
    }
    return result;
}
