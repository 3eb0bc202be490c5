// A file that nobody else may open, delete or rename.

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_HELD_FILE_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_HELD_FILE_H

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>

#include "support/handle.h"

namespace PlenxTest {

class HeldFile {
public:
    /// Makes the file if it does not exist.
    explicit HeldFile(const std::filesystem::path& path)
        : file_(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr)) {
        EXPECT_TRUE(file_) << path;
    }

private:
    PlenxSupport::Handle file_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_HELD_FILE_H
