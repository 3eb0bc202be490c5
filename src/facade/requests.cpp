// Each of these operations queues a job: it checks, logs, queues and returns.

#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

#include "common/log.h"
#include "common/process_life.h"
#include "common/thread_pool.h"
#include "plenxsdk/plenx_manager.h"

namespace DistributedFs {
namespace {

std::shared_ptr<const unsigned char[]> CopyBlock(const unsigned char* data, int size) {
    if (size <= 0) {
        return nullptr;
    }
    const auto length = static_cast<std::size_t>(size);
    std::shared_ptr<unsigned char[]> copy(new unsigned char[length]);
    std::memcpy(copy.get(), data, length);
    return copy;
}

int Refuse(std::string_view function, const char* text) {
    LogError(function, text);
    return kInvalidParameter;
}

// Queues the job if there is a pool; logPushed writes the line that says so. The lock is held
// across the test and the queueing. The future is dropped: nobody waits for a job. While the
// process ends, nothing is queued: there is no worker, and the lock may never be given back.
template <class LogPushed, class... Job>
int Push(std::mutex& poolMutex, const std::shared_ptr<ThreadPool>& threadPool,
         std::string_view function, LogPushed logPushed, Job&&... job) {
    if (ProcessIsEnding()) {
        return kAccepted;
    }
    const std::lock_guard<std::mutex> lock(poolMutex);
    if (threadPool) {
        logPushed();
        threadPool->Enqueue(std::forward<Job>(job)...);
    } else {
        LogError(function, "[PLENXSDK] thread pool is released");
    }
    return kAccepted;
}

}  // namespace

int PLENXManager::Start(ServiceType svcType, const std::string& first, const std::string& second) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::Start";
    if (first.empty() || second.empty()) {
        return Refuse(kFunction, "[PLENXSDK] plenx manager start invalid parameter");
    }
    const auto logPushed = [&] {
        LogInfo(kFunction, "[PLENXSDK] plenx manager start service (", svcType,
                ") is pushed into thread pool");
    };
    return Push(poolMutex, threadPool, kFunction, logPushed,  //
                &PLENXManager::StartFunc, this, svcType, first, second);
}

int PLENXManager::Stop(ServiceType svcType, const std::string& first) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::Stop";
    if (first.empty()) {
        return Refuse(kFunction, "[PLENXSDK] plenx manager stop invalid parameter");
    }
    const auto logPushed = [&] {
        LogInfo(kFunction, "[PLENXSDK] plenx manager stop service (", svcType,
                ") is pushed into thread pool");
    };
    return Push(poolMutex, threadPool, kFunction, logPushed,  //
                &PLENXManager::StopFunc, this, svcType, first);
}

int PLENXManager::LocalDeviceOnline(ServiceType svcType, const std::string& first,
                                    const std::string& second, std::uint64_t size,
                                    const unsigned char* data) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::LocalDeviceOnline";
    if (first.empty() || second.empty()) {
        return Refuse(kFunction, "[PLENXSDK] plenx manager local device online invalid parameter");
    }
    if (ProcessIsEnding()) {
        return kAccepted;  // before it copies a block that nobody takes
    }
    // The job takes only the low 32 bits of the size. Bytes beyond that size are not read at all.
    const int blockSize = data != nullptr ? static_cast<int>(static_cast<std::uint32_t>(size)) : 0;
    const auto logPushed = [&] {
        LogInfo(kFunction, "[PLENXSDK] plenx manager service (", svcType,
                ") local device online is pushed into thread pool");
    };
    return Push(poolMutex, threadPool, kFunction, logPushed,  //
                &PLENXManager::LocalDeviceOnlineFunc, this, svcType, first, second,
                CopyBlock(data, blockSize), blockSize);
}

int PLENXManager::RemoteDeviceOnline(ServiceType svcType, const std::string& first,
                                     const std::string& second) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::RemoteDeviceOnline";
    if (first.empty() || second.empty()) {
        return Refuse(kFunction, "[PLENXSDK] plenx manager remote device online invalid parameter");
    }
    const auto logPushed = [&] {
        LogInfo(kFunction, "[PLENXSDK] plenx manager service (", svcType,
                ") remote device online is pushed into thread pool");
    };
    return Push(poolMutex, threadPool, kFunction, logPushed,  //
                &PLENXManager::RemoteDeviceOnlineFunc, this, svcType, first, second);
}

int PLENXManager::LocalDeviceOffline(ServiceType svcType, const std::string& first,
                                     const std::string& second, TriggerType trigger) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::LocalDeviceOffline";
    if (first.empty() || second.empty()) {
        return Refuse(kFunction, "[PLENXSDK] plenx manager local device offline invalid parameter");
    }
    const auto logPushed = [&] {
        LogInfo(kFunction, "[PLENXSDK] plenx manager service (", svcType,
                ") local device offline is pushed into thread pool");
    };
    return Push(poolMutex, threadPool, kFunction, logPushed,  //
                &PLENXManager::LocalDeviceOfflineFunc, this, svcType, first, second, trigger);
}

int PLENXManager::RemoteDeviceOffline(ServiceType svcType, const std::string& first,
                                      const std::string& second, TriggerType trigger) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::RemoteDeviceOffline";
    if (first.empty() || second.empty()) {
        return Refuse(kFunction,
                      "[PLENXSDK] plenx manager remote device offline invalid parameter");
    }
    const auto logPushed = [&] {
        LogInfo(kFunction, "[PLENXSDK] plenx manager service (", svcType,
                ") remote device offline is pushed into thread pool");
    };
    return Push(poolMutex, threadPool, kFunction, logPushed,  //
                &PLENXManager::RemoteDeviceOfflineFunc, this, svcType, first, second, trigger);
}

int PLENXManager::DeviceNameChanged(const std::string& name) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::DeviceNameChanged";
    if (name.empty()) {
        return Refuse(kFunction, "[PLENXSDK] plenx manager device name changed invalid parameter");
    }
    const auto logPushed = [&] {
        LogInfo(kFunction,
                "[PLENXSDK] plenx manager device name changed is pushed into thread pool");
    };
    return Push(poolMutex, threadPool, kFunction, logPushed,  //
                &PLENXManager::DeviceNameChangedFunc, this, name);
}

int PLENXManager::RecvRemoteMessage(PLENXMessageType msgType, unsigned int msgLen,
                                    const std::string& message) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::RecvRemoteMessage";
    const auto logPushed = [&] {
        LogInfo(kFunction,
                "[PLENXSDK] plenx manager receive remote message is pushed into thread pool");
    };
    return Push(poolMutex, threadPool, kFunction, logPushed,  //
                &PLENXManager::RecvRemoteMessageFunc, this, msgType, msgLen, message);
}

}  // namespace DistributedFs
