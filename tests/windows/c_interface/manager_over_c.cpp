// Implements the class of plenxsdk.dll with the plain C interface, so that a host that is written
// for the class runs on the interface.

#include <cstdint>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>

#include "plenxsdk/plenx.hpp"
#include "plenxsdk/plenx_manager.h"

namespace DistributedFs {
namespace {

const plenx::Library kSdk = plenx::Library::linked();

ServiceType Service(std::uint32_t number) {
    return static_cast<ServiceType>(number);
}

// Passes notifications on to an observer of the class.
class Adapter final : public plenx::Observer {
public:
    explicit Adapter(PLENXServiceObserver& to) : to_(to) {}

    std::int32_t send_local_message(std::int32_t type, std::uint32_t length,
                                    std::string_view message) override {
        return to_.SendLocalMessage(static_cast<PLENXMessageType>(type), length,
                                    std::string(message));
    }
    std::int32_t notify_connect(std::uint32_t service, std::string_view group) override {
        return to_.NotifyConnect(Service(service), std::string(group));
    }
    std::int32_t notify_disconnect(std::uint32_t service, std::string_view group) override {
        return to_.NotifyDisconnect(Service(service), std::string(group));
    }
    std::int32_t notify_reconnect(std::uint32_t service, std::string_view group) override {
        return to_.NotifyReconnect(Service(service), std::string(group));
    }
    std::int32_t query_link_status(std::uint32_t service, std::string_view group,
                                   std::uint32_t link, std::int32_t& status) override {
        return to_.QueryLinkStatus(Service(service), std::string(group), link, status);
    }
    std::int32_t notify_status(std::uint32_t service, std::string_view group, std::uint32_t kind,
                               bool value) override {
        return to_.NotifyStatus(Service(service), std::string(group), kind, value);
    }
    std::int32_t notify_error(std::int32_t code) override { return to_.NotifyError(code); }
    std::int32_t notify_disk_name(std::string_view name) override {
        return to_.NotifyDiskName(std::string(name));
    }

private:
    PLENXServiceObserver& to_;
};

struct Registered {
    explicit Registered(PLENXServiceObserver& observer)
        : adapter(observer), subscription(kSdk.observe(adapter).or_throw()) {}
    Adapter adapter;
    plenx::Subscription subscription;
};

std::map<PLENXServiceObserver*, Registered> registered;
std::mutex registeredMutex;

// As in the class, 0 and 26 are results, and everything else is an exception.
int ResultOf(const plenx::Result& result) {
    if (result.code() < 0) {
        result.or_throw();
    }
    return result.code();
}

}  // namespace

// Nobody ever looks at its members.
PLENXManager& PLENXManager::GetInstance() {
    alignas(PLENXManager) static unsigned char nothing[sizeof(PLENXManager)];
    return *reinterpret_cast<PLENXManager*>(nothing);
}

void PLENXManager::Init(const std::string& first, const std::string& second, std::string third,
                        bool flag) {
    kSdk.init(first, second, third, flag).or_throw();
}
void PLENXManager::Destroy() {
    kSdk.destroy().or_throw();
}
std::int64_t PLENXManager::GetInt64Config(ServiceType svcType, ConfigType cfgType) {
    return kSdk.get_int64(svcType, cfgType).or_throw();
}
std::string PLENXManager::GetStringConfig(ServiceType svcType, ConfigType cfgType) {
    return kSdk.get_string(svcType, cfgType).or_throw();
}
void PLENXManager::SetConfig(ServiceType svcType, ConfigType cfgType, std::string cfgValue) {
    kSdk.set_string(svcType, cfgType, cfgValue).or_throw();
}
void PLENXManager::SetConfig(ServiceType svcType, ConfigType cfgType, std::int64_t cfgValue) {
    kSdk.set_int64(svcType, cfgType, cfgValue).or_throw();
}
int PLENXManager::Start(ServiceType svcType, const std::string& first, const std::string& second) {
    return ResultOf(kSdk.start(svcType, first, second));
}
int PLENXManager::Stop(ServiceType svcType, const std::string& first) {
    return ResultOf(kSdk.stop(svcType, first));
}
int PLENXManager::LocalDeviceOnline(ServiceType svcType, const std::string& first,
                                    const std::string& second, std::uint64_t size,
                                    const unsigned char* data) {
    const std::string_view block(reinterpret_cast<const char*>(data), size);
    return ResultOf(kSdk.local_device_online(svcType, first, second, block));
}
int PLENXManager::RemoteDeviceOnline(ServiceType svcType, const std::string& first,
                                     const std::string& second) {
    return ResultOf(kSdk.remote_device_online(svcType, first, second));
}
int PLENXManager::LocalDeviceOffline(ServiceType svcType, const std::string& first,
                                     const std::string& second, TriggerType trigger) {
    return ResultOf(kSdk.local_device_offline(svcType, first, second, trigger));
}
int PLENXManager::RemoteDeviceOffline(ServiceType svcType, const std::string& first,
                                      const std::string& second, TriggerType trigger) {
    return ResultOf(kSdk.remote_device_offline(svcType, first, second, trigger));
}
int PLENXManager::DeviceNameChanged(const std::string& name) {
    return ResultOf(kSdk.device_name_changed(name));
}
int PLENXManager::RecvRemoteMessage(PLENXMessageType msgType, unsigned int msgLen,
                                    const std::string& message) {
    return ResultOf(kSdk.recv_remote_message(msgType, msgLen, message));
}
int PLENXManager::GetOfficeDir(const std::string& first, const std::string& second,
                               std::string& dir) {
    auto answer = kSdk.get_office_dir(first, second, dir).or_throw();
    dir = answer.second;
    return answer.first;
}
void PLENXManager::RegisterPLENXServiceObserver(PLENXServiceObserver* observer) {
    const std::lock_guard<std::mutex> lock(registeredMutex);
    registered.try_emplace(observer, *observer);
}
void PLENXManager::UnregisterPLENXServiceObserver(PLENXServiceObserver* observer) {
    const std::lock_guard<std::mutex> lock(registeredMutex);
    registered.erase(observer);
}

}  // namespace DistributedFs
