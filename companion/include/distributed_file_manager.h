// The companion library distributedfile.dll: the office service.
//
// This header declares what plenxsdk uses of it and nothing else. Every operation
// that returns an int returns 0 on success and the companion library's own code
// otherwise. plenxsdk makes one object per process and never makes two calls at
// once; calls come from the host's threads and from plenxsdk's worker. The
// destructor runs while the process is ending, with all other threads gone.
//
// The class crosses a DLL border, so both sides must share one compiler family
// and one C++ runtime; and as plenxsdk makes the object, what it keeps must lie
// outside the object, which has no members here. A library that was built
// otherwise, or whose objects have members, needs an adapter DLL under this name.

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

class DISTRIBUTEDFILE_API DistributedFileManager {
public:
    /// first: install folder; second: data folder; third and flag: the library's own.
    DistributedFileManager(const std::string& first, const std::string& second,
                           const std::string& third, bool flag);
    ~DistributedFileManager();
    DistributedFileManager(const DistributedFileManager&) = delete;
    DistributedFileManager& operator=(const DistributedFileManager&) = delete;

    int Start();
    int Stop();
    /// data: size bytes, at most 16, null when size is 0; valid during the call only.
    int LocalDeviceOnline(const std::string& first, const std::string& second, int type,
                          const unsigned char* data, int size);
    int RemoteDeviceOnline(const std::string& first, const std::string& second);
    int LocalDeviceOffline(const std::string& first, const std::string& second);
    int RemoteDeviceOffline(const std::string& first, const std::string& second);
    /// dir receives the folder of device second in group first.
    int GetGroupNeighborDistributedDir(const std::string& first, const std::string& second,
                                       std::string& dir);
    int UninstallPackages();
};

#endif  // COMPANION_DISTRIBUTED_FILE_MANAGER_H
