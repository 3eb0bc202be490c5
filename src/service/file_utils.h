// FileUtils works on folders with wide paths. Every operation returns a result code and writes its
// own log line on failure, but no line for a path that is merely absent. Paths have no trailing
// backslash.

#ifndef PLENXSDK_SERVICE_FILE_UTILS_H
#define PLENXSDK_SERVICE_FILE_UTILS_H

#include <cstdint>
#include <string>

namespace DistributedFs {

class FileUtils {
public:
    /// Makes the last folder of the path; succeeds when it exists already.
    /// @return 0, kInvalidArgument or kFolderNotMade.
    static std::int32_t MakeDirectory(const std::wstring& path);

    /// Removes an empty folder; succeeds when it does not exist.
    /// @return 0, kInvalidArgument or kNotRemoved.
    static std::int32_t RemoveDirectoryW(const std::wstring& path);

    /// Removes a folder and everything in it, depth first. It removes links and never follows them.
    /// It stops at the first failure and does not restore anything. It refuses the root of a drive
    /// or share without a log line.
    /// @return 0, kInvalidArgument or kNotRemoved.
    static std::int32_t ForceRemoveDirectory(std::wstring path);

    /// @return 0 when the path exists, else kInvalidArgument or kPathAbsent.
    static std::int32_t FileExists(const std::wstring& path);
};

}  // namespace DistributedFs

#endif  // PLENXSDK_SERVICE_FILE_UTILS_H
