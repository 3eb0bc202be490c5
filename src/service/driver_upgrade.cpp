// Replaces the driver's files with newer ones, which the host's updater has put into the folder
// "upgrade" of the install folder.

#include <windows.h>

#include <io.h>

#include "common/log.h"
#include "common/result_code.h"
#include "service/service_manager.h"

namespace DistributedFs {
namespace {

constexpr std::string_view kFunction = "DistributedFs::ServiceManager::UpgradeDriver";

const wchar_t* const kDriverFiles[] = {
    L"\\dokan1.sys",
    L"\\dokan1.dll",
    L"\\dokanfuse1.dll",
};

enum class Target {
    kFree,     // the new file can take the name
    kInUse,    // the old file is in use and cannot be moved aside
    kBlocked,  // the old file cannot be deleted for another reason
};

bool Exists(const std::wstring& path) {
    return _waccess(path.c_str(), 0) == 0;
}

// A loaded driver or library cannot be deleted, but it can be renamed.
Target MoveAside(const std::wstring& file, const std::wstring& target) {
    LogInfo(kFunction, "[PLENXSDK] driver ", file, " is used");
    const std::wstring old = target + L".old";  // freed only after the error has been read
    if (!MoveFileExW(target.c_str(), old.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        const DWORD error = GetLastError();
        LogInfo(kFunction, "[PLENXSDK] move driver ", file, " error ", error);
        return Target::kInUse;
    }
    LogInfo(kFunction, "[PLENXSDK] move old ", file, " successfully");
    return Target::kFree;
}

Target FreeTarget(const std::wstring& file, const std::wstring& target) {
    const DWORD error = DeleteFileW(target.c_str()) ? 0 : GetLastError();
    if (error == 0 || error == ERROR_FILE_NOT_FOUND) {
        return Target::kFree;
    }
    if (error == ERROR_ACCESS_DENIED) {
        return MoveAside(file, target);
    }
    LogError(kFunction, "[PLENXSDK] delete driver ", file, " error ", error);
    return Target::kBlocked;
}

bool MoveIn(const std::wstring& file, const std::wstring& source, const std::wstring& target) {
    if (!MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_COPY_ALLOWED)) {
        const DWORD error = GetLastError();
        LogError(kFunction, "[PLENXSDK] upgrade driver ", file, " error ", error);
        return false;
    }
    LogInfo(kFunction, "[PLENXSDK] upgrade ", file, " successfully");
    return true;
}

}  // namespace

std::int32_t ServiceManager::UpgradeDriver(const std::wstring& installFolder) {
    // For the system a path ends at a NUL, so all paths here would be the same, both the old file
    // and the new one.
    if (installFolder.find(L'\0') != std::wstring::npos) {
        return kDriverNotReplaced;
    }
    for (const std::wstring file : kDriverFiles) {
        const std::wstring source = installFolder + L"\\upgrade" + file;
        const std::wstring target = installFolder + file;
        if (!Exists(source)) {
            continue;
        }
        switch (FreeTarget(file, target)) {
        case Target::kFree:
            break;
        case Target::kInUse:
            // The upgrade is given up for this run. The new files wait for the next one, and the
            // library goes on with the old ones.
            return kSuccess;
        case Target::kBlocked:
            return kDriverNotReplaced;
        }
        if (!MoveIn(file, source, target)) {
            return kDriverNotReplaced;
        }
    }
    return kSuccess;
}

}  // namespace DistributedFs
