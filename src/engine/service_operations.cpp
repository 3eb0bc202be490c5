// The engine's jobs for one service: start, stop, and devices that come and go.

#include <windows.h>

#include "common/log.h"
#include "common/result_code.h"
#include "engine/config_tables.h"
#include "engine/plenx_manager_inner.h"
#include "rpc/rpc_manager.h"
#include "service/service_manager.h"

namespace DistributedFs {
namespace {

constexpr std::string_view kStart = "DistributedFs::PLENXManagerInner::Start";

// Together this makes at most 26 pings and 25 pauses.
constexpr unsigned kPingPauseMilliseconds = 200;
constexpr unsigned kPingTimeoutMilliseconds = 5000;

constexpr std::int32_t kLocal = 0;
constexpr std::int32_t kRemote = 1;

std::string GroupName(const std::string& group, ServiceType svcType) {
    return group + "_" + std::to_string(static_cast<std::uint32_t>(svcType));
}

}  // namespace

std::int32_t PLENXManagerInner::Start(ServiceType svcType, const std::string& group,
                                      const std::string& groupArg) {
    LogInfo(kStart, "[PLENXSDK] plenx manager start service ", svcType);
    std::int32_t rc = StartPlenxService(svcType);
    if (rc != kSuccess) {
        LogError(kStart, "[PLENXSDK] plenx manager start plenx service error ", rc);
        return ReportFailure(svcType, group, kStatusStart, rc);
    }
    WaitForAnswer(svcType);
    PushConfiguration(svcType);
    rc = RpcManager::GetInstance().CreateGroup(svcType, GroupName(group, svcType), groupArg);
    if (rc != kSuccess) {
        LogError(kStart, "[PLENXSDK] plenx manager create group error ", rc);
        return ReportFailure(svcType, group, kStatusStart, rc);
    }
    Notify(svcType, group, kStatusStart, true);
    return kSuccess;
}

std::int32_t PLENXManagerInner::Stop(ServiceType svcType, const std::string& group) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManagerInner::Stop";
    LogInfo(kFunction, "[PLENXSDK] plenx manager stop service ", svcType);
    std::int32_t rc = RpcManager::GetInstance().DeleteGroup(svcType, GroupName(group, svcType));
    if (rc != kSuccess) {
        LogError(kFunction, "[PLENXSDK] plenx manager delete group error ", rc);
    }
    rc = StopPlenxService(svcType);
    if (rc != kSuccess) {
        LogError(kFunction, "[PLENXSDK] plenx manager stop plenx service error ", rc);
    }
    // Hosts rely on this: every stop reports its end, and the value is always false.
    Notify(svcType, group, kStatusStop, false);
    return kSuccess;
}

std::int32_t PLENXManagerInner::LocalDeviceOnline(ServiceType svcType, const std::string& group,
                                                  const std::string& deviceId,
                                                  std::uint64_t dataLen, const std::uint8_t* data) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManagerInner::LocalDeviceOnline";
    LogInfo(kFunction, "[PLENXSDK] plenx manager inner local device online svcType(", svcType, ")");
    const auto length = static_cast<std::int32_t>(static_cast<std::uint32_t>(dataLen));
    const std::int32_t rc = RpcManager::GetInstance().DeviceOnline(
        svcType, GroupName(group, svcType), deviceId, kLocal, data, length);
    return EndDeviceJob({kFunction, svcType, group, kStatusDeviceOnline}, rc,
                        "[PLENXSDK] plenx manager inner local device online error ",
                        "[PLENXSDK] plenx manager local device online success svcType(");
}

std::int32_t PLENXManagerInner::RemoteDeviceOnline(ServiceType svcType, const std::string& group,
                                                   const std::string& deviceId) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManagerInner::RemoteDeviceOnline";
    LogInfo(kFunction, "[PLENXSDK] plenx manager inner remote device online service ", svcType);
    const std::int32_t rc = RpcManager::GetInstance().DeviceOnline(
        svcType, GroupName(group, svcType), deviceId, kRemote, nullptr, 0);
    return EndDeviceJob({kFunction, svcType, group, kStatusDeviceOnline}, rc,
                        "[PLENXSDK] plenx manager inner remote device online error ",
                        "[PLENXSDK] plenx manager inner remote device online success svcType(");
}

std::int32_t PLENXManagerInner::LocalDeviceOffline(ServiceType svcType, const std::string& group,
                                                   const std::string& deviceId,
                                                   TriggerType trigger) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManagerInner::LocalDeviceOffline";
    LogInfo(kFunction, "[PLENXSDK] plenx manager inner local device offline service (", svcType,
            ")");
    const std::int32_t rc = RpcManager::GetInstance().DeviceOffline(
        svcType, GroupName(group, svcType), deviceId, kLocal, trigger);
    return EndDeviceJob({kFunction, svcType, group, kStatusDeviceOffline}, rc,
                        "[PLENXSDK] plenx manager inner local device offline error ",
                        "[PLENXSDK] plenx manager inner local device offline success svcType(");
}

std::int32_t PLENXManagerInner::RemoteDeviceOffline(ServiceType svcType, const std::string& group,
                                                    const std::string& deviceId,
                                                    TriggerType trigger) {
    constexpr std::string_view kFunction = "DistributedFs::PLENXManagerInner::RemoteDeviceOffline";
    LogInfo(kFunction, "[PLENXSDK] plenx manager inner remote device offline service (", svcType,
            ")");
    const std::int32_t rc = RpcManager::GetInstance().DeviceOffline(
        svcType, GroupName(group, svcType), deviceId, kRemote, trigger);
    return EndDeviceJob({kFunction, svcType, group, kStatusDeviceOffline}, rc,
                        "[PLENXSDK] plenx manager inner remote device offline error ",
                        "[PLENXSDK] plenx manager inner remote device offline success svcType(");
}

// Logs the outcome. The observers hear of a failure as well.
std::int32_t PLENXManagerInner::EndDeviceJob(const DeviceJob& job, std::int32_t rc,
                                             const char* failure, const char* success) {
    if (rc != kSuccess) {
        LogError(job.function, failure, rc);
        return ReportFailure(job.svcType, job.group, job.kind, rc);
    }
    LogInfo(job.function, success, job.svcType, ")");
    return kSuccess;
}

// There is no service of any type when the service manager could not be made.
std::int32_t PLENXManagerInner::StartPlenxService(ServiceType svcType) {
    const auto row = static_cast<std::int32_t>(svcType);
    return serviceManager ? serviceManager->StartPlenxService(row) : kOutOfTable;
}

std::int32_t PLENXManagerInner::StopPlenxService(ServiceType svcType) {
    const auto row = static_cast<std::int32_t>(svcType);
    return serviceManager ? serviceManager->StopPlenxService(row) : kOutOfTable;
}

// A service that runs may need a while before it answers. If it never does, the start goes on, and
// the requests that follow show the failure.
void PLENXManagerInner::WaitForAnswer(ServiceType svcType) {
    std::int64_t attempt = 0;
    unsigned waited = 0;
    while (RpcManager::GetInstance().PingService(svcType, attempt) != kSuccess) {
        if (waited >= kPingTimeoutMilliseconds) {
            LogError(kStart, "[PLENXSDK] plenx manager wait plenx service timeout (",
                     kPingTimeoutMilliseconds, " ms)");
            return;
        }
        Sleep(kPingPauseMilliseconds);
        ++attempt;
        waited += kPingPauseMilliseconds;
    }
}

// A setting that the service refuses does not fail the start.
void PLENXManagerInner::PushConfiguration(ServiceType svcType) {
    const ConfigTables& tables = ConfigTables::GetInstance();
    if (svcType >= tables.strings.size()) {
        return;
    }
    RpcManager& rpc = RpcManager::GetInstance();
    for (const auto& [key, value] : tables.strings[svcType]) {
        rpc.SetStringConfig(svcType, static_cast<ConfigType>(key), value);
    }
    for (const auto& [key, value] : tables.integers[svcType]) {
        rpc.SetInt64Config(svcType, static_cast<ConfigType>(key), value);
    }
}

void PLENXManagerInner::Notify(ServiceType svcType, const std::string& group, StatusKind kind,
                               bool success) {
    PLENXManager::GetInstance().NotifyStatus(svcType, group, kind, success);
}

std::int32_t PLENXManagerInner::ReportFailure(ServiceType svcType, const std::string& group,
                                              StatusKind kind, std::int32_t rc) {
    Notify(svcType, group, kind, false);
    return rc;
}

}  // namespace DistributedFs
