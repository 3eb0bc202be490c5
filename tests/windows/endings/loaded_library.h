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
        return *reinterpret_cast<PLENXManager* (*)()>(Address("11GetInstanceEv"))();
    }
    void Init(const std::string& install, const std::string& data) const {
        Call<decltype(&PLENXManager::Init)>(
            "4InitERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES8_S6_b", install, data,
            "third", true);
    }
    void Destroy() const { Call<decltype(&PLENXManager::Destroy)>("7DestroyEv"); }
    std::int64_t GetInt64Config(ServiceType service, ConfigType key) const {
        return Call<decltype(&PLENXManager::GetInt64Config)>(
            "14GetInt64ConfigENS_11ServiceTypeENS_10ConfigTypeE", service, key);
    }
    std::int64_t NotRunning(ServiceType service) const {
        return GetInt64Config(service, DistributedFs::kServiceNotRunningConfig);
    }
    std::string GetStringConfig(ServiceType service, ConfigType key) const {
        return Call<decltype(&PLENXManager::GetStringConfig)>(
            "15GetStringConfigB5cxx11ENS_11ServiceTypeENS_10ConfigTypeE", service, key);
    }
    void SetStringConfig(ServiceType service, ConfigType key, const std::string& value) const {
        using Member = void (PLENXManager::*)(ServiceType, ConfigType, std::string);
        Call<Member>(
            "9SetConfigENS_11ServiceTypeENS_10ConfigTypeENSt7__cxx1112basic_stringIcSt11"
            "char_traitsIcESaIcEEE",
            service, key, value);
    }
    void SetIntConfig(ServiceType service, ConfigType key, std::int64_t value) const {
        using Member = void (PLENXManager::*)(ServiceType, ConfigType, std::int64_t);
        Call<Member>("9SetConfigENS_11ServiceTypeENS_10ConfigTypeEx", service, key, value);
    }
    int Start(ServiceType service, const std::string& group = "group") const {
        return Call<decltype(&PLENXManager::Start)>(
            "5StartENS_11ServiceTypeERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES9_",
            service, group, "argument");
    }
    int Stop(ServiceType service) const {
        return Call<decltype(&PLENXManager::Stop)>(
            "4StopENS_11ServiceTypeERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE",
            service, "group");
    }
    int LocalDeviceOnline(ServiceType service, const std::string& data) const {
        return Call<decltype(&PLENXManager::LocalDeviceOnline)>(
            "17LocalDeviceOnlineENS_11ServiceTypeERKNSt7__cxx1112basic_stringIcSt11char_traitsIc"
            "ESaIcEEES9_yPKh",
            service, "group", "here", data.size(),
            reinterpret_cast<const unsigned char*>(data.data()));
    }
    int RemoteDeviceOnline(ServiceType service) const {
        return Call<decltype(&PLENXManager::RemoteDeviceOnline)>(
            "18RemoteDeviceOnlineENS_11ServiceTypeERKNSt7__cxx1112basic_stringIcSt11char_traitsIc"
            "ESaIcEEES9_",
            service, "group", "there");
    }
    int LocalDeviceOffline(ServiceType service) const {
        return Call<decltype(&PLENXManager::LocalDeviceOffline)>(
            "18LocalDeviceOfflineENS_11ServiceTypeERKNSt7__cxx1112basic_stringIcSt11char_traitsIc"
            "ESaIcEEES9_NS_11TriggerTypeE",
            service, "group", "here", DistributedFs::kDefaultTrigger);
    }
    int RemoteDeviceOffline(ServiceType service) const {
        return Call<decltype(&PLENXManager::RemoteDeviceOffline)>(
            "19RemoteDeviceOfflineENS_11ServiceTypeERKNSt7__cxx1112basic_stringIcSt11char_traitsIc"
            "ESaIcEEES9_NS_11TriggerTypeE",
            service, "group", "there", DistributedFs::kDefaultTrigger);
    }
    int Rename(const std::string& name) const {
        return Call<decltype(&PLENXManager::DeviceNameChanged)>(
            "17DeviceNameChangedERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE", name);
    }
    int RecvRemoteMessage(const std::string& message) const {
        return Call<decltype(&PLENXManager::RecvRemoteMessage)>(
            "17RecvRemoteMessageENS_16PLENXMessageTypeEjRKNSt7__cxx1112basic_stringIcSt11"
            "char_traitsIcESaIcEEE",
            DistributedFs::kDefaultMessage, static_cast<unsigned>(message.size()), message);
    }
    int GetOfficeDir(std::string& dir) const {
        return Call<decltype(&PLENXManager::GetOfficeDir)>(
            "12GetOfficeDirERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES8_RS6_", "group",
            "there", dir);
    }
    void Register(PLENXServiceObserver* observer) const {
        Call<decltype(&PLENXManager::RegisterPLENXServiceObserver)>(
            "28RegisterPLENXServiceObserverEPNS_20PLENXServiceObserverE", observer);
    }
    void Unregister(PLENXServiceObserver* observer) const {
        Call<decltype(&PLENXManager::UnregisterPLENXServiceObserver)>(
            "30UnregisterPLENXServiceObserverEPNS_20PLENXServiceObserverE", observer);
    }

private:
    explicit Library(HMODULE module) : module_(module) {
        if (module_ == nullptr) {
            throw std::runtime_error("plenxsdk.dll cannot be loaded");
        }
    }

    // name: the exported name, without the beginning that all members share.
    void* Address(const std::string& name) const {
        const FARPROC function =
            GetProcAddress(module_, ("_ZN13DistributedFs12PLENXManager" + name).c_str());
        if (function == nullptr) {
            throw std::runtime_error("not exported: " + name);
        }
        return reinterpret_cast<void*>(function);
    }

    template <class Member, class... Arguments>
    std::invoke_result_t<Member, PLENXManager&, Arguments...> Call(const char* name,
                                                                   Arguments&&... arguments) const {
        void* const address = Address(name);
        Member member = nullptr;  // of a function that is not virtual: its address, and a zero
        std::memcpy(&member, &address, sizeof(address));
        return (Manager().*member)(std::forward<Arguments>(arguments)...);
    }

    HMODULE module_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_ENDINGS_LOADED_LIBRARY_H
