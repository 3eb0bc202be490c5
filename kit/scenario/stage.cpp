#include "scenario/stage.h"

#include <windows.h>

#include <algorithm>
#include <fstream>
#include <system_error>

#include "scenario/ready_scenarios.h"
#include "scenario/registered_services.h"
#include "toml_reader.h"

namespace PlenxScenario {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPrograms[] = {"plenxservice.exe", "dokan1.sys", "dokan1.dll",
                                     "dokanfuse1.dll"};
constexpr const char* kCategories[] = {"archive", "file", "audio", "picture", "video"};
constexpr const char* kRuns[] = {"plenxservice.pc.runs", "plenxservice.phone.runs"};

// A program that has just ended may hold its file for a moment.
void RemovePatiently(const fs::path& path) {
    std::error_code error;
    for (int attempt = 0; attempt != 50; ++attempt) {
        fs::remove_all(path, error);
        if (!error) {
            return;
        }
        Sleep(100);
    }
}

// The library registers the services by this path, unquoted.
void CheckPath(const fs::path& install) {
    const std::u16string path = install.u16string();
    const bool plain = std::all_of(path.begin(), path.end(),
                                   [](char16_t letter) { return letter > u' ' && letter < 0x7f; });
    if (!plain) {
        throw UsageError("the install folder's path must be ASCII and free of blanks: " +
                         install.u8string());
    }
}

void CheckOthers(const fs::path& install) {
    const std::string other = ServiceOfOthers(install);
    if (!other.empty()) {
        throw UsageError("a host is installed here, and its service would be replaced: " + other);
    }
}

}  // namespace

Stage::Stage(const StageOptions& options, const std::string& name, const fs::path& scenario)
    : logs_(fs::absolute(options.work) / name),
      install_(options.install.empty() ? logs_ / "app" : fs::absolute(options.install)),
      data_(options.data.empty() ? logs_ / "data" : fs::absolute(options.data)),
      ownInstall_(!options.install.empty()),
      ownData_(!options.data.empty()) {
    CheckPath(install_);
    CheckOthers(install_);
    RemoveServicesOf(install_);
    RemovePatiently(logs_);
    fs::create_directories(data_);
    if (ownInstall_ && fs::exists(ControlFile())) {
        throw UsageError("there is a control file already: " + ControlFile().u8string());
    }
    if (!ownInstall_) {
        LayOutInstallFolder(options.programs);
    }
    fs::create_directories(logs_);
    std::ofstream(ControlFile(), std::ios::binary) << toml::table{
        {"scenario", scenario.u8string()}, {"log", (logs_ / "service.log").u8string()}};
}

Stage::~Stage() {
    RemoveServicesOf(install_);
    std::error_code ignored;
    fs::remove(ControlFile(), ignored);
    for (const char* const runs : kRuns) {
        fs::remove(install_ / runs, ignored);
    }
    if (!ownInstall_) {
        RemovePatiently(install_);
    }
    if (!ownData_) {
        RemovePatiently(data_);
    }
}

void Stage::LayOutInstallFolder(const fs::path& programs) const {
    for (const char* const category : kCategories) {
        fs::create_directories(install_ / "res" / "plenx" / "icon" / category);
    }
    for (const char* const program : kPrograms) {
        std::error_code error;
        fs::copy_file(programs / program, install_ / program, error);
        if (error) {
            throw UsageError("cannot copy " + (programs / program).u8string() + ": " +
                             error.message());
        }
    }
}

}  // namespace PlenxScenario
