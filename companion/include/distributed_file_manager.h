/// @file
/// The companion library distributedfile.dll: the office service.
///
/// This header declares only the parts that plenxsdk uses. Every operation
/// that returns an int returns 0 on success and the companion library's own code
/// otherwise. plenxsdk makes one object per process and never makes two calls at
/// once; calls come from the host's threads and from plenxsdk's worker. The
/// destructor runs while the process is ending, with all other threads gone.
///
/// The class crosses a DLL border, so both sides must share one compiler family
/// and one C++ runtime. plenxsdk makes the object from this declaration, which has
/// no members, so the library must keep its state outside the object. A library
/// that was built with another compiler, or whose objects have members, needs an
/// adapter DLL under this name.

#ifndef COMPANION_DISTRIBUTED_FILE_MANAGER_H
#define COMPANION_DISTRIBUTED_FILE_MANAGER_H

#include <string>

#if !defined(_WIN32)
#define DISTRIBUTEDFILE_API __attribute__((visibility("default")))
#elif defined(DISTRIBUTEDFILE_BUILD)
#define DISTRIBUTEDFILE_API __declspec(dllexport)
#else
#define DISTRIBUTEDFILE_API __declspec(dllimport)
#endif

/// The office service. Each operation returns 0 on success and the library's own code otherwise.
class DISTRIBUTEDFILE_API DistributedFileManager {
public:
    /// Receives the arguments of PLENXManager::Init.
    /// @param first   Install folder.
    /// @param second  Data folder.
    /// @param third   The library's own.
    /// @param flag    The library's own.
    DistributedFileManager(const std::string& first, const std::string& second,
                           const std::string& third, bool flag);
    ~DistributedFileManager();
    DistributedFileManager(const DistributedFileManager&) = delete;
    DistributedFileManager& operator=(const DistributedFileManager&) = delete;

    /// Starts the office service.
    /// @return 0 on success.
    int Start();
    /// Stops the office service.
    /// @return 0 on success.
    int Stop();
    /// Tells the office service that the local device is online.
    /// @param first   Group name.
    /// @param second  Device id.
    /// @param type    Always 1.
    /// @param data    size bytes, null when size is 0; valid during the call only.
    /// @param size    0 to 16.
    /// @return 0 on success.
    int LocalDeviceOnline(const std::string& first, const std::string& second, int type,
                          const unsigned char* data, int size);
    /// Tells the office service that a remote device is online.
    /// @param first   Group name.
    /// @param second  Device id.
    /// @return 0 on success.
    int RemoteDeviceOnline(const std::string& first, const std::string& second);
    /// Tells the office service that the local device goes offline.
    /// @param first   Group name.
    /// @param second  Device id.
    /// @return 0 on success.
    int LocalDeviceOffline(const std::string& first, const std::string& second);
    /// Tells the office service that a remote device goes offline.
    /// @param first   Group name.
    /// @param second  Device id.
    /// @return 0 on success.
    int RemoteDeviceOffline(const std::string& first, const std::string& second);
    /// Gives the folder of a device of a group.
    /// @param first   Group name.
    /// @param second  Device id.
    /// @param dir     Receives the folder.
    /// @return 0 on success.
    int GetGroupNeighborDistributedDir(const std::string& first, const std::string& second,
                                       std::string& dir);
    /// Uninstalls the office service's packages. PLENXManager::Destroy calls it.
    /// @return 0 on success.
    int UninstallPackages();
};

#endif  // COMPANION_DISTRIBUTED_FILE_MANAGER_H
