// An install folder and a data folder, laid out as a host's installer would: with the development
// service, the driver's files and the icon folders. The destructor removes all of it, and with it
// the services that were registered from it.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_INSTALL_FOLDER_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_INSTALL_FOLDER_H

#include <filesystem>
#include <string>

namespace PlenxTest {

class InstallFolder {
public:
    /// name: the name of a folder in the folder for tests, without blanks.
    explicit InstallFolder(const std::wstring& name);
    ~InstallFolder();
    InstallFolder(const InstallFolder&) = delete;
    InstallFolder& operator=(const InstallFolder&) = delete;

    /// These are the arguments of Init.
    std::string Install() const { return install_.string(); }
    std::string Data() const { return data_.string(); }

    const std::filesystem::path& InstallPath() const { return install_; }
    const std::filesystem::path& DataPath() const { return data_; }
    std::filesystem::path WorkingFolder() const { return data_ / L"plenx"; }

    /// Puts a copy of the newer driver files into "upgrade".
    void AddUpgrade() const;
    /// Writes the development service's control file, which says how the service must behave.
    void SetServiceControl(const std::string& toml) const;

private:
    std::filesystem::path root_;
    std::filesystem::path install_;
    std::filesystem::path data_;
};

/// Removes a folder with all that is in it: read-only files, paths of any length, and links, whose
/// targets stay. It tries again for some seconds, because a process that has just ended, or a virus
/// scanner, may still hold a file.
/// @return whether the folder is gone.
bool RemoveFolder(const std::filesystem::path& folder);

/// Lets only administrators and the system write to a folder and to what will be made in it, as in
/// the folders of installed programs.
void LetOnlyAdministratorsWrite(const std::filesystem::path& folder);

/// Returns "" when there is no such file.
std::string ReadFile(const std::filesystem::path& path);
void WriteFile(const std::filesystem::path& path, const std::string& content);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_INSTALL_FOLDER_H
