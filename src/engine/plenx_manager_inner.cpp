#include "engine/plenx_manager_inner.h"

#include <new>
#include <utility>

#include "common/log.h"
#include "common/process_life.h"
#include "common/utf8.h"
#include "engine/config_tables.h"
#include "rpc/rpc_manager.h"
#include "service/service_manager.h"

namespace DistributedFs {
namespace {

// An exception must not leave a thread.
void ServeManagerEndpoint() noexcept {
    try {
        RpcManager::GetInstance().Start();
    } catch (...) {
    }
}

// The thread listens until the process ends. Nobody may join its object (that would wait for ever)
// or detach it (that races with the end of the thread when listening fails at once). So the object
// must never be destroyed, and lives in memory of its own. The pointer to it owns nothing, so
// making it takes no memory: nothing can fail any more once the thread runs.
std::shared_ptr<std::thread> StartListenThread() {
    alignas(std::thread) static unsigned char storage[sizeof(std::thread)];
    return {std::shared_ptr<void>(), new (storage) std::thread(ServeManagerEndpoint)};
}

}  // namespace

PLENXManagerInner& PLENXManagerInner::GetInstance() {
    static ModuleObject<PLENXManagerInner> instance;
    return instance.Get();
}

// These objects are made before the engine, so they outlive it.
PLENXManagerInner::PLENXManagerInner() {
    RpcManager::GetInstance();
    ConfigTables::GetInstance();
}

PLENXManagerInner::~PLENXManagerInner() = default;

// Uninstalls the services and removes the working folder. It must not touch anything else.
void PLENXManagerInner::OnProcessEnd() noexcept {
    serviceManager.reset();
}

void PLENXManagerInner::Init(const std::string& rootDir, const std::string& serviceArg) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManagerInner::Init";
    const std::lock_guard<std::mutex> lock(mutex);
    if (!serviceManager) {
        LogInfo(kFunction, "[PLENXSDK] service manager initialization");
        const std::wstring dataFolder = Utf8ToWide(serviceArg);
        const std::wstring installFolder = Utf8ToWide(rootDir);
        serviceManager = std::make_shared<ServiceManager>(installFolder, dataFolder);
        CreateFileIcon(rootDir);
    }
    if (!rpcListenThread) {
        LogInfo(kFunction, "[PLENXSDK] rpc listen thread initialization");
        rpcListenThread = StartListenThread();
    }
}

std::int64_t PLENXManagerInner::GetInt64Config(ServiceType svcType, ConfigType cfgType) {
    const std::lock_guard<std::mutex> lock(mutex);
    std::int64_t value = 0;
    if (cfgType == kServiceNotRunningConfig && serviceManager) {
        value = serviceManager->isServiceAlive(static_cast<std::int32_t>(svcType)) ? 0 : 1;
    }
    LogInfo("DistributedFs::PLENXManagerInner::GetInt64Config",
            "[PLENXSDK] plenx manager get config svcType:", svcType, " cfgType:", cfgType,
            " cfgValue:", value);
    return value;
}

// String settings cannot be read back, but a caller still waits for a setter at work.
std::string PLENXManagerInner::GetStringConfig(ServiceType, ConfigType) {
    const std::lock_guard<std::mutex> lock(mutex);
    return {};
}

void PLENXManagerInner::SetStringConfig(ServiceType svcType, ConfigType cfgType,
                                        std::string cfgValue) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManagerInner::SetStringConfig";
    const std::lock_guard<std::mutex> lock(mutex);
    LogInfo(kFunction, "[PLENXSDK] plenx manager set config svcType:", svcType,
            " cfgType:", cfgType, " cfgValue:", cfgValue);
    StringConfig* const config = FindConfig(ConfigTables::GetInstance().strings, svcType);
    if (config == nullptr) {
        LogError(kFunction, "[PLENXSDK] plenx manager invalid service type svcType:", svcType);
        return;
    }
    ReplaceValue(*config, cfgType, std::move(cfgValue));
}

void PLENXManagerInner::SetIntConfig(ServiceType svcType, ConfigType cfgType,
                                     std::int64_t cfgValue) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManagerInner::SetIntConfig";
    const std::lock_guard<std::mutex> lock(mutex);
    LogInfo(kFunction, "[PLENXSDK] plenx manager set config svcType:", svcType,
            " cfgType:", cfgType, " cfgValue:", cfgValue);
    IntegerConfig* const config = FindConfig(ConfigTables::GetInstance().integers, svcType);
    if (config == nullptr) {
        LogError(kFunction, "[PLENXSDK] plenx manager invalid service type svcType:", svcType);
        return;
    }
    ReplaceValue(*config, cfgType, cfgValue);
}

std::int32_t PLENXManagerInner::NameChanged(const std::string& name) {
    return RpcManager::GetInstance().NameChanged(name);
}

std::int32_t PLENXManagerInner::RecvRemoteMessage(PLENXMessageType msgType, unsigned int msgLen,
                                                  const std::string& message) {
    LogInfo("DistributedFs::PLENXManagerInner::RecvRemoteMessage",
            "[PLENXSDK] plenx manager job receive remote message is invoked");
    return RpcManager::GetInstance().RecvRemoteMessage(msgType, static_cast<std::int32_t>(msgLen),
                                                       message);
}

}  // namespace DistributedFs
