#include "service/file_utils.h"

#include <windows.h>

#include <direct.h>
#include <io.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cwctype>
#include <string_view>
#include <utility>
#include <vector>

#include "common/log.h"
#include "common/result_code.h"
#include "service/handles.h"

namespace DistributedFs {
namespace {

constexpr int kExistenceOnly = 0;

constexpr std::string_view kForceRemove = "DistributedFs::FileUtils::ForceRemoveDirectory";

bool IsLink(unsigned attributes) {
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool IsSeparator(wchar_t character) {
    return character == L'\\' || character == L'/';
}

// In "\\?\UNC\server\share" or "\\.\UNC\server\share", returns where the server begins, else 2.
std::size_t ServerBegins(const std::wstring& path) {
    std::wstring prefix = path.substr(0, 8);
    for (wchar_t& character : prefix) {
        character = IsSeparator(character) ? L'\\' : static_cast<wchar_t>(std::towupper(character));
    }
    return prefix == L"\\\\?\\UNC\\" || prefix == L"\\\\.\\UNC\\" ? prefix.size() : 2;
}

// A root is "C:", "C:\" or "\\server\share". The listing of a root does not begin with ".", so the
// entry that the removal skips would be a real one. And nobody wants to remove a whole drive.
bool IsRoot(const std::wstring& path) {
    const bool isDrive = path.size() >= 2 && path[1] == L':';
    if (isDrive) {
        return std::all_of(path.begin() + 2, path.end(), IsSeparator);
    }
    const bool isShare = path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]);
    if (!isShare) {
        return std::all_of(path.begin(), path.end(), IsSeparator);
    }
    const auto server = path.begin() + static_cast<std::ptrdiff_t>(ServerBegins(path));
    const auto afterServer = std::find_if(server, path.end(), IsSeparator);
    const auto share = std::find_if_not(afterServer, path.end(), IsSeparator);
    const auto afterShare = std::find_if(share, path.end(), IsSeparator);
    return std::all_of(afterShare, path.end(), IsSeparator);
}

// Removes a link itself, and not its target, which is not under the folder and may be anything.
std::int32_t RemoveFileOrLink(const std::wstring& path, unsigned attributes) {
    const bool isFolder = (attributes & _A_SUBDIR) != 0;
    if ((isFolder ? _wrmdir(path.c_str()) : _wunlink(path.c_str())) != 0) {
        const int number = errno;
        const char* const text = isFolder ? "[PLENXSDK] rmdir error " : "[PLENXSDK] unlink error ";
        LogError(kForceRemove, text, number);
        return kNotRemoved;
    }
    return kSuccess;
}

// Removes a folder and everything in it, depth first. It is not recursive, because somebody else
// may have made the tree deeper than the stack allows.
class TreeRemoval {
public:
    explicit TreeRemoval(std::wstring path) : path_(std::move(path)) {}

    std::int32_t Run() {
        std::int32_t code = BeginFolder();
        while (code == kSuccess && !levels_.empty()) {
            code = RemoveNextEntry();
        }
        // Each folder above the failure logs a line too.
        for (; !levels_.empty(); levels_.pop_back()) {
            LogError(kForceRemove, "[PLENXSDK] rmdir error ", errno);
        }
        return code;
    }

private:
    // A folder whose entries are being removed.
    struct Level {
        ListingHandle listing;
        std::size_t pathLength;
    };

    // Removes the folder of path_ if it is a link, or begins its listing.
    std::int32_t BeginFolder() {
        if (FileUtils::FileExists(path_) != kSuccess) {
            return kSuccess;
        }
        if (IsRoot(path_)) {
            return kNotRemoved;
        }
        const DWORD attributes = GetFileAttributesW(path_.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES) {
            // It may be a link, so this removes it only when nothing else goes with it.
            return FileUtils::RemoveDirectoryW(path_);
        }
        if (IsLink(attributes)) {
            return RemoveFileOrLink(path_, attributes);
        }
        _wfinddata64i32_t first{};  // this is ".", which is skipped
        const std::wstring pattern = path_ + L"\\*.*";
        ListingHandle listing(_wfindfirst64i32(pattern.c_str(), &first));
        if (!listing) {
            LogError(kForceRemove, "[PLENXSDK] find first error ", errno);
            return kNotRemoved;
        }
        levels_.push_back({std::move(listing), path_.size()});
        return kSuccess;
    }

    // Removes the next entry of the innermost folder, or the folder itself after the last entry.
    std::int32_t RemoveNextEntry() {
        path_.resize(levels_.back().pathLength);
        _wfinddata64i32_t entry{};
        if (_wfindnext64i32(levels_.back().listing.Get(), &entry) != 0) {
            levels_.pop_back();
            return FileUtils::RemoveDirectoryW(path_);
        }
        const std::wstring_view name = entry.name;
        if (name == L"." || name == L"..") {
            return kSuccess;
        }
        path_.append(L"\\").append(name);
        const bool isFolder = (entry.attrib & _A_SUBDIR) != 0;
        if (isFolder && !IsLink(entry.attrib)) {
            return BeginFolder();
        }
        const std::int32_t code = RemoveFileOrLink(path_, entry.attrib);
        if (code != kSuccess) {
            levels_.pop_back();  // this folder has logged its own line
        }
        return code;
    }

    std::wstring path_;  // the path of the current entry
    std::vector<Level> levels_;
};

}  // namespace

std::int32_t FileUtils::MakeDirectory(const std::wstring& path) {
    constexpr std::string_view kFunction = "DistributedFs::FileUtils::MakeDirectory";
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
    constexpr std::string_view kFunction = "DistributedFs::FileUtils::RemoveDirectoryW";
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
    constexpr std::string_view kFunction = "DistributedFs::FileUtils::FileExists";
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
    return TreeRemoval(std::move(path)).Run();
}

}  // namespace DistributedFs
