// PLENXManagerInner is the engine behind the facade. It owns the service manager, serves the RPC
// endpoint, keeps the configuration for the services, and carries out the facade's jobs for the PC
// and phone services.
//
// Init, the getters and the setters lock the engine's mutex. Everything else runs on the facade's
// worker, one operation at a time, and takes no lock.

#ifndef PLENXSDK_ENGINE_PLENX_MANAGER_INNER_H
#define PLENXSDK_ENGINE_PLENX_MANAGER_INNER_H

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "plenxsdk/plenx_manager.h"

namespace DistributedFs {

class ServiceManager;
template <class T>
class ModuleObject;

class PLENXManagerInner {
public:
    static PLENXManagerInner& GetInstance();

    PLENXManagerInner(const PLENXManagerInner&) = delete;
    PLENXManagerInner& operator=(const PLENXManagerInner&) = delete;

    /// Makes the service manager and the icon files, and starts the RPC server, each only once.
    /// @throws std::range_error when the service manager is not there yet and an argument is not
    ///         valid UTF-8; it makes nothing then.
    void Init(const std::string& rootDir, const std::string& serviceArg);

    std::int64_t GetInt64Config(ServiceType svcType, ConfigType cfgType);
    std::string GetStringConfig(ServiceType svcType, ConfigType cfgType);
    void SetStringConfig(ServiceType svcType, ConfigType cfgType, std::string cfgValue);
    void SetIntConfig(ServiceType svcType, ConfigType cfgType, std::int64_t cfgValue);

    std::int32_t Start(ServiceType svcType, const std::string& group, const std::string& groupArg);
    /// Always returns 0; failures only show in the log.
    std::int32_t Stop(ServiceType svcType, const std::string& group);
    std::int32_t LocalDeviceOnline(ServiceType svcType, const std::string& group,
                                   const std::string& deviceId, std::uint64_t dataLen,
                                   const std::uint8_t* data);
    std::int32_t RemoteDeviceOnline(ServiceType svcType, const std::string& group,
                                    const std::string& deviceId);
    std::int32_t LocalDeviceOffline(ServiceType svcType, const std::string& group,
                                    const std::string& deviceId, TriggerType trigger);
    std::int32_t RemoteDeviceOffline(ServiceType svcType, const std::string& group,
                                     const std::string& deviceId, TriggerType trigger);

    std::int32_t NameChanged(const std::string& name);
    std::int32_t RecvRemoteMessage(PLENXMessageType msgType, unsigned int msgLen,
                                   const std::string& message);

private:
    friend class ModuleObject<PLENXManagerInner>;

    PLENXManagerInner();
    ~PLENXManagerInner();
    void OnProcessEnd() noexcept;

    void CreateFileIcon(const std::string& rootDir);

    std::int32_t StartPlenxService(ServiceType svcType);
    std::int32_t StopPlenxService(ServiceType svcType);
    void WaitForAnswer(ServiceType svcType);
    void PushConfiguration(ServiceType svcType);
    struct DeviceJob {
        std::string_view function;
        ServiceType svcType;
        const std::string& group;
        StatusKind kind;
    };
    std::int32_t EndDeviceJob(const DeviceJob& job, std::int32_t rc, const char* failure,
                              const char* success);
    void Notify(ServiceType svcType, const std::string& group, StatusKind kind, bool success);
    std::int32_t ReportFailure(ServiceType svcType, const std::string& group, StatusKind kind,
                               std::int32_t rc);

    std::shared_ptr<ServiceManager> serviceManager;
    std::shared_ptr<std::thread> rpcListenThread;
    std::mutex mutex;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_ENGINE_PLENX_MANAGER_INNER_H
