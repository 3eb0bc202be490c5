#include "host/manager_commands.h"

#include <utility>

#include "host/platform.h"
#include "plenxsdk/plenx_manager.h"

namespace PlenxHost {
namespace {

using DistributedFs::ConfigType;
using DistributedFs::PLENXManager;
using DistributedFs::PLENXMessageType;
using DistributedFs::ServiceType;
using DistributedFs::TriggerType;

PLENXManager& Manager() {
    return PLENXManager::GetInstance();
}

Outcome Number(std::int64_t number) {
    Outcome outcome;
    outcome.number = number;
    return outcome;
}

TriggerType TakeTrigger(Arguments& arguments) {
    return static_cast<TriggerType>(arguments.Empty() ? 0 : arguments.TakeInt32("trigger"));
}

std::string TakeObserver(Arguments& arguments) {
    return arguments.Empty() ? "main" : arguments.TakeText("observer");
}

}  // namespace

Action ParseInit(Arguments& arguments) {
    const bool given = !arguments.Empty();
    InitArguments own;
    if (given) {
        own.install = arguments.TakeText("install folder");
        own.data = arguments.TakeText("data folder");
        own.third = arguments.Empty() ? "" : arguments.TakeText("third");
        own.flag = !arguments.Empty() && arguments.TakeOnOff();
    }
    return [=](Session& session) {
        const InitArguments& init = given ? own : session.Init();
        if (!given && (init.install.empty() || init.data.empty())) {
            throw ScriptError("init needs --install and --data, or arguments of its own");
        }
        Manager().Init(init.install, init.data, init.third, init.flag);
        return Outcome();
    };
}

Action ParseDestroy(Arguments&) {
    return [](Session&) {
        Manager().Destroy();
        return Outcome();
    };
}

Action ParseGetInt(Arguments& arguments) {
    const ServiceType service = arguments.TakeServiceType();
    const ConfigType key = arguments.TakeConfigType();
    return [=](Session&) { return Number(Manager().GetInt64Config(service, key)); };
}

Action ParseGetString(Arguments& arguments) {
    const ServiceType service = arguments.TakeServiceType();
    const ConfigType key = arguments.TakeConfigType();
    return [=](Session&) {
        Outcome outcome;
        outcome.text = Manager().GetStringConfig(service, key);
        return outcome;
    };
}

Action ParseSetString(Arguments& arguments) {
    const ServiceType service = arguments.TakeServiceType();
    const ConfigType key = arguments.TakeConfigType();
    const std::string value = arguments.TakeText("text");
    return [=](Session&) {
        Manager().SetConfig(service, key, value);
        return Outcome();
    };
}

Action ParseSetInt(Arguments& arguments) {
    const ServiceType service = arguments.TakeServiceType();
    const ConfigType key = arguments.TakeConfigType();
    const std::int64_t value = arguments.TakeInt64("number");
    return [=](Session&) {
        Manager().SetConfig(service, key, value);
        return Outcome();
    };
}

Action ParseStart(Arguments& arguments) {
    const ServiceType service = arguments.TakeServiceType();
    const std::string group = arguments.TakeText("group");
    const std::string argument = arguments.TakeText("argument");
    return [=](Session&) { return Number(Manager().Start(service, group, argument)); };
}

Action ParseStop(Arguments& arguments) {
    const ServiceType service = arguments.TakeServiceType();
    const std::string group = arguments.TakeText("group");
    return [=](Session&) { return Number(Manager().Stop(service, group)); };
}

// This command does not call the library.
Action ParseEndProcess(Arguments& arguments) {
    const ServiceType service = arguments.TakeServiceType();
    const char* const name = service == DistributedFs::kPcService       ? "PlenxPcSvc"
                             : service == DistributedFs::kPhoneService  ? "PlenxPhoneSvc"
                             : service == DistributedFs::kOfficeService ? "PlenxOfficeSvc"
                                                                        : nullptr;
    if (!name) {
        throw ScriptError("the service must be office, pc or phone");
    }
    return [=](Session&) { return Number(EndServiceProcess(name)); };
}

Action ParseLocalOnline(Arguments& arguments) {
    const ServiceType service = arguments.TakeServiceType();
    const std::string group = arguments.TakeText("group");
    const std::string device = arguments.TakeText("device");
    const DataBlock block = arguments.TakeData();
    return [=](Session&) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(block.bytes.data());
        return Number(Manager().LocalDeviceOnline(service, group, device, block.size,
                                                  block.isNull ? nullptr : bytes));
    };
}

Action ParseRemoteOnline(Arguments& arguments) {
    const ServiceType service = arguments.TakeServiceType();
    const std::string group = arguments.TakeText("group");
    const std::string device = arguments.TakeText("device");
    return [=](Session&) { return Number(Manager().RemoteDeviceOnline(service, group, device)); };
}

Action ParseLocalOffline(Arguments& arguments) {
    const ServiceType service = arguments.TakeServiceType();
    const std::string group = arguments.TakeText("group");
    const std::string device = arguments.TakeText("device");
    const TriggerType trigger = TakeTrigger(arguments);
    return [=](Session&) {
        return Number(Manager().LocalDeviceOffline(service, group, device, trigger));
    };
}

Action ParseRemoteOffline(Arguments& arguments) {
    const ServiceType service = arguments.TakeServiceType();
    const std::string group = arguments.TakeText("group");
    const std::string device = arguments.TakeText("device");
    const TriggerType trigger = TakeTrigger(arguments);
    return [=](Session&) {
        return Number(Manager().RemoteDeviceOffline(service, group, device, trigger));
    };
}

Action ParseRename(Arguments& arguments) {
    const std::string name = arguments.TakeText("name");
    return [=](Session&) { return Number(Manager().DeviceNameChanged(name)); };
}

Action ParseMessage(Arguments& arguments) {
    const auto type = static_cast<PLENXMessageType>(arguments.TakeInt32("type"));
    const std::string text = arguments.TakeText("text");
    const auto length = arguments.Empty()
                            ? static_cast<unsigned int>(text.size())
                            : static_cast<unsigned int>(arguments.TakeInt32("length"));
    return [=](Session&) { return Number(Manager().RecvRemoteMessage(type, length, text)); };
}

Action ParseOfficeDir(Arguments& arguments) {
    const std::string group = arguments.TakeText("group");
    const std::string device = arguments.TakeText("device");
    const std::string name = arguments.TakeText("name");
    return [=](Session&) {
        std::string folder = name;
        Outcome outcome = Number(Manager().GetOfficeDir(group, device, folder));
        outcome.text = folder;
        return outcome;
    };
}

Action ParseRegister(Arguments& arguments) {
    const std::string observer = TakeObserver(arguments);
    return [=](Session& session) {
        session.Register(observer);
        return Outcome();
    };
}

Action ParseUnregister(Arguments& arguments) {
    const std::string observer = TakeObserver(arguments);
    return [=](Session& session) {
        session.Unregister(observer);
        return Outcome();
    };
}

}  // namespace PlenxHost
