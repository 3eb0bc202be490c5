// A system on which all is well, until a test changes what it says.

#ifndef TESTS_UNIT_HOST_DOCTOR_FAKE_SYSTEM_H
#define TESTS_UNIT_HOST_DOCTOR_FAKE_SYSTEM_H

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "doctor/system.h"

namespace PlenxHost {

class FakeSystem : public System {
public:
    FakeSystem() {
        for (const char* name : {"plenxsdk.dll", "LogHelper.dll", "distributedfile.dll",
                                 "libstdc++-6.dll", "libgcc_s_seh-1.dll", "libwinpthread-1.dll"}) {
            paths["C:\\host\\" + std::string(name)] = PathKind::kFile;
        }
        for (const char* name :
             {"plenxservice.exe", "dokan1.sys", "dokan1.dll", "dokanfuse1.dll"}) {
            paths["C:\\app\\" + std::string(name)] = PathKind::kFile;
        }
        for (const char* name : {"archive", "file", "audio", "picture", "video"}) {
            paths["C:\\app\\res\\plenx\\icon\\" + std::string(name)] = PathKind::kFolder;
        }
        imports["C:\\host\\plenxsdk.dll"] = {"distributedfile.dll", "libstdc++-6.dll",
                                             "KERNEL32.dll"};
        imports["C:\\host\\libstdc++-6.dll"] = {"libgcc_s_seh-1.dll", "libwinpthread-1.dll"};
        imports["C:\\app\\plenxservice.exe"] = {"KERNEL32.dll", "msvcrt.dll"};
        paths["C:\\app"] = PathKind::kFolder;
        paths["C:\\data"] = PathKind::kFolder;
    }

    PathKind Look(const std::string& path) override {
        const auto found = paths.find(path);
        return found == paths.end() ? PathKind::kAbsent : found->second;
    }
    std::optional<std::string> VersionOf(const std::string& file) override {
        const auto found = versions.find(file);
        return found == versions.end() ? std::nullopt : std::optional(found->second);
    }
    std::vector<std::string> ImportsOf(const std::string& file) override { return imports[file]; }
    bool HasSystemDll(const std::string& name) override { return systemDlls.count(name) != 0; }
    std::uint32_t WriteError(const std::string& folder) override { return writeErrors[folder]; }
    std::vector<std::string> CommonWriters(const std::string& folder) override {
        return writers[folder];
    }
    std::optional<std::string> FirstHeld(const std::string& folder) override {
        const auto found = held.find(folder);
        return found == held.end() ? std::nullopt : std::optional(found->second);
    }
    bool IsElevated() override { return elevated; }
    std::uint32_t ServiceManagerError() override { return serviceManagerError; }
    ServiceFacts Service(const std::string& name) override {
        const auto found = services.find(name);
        if (found == services.end()) {
            ServiceFacts facts;
            facts.error = kErrorNoSuchService;
            return facts;
        }
        return found->second;
    }
    bool IsServed(const std::string& endpoint) override { return pings.count(endpoint) != 0; }
    PingAnswer Ping(const std::string& endpoint) override {
        pinged.push_back(endpoint);
        return pings[endpoint];
    }

    std::map<std::string, PathKind> paths;
    std::map<std::string, std::string> versions;
    std::map<std::string, std::vector<std::string>> imports;
    std::set<std::string> systemDlls = {"KERNEL32.dll", "msvcrt.dll"};
    std::map<std::string, std::uint32_t> writeErrors;
    std::map<std::string, std::vector<std::string>> writers;
    std::map<std::string, std::string> held;
    std::map<std::string, ServiceFacts> services;
    std::map<std::string, PingAnswer> pings;  // the endpoints that are served
    std::vector<std::string> pinged;
    bool elevated = true;
    std::uint32_t serviceManagerError = kNoError;
};

}  // namespace PlenxHost

#endif  // TESTS_UNIT_HOST_DOCTOR_FAKE_SYSTEM_H
