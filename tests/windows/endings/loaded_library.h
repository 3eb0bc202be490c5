// The DLL loaded by hand: members are called through their exported names.

#ifndef PLENXSDK_TESTS_WINDOWS_ENDINGS_LOADED_LIBRARY_H
#define PLENXSDK_TESTS_WINDOWS_ENDINGS_LOADED_LIBRARY_H

#include <windows.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include "plenxsdk/plenx_manager.h"

namespace PlenxTest {

using DistributedFs::PLENXManager;
using DistributedFs::PLENXServiceObserver;
using DistributedFs::ServiceType;

/// Its functions may be called from any thread.
class Library {
public:
    Library() : module_(LoadLibraryW(L"plenxsdk.dll")) {
        if (module_ == nullptr) {
            throw std::runtime_error("plenxsdk.dll cannot be loaded");
        }
    }

    void Free() { FreeLibrary(module_); }

    PLENXManager& Manager() const {
        return *Function<PLENXManager* (*)()>("_ZN13DistributedFs12PLENXManager11GetInstanceEv")();
    }
    void Init(const std::string& install, const std::string& data) const {
        using Call =
            void (*)(PLENXManager*, const std::string&, const std::string&, std::string, bool);
        Function<Call>(
            "_ZN13DistributedFs12PLENXManager4InitERKNSt7__cxx1112basic_stringIcSt11"
            "char_traitsIcESaIcEEES8_S6_b")(&Manager(), install, data, "third", true);
    }
    void Start(ServiceType service) const {
        using Call = int (*)(PLENXManager*, ServiceType, const std::string&, const std::string&);
        Function<Call>(
            "_ZN13DistributedFs12PLENXManager5StartENS_11ServiceTypeERKNSt7__cxx1112"
            "basic_stringIcSt11char_traitsIcESaIcEEES9_")(&Manager(), service, "group", "argument");
    }
    void Stop(ServiceType service) const {
        using Call = int (*)(PLENXManager*, ServiceType, const std::string&);
        Function<Call>(
            "_ZN13DistributedFs12PLENXManager4StopENS_11ServiceTypeERKNSt7__cxx1112"
            "basic_stringIcSt11char_traitsIcESaIcEEE")(&Manager(), service, "group");
    }
    void RemoteDeviceOnline(ServiceType service) const {
        using Call = int (*)(PLENXManager*, ServiceType, const std::string&, const std::string&);
        Function<Call>(
            "_ZN13DistributedFs12PLENXManager18RemoteDeviceOnlineENS_11ServiceTypeERKNSt7"
            "__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES9_")(&Manager(), service, "group",
                                                                   "there");
    }
    void Rename(const std::string& name) const {
        using Call = int (*)(PLENXManager*, const std::string&);
        Function<Call>(
            "_ZN13DistributedFs12PLENXManager17DeviceNameChangedERKNSt7__cxx1112basic_"
            "stringIcSt11char_traitsIcESaIcEEE")(&Manager(), name);
    }
    std::int64_t NotRunning(ServiceType service) const {
        using Call = std::int64_t (*)(PLENXManager*, ServiceType, DistributedFs::ConfigType);
        return Function<Call>(
            "_ZN13DistributedFs12PLENXManager14GetInt64ConfigENS_11ServiceTypeENS"
            "_10ConfigTypeE")(&Manager(), service, DistributedFs::kServiceNotRunningConfig);
    }
    void Register(PLENXServiceObserver* observer) const {
        using Call = void (*)(PLENXManager*, PLENXServiceObserver*);
        Function<Call>(
            "_ZN13DistributedFs12PLENXManager28RegisterPLENXServiceObserverEPNS_20PLENX"
            "ServiceObserverE")(&Manager(), observer);
    }
    void Unregister(PLENXServiceObserver* observer) const {
        using Call = void (*)(PLENXManager*, PLENXServiceObserver*);
        Function<Call>(
            "_ZN13DistributedFs12PLENXManager30UnregisterPLENXServiceObserverEPNS_20PLENX"
            "ServiceObserverE")(&Manager(), observer);
    }

private:
    template <class Call>
    Call Function(const char* name) const {
        const FARPROC function = GetProcAddress(module_, name);
        if (function == nullptr) {
            throw std::runtime_error(std::string("not exported: ") + name);
        }
        return reinterpret_cast<Call>(reinterpret_cast<void*>(function));
    }

    HMODULE module_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_ENDINGS_LOADED_LIBRARY_H
