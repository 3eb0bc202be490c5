// The folder of a device: <data folder>\office\<group>\<device>. Group and device names come
// from elsewhere; each becomes exactly one folder name, whatever it holds.

#ifndef COMPANION_DISTRIBUTEDFILE_DEVICE_FOLDER_H
#define COMPANION_DISTRIBUTEDFILE_DEVICE_FOLDER_H

#include <string>

namespace Office {

/// A folder name for a name that is not empty. Characters that a folder name cannot hold
/// become % and two hexadecimal digits, and so do % itself, a dot or blank at the end, and
/// the first letter of a device name such as "con": different names stay different.
std::string FolderName(const std::string& name);

/// Makes the folder if need be and sets dir to its path; all strings are UTF-8. False, with
/// dir untouched, when it cannot be made. Never throws.
bool MakeDeviceFolder(const std::string& dataFolder, const std::string& group,
                      const std::string& device, std::string& dir) noexcept;

}  // namespace Office

#endif  // COMPANION_DISTRIBUTEDFILE_DEVICE_FOLDER_H
