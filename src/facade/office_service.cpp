// The office service: every use of the companion library stands here.
//
// fileManagerMutex is held over each call into it, over the notification of the outcome and
// over the change of startedMask.

#include "distributed_file_manager.h"

#include <algorithm>

#include "common/log.h"
#include "common/result_code.h"
#include "plenxsdk/plenx_manager.h"

namespace DistributedFs {
namespace {

constexpr int kLocalDeviceType = 1;
constexpr int kMostDeviceBytes = 16;  // the office service takes no more

std::uint32_t MarkOf(ServiceType svcType) {
    return std::uint32_t{1} << svcType;
}

}  // namespace

void PLENXManager::MakeFileManager(const std::string& first, const std::string& second,
                                   const std::string& third, bool flag) {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    if (!fileManager) {
        fileManager = std::make_shared<DistributedFileManager>(first, second, third, flag);
    }
}

void PLENXManager::UninstallOffice() {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    if (fileManager) {
        fileManager->UninstallPackages();
    }
}

void PLENXManager::StartOffice(const std::string& first) {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    const int rc = fileManager ? fileManager->Start() : kInvalidArgument;
    NotifyStatus(kOfficeService, first, kStatusStart, rc == 0);
    startedMask |= MarkOf(kOfficeService);
}

void PLENXManager::StopOffice(const std::string& first) {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    const int rc = fileManager ? fileManager->Stop() : kInvalidArgument;
    NotifyStatus(kOfficeService, first, kStatusStop, rc == 0);
    startedMask &= ~MarkOf(kOfficeService);
}

void PLENXManager::OfficeLocalDeviceOnline(const std::string& first, const std::string& second,
                                           const unsigned char* block, int size) {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    if (fileManager) {
        fileManager->LocalDeviceOnline(first, second, kLocalDeviceType, block,
                                       std::clamp(size, 0, kMostDeviceBytes));
    }
}

void PLENXManager::OfficeRemoteDeviceOnline(const std::string& first, const std::string& second) {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    const int rc = fileManager ? fileManager->RemoteDeviceOnline(first, second) : kInvalidArgument;
    NotifyStatus(kOfficeService, first, kStatusDeviceOnline, rc == 0);
}

void PLENXManager::OfficeLocalDeviceOffline(const std::string& first, const std::string& second) {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    const int rc = fileManager ? fileManager->LocalDeviceOffline(first, second) : kInvalidArgument;
    NotifyStatus(kOfficeService, first, kStatusDeviceOffline, rc == 0);
}

void PLENXManager::OfficeRemoteDeviceOffline(const std::string& first, const std::string& second) {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    if (fileManager) {
        fileManager->RemoteDeviceOffline(first, second);
    }
}

void PLENXManager::MarkStarted(ServiceType svcType) {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    startedMask |= MarkOf(svcType);
}

void PLENXManager::MarkStopped(ServiceType svcType) {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    startedMask &= ~MarkOf(svcType);
}

int PLENXManager::GetOfficeDir(const std::string& first, const std::string& second,
                               std::string& dir) {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    LogInfo("DistributedFs::PLENXManager::GetOfficeDir",
            "[PLENXSDK] plenx manager get office dir is invoked");
    int rc = 0;
    std::string neighbourDir;
    if (fileManager) {
        rc = fileManager->GetGroupNeighborDistributedDir(first, second, neighbourDir);
    }
    dir = neighbourDir + "\\" + dir;
    return rc;
}

}  // namespace DistributedFs
