// The folder in which tests make their folders.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_TEST_FOLDER_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_TEST_FOLDER_H

#include <windows.h>

#include <filesystem>

namespace PlenxTest {

/// PLENX_TEST_FOLDER names it, and it must be ASCII and free of blanks. Otherwise it is the root of
/// the drive.
inline std::filesystem::path TestFolder() {
    wchar_t name[MAX_PATH] = {};
    const DWORD length = GetEnvironmentVariableW(L"PLENX_TEST_FOLDER", name, MAX_PATH);
    return length == 0 ? L"C:\\" : name;
}

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_TEST_FOLDER_H
