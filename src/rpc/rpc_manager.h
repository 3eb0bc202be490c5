// RpcManager: the local RPC link between this process and the services.
//
// Client: one method per request; each makes one call to the endpoint of a service and
// returns the service's own result code, or the code of what failed. Requests wait for
// each other.
// Server: Start serves the endpoint "Manager"; the runtime runs HandleServiceMessage on
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

    // Requests. The strings and numbers are the caller's; the service interprets them.
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

    /// Serves the endpoint "Manager"; returns only when it cannot be served.
    void Start();

    /// One call of a service. *resp is a block of the interface's allocator, which the
    /// RPC runtime releases. Lets no exception out.
    std::int32_t HandleServiceMessage(std::int32_t msgType, std::int32_t msgSize,
                                      const std::uint8_t* msg, std::int32_t* respSize,
                                      std::uint8_t** resp) noexcept;

    // Handlers of HandleServiceMessage, one per message id; each leaves a reply.
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

    /// Asks Explorer to refresh the drive of the letter: 0 or 1 when it has come, 2 when
    /// its content has changed.
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
