// The development service, registered with the real Service Control Manager and used as the library
// uses it. Each object has its own folder; both service and folder are removed with it.

#ifndef PLENXSDK_TESTS_WINDOWS_DEVSERVICE_SERVICE_UNDER_TEST_H
#define PLENXSDK_TESTS_WINDOWS_DEVSERVICE_SERVICE_UNDER_TEST_H

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/handle.h"

namespace PlenxTest {

class ServiceUnderTest {
public:
    /// The row is 0 for office, 1 for PC, 2 for phone. control is the text of its control file.
    explicit ServiceUnderTest(int row, const std::string& control = "");
    ~ServiceUnderTest();
    ServiceUnderTest(const ServiceUnderTest&) = delete;
    ServiceUnderTest& operator=(const ServiceUnderTest&) = delete;

    /// Replaces the control file.
    void Control(const std::string& toml) const;

    /// @return the result of StartServiceW: 0 or a Windows error.
    DWORD Start();
    DWORD Start(const std::vector<std::wstring>& arguments);
    /// Starts the service and waits until it runs. @return false when it does not.
    bool StartAndRun();

    DWORD SendStop();
    SERVICE_STATUS_PROCESS Status() const;
    /// Waits for the state, for at most the given time.
    bool Reaches(DWORD state, DWORD milliseconds) const;
    /// Returns all different reports until the state is reached or the time is over.
    std::vector<SERVICE_STATUS_PROCESS> Watch(DWORD state, DWORD milliseconds) const;

    /// Both return the text of a log: the one in the data folder, or the second one (log =
    /// 'second.log').
    std::string Log() const;
    std::string SecondLog() const;
    /// Waits for a line that contains the text.
    bool LogComesToSay(const std::string& text, DWORD milliseconds = 5000) const;

    const std::filesystem::path& DataFolder() const { return data_; }
    const std::filesystem::path& InstallFolder() const { return install_; }

private:
    std::filesystem::path root_;
    std::filesystem::path install_;
    std::filesystem::path data_;
    int row_;
    PlenxSupport::ServiceHandle manager_;
    PlenxSupport::ServiceHandle service_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_DEVSERVICE_SERVICE_UNDER_TEST_H
