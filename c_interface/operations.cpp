// Each of these exports calls one operation of the library.

#include <cstddef>
#include <cstdint>
#include <string>

#include "arguments.h"
#include "own_process.h"
#include "plenxsdk/plenx.h"
#include "plenxsdk/plenx_manager.h"
#include "result.h"
#include "subscription.h"

using namespace PlenxC;
using DistributedFs::ConfigType;
using DistributedFs::PLENXManager;
using DistributedFs::PLENXMessageType;
using DistributedFs::ServiceType;
using DistributedFs::TriggerType;

namespace {

PLENXManager& Manager() {
    return PLENXManager::GetInstance();
}

ServiceType Service(std::uint32_t number) {
    return static_cast<ServiceType>(number);
}

ConfigType Key(std::uint32_t number) {
    return static_cast<ConfigType>(number);
}

}  // namespace

plenx_result PLENX_CALL plenx_init(const char* install, size_t install_len, const char* data,
                                   size_t data_len, const char* third, size_t third_len,
                                   int32_t flag) {
    return Guarded(__func__, [&] {
        RefuseInsideObserver();
        const std::string installFolder = CopyIn("install", install, install_len);
        const std::string dataFolder = CopyIn("data", data, data_len);
        std::string forCompanion = CopyIn("third", third, third_len);
        StayLoaded();
        Manager().Init(installFolder, dataFolder, std::move(forCompanion), flag != 0);
        return PLENX_OK;
    });
}

plenx_result PLENX_CALL plenx_destroy(void) {
    return Guarded(
        __func__,
        [] {
            RefuseInsideObserver();
            Manager().Destroy();
            return PLENX_OK;
        },
        PLENX_OK);
}

plenx_result PLENX_CALL plenx_get_int64(uint32_t service, uint32_t key, int64_t* value) {
    return Guarded(__func__, [&] {
        RequirePointer("value", value);
        *value = Manager().GetInt64Config(Service(service), Key(key));
        return PLENX_OK;
    });
}

plenx_result PLENX_CALL plenx_get_string(uint32_t service, uint32_t key, char* text,
                                         size_t capacity, size_t* length) {
    return Guarded(__func__, [&] {
        RequireBuffer(text, capacity);
        CopyOut(text, capacity, length, Manager().GetStringConfig(Service(service), Key(key)));
        return PLENX_OK;
    });
}

plenx_result PLENX_CALL plenx_set_int64(uint32_t service, uint32_t key, int64_t value) {
    return Guarded(__func__, [&] {
        Manager().SetConfig(Service(service), Key(key), std::int64_t{value});
        return PLENX_OK;
    });
}

plenx_result PLENX_CALL plenx_set_string(uint32_t service, uint32_t key, const char* value,
                                         size_t value_len) {
    return Guarded(__func__, [&] {
        Manager().SetConfig(Service(service), Key(key), CopyIn("value", value, value_len));
        return PLENX_OK;
    });
}

plenx_result PLENX_CALL plenx_start(uint32_t service, const char* group, size_t group_len,
                                    const char* argument, size_t argument_len) {
    return Guarded(__func__, [&] {
        return Manager().Start(Service(service), CopyIn("group", group, group_len),
                               CopyIn("argument", argument, argument_len));
    });
}

plenx_result PLENX_CALL plenx_stop(uint32_t service, const char* group, size_t group_len) {
    return Guarded(__func__, [&] {
        return Manager().Stop(Service(service), CopyIn("group", group, group_len));
    });
}

plenx_result PLENX_CALL plenx_local_device_online(uint32_t service, const char* group,
                                                  size_t group_len, const char* device,
                                                  size_t device_len, const void* data,
                                                  uint64_t size) {
    return Guarded(__func__, [&] {
        return Manager().LocalDeviceOnline(Service(service), CopyIn("group", group, group_len),
                                           CopyIn("device", device, device_len),
                                           BlockSize(data, size),
                                           static_cast<const unsigned char*>(data));
    });
}

plenx_result PLENX_CALL plenx_remote_device_online(uint32_t service, const char* group,
                                                   size_t group_len, const char* device,
                                                   size_t device_len) {
    return Guarded(__func__, [&] {
        return Manager().RemoteDeviceOnline(Service(service), CopyIn("group", group, group_len),
                                            CopyIn("device", device, device_len));
    });
}

plenx_result PLENX_CALL plenx_local_device_offline(uint32_t service, const char* group,
                                                   size_t group_len, const char* device,
                                                   size_t device_len, int32_t trigger) {
    return Guarded(__func__, [&] {
        return Manager().LocalDeviceOffline(Service(service), CopyIn("group", group, group_len),
                                            CopyIn("device", device, device_len),
                                            static_cast<TriggerType>(trigger));
    });
}

plenx_result PLENX_CALL plenx_remote_device_offline(uint32_t service, const char* group,
                                                    size_t group_len, const char* device,
                                                    size_t device_len, int32_t trigger) {
    return Guarded(__func__, [&] {
        return Manager().RemoteDeviceOffline(Service(service), CopyIn("group", group, group_len),
                                             CopyIn("device", device, device_len),
                                             static_cast<TriggerType>(trigger));
    });
}

plenx_result PLENX_CALL plenx_device_name_changed(const char* name, size_t name_len) {
    return Guarded(__func__,
                   [&] { return Manager().DeviceNameChanged(CopyIn("name", name, name_len)); });
}

plenx_result PLENX_CALL plenx_recv_remote_message(int32_t type, uint32_t msg_len,
                                                  const char* message, size_t message_len) {
    return Guarded(__func__, [&] {
        return Manager().RecvRemoteMessage(static_cast<PLENXMessageType>(type), msg_len,
                                           CopyIn("message", message, message_len));
    });
}

plenx_result PLENX_CALL plenx_get_office_dir(const char* group, size_t group_len,
                                             const char* device, size_t device_len,
                                             const char* relative, size_t relative_len, char* text,
                                             size_t capacity, size_t* length, int32_t* code) {
    return Guarded(__func__, [&] {
        RefuseInsideObserver();
        RequireBuffer(text, capacity);
        RequirePointer("code", code);
        std::string folder = CopyIn("relative", relative, relative_len);
        *code = Manager().GetOfficeDir(CopyIn("group", group, group_len),
                                       CopyIn("device", device, device_len), folder);
        CopyOut(text, capacity, length, folder);
        return PLENX_OK;
    });
}
