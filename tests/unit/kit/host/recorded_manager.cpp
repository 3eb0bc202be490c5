#include "recorded_manager.h"

#include <map>
#include <set>

namespace RecordedManager {
namespace {

std::mutex recordMutex;
std::vector<std::string> calls;
std::set<DistributedFs::PLENXServiceObserver*> registered;
std::map<std::string, std::function<void()>> actions;

std::string Show(const std::string& text) {
    return '"' + text + '"';
}
std::string Show(bool flag) {
    return flag ? "true" : "false";
}
template <class Number>
std::string Show(Number number) {
    return std::to_string(number);
}

template <class... Arguments>
void Record(const std::string& operation, const Arguments&... arguments) {
    std::string list;
    ((list += (list.empty() ? "" : ",") + Show(arguments)), ...);
    std::function<void()> action;
    {
        const std::lock_guard<std::mutex> lock(recordMutex);
        calls.push_back(operation + "(" + list + ")");
        action = actions[operation];
    }
    if (action) {
        action();
    }
}

}  // namespace

void Reset() {
    const std::lock_guard<std::mutex> lock(recordMutex);
    calls.clear();
    registered.clear();
    actions.clear();
}

std::vector<std::string> Calls() {
    const std::lock_guard<std::mutex> lock(recordMutex);
    return calls;
}

void Notify(const std::function<void(DistributedFs::PLENXServiceObserver&)>& notify) {
    std::set<DistributedFs::PLENXServiceObserver*> all;
    {
        const std::lock_guard<std::mutex> lock(recordMutex);
        all = registered;
    }
    for (DistributedFs::PLENXServiceObserver* observer : all) {
        if (observer != nullptr) {
            notify(*observer);
        }
    }
}

void When(const std::string& operation, const std::function<void()>& action) {
    const std::lock_guard<std::mutex> lock(recordMutex);
    actions[operation] = action;
}

}  // namespace RecordedManager

namespace DistributedFs {

using RecordedManager::Record;

PLENXManager::PLENXManager() = default;
PLENXManager::~PLENXManager() = default;

PLENXManager& PLENXManager::GetInstance() {
    static PLENXManager instance;
    return instance;
}

void PLENXManager::Init(const std::string& install, const std::string& data, std::string other,
                        bool on) {
    Record("Init", install, data, other, on);
}

void PLENXManager::Destroy() {
    Record("Destroy");
}

std::int64_t PLENXManager::GetInt64Config(ServiceType svcType, ConfigType cfgType) {
    Record("GetInt64Config", +svcType, +cfgType);
    return cfgType == kServiceNotRunningConfig ? 1 : 0;
}

std::string PLENXManager::GetStringConfig(ServiceType svcType, ConfigType cfgType) {
    Record("GetStringConfig", +svcType, +cfgType);
    return "";
}

void PLENXManager::SetConfig(ServiceType svcType, ConfigType cfgType, std::string cfgValue) {
    Record("SetConfig", +svcType, +cfgType, cfgValue);
}

void PLENXManager::SetConfig(ServiceType svcType, ConfigType cfgType, std::int64_t cfgValue) {
    Record("SetConfig", +svcType, +cfgType, cfgValue);
}

int PLENXManager::Start(ServiceType svcType, const std::string& group,
                        const std::string& argument) {
    Record("Start", +svcType, group, argument);
    return group.empty() || argument.empty() ? kInvalidParameter : kAccepted;
}

int PLENXManager::Stop(ServiceType svcType, const std::string& group) {
    Record("Stop", +svcType, group);
    return kAccepted;
}

int PLENXManager::LocalDeviceOnline(ServiceType svcType, const std::string& group,
                                    const std::string& device, std::uint64_t size,
                                    const unsigned char* data) {
    std::string bytes = "null";
    if (data != nullptr) {
        bytes.clear();
        for (std::uint32_t i = 0; i != static_cast<std::uint32_t>(size); ++i) {
            bytes += (i == 0 ? "" : " ") + std::to_string(data[i]);
        }
    }
    Record("LocalDeviceOnline", +svcType, group, device, size, bytes);
    return kAccepted;
}

int PLENXManager::RemoteDeviceOnline(ServiceType svcType, const std::string& group,
                                     const std::string& device) {
    Record("RemoteDeviceOnline", +svcType, group, device);
    return kAccepted;
}

int PLENXManager::LocalDeviceOffline(ServiceType svcType, const std::string& group,
                                     const std::string& device, TriggerType trigger) {
    Record("LocalDeviceOffline", +svcType, group, device, +trigger);
    return kAccepted;
}

int PLENXManager::RemoteDeviceOffline(ServiceType svcType, const std::string& group,
                                      const std::string& device, TriggerType trigger) {
    Record("RemoteDeviceOffline", +svcType, group, device, +trigger);
    return kAccepted;
}

int PLENXManager::DeviceNameChanged(const std::string& name) {
    Record("DeviceNameChanged", name);
    return kAccepted;
}

int PLENXManager::RecvRemoteMessage(PLENXMessageType msgType, unsigned int msgLen,
                                    const std::string& message) {
    Record("RecvRemoteMessage", +msgType, msgLen, message);
    return kAccepted;
}

int PLENXManager::GetOfficeDir(const std::string& group, const std::string& device,
                               std::string& dir) {
    Record("GetOfficeDir", group, device, dir);
    dir = "C:\\office\\" + dir;
    return 5;
}

void PLENXManager::RegisterPLENXServiceObserver(PLENXServiceObserver* observer) {
    Record("Register", observer != nullptr);
    const std::lock_guard<std::mutex> lock(RecordedManager::recordMutex);
    RecordedManager::registered.insert(observer);
}

void PLENXManager::UnregisterPLENXServiceObserver(PLENXServiceObserver* observer) {
    Record("Unregister", observer != nullptr);
    const std::lock_guard<std::mutex> lock(RecordedManager::recordMutex);
    RecordedManager::registered.erase(observer);
}

}  // namespace DistributedFs
