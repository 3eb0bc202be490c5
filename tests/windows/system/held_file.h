// A file that is open, so that nobody else may delete or rename it.

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
    /// share: how others may open it; by default nobody may.
    explicit HeldFile(const std::filesystem::path& path, DWORD share = 0)
        : file_(CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr)) {
        EXPECT_TRUE(file_) << path;
    }

private:
    PlenxSupport::Handle file_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_HELD_FILE_H
