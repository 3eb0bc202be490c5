// The notification handlers share this check of a read, which logs a failed read.

#ifndef PLENXSDK_RPC_NOTIFICATION_READING_H
#define PLENXSDK_RPC_NOTIFICATION_READING_H

#include <string_view>

#include "common/log.h"
#include "common/result_code.h"
#include "rpc/rpc_message.h"
#include "rpc/rpc_message_reader.h"

namespace DistributedFs {

inline RpcMessageReader MakeReader(const RpcMessage& message) {
    return RpcMessageReader(message.msgBuffer, message.msgSize);
}

/// Returns whether the code of a read means success; otherwise logs the failure.
inline bool WasRead(std::int32_t code, std::string_view function, const char* failure) {
    if (code != kSuccess) {
        LogError(function, failure);
    }
    return code == kSuccess;
}

}  // namespace DistributedFs

#endif  // PLENXSDK_RPC_NOTIFICATION_READING_H
