// Loads the DLL by hand and calls its members through their exported names.

#ifndef PLENXSDK_TESTS_WINDOWS_ENDINGS_LOADED_LIBRARY_H
#define PLENXSDK_TESTS_WINDOWS_ENDINGS_LOADED_LIBRARY_H

#include <windows.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "plenxsdk/plenx_manager.h"
#include "support/exported_names.h"

namespace PlenxTest {

using DistributedFs::ConfigType;
using DistributedFs::PLENXManager;
using DistributedFs::PLENXServiceObserver;
using DistributedFs::ServiceType;

/// Any thread may call its functions.
class Library {
public:
    Library() : Library(LoadLibraryW(L"plenxsdk.dll")) {}
    /// Returns the library that the process has loaded by now.
    static Library Loaded() { return Library(GetModuleHandleW(L"plenxsdk.dll")); }

    void Free() { FreeLibrary(module_); }

    PLENXManager& Manager() const {
        return *reinterpret_cast<PLENXManager* (*)()>(Address(ExportedNames::kGetInstance))();
    }
    void Init(const std::string& install, const std::string& data) const {
        Call<decltype(&PLENXManager::Init)>(ExportedNames::kInit, install, data, "third", true);
    }
    void Destroy() const { Call<decltype(&PLENXManager::Destroy)>(ExportedNames::kDestroy); }
    std::int64_t GetInt64Config(ServiceType service, ConfigType key) const {
        return Call<decltype(&PLENXManager::GetInt64Config)>(ExportedNames::kGetInt64Config,
                                                             service, key);
    }
    std::int64_t NotRunning(ServiceType service) const {
        return GetInt64Config(service, DistributedFs::kServiceNotRunningConfig);
    }
    std::string GetStringConfig(ServiceType service, ConfigType key) const {
        return Call<decltype(&PLENXManager::GetStringConfig)>(ExportedNames::kGetStringConfig,
                                                              service, key);
    }
    void SetStringConfig(ServiceType service, ConfigType key, const std::string& value) const {
        using Member = void (PLENXManager::*)(ServiceType, ConfigType, std::string);
        Call<Member>(ExportedNames::kSetStringConfig, service, key, value);
    }
    void SetIntConfig(ServiceType service, ConfigType key, std::int64_t value) const {
        using Member = void (PLENXManager::*)(ServiceType, ConfigType, std::int64_t);
        Call<Member>(ExportedNames::kSetInt64Config, service, key, value);
    }
    int Start(ServiceType service, const std::string& group = "group") const {
        return Call<decltype(&PLENXManager::Start)>(ExportedNames::kStart, service, group,
                                                    "argument");
    }
    int Stop(ServiceType service) const {
        return Call<decltype(&PLENXManager::Stop)>(ExportedNames::kStop, service, "group");
    }
    int LocalDeviceOnline(ServiceType service, const std::string& data) const {
        return Call<decltype(&PLENXManager::LocalDeviceOnline)>(
            ExportedNames::kLocalDeviceOnline, service, "group", "here", data.size(),
            reinterpret_cast<const unsigned char*>(data.data()));
    }
    int RemoteDeviceOnline(ServiceType service) const {
        return Call<decltype(&PLENXManager::RemoteDeviceOnline)>(ExportedNames::kRemoteDeviceOnline,
                                                                 service, "group", "there");
    }
    int LocalDeviceOffline(ServiceType service) const {
        return Call<decltype(&PLENXManager::LocalDeviceOffline)>(ExportedNames::kLocalDeviceOffline,
                                                                 service, "group", "here",
                                                                 DistributedFs::kDefaultTrigger);
    }
    int RemoteDeviceOffline(ServiceType service) const {
        return Call<decltype(&PLENXManager::RemoteDeviceOffline)>(
            ExportedNames::kRemoteDeviceOffline, service, "group", "there",
            DistributedFs::kDefaultTrigger);
    }
    int Rename(const std::string& name) const {
        return Call<decltype(&PLENXManager::DeviceNameChanged)>(ExportedNames::kDeviceNameChanged,
                                                                name);
    }
    int RecvRemoteMessage(const std::string& message) const {
        return Call<decltype(&PLENXManager::RecvRemoteMessage)>(
            ExportedNames::kRecvRemoteMessage, DistributedFs::kDefaultMessage,
            static_cast<unsigned>(message.size()), message);
    }
    int GetOfficeDir(std::string& dir) const {
        return Call<decltype(&PLENXManager::GetOfficeDir)>(ExportedNames::kGetOfficeDir, "group",
                                                           "there", dir);
    }
    void Register(PLENXServiceObserver* observer) const {
        Call<decltype(&PLENXManager::RegisterPLENXServiceObserver)>(
            ExportedNames::kRegisterObserver, observer);
    }
    void Unregister(PLENXServiceObserver* observer) const {
        Call<decltype(&PLENXManager::UnregisterPLENXServiceObserver)>(
            ExportedNames::kUnregisterObserver, observer);
    }

private:
    explicit Library(HMODULE module) : module_(module) {
        if (module_ == nullptr) {
            throw std::runtime_error("plenxsdk.dll cannot be loaded");
        }
    }

    void* Address(const char* name) const {
        const FARPROC function = GetProcAddress(module_, name);
        if (function == nullptr) {
            throw std::runtime_error(std::string("not exported: ") + name);
        }
        return reinterpret_cast<void*>(function);
    }

    template <class Member, class... Arguments>
    std::invoke_result_t<Member, PLENXManager&, Arguments...> Call(const char* name,
                                                                   Arguments&&... arguments) const {
        void* const address = Address(name);
        // For a function that is not virtual, this holds its address, and zeros or nothing.
        Member member = nullptr;
        std::memcpy(&member, &address, sizeof(address));
        return (Manager().*member)(std::forward<Arguments>(arguments)...);
    }

    HMODULE module_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_ENDINGS_LOADED_LIBRARY_H
