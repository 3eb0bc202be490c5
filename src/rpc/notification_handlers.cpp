// The handlers of the notifications that go to the host's observers.

#include <cstring>
#include <limits>
#include <new>
#include <string_view>

#include "rpc/notification_reading.h"
#include "rpc/rpc_manager.h"
#include "rpc/rpc_message_writer.h"

namespace DistributedFs {
namespace {

constexpr std::int32_t kInt32ReplySize = 24;

bool ParseDecimal(std::string_view digits, std::int32_t& number) {
    std::int64_t value = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9') {
            return false;
        }
        value = value * 10 + (digit - '0');
        if (value > std::numeric_limits<std::int32_t>::max()) {
            return false;
        }
    }
    number = static_cast<std::int32_t>(value);
    return !digits.empty();
}

struct Group {
    std::string name;
    ServiceType svcType = kOfficeService;
};

// "name_3" is group "name" of service 3; the name may contain underscores itself.
bool SplitGroupName(std::string_view function, const std::string& grpName, Group& group) {
    const std::size_t underscore = grpName.rfind('_');
    std::int32_t number = 0;
    if (underscore == std::string::npos ||
        !ParseDecimal(std::string_view(grpName).substr(underscore + 1), number)) {
        LogError(function, "[PLENXSDK] invalid parameter");
        return false;
    }
    group.name = grpName.substr(0, underscore);
    group.svcType = static_cast<ServiceType>(number);
    return true;
}

// The messages of the three connection notifications contain a group name and nothing else.
std::int32_t ReadGroup(std::string_view function, const RpcMessage& message, Group& group) {
    RpcMessageReader reader = MakeReader(message);
    std::string grpName;
    if (!WasRead(reader.ReadString(0, &grpName), function, "[PLENXSDK] read grpName error")) {
        return kReadFailed;
    }
    return SplitGroupName(function, grpName, group) ? kSuccess : kOutOfTable;
}

// Leaves a reply of one int32.
std::int32_t ReplyInt32(RpcMessage& message, std::int32_t value, std::string_view function,
                        const char* failure) {
    message.respSize = kInt32ReplySize;
    RpcMessageWriter writer(kInt32ReplySize, 1);
    if (writer.WriteInt32(0, value) != kSuccess) {
        LogError(function, failure, 1);
        return kWriteFailed;
    }
    message.respBuffer.reset(new (std::nothrow) std::uint8_t[kInt32ReplySize]);
    if (!message.respBuffer) {
        return kReplyNotAllocated;
    }
    std::memcpy(message.respBuffer.get(), writer.Buffer(), kInt32ReplySize);
    return kSuccess;
}

}  // namespace

std::int32_t RpcManager::SendLocalMessage(RpcMessage& message) {
    constexpr std::string_view kFunction = "DistributedFs::RpcManager::SendLocalMessage";
    RpcMessageReader reader = MakeReader(message);
    std::int32_t msgType = 0;
    std::int32_t msgLen = 0;
    std::string msg;
    if (!WasRead(reader.ReadInt32(0, &msgType), kFunction, "[PLENXSDK] read msgType error") ||
        !WasRead(reader.ReadInt32(1, &msgLen), kFunction, "[PLENXSDK] read msgLen error") ||
        !WasRead(reader.ReadString(2, &msg), kFunction, "[PLENXSDK] read msg error")) {
        return kReadFailed;
    }
    PLENXManager::GetInstance().SendLocalMessage(static_cast<PLENXMessageType>(msgType),
                                                 static_cast<unsigned int>(msgLen), msg);
    return RpcDefaultResponse(message);
}

std::int32_t RpcManager::ConnectNotify(RpcMessage& message) {
    Group group;
    const std::int32_t ret = ReadGroup("DistributedFs::RpcManager::ConnectNotify", message, group);
    if (ret != kSuccess) {
        return ret;
    }
    PLENXManager::GetInstance().NotifyConnect(group.svcType, group.name);
    return RpcDefaultResponse(message);
}

std::int32_t RpcManager::DisconnectNotify(RpcMessage& message) {
    Group group;
    const std::int32_t ret =
        ReadGroup("DistributedFs::RpcManager::DisconnectNotify", message, group);
    if (ret != kSuccess) {
        return ret;
    }
    PLENXManager::GetInstance().NotifyDisconnect(group.svcType, group.name);
    return RpcDefaultResponse(message);
}

std::int32_t RpcManager::ReconnectNotify(RpcMessage& message) {
    Group group;
    const std::int32_t ret =
        ReadGroup("DistributedFs::RpcManager::ReconnectNotify", message, group);
    if (ret != kSuccess) {
        return ret;
    }
    PLENXManager::GetInstance().NotifyReconnect(group.svcType, group.name);
    return RpcDefaultResponse(message);
}

std::int32_t RpcManager::LinkTypeQuery(RpcMessage& message) {
    constexpr std::string_view kFunction = "DistributedFs::RpcManager::LinkTypeQuery";
    RpcMessageReader reader = MakeReader(message);
    std::string grpName;
    std::int32_t linkType = 0;
    if (!WasRead(reader.ReadString(0, &grpName), kFunction, "[PLENXSDK] read grpName error") ||
        !WasRead(reader.ReadInt32(1, &linkType), kFunction, "[RPCMANAGER] read linkType error")) {
        return kReadFailed;
    }
    Group group;
    if (!SplitGroupName(kFunction, grpName, group)) {
        return kOutOfTable;
    }
    std::int32_t status = 0;
    PLENXManager::GetInstance().QueryLinkStatus(group.svcType, group.name,
                                                static_cast<unsigned int>(linkType), status);
    return ReplyInt32(message, status, kFunction,
                      "[RPCMANAGER] query link status write string error index:");
}

std::int32_t RpcManager::StatusNotify(RpcMessage& message) {
    constexpr std::string_view kFunction = "DistributedFs::RpcManager::StatusNotify";
    RpcMessageReader reader = MakeReader(message);
    std::string grpName;
    std::int32_t sttsType = 0;
    std::int32_t value = 0;
    if (!WasRead(reader.ReadString(0, &grpName), kFunction, "[PLENXSDK] read grpName error") ||
        !WasRead(reader.ReadInt32(1, &sttsType), kFunction, "[PLENXSDK] read sttsType error") ||
        !WasRead(reader.ReadInt32(2, &value), kFunction, "[PLENXSDK] read value error")) {
        return kReadFailed;
    }
    Group group;
    if (!SplitGroupName(kFunction, grpName, group)) {
        return kOutOfTable;
    }
    PLENXManager::GetInstance().NotifyStatus(group.svcType, group.name,
                                             static_cast<unsigned int>(sttsType), value != 0);
    return RpcDefaultResponse(message);
}

std::int32_t RpcManager::ErrorNotify(RpcMessage& message) {
    constexpr std::string_view kFunction = "DistributedFs::RpcManager::ErrorNotify";
    RpcMessageReader reader = MakeReader(message);
    std::int32_t errCode = 0;
    if (!WasRead(reader.ReadInt32(0, &errCode), kFunction, "[PLENXSDK] read errCode error")) {
        return kReadFailed;
    }
    PLENXManager::GetInstance().NotifyError(errCode);
    return RpcDefaultResponse(message);
}

std::int32_t RpcManager::DiskNameNotify(RpcMessage& message) {
    constexpr std::string_view kFunction = "DistributedFs::RpcManager::DiskNameNotify";
    RpcMessageReader reader = MakeReader(message);
    std::string diskName;
    if (!WasRead(reader.ReadString(0, &diskName), kFunction, "[PLENXSDK] read diskName error")) {
        return kReadFailed;
    }
    PLENXManager::GetInstance().NotifyDiskName(diskName);
    return RpcDefaultResponse(message);
}

std::int32_t RpcManager::RpcDefaultResponse(RpcMessage& message) {
    return ReplyInt32(message, 0, "DistributedFs::RpcManager::RpcDefaultResponse",
                      "[PLENXSDK] write int32 error index:");
}

}  // namespace DistributedFs
