#include "support/install_folder.h"

#include <windows.h>

#include <fstream>
#include <system_error>

#include "support/child_process.h"
#include "support/file.h"
#include "support/service_state.h"
#include "support/test_folder.h"

namespace PlenxTest {
namespace {

namespace fs = std::filesystem;

const wchar_t* const kProgramFiles[] = {
    L"plenxservice.exe",
    L"dokan1.sys",
    L"dokan1.dll",
    L"dokanfuse1.dll",
};
const wchar_t* const kDriverFiles[] = {L"dokan1.sys", L"dokan1.dll", L"dokanfuse1.dll"};
const wchar_t* const kServices[] = {L"PlenxOfficeSvc", L"PlenxPcSvc", L"PlenxPhoneSvc", L"Dokan1"};
const wchar_t* const kCategories[] = {L"archive", L"file", L"audio", L"picture", L"video"};

// A service that is left over from an earlier run holds its files.
void RemoveServices() {
    for (const wchar_t* service : kServices) {
        RemoveService(service);
    }
}

void Copy(const fs::path& from, const fs::path& to) {
    if (!CopyFileW(from.c_str(), to.c_str(), FALSE)) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                                "cannot copy " + from.string());
    }
}

}  // namespace

InstallFolder::InstallFolder(const std::wstring& name)
    : root_(TestFolder() / name), install_(root_ / L"app"), data_(root_ / L"data") {
    RemoveServices();
    fs::remove_all(root_);
    for (const wchar_t* category : kCategories) {
        fs::create_directories(install_ / L"res" / L"plenx" / L"icon" / category);
    }
    fs::create_directories(data_);
    for (const wchar_t* file : kProgramFiles) {
        Copy(fs::path(ProgramFolder()) / file, install_ / file);
    }
}

InstallFolder::~InstallFolder() {
    RemoveServices();
    std::error_code ignored;
    fs::remove_all(root_, ignored);
}

void InstallFolder::AddUpgrade() const {
    fs::create_directories(install_ / L"upgrade");
    for (const wchar_t* file : kDriverFiles) {
        Copy(fs::path(ProgramFolder()) / L"upgrade" / file, install_ / L"upgrade" / file);
    }
}

void InstallFolder::SetServiceControl(const std::string& toml) const {
    WriteFile(install_ / L"plenxservice.toml", toml);
}

std::string ReadFile(const fs::path& path) {
    return PlenxSupport::ReadWholeFile(path).value_or("");
}

void WriteFile(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

}  // namespace PlenxTest
