// The state of one DistributedFileManager: whether it is started, and which devices are
// online in which group. It is not thread-safe: its owner must lock.

#ifndef COMPANION_DISTRIBUTEDFILE_OFFICE_H
#define COMPANION_DISTRIBUTEDFILE_OFFICE_H

#include <map>
#include <set>
#include <string>
#include <vector>

namespace Office {

/// The library's own codes. They differ from those of plenxsdk, so that their origin shows.
enum Code : int {
    kOk = 0,
    kNotStarted = 1001,  ///< every operation but Start and UninstallPackages needs a start
    kAlreadyStarted = 1002,
    kUnknownDevice = 1003,    ///< no such device is online in the group
    kInvalidArgument = 1004,  ///< an empty name, or data that is not 0 to 16 bytes
    kNoFolder = 1005,         ///< the device's folder could not be made
    kUnknownObject = 1006,    ///< a call on an object that was not constructed
    kProcessEnding = 1007,    ///< the process is ending; the call did nothing
    kInternalError = 1099,
};

/// Points to size bytes of the caller; bytes may be null when size is 0.
struct DeviceData {
    const unsigned char* bytes = nullptr;
    int size = 0;
};

struct LocalDevice {
    int type = 0;
    std::vector<unsigned char> data;
};

class OfficeState {
public:
    explicit OfficeState(std::string dataFolder);

    int Start();
    /// Takes all devices offline.
    int Stop();
    /// A device that is online already gets the new values.
    int LocalDeviceOnline(const std::string& group, const std::string& device, int type,
                          DeviceData data);
    int RemoteDeviceOnline(const std::string& group, const std::string& device);
    int LocalDeviceOffline(const std::string& group, const std::string& device);
    int RemoteDeviceOffline(const std::string& group, const std::string& device);
    /// Makes the folder of a local or remote device if necessary; leaves dir untouched on failure.
    int GetGroupNeighborDistributedDir(const std::string& group, const std::string& device,
                                       std::string& dir) const;
    /// Returns to the state after construction; leaves folders as they are.
    int UninstallPackages();

    /// Returns null when the device is not online.
    const LocalDevice* FindLocalDevice(const std::string& group, const std::string& device) const;

private:
    struct Group {
        std::map<std::string, LocalDevice> local;
        std::set<std::string> remote;
    };

    const Group* FindGroup(const std::string& group) const;
    bool IsOnline(const std::string& group, const std::string& device) const;
    int CheckNames(const std::string& group, const std::string& device) const;

    const std::string dataFolder_;
    bool started_ = false;
    std::map<std::string, Group> groups_;
};

}  // namespace Office

#endif  // COMPANION_DISTRIBUTEDFILE_OFFICE_H
