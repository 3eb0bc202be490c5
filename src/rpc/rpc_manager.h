// RpcManager is the local RPC link between this process and the services.
//
// As a client it has one method for each request. A method makes one call to the endpoint of a
// service and returns the service's own result code, or the code of the failure. Requests wait for
// each other.
// As a server it serves the endpoint "Manager" in Start. The runtime runs HandleServiceMessage on
// its own threads, up to ten at once.

#ifndef PLENXSDK_RPC_RPC_MANAGER_H
#define PLENXSDK_RPC_RPC_MANAGER_H

#include <cstdint>
#include <initializer_list>
#include <mutex>
#include <string>

#include "plenxsdk/plenx_manager.h"
#include "rpc/rpc_message.h"

namespace DistributedFs {

struct RpcRequest;
class RpcArgument;

class RpcManager {
public:
    static RpcManager& GetInstance();

    RpcManager(const RpcManager&) = delete;
    RpcManager& operator=(const RpcManager&) = delete;

    // Requests. The service interprets the strings and numbers; this class does not.
    std::int32_t CreateGroup(ServiceType svcType, std::string groupName, std::string groupArg);
    std::int32_t DeleteGroup(ServiceType svcType, std::string groupName);
    std::int32_t DeviceOnline(ServiceType svcType, std::string groupName, std::string deviceId,
                              std::int32_t isRemote, const std::uint8_t* data, std::int32_t length);
    std::int32_t DeviceOffline(ServiceType svcType, std::string groupName, std::string deviceId,
                               std::int32_t isRemote, std::int32_t trigger);
    /// Always sent to the PC service.
    std::int32_t NameChanged(std::string name);
    std::int32_t RecvRemoteMessage(ServiceType svcType, std::int32_t msgType, std::int32_t msgLen,
                                   std::string message);
    /// Sent to the PC service.
    std::int32_t RecvRemoteMessage(std::int32_t msgType, std::int32_t msgLen, std::string message);
    std::int32_t SetStringConfig(ServiceType svcType, ConfigType cfgType, std::string value);
    std::int32_t SetInt64Config(ServiceType svcType, ConfigType cfgType, std::int64_t value);
    std::int32_t PingService(ServiceType svcType, std::int64_t number);

    /// Makes one call to the endpoint of svcType and keeps the reply in the message.
    /// @return 0, an RPC status, the procedure's result, or an exception code.
    std::int32_t SendRpcMessage(ServiceType svcType, RpcMessage* message);

    /// Serves the endpoint "Manager"; returns only when it cannot serve it.
    void Start();

    /// Answers one call of a service. *resp becomes a block of the interface's allocator, which
    /// the RPC runtime releases.
    std::int32_t HandleServiceMessage(std::int32_t msgType, std::int32_t msgSize,
                                      const std::uint8_t* msg, std::int32_t* respSize,
                                      std::uint8_t** resp) noexcept;

    // Handlers of HandleServiceMessage, one for each message id. Each leaves a reply.
    std::int32_t SendLocalMessage(RpcMessage& message);
    std::int32_t ConnectNotify(RpcMessage& message);
    std::int32_t DisconnectNotify(RpcMessage& message);
    std::int32_t ReconnectNotify(RpcMessage& message);
    std::int32_t LinkTypeQuery(RpcMessage& message);
    std::int32_t StatusNotify(RpcMessage& message);
    std::int32_t ErrorNotify(RpcMessage& message);
    std::int32_t DiskNameNotify(RpcMessage& message);
    std::int32_t UpdateWindowsExplore(RpcMessage& message);
    std::int32_t ExploreFlushNotify(RpcMessage& message);
    std::int32_t RpcDefaultResponse(RpcMessage& message);

    /// Asks Explorer to refresh the drive of the letter. A type of 0 or 1 means that the drive has
    /// come or gone, and Explorer hears the same of both; 2 means that its content has changed.
    void FlushExplorer(char cLetter, std::int32_t expFlushType);

private:
    RpcManager() = default;
    ~RpcManager() = default;

    std::int32_t SendRequest(const RpcRequest& request, ServiceType svcType,
                             std::initializer_list<RpcArgument> arguments);
    std::int32_t Dispatch(RpcMessage& message);

    std::mutex sendMutex;  // the binding handle of the service interface is process-wide
};

}  // namespace DistributedFs

#endif  // PLENXSDK_RPC_RPC_MANAGER_H
