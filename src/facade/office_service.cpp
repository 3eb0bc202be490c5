// The office service: every use of the companion library is in this file.
//
// fileManagerMutex is held during each call into that library, during the notification of the
// outcome and during the change of startedMask.

#include "distributed_file_manager.h"

#include <algorithm>

#include "common/log.h"
#include "common/process_life.h"
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
    const bool success = fileManager && fileManager->Start() == 0;
    NotifyStatus(kOfficeService, first, kStatusStart, success);
    startedMask |= MarkOf(kOfficeService);
}

void PLENXManager::StopOffice(const std::string& first) {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    const bool success = fileManager && fileManager->Stop() == 0;
    NotifyStatus(kOfficeService, first, kStatusStop, success);
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
    const bool success = fileManager && fileManager->RemoteDeviceOnline(first, second) == 0;
    NotifyStatus(kOfficeService, first, kStatusDeviceOnline, success);
}

void PLENXManager::OfficeLocalDeviceOffline(const std::string& first, const std::string& second) {
    const std::lock_guard<std::mutex> lock(fileManagerMutex);
    const bool success = fileManager && fileManager->LocalDeviceOffline(first, second) == 0;
    NotifyStatus(kOfficeService, first, kStatusDeviceOffline, success);
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
    if (ProcessIsEnding()) {
        dir.insert(0, 1, '\\');  // as before Init
        return 0;
    }
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
