/* The routine of "Manager" is in C, because an exception that it raises must not pass C++ frames.
 */

#include "judge/manager_endpoint.h"
#include "rpc/interface/manager_interface.h"

long PlenxHandleManagerMessage(long msgType, long msgSize, unsigned char* msg, long* respSize,
                               unsigned char** resp) {
    long result = 0;
    const unsigned long fault =
        PlenxJudgeTakeNotification(msgType, msgSize, msg, respSize, resp, &result);
    if (fault != 0) {
        RpcRaiseException((RPC_STATUS)fault);
    }
    return result;
}
