// Prepares the scenarios in either world: on the real system (stage_windows.cpp) and on the fake
// one (stage_fake.cpp).

#ifndef PLENXSDK_TESTS_BOTH_WORLDS_STAGE_H
#define PLENXSDK_TESTS_BOTH_WORLDS_STAGE_H

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "windows/support/system_habits.h"

namespace BothWorlds {

/// The errno of the Windows C runtime; other C runtimes have another number.
constexpr int kNotEmpty = 41;

class Stage : public testing::Test {
protected:
    Stage();
    ~Stage() override;

    /// Returns an empty folder for this scenario alone, without a backslash at its end.
    std::wstring Folder() const;
    std::wstring At(const wchar_t* name) const { return Folder() + L"\\" + name; }

    void PutFolder(const std::wstring& path);
    void PutFile(const std::wstring& path, const std::string& content = "");
    void MakeReadOnly(const std::wstring& path);
    std::string Content(const std::wstring& path) const;

    /// Keeps the file open without sharing it, until Release.
    void Hold(const std::wstring& path);
    void Release();

    /// The files of a service that starts and stops when it is told to, and of a driver. Neither is
    /// registered.
    static std::wstring ServiceProgram();
    static std::wstring DriverFile();
    static std::vector<std::wstring> ServiceArguments();
    /// Returns whether the driver is one that Windows would load.
    static bool DriverIsSigned();
    /// From now on the service "PlenxPcSvc" accepts the request to stop but goes on running.
    void LetServiceIgnoreStop();
    /// Removes a service even if its process hangs.
    void RemoveService(const std::wstring& name);

    /// A process that runs until somebody ends it.
    DWORD StartProcess();

private:
    struct World;
    std::unique_ptr<World> world_;
};

}  // namespace BothWorlds

#define EXPECT_FAILS(call, error)                             \
    do {                                                      \
        EXPECT_FALSE(call);                                   \
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(error)); \
    } while (false)

#define EXPECT_CRT_FAILS(call, error, number)                 \
    do {                                                      \
        EXPECT_EQ((call), -1);                                \
        EXPECT_EQ(errno, number);                             \
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(error)); \
    } while (false)

#endif  // PLENXSDK_TESTS_BOTH_WORLDS_STAGE_H
