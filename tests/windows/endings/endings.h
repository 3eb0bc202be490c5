// Runs hosts to their end and checks that they leave nothing behind.

#ifndef PLENXSDK_TESTS_WINDOWS_ENDINGS_ENDINGS_H
#define PLENXSDK_TESTS_WINDOWS_ENDINGS_ENDINGS_H

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "endings/ending_hosts.h"
#include "support/install_folder.h"

namespace PlenxTest {

/// Returns how often each ending runs: PLENX_TEST_ENDINGS, or 50.
int Repetitions();

class Endings : public testing::Test {
protected:
    enum class Left { kNothing, kWhatInitHadMade, kThePcService };

    Endings();
    ~Endings() override;

    bool CompanionWasReleased() const;

    /// Runs hosts of that mode to their ends. The test fails when one of them does not end well.
    /// check: looks at the host that has just ended.
    void RunOften(
        const std::string& modeName, Left left = Left::kNothing,
        const std::function<void()>& check = [] {}, int times = Repetitions());

    InstallFolder folder_{L"plenx-endings"};

private:
    void Run(const HostMode& mode);
    void ExpectIsLeft(Left left);

    const std::filesystem::path libraryLog_ = folder_.DataPath() / L"library.log";
    const std::filesystem::path officeLog_ = folder_.DataPath() / L"office.log";
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_ENDINGS_ENDINGS_H
