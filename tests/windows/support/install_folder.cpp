#include "support/install_folder.h"

#include <windows.h>

#include <aclapi.h>

#include <fstream>
#include <stdexcept>
#include <system_error>

#include "support/child_process.h"
#include "support/file.h"
#include "support/service_state.h"
#include "support/test_folder.h"
#include "support/wait.h"

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

// In this form a path may have more than 260 characters.
std::wstring LongForm(const fs::path& path) {
    return L"\\\\?\\" + path.wstring();
}

bool RemoveOnce(const std::wstring& path);

void RemoveContent(const std::wstring& folder) {
    WIN32_FIND_DATAW entry{};
    const HANDLE listing = FindFirstFileW((folder + L"\\*").c_str(), &entry);
    if (listing == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        const std::wstring name = entry.cFileName;
        if (name != L"." && name != L"..") {
            RemoveOnce(folder + L"\\" + name);
        }
    } while (FindNextFileW(listing, &entry));
    FindClose(listing);
}

bool RemoveOnce(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return true;
    }
    const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (isFolder && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        RemoveContent(path);
    }
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    return isFolder ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str());
}

}  // namespace

bool RemoveFolder(const fs::path& folder) {
    return WaitFor([path = LongForm(folder)] { return RemoveOnce(path); }, 5000);
}

void LetOnlyAdministratorsWrite(const fs::path& folder) {
    unsigned char list[256] = {};
    auto* const acl = reinterpret_cast<PACL>(list);
    InitializeAcl(acl, sizeof(list), ACL_REVISION);
    for (const WELL_KNOWN_SID_TYPE kind : {WinLocalSystemSid, WinBuiltinAdministratorsSid}) {
        unsigned char owner[SECURITY_MAX_SID_SIZE];
        DWORD size = sizeof(owner);
        CreateWellKnownSid(kind, nullptr, owner, &size);
        AddAccessAllowedAceEx(acl, ACL_REVISION, OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE,
                              FILE_ALL_ACCESS, owner);
    }
    std::wstring path = folder.wstring();
    const DWORD error =
        SetNamedSecurityInfoW(path.data(), SE_FILE_OBJECT,
                              DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION,
                              nullptr, nullptr, acl, nullptr);
    if (error != ERROR_SUCCESS) {
        throw std::system_error(static_cast<int>(error), std::system_category(),
                                "cannot protect " + folder.string());
    }
}

InstallFolder::InstallFolder(const std::wstring& name)
    : root_(TestFolder() / name), install_(root_ / L"app"), data_(root_ / L"data") {
    RemoveServices();
    if (!RemoveFolder(root_)) {
        throw std::runtime_error("cannot remove " + root_.string());
    }
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
    RemoveFolder(root_);
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
