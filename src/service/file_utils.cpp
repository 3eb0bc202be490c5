#include "service/file_utils.h"

#include <windows.h>

#include <direct.h>
#include <io.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

#include "common/log.h"
#include "common/result_code.h"
#include "service/handles.h"

namespace DistributedFs {
namespace {

constexpr int kExistenceOnly = 0;

constexpr char kForceRemove[] = "DistributedFs::FileUtils::ForceRemoveDirectory";

bool IsLink(unsigned attributes) {
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool IsSeparator(wchar_t character) {
    return character == L'\\' || character == L'/';
}

// "C:", "C:\" or "\\server\share". A root's listing does not begin with ".", so the entry
// that is skipped unseen would be a real one; and nobody means to remove a whole drive.
bool IsRoot(const std::wstring& path) {
    const bool isDrive = path.size() >= 2 && path[1] == L':';
    if (isDrive) {
        return std::all_of(path.begin() + 2, path.end(), IsSeparator);
    }
    const bool isShare = path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]);
    if (!isShare) {
        return std::all_of(path.begin(), path.end(), IsSeparator);
    }
    const auto afterServer = std::find_if(path.begin() + 2, path.end(), IsSeparator);
    const auto share = std::find_if_not(afterServer, path.end(), IsSeparator);
    const auto afterShare = std::find_if(share, path.end(), IsSeparator);
    return std::all_of(afterShare, path.end(), IsSeparator);
}

std::int32_t RemoveFile(const std::wstring& path) {
    if (_wunlink(path.c_str()) != 0) {
        LogError(kForceRemove, "[PLENXSDK] unlink error ", errno);
        return kNotRemoved;
    }
    return kSuccess;
}

// What a link points to is not under the folder, and may be anything.
std::int32_t RemoveLink(const std::wstring& path, unsigned attributes) {
    if ((attributes & _A_SUBDIR) == 0) {
        return RemoveFile(path);
    }
    if (_wrmdir(path.c_str()) != 0) {
        LogError(kForceRemove, "[PLENXSDK] rmdir error ", errno);
        return kNotRemoved;
    }
    return kSuccess;
}

std::int32_t RemoveEntry(const std::wstring& path, unsigned attributes) {
    if (IsLink(attributes)) {
        return RemoveLink(path, attributes);
    }
    if ((attributes & _A_SUBDIR) == 0) {
        return RemoveFile(path);
    }
    if (FileUtils::ForceRemoveDirectory(path) != kSuccess) {
        LogError(kForceRemove, "[PLENXSDK] rmdir error ", errno);
        return kNotRemoved;
    }
    return kSuccess;
}

std::int32_t RemoveEntries(const std::wstring& path) {
    _wfinddata64i32_t entry{};
    const std::wstring pattern = path + L"\\*.*";
    const ListingHandle listing(_wfindfirst64i32(pattern.c_str(), &entry));
    if (!listing) {
        LogError(kForceRemove, "[PLENXSDK] find first error ", errno);
        return kNotRemoved;
    }
    // The first entry is "." and skipped unseen.
    while (_wfindnext64i32(listing.Get(), &entry) == 0) {
        const std::wstring name = entry.name;
        if (name == L"." || name == L"..") {
            continue;
        }
        if (RemoveEntry(path + L"\\" + name, entry.attrib) != kSuccess) {
            return kNotRemoved;
        }
    }
    return kSuccess;
}

}  // namespace

std::int32_t FileUtils::MakeDirectory(const std::wstring& path) {
    constexpr char kFunction[] = "DistributedFs::FileUtils::MakeDirectory";
    if (path.empty()) {
        LogError(kFunction, "[PLENXSDK] path is empty");
        return kInvalidArgument;
    }
    if (_wmkdir(path.c_str()) != 0 && errno != EEXIST) {
        LogError(kFunction, "[PLENXSDK] mkdir error ", GetLastError());
        return kFolderNotMade;
    }
    return kSuccess;
}

std::int32_t FileUtils::RemoveDirectoryW(const std::wstring& path) {
    constexpr char kFunction[] = "DistributedFs::FileUtils::RemoveDirectoryW";
    if (path.empty()) {
        LogError(kFunction, "[PLENXSDK] path is empty");
        return kInvalidArgument;
    }
    if (_wrmdir(path.c_str()) != 0 && errno != ENOENT) {
        LogError(kFunction, "[PLENXSDK] rmdir error ", GetLastError());
        return kNotRemoved;
    }
    return kSuccess;
}

std::int32_t FileUtils::FileExists(const std::wstring& path) {
    constexpr char kFunction[] = "DistributedFs::FileUtils::FileExists";
    if (path.empty()) {
        LogError(kFunction, "[PLENXSDK] path is empty");
        return kInvalidArgument;
    }
    if (_waccess(path.c_str(), kExistenceOnly) == 0) {
        return kSuccess;
    }
    if (errno != ENOENT) {
        LogError(kFunction, "[PLENXSDK] access error ", errno);
    }
    return kPathAbsent;
}

std::int32_t FileUtils::ForceRemoveDirectory(std::wstring path) {
    if (path.empty()) {
        LogError(kForceRemove, "[PLENXSDK] path is empty");
        return kInvalidArgument;
    }
    if (IsRoot(path)) {
        return kNotRemoved;
    }
    if (FileExists(path) != kSuccess) {
        return kSuccess;
    }
    const DWORD attributes = GetFileAttributesW(path.c_str());
    // What cannot be looked at may be a link: it is removed only if that takes nothing with it.
    const bool known = attributes != INVALID_FILE_ATTRIBUTES;
    if (known && IsLink(attributes)) {
        return RemoveLink(path, attributes);
    }
    if (known && RemoveEntries(path) != kSuccess) {
        return kNotRemoved;
    }
    return RemoveDirectoryW(path);
}

}  // namespace DistributedFs
