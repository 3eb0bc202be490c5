/* Calls the message procedure through a client's tables. No exception of the RPC runtime escapes.
 */

#ifndef PLENXSDK_RPC_INTERFACE_GUARDED_CALL_H
#define PLENXSDK_RPC_INTERFACE_GUARDED_CALL_H

#include <windows.h>

#include <rpc.h>
#include <rpcndr.h>

#include "rpc/interface/message_reply.h"

void PlenxGuardedCall(const MIDL_STUBLESS_PROXY_INFO* proxyInfo, long msgType, long msgSize,
                      const unsigned char* msg, PlenxMessageReply* reply);

#endif
