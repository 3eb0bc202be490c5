// A folder for the running test alone. The destructor removes it with its content.

#ifndef PLENXSDK_TESTS_UNIT_COMPANION_TEMPORARY_FOLDER_H
#define PLENXSDK_TESTS_UNIT_COMPANION_TEMPORARY_FOLDER_H

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/file.h"

class TemporaryFolder {
public:
    TemporaryFolder()
        : path_(std::filesystem::temp_directory_path() /
                ("companion-test-" + std::to_string(getpid()))) {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// Returns "" when there is no such file.
inline std::string ReadFile(const std::filesystem::path& path) {
    return PlenxSupport::ReadWholeFile(path).value_or("");
}

#endif  // PLENXSDK_TESTS_UNIT_COMPANION_TEMPORARY_FOLDER_H
