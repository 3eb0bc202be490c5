// FileUtils: folders of wide paths. Every operation returns a result code and writes its
// own log line on failure; a path that is merely absent is no failure worth a line. Paths
// carry no trailing backslash.

#ifndef PLENXSDK_SERVICE_FILE_UTILS_H
#define PLENXSDK_SERVICE_FILE_UTILS_H

#include <cstdint>
#include <string>

namespace DistributedFs {

class FileUtils {
public:
    /// Makes the last folder of the path; one that exists already is a success.
    /// @return 0, kInvalidArgument or kFolderNotMade.
    static std::int32_t MakeDirectory(const std::wstring& path);

    /// Removes an empty folder; one that does not exist is a success.
    /// @return 0, kInvalidArgument or kNotRemoved.
    static std::int32_t RemoveDirectoryW(const std::wstring& path);

    /// Removes a folder and all that is in it, depth first. Links are removed and never
    /// followed. The first failure ends it; what was removed before stays removed. A drive
    /// or share root is refused without a word.
    /// @return 0, kInvalidArgument or kNotRemoved.
    static std::int32_t ForceRemoveDirectory(std::wstring path);

    /// @return 0 when the path exists, else kInvalidArgument or kPathAbsent.
    static std::int32_t FileExists(const std::wstring& path);
};

}  // namespace DistributedFs

#endif  // PLENXSDK_SERVICE_FILE_UTILS_H
