#include "plenxsdk/plenx_manager.h"

#include "common/log.h"
#include "common/process_life.h"
#include "common/thread_pool.h"
#include "engine/plenx_manager_inner.h"
#include "rpc/rpc_manager.h"

namespace DistributedFs {
namespace {

// It is made when the library is loaded. The loader lock is held then, so this must only touch
// memory.
ModuleObject<PLENXManager> instance;

constexpr unsigned kWorkers = 1;  // one at a time, in the order of the calls

// These services have a configuration that can be asked for. The combined type is passed on.
bool HasConfiguration(ServiceType svcType) {
    return svcType >= kPcService && svcType <= kCombinedService;
}

// Calls push for each service whose configuration a setter of svcType changes. It calls push for no
// service with the office type, because the office service has no configuration, and for both with
// the combined type. Returns false when there is no such type.
template <class Push>
bool ForEachConfigured(ServiceType svcType, Push push) {
    switch (svcType) {
    case kOfficeService:
        return true;
    case kPcService:
    case kPhoneService:
        push(svcType);
        return true;
    case kCombinedService:
        push(kPcService);
        push(kPhoneService);
        return true;
    default:
        return false;
    }
}

}  // namespace

PLENXManager& PLENXManager::GetInstance() {
    return instance.Get();
}

// The objects that the jobs use are made before the facade, so they outlive it and its worker.
PLENXManager::PLENXManager() {
    TouchLogger();
    RpcManager::GetInstance();
    PLENXManagerInner::GetInstance();
}

// The worker ends before anything that it uses, and no lock is held that its job may want.
PLENXManager::~PLENXManager() {
    std::shared_ptr<ThreadPool> pool;
    {
        const std::lock_guard<std::mutex> lock(poolMutex);
        pool.swap(threadPool);
    }
    pool.reset();
    fileManager.reset();
}

// The worker was ended wherever it was, and may have left any lock held. The companion is released
// if nobody can have been inside it.
void PLENXManager::OnProcessEnd() noexcept {
    const bool workerWasIdle = !threadPool || threadPool->IsIdle();
    if (workerWasIdle && fileManagerMutex.try_lock()) {
        fileManager.reset();
        fileManagerMutex.unlock();
    }
}

void PLENXManager::Init(const std::string& first, const std::string& second, std::string third,
                        bool flag) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::Init";
    if (ProcessIsEnding()) {
        return;
    }
    LogInfo(kFunction, "[PLENXSDK] plenx manager Init");
    PinModule();
    PrepareExceptions();
    {
        const std::lock_guard<std::mutex> lock(poolMutex);
        this->first = first;
        this->second = second;
        this->third = third;
        this->flag = flag;
    }
    MakeFileManager(first, second, third, flag);
    const std::lock_guard<std::mutex> lock(poolMutex);
    if (!threadPool) {
        threadPool = std::make_shared<ThreadPool>(kWorkers);
    }
    LogInfo(kFunction,
            "[PLENXSDK] plenx manager plenx manager inner init is pushed into thread pool");
    threadPool->Enqueue(&PLENXManagerInner::Init, &PLENXManagerInner::GetInstance(), first, second);
}

void PLENXManager::Destroy() {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::Destroy";
    if (ProcessIsEnding()) {
        return;
    }
    LogInfo(kFunction, "[PLENXSDK] plenx manager destroy");
    UninstallOffice();
    const std::lock_guard<std::mutex> lock(poolMutex);
    if (threadPool) {
        // The same operation that Init queues, on purpose: it finds everything done.
        LogInfo(kFunction,
                "[PLENXSDK] plenx manager plenx manager inner destroy is pushed into thread pool");
        threadPool->Enqueue(&PLENXManagerInner::Init, &PLENXManagerInner::GetInstance(), first,
                            second);
    }
}

std::int64_t PLENXManager::GetInt64Config(ServiceType svcType, ConfigType cfgType) {
    if (!HasConfiguration(svcType)) {
        LogError("DistributedFs::PLENXManager::GetInt64Config",
                 "[PLENXSDK] plenx manager invalid service type svcType:", svcType);
        return 0;
    }
    return ProcessIsEnding() ? 0
                             : PLENXManagerInner::GetInstance().GetInt64Config(svcType, cfgType);
}

std::string PLENXManager::GetStringConfig(ServiceType svcType, ConfigType cfgType) {
    if (!HasConfiguration(svcType)) {
        LogError("DistributedFs::PLENXManager::GetStringConfig",
                 "[PLENXSDK] plenx manager invalid service type svcType:", svcType);
        return {};
    }
    return ProcessIsEnding() ? std::string()
                             : PLENXManagerInner::GetInstance().GetStringConfig(svcType, cfgType);
}

void PLENXManager::SetConfig(ServiceType svcType, ConfigType cfgType, std::string cfgValue) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::SetConfig";
    const auto push = [&](ServiceType service) {
        if (ProcessIsEnding()) {
            return;
        }
        const std::lock_guard<std::mutex> lock(poolMutex);
        if (threadPool) {
            LogInfo(kFunction, "[PLENXSDK] plenx manager (", service,
                    ") set string config is pushed into thread pool");
            threadPool->Enqueue(&PLENXManagerInner::SetStringConfig,
                                &PLENXManagerInner::GetInstance(), service, cfgType, cfgValue);
        }
    };
    if (!ForEachConfigured(svcType, push)) {
        LogError(
            kFunction,
            "[PLENXSDK] plenx manager set string config invalid service type svcType:", svcType);
    }
}

void PLENXManager::SetConfig(ServiceType svcType, ConfigType cfgType, std::int64_t cfgValue) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::SetConfig";
    const auto push = [&](ServiceType service) {
        if (ProcessIsEnding()) {
            return;
        }
        const std::lock_guard<std::mutex> lock(poolMutex);
        if (threadPool) {
            LogInfo(kFunction, "[PLENXSDK] plenx manager (", service,
                    ") set int config is pushed into thread pool");
            threadPool->Enqueue(&PLENXManagerInner::SetIntConfig, &PLENXManagerInner::GetInstance(),
                                service, cfgType, cfgValue);
        }
    };
    if (!ForEachConfigured(svcType, push)) {
        LogError(kFunction, "[PLENXSDK] plenx manager set int config invalid service type svcType(",
                 svcType, ")");
    }
}

}  // namespace DistributedFs
