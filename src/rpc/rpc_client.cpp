// The client half of RpcManager: requests to the services.

#include <windows.h>

#include <rpc.h>

#include <cstddef>
#include <cstring>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "common/log.h"
#include "common/result_code.h"
#include "rpc/interface/rpc_memory.h"
#include "rpc/interface/service_call.h"
#include "rpc/rpc_manager.h"
#include "rpc/rpc_message_reader.h"
#include "rpc/rpc_message_writer.h"

namespace DistributedFs {

struct RpcRequest {
    std::int32_t msgType;
    std::string_view function;
    const char* int64Failure = nullptr;
};

/// One argument of a request.
class RpcArgument {
public:
    RpcArgument(std::int32_t value) : type_(RpcArgType::kInt32), number_(value) {}
    RpcArgument(std::int64_t value) : type_(RpcArgType::kInt64), number_(value) {}
    RpcArgument(std::string& value) : type_(RpcArgType::kString), text_(&value) {}
    RpcArgument(const std::uint8_t* bytes, std::int32_t length)
        : type_(RpcArgType::kInt8Array), number_(length), bytes_(bytes) {}

    std::int64_t Size() const;
    bool Write(RpcMessageWriter& writer, std::uint32_t index, const RpcRequest& request) const;

private:
    RpcArgType type_;
    std::int64_t number_ = 0;
    std::string* text_ = nullptr;  // the writer moves the text out of it
    const std::uint8_t* bytes_ = nullptr;
};

namespace {

constexpr const wchar_t* kEndpoints[] = {
    L"PLENXOfficeService",
    L"PLENXPCService",
    L"PLENXPhoneService",
};

// Programs search for the spelling "Error" in one of the two int64 failures, so it must stay.
constexpr RpcRequest kCreateGroup{0, "DistributedFs::RpcManager::CreateGroup"};
constexpr RpcRequest kDeleteGroup{1, "DistributedFs::RpcManager::DeleteGroup"};
constexpr RpcRequest kDeviceOnline{2, "DistributedFs::RpcManager::DeviceOnline"};
constexpr RpcRequest kDeviceOffline{3, "DistributedFs::RpcManager::DeviceOffline"};
constexpr RpcRequest kNameChanged{4, "DistributedFs::RpcManager::NameChanged"};
constexpr RpcRequest kRecvRemoteMessage{5, "DistributedFs::RpcManager::RecvRemoteMessage"};
constexpr RpcRequest kSetStringConfig{7, "DistributedFs::RpcManager::SetStringConfig"};
constexpr RpcRequest kSetInt64Config{8, "DistributedFs::RpcManager::SetInt64Config",
                                     "[PLENXSDK] write int64 Error index:"};
constexpr RpcRequest kPingService{19, "DistributedFs::RpcManager::PingService",
                                  "[PLENXSDK] write int64 error index:"};

constexpr std::int32_t kGroupKind = 2;

// Size 0 makes the writer refuse the first argument.
std::int32_t MessageSize(std::initializer_list<RpcArgument> arguments) {
    std::int64_t size = RpcDataOffset(static_cast<std::int64_t>(arguments.size()));
    for (const RpcArgument& argument : arguments) {
        size += argument.Size();
    }
    const bool fits = size >= 0 && size <= std::numeric_limits<std::int32_t>::max();
    return fits ? static_cast<std::int32_t>(size) : 0;
}

// A block that the runtime allocated for a reply.
using RuntimeBlock = std::unique_ptr<unsigned char, decltype(&MIDL_user_free)>;

std::int32_t KeepReply(const PlenxServiceReply& reply, RpcMessage& message) {
    if (reply.block == nullptr || reply.size <= 0) {
        return kSuccess;
    }
    const auto size = static_cast<std::size_t>(reply.size);
    message.respBuffer.reset(new (std::nothrow) std::uint8_t[size]);
    if (!message.respBuffer) {
        return kReplyNotAllocated;
    }
    std::memcpy(message.respBuffer.get(), reply.block, size);
    message.respSize = static_cast<std::int32_t>(reply.size);
    return kSuccess;
}

std::int32_t CallService(std::string_view function, RpcMessage& message) {
    PlenxServiceReply reply{};
    PlenxCallService(message.msgType, message.msgSize, message.msgBuffer, &reply);
    const RuntimeBlock block(reply.block, &MIDL_user_free);
    if (reply.raised != 0) {
        const auto code = static_cast<std::int32_t>(reply.exceptionCode);
        LogError(function, "[PLENXSDK] send service message exception ", code);
        return code;
    }
    const auto result = static_cast<std::int32_t>(reply.result);
    if (result != 0) {
        LogError(function, "[PLENXSDK] send service message error ", result);
        return result;
    }
    return KeepReply(reply, message);
}

// The runtime's strings are not const, but it does not write to them.
RPC_WSTR RpcString(const wchar_t* text) {
    return reinterpret_cast<RPC_WSTR>(const_cast<wchar_t*>(text));
}

}  // namespace

std::int64_t RpcArgument::Size() const {
    switch (type_) {
    case RpcArgType::kInt32:
        return sizeof(std::int32_t);
    case RpcArgType::kInt64:
        return sizeof(std::int64_t);
    case RpcArgType::kString:
        return static_cast<std::int64_t>(text_->length()) + 1;
    case RpcArgType::kInt8Array:
        return number_;
    }
    return 0;
}

bool RpcArgument::Write(RpcMessageWriter& writer, std::uint32_t index,
                        const RpcRequest& request) const {
    std::int32_t written = kWriteFailed;
    const char* failure = nullptr;
    switch (type_) {
    case RpcArgType::kInt32:
        written = writer.WriteInt32(index, static_cast<std::int32_t>(number_));
        failure = "[PLENXSDK] write int32 error index:";
        break;
    case RpcArgType::kInt64:
        written = writer.WriteInt64(index, number_);
        failure = request.int64Failure;
        break;
    case RpcArgType::kString:
        written = writer.WriteString(index, std::move(*text_));
        failure = "[PLENXSDK] write string error index:";
        break;
    case RpcArgType::kInt8Array:
        written = writer.WriteInt8Array(index, bytes_, static_cast<std::int32_t>(number_));
        failure = "[PLENXSDK] write int8array error index:";
        break;
    }
    if (written != kSuccess) {
        LogError(request.function, failure, index + 1);  // the lines count from one
    }
    return written == kSuccess;
}

std::int32_t RpcManager::CreateGroup(ServiceType svcType, std::string groupName,
                                     std::string groupArg) {
    LogInfo(kCreateGroup.function, "[PLENXSDK] rpc manager create group svcType:", svcType);
    return SendRequest(kCreateGroup, svcType, {groupName, kGroupKind, groupArg});
}

std::int32_t RpcManager::DeleteGroup(ServiceType svcType, std::string groupName) {
    LogInfo(kDeleteGroup.function, "[PLENXSDK] delete group svcType:", svcType);
    return SendRequest(kDeleteGroup, svcType, {groupName});
}

std::int32_t RpcManager::DeviceOnline(ServiceType svcType, std::string groupName,
                                      std::string deviceId, std::int32_t isRemote,
                                      const std::uint8_t* data, std::int32_t length) {
    LogInfo(kDeviceOnline.function, "[PLENXSDK] rpc manager device online svcType:", svcType);
    return SendRequest(kDeviceOnline, svcType,
                       {groupName, deviceId, isRemote, length, RpcArgument(data, length)});
}

std::int32_t RpcManager::DeviceOffline(ServiceType svcType, std::string groupName,
                                       std::string deviceId, std::int32_t isRemote,
                                       std::int32_t trigger) {
    LogInfo(kDeviceOffline.function, "[PLENXSDK] rpc manager device offline svcType:", svcType);
    return SendRequest(kDeviceOffline, svcType, {groupName, deviceId, isRemote, trigger});
}

std::int32_t RpcManager::NameChanged(std::string name) {
    LogInfo(kNameChanged.function, "[PLENXSDK] rpc manager name changed svcType:", kPcService);
    return SendRequest(kNameChanged, kPcService, {name});
}

std::int32_t RpcManager::RecvRemoteMessage(ServiceType svcType, std::int32_t msgType,
                                           std::int32_t msgLen, std::string message) {
    LogInfo(kRecvRemoteMessage.function,
            "[PLENXSDK] rpc manager receive remote message svcType:", svcType);
    return SendRequest(kRecvRemoteMessage, svcType, {msgType, msgLen, message});
}

std::int32_t RpcManager::RecvRemoteMessage(std::int32_t msgType, std::int32_t msgLen,
                                           std::string message) {
    return RecvRemoteMessage(kPcService, msgType, msgLen, std::move(message));
}

std::int32_t RpcManager::SetStringConfig(ServiceType svcType, ConfigType cfgType,
                                         std::string value) {
    LogInfo(kSetStringConfig.function, "[PLENXSDK] rpc manager set string config svcType:", svcType,
            " cfgType:", cfgType, " cfgValue:", value);
    return SendRequest(kSetStringConfig, svcType, {static_cast<std::int32_t>(cfgType), value});
}

std::int32_t RpcManager::SetInt64Config(ServiceType svcType, ConfigType cfgType,
                                        std::int64_t value) {
    LogInfo(kSetInt64Config.function, "[PLENXSDK] rpc manager set int64 config svcType:", svcType,
            " cfgType:", cfgType, " cfgValue:", value);
    return SendRequest(kSetInt64Config, svcType, {static_cast<std::int32_t>(cfgType), value});
}

std::int32_t RpcManager::PingService(ServiceType svcType, std::int64_t number) {
    LogInfo(kPingService.function, "[PLENXSDK] rpc manager ping service No:", number);
    return SendRequest(kPingService, svcType, {number});
}

std::int32_t RpcManager::SendRequest(const RpcRequest& request, ServiceType svcType,
                                     std::initializer_list<RpcArgument> arguments) {
    RpcMessageWriter writer(MessageSize(arguments), static_cast<std::int32_t>(arguments.size()));
    std::uint32_t index = 0;
    for (const RpcArgument& argument : arguments) {
        if (!argument.Write(writer, index++, request)) {
            return kWriteFailed;
        }
    }

    RpcMessage message;
    message.msgType = request.msgType;
    message.msgSize = writer.Size();
    message.msgBuffer = writer.Buffer();
    const std::int32_t ret = SendRpcMessage(svcType, &message);
    if (ret != 0) {
        LogError(request.function, "[PLENXSDK] send rpc message error ret:", ret);
        return ret;
    }

    RpcMessageReader reader(message.respBuffer.get(), message.respSize);
    std::int32_t result = 0;
    if (reader.ReadInt32(0, &result) != kSuccess) {
        LogError(request.function, "[PLENXSDK] read ret error");
        return kSuccess;  // an unreadable reply counts as success
    }
    return result;
}

std::int32_t RpcManager::SendRpcMessage(ServiceType svcType, RpcMessage* message) {
    constexpr std::string_view kFunction = "DistributedFs::RpcManager::SendRpcMessage";
    if (svcType >= std::size(kEndpoints)) {
        return kOutOfTable;
    }
    const std::lock_guard<std::mutex> lock(sendMutex);
    RPC_WSTR stringBinding = nullptr;
    RPC_STATUS status =
        RpcStringBindingComposeW(nullptr, RpcString(L"ncalrpc"), nullptr,
                                 RpcString(kEndpoints[svcType]), nullptr, &stringBinding);
    if (status != RPC_S_OK) {
        LogError(kFunction, "[PLENXSDK] rpc string binding compose error ", status);
        return static_cast<std::int32_t>(status);
    }
    plenxServiceBinding = nullptr;
    status = RpcBindingFromStringBindingW(stringBinding, &plenxServiceBinding);
    if (status != RPC_S_OK) {
        LogError(kFunction, "[PLENXSDK] rpc binding from string binding error ", status);
        // The string stays allocated: this path ends without a further call of the runtime, as
        // those who watch its calls expect. It is a few bytes, in a failure hardly ever seen.
        return static_cast<std::int32_t>(status);
    }
    const std::int32_t result = CallService(kFunction, *message);
    if (RpcStringFreeW(&stringBinding) == RPC_S_OK) {
        RpcBindingFree(&plenxServiceBinding);
    }
    return result;
}

}  // namespace DistributedFs
