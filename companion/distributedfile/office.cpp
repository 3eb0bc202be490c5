#include "distributedfile/office.h"

#include <utility>

#include "distributedfile/device_folder.h"

namespace Office {
namespace {

constexpr int kMaxDataBytes = 16;

bool IsValid(DeviceData data) {
    return data.size >= 0 && data.size <= kMaxDataBytes &&
           (data.bytes != nullptr || data.size == 0);
}

}  // namespace

OfficeState::OfficeState(std::string dataFolder) : dataFolder_(std::move(dataFolder)) {}

int OfficeState::Start() {
    if (started_) {
        return kAlreadyStarted;
    }
    started_ = true;
    return kOk;
}

int OfficeState::Stop() {
    if (!started_) {
        return kNotStarted;
    }
    started_ = false;
    groups_.clear();
    return kOk;
}

int OfficeState::LocalDeviceOnline(const std::string& group, const std::string& device, int type,
                                   DeviceData data) {
    if (const int code = CheckNames(group, device); code != kOk) {
        return code;
    }
    if (!IsValid(data)) {
        return kInvalidArgument;
    }
    LocalDevice local{type, {}};
    if (data.size != 0) {
        local.data.assign(data.bytes, data.bytes + data.size);
    }
    groups_[group].local[device] = std::move(local);
    return kOk;
}

int OfficeState::RemoteDeviceOnline(const std::string& group, const std::string& device) {
    if (const int code = CheckNames(group, device); code != kOk) {
        return code;
    }
    groups_[group].remote.insert(device);
    return kOk;
}

int OfficeState::LocalDeviceOffline(const std::string& group, const std::string& device) {
    if (const int code = CheckNames(group, device); code != kOk) {
        return code;
    }
    const auto found = groups_.find(group);
    const bool wasOnline = found != groups_.end() && found->second.local.erase(device) != 0;
    return wasOnline ? kOk : kUnknownDevice;
}

int OfficeState::RemoteDeviceOffline(const std::string& group, const std::string& device) {
    if (const int code = CheckNames(group, device); code != kOk) {
        return code;
    }
    const auto found = groups_.find(group);
    const bool wasOnline = found != groups_.end() && found->second.remote.erase(device) != 0;
    return wasOnline ? kOk : kUnknownDevice;
}

int OfficeState::GetGroupNeighborDistributedDir(const std::string& group, const std::string& device,
                                                std::string& dir) const {
    if (const int code = CheckNames(group, device); code != kOk) {
        return code;
    }
    if (!IsOnline(group, device)) {
        return kUnknownDevice;
    }
    return MakeDeviceFolder(dataFolder_, group, device, dir) ? kOk : kNoFolder;
}

int OfficeState::UninstallPackages() {
    started_ = false;
    groups_.clear();
    return kOk;
}

const LocalDevice* OfficeState::FindLocalDevice(const std::string& group,
                                                const std::string& device) const {
    const Group* const found = FindGroup(group);
    if (found == nullptr) {
        return nullptr;
    }
    const auto local = found->local.find(device);
    return local != found->local.end() ? &local->second : nullptr;
}

const OfficeState::Group* OfficeState::FindGroup(const std::string& group) const {
    const auto found = groups_.find(group);
    return found != groups_.end() ? &found->second : nullptr;
}

bool OfficeState::IsOnline(const std::string& group, const std::string& device) const {
    const Group* const found = FindGroup(group);
    return found != nullptr &&
           (found->local.count(device) != 0 || found->remote.count(device) != 0);
}

int OfficeState::CheckNames(const std::string& group, const std::string& device) const {
    if (group.empty() || device.empty()) {
        return kInvalidArgument;
    }
    return started_ ? kOk : kNotStarted;
}

}  // namespace Office
