// The jobs, which run on the worker. Jobs for the PC and phone services call the engine; jobs for
// the office service call the companion library.

#include "common/log.h"
#include "engine/plenx_manager_inner.h"
#include "plenxsdk/plenx_manager.h"

namespace DistributedFs {

void PLENXManager::StartFunc(ServiceType svcType, const std::string& first,
                             const std::string& second) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::StartFunc";
    LogInfo(kFunction, "[PLENXSDK] plenx manager start service svcType(", svcType, ") is invoked");
    PLENXManagerInner& engine = PLENXManagerInner::GetInstance();
    switch (svcType) {
    case kOfficeService:
        StartOffice(first);
        break;
    case kPcService:
    case kPhoneService:
        engine.Start(svcType, first, second);
        break;
    case kCombinedService:
        engine.Start(kPcService, first, second);
        MarkStarted(kPcService);
        StartOffice(first);
        break;
    default:
        LogError(kFunction, "[PLENXSDK] plenx manager start service invalid service type svcType(",
                 svcType, ")");
    }
}

void PLENXManager::StopFunc(ServiceType svcType, const std::string& first) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::StopFunc";
    LogInfo(kFunction, "[PLENXSDK] plenx manager stop service svcType(", svcType, ") is invoked");
    PLENXManagerInner& engine = PLENXManagerInner::GetInstance();
    switch (svcType) {
    case kOfficeService:
        StopOffice(first);
        break;
    case kPcService:
    case kPhoneService:
        engine.Stop(svcType, first);
        break;
    case kCombinedService:
        engine.Stop(kPcService, first);
        MarkStopped(kPcService);
        StopOffice(first);
        break;
    default:
        LogError(kFunction, "[PLENXSDK] plenx manager stop service invalid service type svcType(",
                 svcType, ")");
    }
    // Sends the signal that everything is stopped. A PC or phone service that was started alone
    // never sets a mark, so the signal follows its stop as well, unless a mark of type 0 or 3 is
    // set.
    if (startedMask == 0) {
        NotifyStatus(kCombinedService, first, kStatusStop, true);
    }
}

void PLENXManager::LocalDeviceOnlineFunc(ServiceType svcType, const std::string& first,
                                         const std::string& second,
                                         const std::shared_ptr<const unsigned char[]>& block,
                                         int size) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::LocalDeviceOnlineFunc";
    LogInfo(kFunction, "[PLENXSDK] plenx manager local device online svcType(", svcType,
            ") is invoked");
    PLENXManagerInner& engine = PLENXManagerInner::GetInstance();
    const auto length = static_cast<std::uint64_t>(size);
    switch (svcType) {
    case kOfficeService:
        OfficeLocalDeviceOnline(first, second, block.get(), size);
        break;
    case kPcService:
    case kPhoneService:
        engine.LocalDeviceOnline(svcType, first, second, length, block.get());
        break;
    case kCombinedService:
        // Only this job hands on the combined type unchanged. The link knows no such service and
        // refuses it, and the observers hear of the failure.
        engine.LocalDeviceOnline(svcType, first, second, length, block.get());
        OfficeLocalDeviceOnline(first, second, block.get(), size);
        break;
    default:
        LogError(kFunction, "[PLENXSDK] plenx manager invalid service type svcType(", svcType, ")");
    }
}

void PLENXManager::RemoteDeviceOnlineFunc(ServiceType svcType, const std::string& first,
                                          const std::string& second) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::RemoteDeviceOnlineFunc";
    LogInfo(kFunction, "[PLENXSDK] plenx manager remote device online svcType(", svcType,
            ") is invoked");
    PLENXManagerInner& engine = PLENXManagerInner::GetInstance();
    switch (svcType) {
    case kOfficeService:
        OfficeRemoteDeviceOnline(first, second);
        break;
    case kPcService:
    case kPhoneService:
        engine.RemoteDeviceOnline(svcType, first, second);
        break;
    case kCombinedService:
        engine.RemoteDeviceOnline(kPcService, first, second);
        OfficeRemoteDeviceOnline(first, second);
        break;
    default:
        LogError(kFunction,
                 "[PLENXSDK] plenx manager remote device online invalid service type svcType(",
                 svcType, ")");
    }
}

void PLENXManager::LocalDeviceOfflineFunc(ServiceType svcType, const std::string& first,
                                          const std::string& second, TriggerType trigger) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::LocalDeviceOfflineFunc";
    LogInfo(kFunction, "[PLENXSDK] plenx manager local device offline svcType(", svcType,
            ") is invoked");
    PLENXManagerInner& engine = PLENXManagerInner::GetInstance();
    switch (svcType) {
    case kOfficeService:
        OfficeLocalDeviceOffline(first, second);
        break;
    case kPcService:
    case kPhoneService:
        engine.LocalDeviceOffline(svcType, first, second, trigger);
        break;
    case kCombinedService:
        engine.LocalDeviceOffline(kPcService, first, second, trigger);
        OfficeLocalDeviceOffline(first, second);
        break;
    default:
        LogError(
            kFunction,
            "[PLENXSDK] plenx manager local device offline invalid service type svcType:", svcType);
    }
}

void PLENXManager::RemoteDeviceOfflineFunc(ServiceType svcType, const std::string& first,
                                           const std::string& second, TriggerType trigger) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManager::RemoteDeviceOfflineFunc";
    LogInfo(kFunction, "[PLENXSDK] plenx manager remote device offline svcType(", svcType,
            ") is invoked");
    PLENXManagerInner& engine = PLENXManagerInner::GetInstance();
    switch (svcType) {
    case kOfficeService:
        OfficeRemoteDeviceOffline(first, second);
        break;
    case kPcService:
    case kPhoneService:
        engine.RemoteDeviceOffline(svcType, first, second, trigger);
        break;
    case kCombinedService:
        engine.RemoteDeviceOffline(kPcService, first, second, trigger);
        OfficeRemoteDeviceOffline(first, second);
        break;
    default:
        LogError(kFunction,
                 "[PLENXSDK] plenx manager remote device offline invalid service type svcType:",
                 svcType);
    }
}

void PLENXManager::DeviceNameChangedFunc(const std::string& name) {
    LogInfo("DistributedFs::PLENXManager::DeviceNameChangedFunc",
            "[PLENXSDK] plenx manager device name changed is invoked");
    PLENXManagerInner::GetInstance().NameChanged(name);
}

void PLENXManager::RecvRemoteMessageFunc(PLENXMessageType msgType, unsigned int msgLen,
                                         const std::string& message) {
    LogInfo("DistributedFs::PLENXManager::RecvRemoteMessageFunc",
            "[PLENXSDK] plenx manager receive remote message is invoked");
    PLENXManagerInner::GetInstance().RecvRemoteMessage(msgType, msgLen, message);
}

}  // namespace DistributedFs
