// The folder of a device is <data folder>\office\<group>\<device>. Group and device names come
// from outside, so each becomes exactly one folder name, whatever it contains.

#ifndef COMPANION_DISTRIBUTEDFILE_DEVICE_FOLDER_H
#define COMPANION_DISTRIBUTEDFILE_DEVICE_FOLDER_H

#include <string>

namespace Office {

/// Makes a folder name from a name that is not empty. Characters that a folder name cannot
/// contain become % and two hexadecimal digits. So do % itself, a dot or blank at the end, and
/// the first letter of a device name such as "con". Different names stay different.
std::string FolderName(const std::string& name);

/// Makes the folder if necessary and sets dir to its path; all strings are UTF-8. Returns false
/// and leaves dir untouched when it cannot make the folder.
bool MakeDeviceFolder(const std::string& dataFolder, const std::string& group,
                      const std::string& device, std::string& dir) noexcept;

}  // namespace Office

#endif  // COMPANION_DISTRIBUTEDFILE_DEVICE_FOLDER_H
