#include "soak/host_thread.h"

#include <windows.h>

#include "soak/observers.h"

namespace PlenxSoak {

using namespace DistributedFs;

namespace {

constexpr std::size_t kMostCallsPerRound = 5;
constexpr std::uint32_t kServices[] = {0, 1, 1, 1, 2, 2, 2, 3, 3};
constexpr std::uint32_t kUnknownServices[] = {4, 7, 0x7fffffff, 0x80000000, 0xffffffff};
constexpr const char* kDevices[] = {"device", "device-\xc3\xa4", "b"};
constexpr std::uint32_t kConfigTypes[] = {0, 1, 2, 5, 77, 0xffffffff};

std::vector<std::string> GroupNames(unsigned thread) {
    const std::string name = kGroupPrefix + std::to_string(thread);
    return {
        name,
        name + "_with_under_scores_1",
        name + " \xe6\x96\x87\xe4\xbb\xb6 \xf0\x9f\x98\x80",
        name + std::string(3000, 'x'),
        name + "\xff\xfe not UTF-8",
        name + std::string("\0hidden", 7),
    };
}

}  // namespace

HostThread::HostThread(std::uint64_t seed, unsigned number, const std::string& installFolder,
                       const std::string& dataFolder, OutcomeBook& book, Tally& tally,
                       Complaints& complaints)
    : dice_(seed, number),
      groups_(GroupNames(number)),
      installFolder_(installFolder),
      dataFolder_(dataFolder),
      book_(book),
      tally_(tally),
      complaints_(complaints) {}

bool HostThread::Round() {
    for (std::size_t calls = dice_.Below(kMostCallsPerRound); calls != 0; --calls) {
        RandomCall();
    }
    AnsweredCall();
    return book_.WaitForAll(std::chrono::seconds(kPatienceSeconds));
}

void HostThread::RandomCall() {
    using Member = void (HostThread::*)();
    constexpr Member kCalls[] = {
        &HostThread::Start,
        &HostThread::Start,
        &HostThread::Start,
        &HostThread::Stop,
        &HostThread::Stop,
        &HostThread::LocalDeviceOnline,
        &HostThread::LocalDeviceOnline,
        &HostThread::RemoteDeviceOnline,
        &HostThread::RemoteDeviceOnline,
        &HostThread::LocalDeviceOffline,
        &HostThread::LocalDeviceOffline,
        &HostThread::RemoteDeviceOffline,
        &HostThread::RemoteDeviceOffline,
        &HostThread::DeviceNameChanged,
        &HostThread::RecvRemoteMessage,
        &HostThread::RecvRemoteMessage,
        &HostThread::GetOfficeDir,
        &HostThread::SetStringConfig,
        &HostThread::SetIntConfig,
        &HostThread::GetConfig,
        &HostThread::InitAgain,
        &HostThread::Destroy,
        &HostThread::RegisterNobody,
        &HostThread::EmptyArgument,
    };
    (this->*dice_.Pick(kCalls))();
}

// No service is asked for this one, so the answer comes as soon as the worker gets to it.
void HostThread::AnsweredCall() {
    const std::string group = dice_.Pick(groups_);
    Certain(kCombinedService, group, kStatusDeviceOnline);
    Call("LocalDeviceOnline", kAccepted, [&] {
        return manager_.LocalDeviceOnline(kCombinedService, group, "end of round", 0, nullptr);
    });
}

template <class Body>
void HostThread::Call(const char* name, int expected, Body body) {
    call = name;
    callSince = GetTickCount64();
    const int result = body();
    callSince = 0;
    tally_.Count("calls", name);
    tally_.Count("returns", std::to_string(result));
    if (result != expected) {
        complaints_.Add(std::string(name) + " returned " + std::to_string(result));
    }
}

ServiceType HostThread::Service() {
    return static_cast<ServiceType>(dice_.OneIn(20) ? dice_.Pick(kUnknownServices)
                                                    : dice_.Pick(kServices));
}

// The texts are mostly short, but sometimes long and of any bytes.
std::string HostThread::Text() {
    const std::size_t longest = dice_.OneIn(50) ? 200000 : 40;
    std::string text(1 + dice_.Below(longest), 't');
    if (dice_.OneIn(4)) {
        for (char& c : text) {
            c = static_cast<char>(dice_.Bits());
        }
    }
    return text;
}

void HostThread::Certain(std::uint32_t service, const std::string& group, unsigned kind) {
    book_.Expect({service, group, kind}, OutcomeBook::kCertain);
}

void HostThread::Possible(std::uint32_t service, const std::string& group, unsigned kind) {
    book_.Expect({service, group, kind}, OutcomeBook::kPossible);
}

void HostThread::Start() {
    const ServiceType service = Service();
    const std::string group = dice_.Pick(groups_);
    if (service <= kPhoneService) {
        Certain(service, group, kStatusStart);
    } else if (service == kCombinedService) {
        Certain(kPcService, group, kStatusStart);
        Certain(kOfficeService, group, kStatusStart);
    }
    const std::string argument = Text();
    Call("Start", kAccepted, [&] { return manager_.Start(service, group, argument); });
}

// Any stop may find that everything is stopped.
void HostThread::Stop() {
    const ServiceType service = Service();
    const std::string group = dice_.Pick(groups_);
    if (service <= kPhoneService) {
        Certain(service, group, kStatusStop);
    } else if (service == kCombinedService) {
        Certain(kPcService, group, kStatusStop);
        Certain(kOfficeService, group, kStatusStop);
    }
    Possible(kCombinedService, group, kStatusStop);
    Call("Stop", kAccepted, [&] { return manager_.Stop(service, group); });
}

void HostThread::LocalDeviceOnline() {
    const ServiceType service = Service();
    const std::string group = dice_.Pick(groups_);
    const std::vector<unsigned char> data(dice_.Below(dice_.OneIn(20) ? 100000 : 24));
    const bool tooLong = dice_.OneIn(10);
    if (service == kPcService || service == kPhoneService) {
        Possible(service, group, kStatusDeviceOnline);
    } else if (service == kCombinedService) {
        Certain(service, group, kStatusDeviceOnline);
    }
    // A size of 2^31 or more counts as negative, and then nothing behind the pointer is read.
    const std::uint64_t size = tooLong ? 0x80000000u + dice_.Below(1000) : data.size();
    const std::string device = dice_.Pick(kDevices);
    Call("LocalDeviceOnline", kAccepted,
         [&] { return manager_.LocalDeviceOnline(service, group, device, size, data.data()); });
}

void HostThread::RemoteDeviceOnline() {
    const ServiceType service = Service();
    const std::string group = dice_.Pick(groups_);
    if (service == kPcService || service == kPhoneService) {
        Possible(service, group, kStatusDeviceOnline);
    } else if (service == kOfficeService) {
        Certain(kOfficeService, group, kStatusDeviceOnline);
    } else if (service == kCombinedService) {
        Possible(kPcService, group, kStatusDeviceOnline);
        Certain(kOfficeService, group, kStatusDeviceOnline);
    }
    const std::string device = dice_.Pick(kDevices);
    Call("RemoteDeviceOnline", kAccepted,
         [&] { return manager_.RemoteDeviceOnline(service, group, device); });
}

void HostThread::LocalDeviceOffline() {
    const ServiceType service = Service();
    const std::string group = dice_.Pick(groups_);
    if (service == kPcService || service == kPhoneService) {
        Possible(service, group, kStatusDeviceOffline);
    } else if (service == kOfficeService) {
        Certain(kOfficeService, group, kStatusDeviceOffline);
    } else if (service == kCombinedService) {
        Possible(kPcService, group, kStatusDeviceOffline);
        Certain(kOfficeService, group, kStatusDeviceOffline);
    }
    const std::string device = dice_.Pick(kDevices);
    const auto trigger = static_cast<TriggerType>(dice_.Bits());
    Call("LocalDeviceOffline", kAccepted,
         [&] { return manager_.LocalDeviceOffline(service, group, device, trigger); });
}

void HostThread::RemoteDeviceOffline() {
    const ServiceType service = Service();
    const std::string group = dice_.Pick(groups_);
    if (service == kPcService || service == kPhoneService) {
        Possible(service, group, kStatusDeviceOffline);
    } else if (service == kCombinedService) {
        Possible(kPcService, group, kStatusDeviceOffline);
    }
    const std::string device = dice_.Pick(kDevices);
    const auto trigger = static_cast<TriggerType>(dice_.Bits());
    Call("RemoteDeviceOffline", kAccepted,
         [&] { return manager_.RemoteDeviceOffline(service, group, device, trigger); });
}

void HostThread::DeviceNameChanged() {
    const std::string name = Text();
    Call("DeviceNameChanged", kAccepted, [&] { return manager_.DeviceNameChanged(name); });
}

void HostThread::RecvRemoteMessage() {
    const auto type = static_cast<PLENXMessageType>(dice_.Bits());
    const auto length = static_cast<unsigned>(dice_.Bits());
    const std::string message = dice_.OneIn(5) ? std::string() : Text();
    Call("RecvRemoteMessage", kAccepted,
         [&] { return manager_.RecvRemoteMessage(type, length, message); });
}

// The results are those of the companion.
void HostThread::GetOfficeDir() {
    const std::string group = dice_.Pick(groups_).substr(0, 5);
    const std::string device = dice_.Pick(kDevices);
    std::string folder = "relative";
    Call("GetOfficeDir", kAccepted, [&] {
        const int code = manager_.GetOfficeDir(group, device, folder);
        tally_.Count("office codes", std::to_string(code));
        return int{kAccepted};
    });
}

void HostThread::SetStringConfig() {
    const ServiceType service = Service();
    const auto config = static_cast<ConfigType>(dice_.Pick(kConfigTypes));
    std::string value = Text();
    Call("SetConfig, string", kAccepted, [&] {
        manager_.SetConfig(service, config, std::move(value));
        return int{kAccepted};
    });
}

void HostThread::SetIntConfig() {
    const ServiceType service = Service();
    const auto config = static_cast<ConfigType>(dice_.Pick(kConfigTypes));
    const auto value = static_cast<std::int64_t>(dice_.Bits());
    Call("SetConfig, integer", kAccepted, [&] {
        manager_.SetConfig(service, config, value);
        return int{kAccepted};
    });
}

void HostThread::GetConfig() {
    const ServiceType service = Service();
    const auto config = static_cast<ConfigType>(dice_.Pick(kConfigTypes));
    Call("GetStringConfig", kAccepted,
         [&] { return static_cast<int>(manager_.GetStringConfig(service, config).size()); });
    Call("GetInt64Config", kAccepted, [&] {
        const std::int64_t value = manager_.GetInt64Config(service, config);
        return value == 0 || value == 1 ? int{kAccepted} : -1;
    });
}

void HostThread::InitAgain() {
    Call("Init", kAccepted, [&] {
        manager_.Init(installFolder_, dataFolder_, "third", true);
        return int{kAccepted};
    });
}

void HostThread::Destroy() {
    Call("Destroy", kAccepted, [&] {
        manager_.Destroy();
        return int{kAccepted};
    });
}

void HostThread::RegisterNobody() {
    Call("RegisterPLENXServiceObserver", kAccepted, [&] {
        manager_.RegisterPLENXServiceObserver(nullptr);
        return int{kAccepted};
    });
    Call("UnregisterPLENXServiceObserver", kAccepted, [&] {
        manager_.UnregisterPLENXServiceObserver(nullptr);
        return int{kAccepted};
    });
}

void HostThread::EmptyArgument() {
    const ServiceType service = Service();
    const std::string& group = dice_.Pick(groups_);
    Call("Start", kInvalidParameter, [&] { return manager_.Start(service, group, ""); });
    Call("Stop", kInvalidParameter, [&] { return manager_.Stop(service, ""); });
    Call("LocalDeviceOnline", kInvalidParameter,
         [&] { return manager_.LocalDeviceOnline(service, "", "d", 0, nullptr); });
    Call("RemoteDeviceOnline", kInvalidParameter,
         [&] { return manager_.RemoteDeviceOnline(service, group, ""); });
    Call("LocalDeviceOffline", kInvalidParameter,
         [&] { return manager_.LocalDeviceOffline(service, "", "d", kDefaultTrigger); });
    Call("RemoteDeviceOffline", kInvalidParameter,
         [&] { return manager_.RemoteDeviceOffline(service, group, "", kDefaultTrigger); });
    Call("DeviceNameChanged", kInvalidParameter, [&] { return manager_.DeviceNameChanged(""); });
}

}  // namespace PlenxSoak
