// The development service, registered with the real Service Control Manager and driven as the
// library drives it. One object, one folder of its own; both are removed with it.

#ifndef PLENXSDK_TESTS_WINDOWS_DEVSERVICE_SERVICE_UNDER_TEST_H
#define PLENXSDK_TESTS_WINDOWS_DEVSERVICE_SERVICE_UNDER_TEST_H

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

namespace PlenxTest {

class ServiceUnderTest {
public:
    /// row: 0 office, 1 PC, 2 phone. control: its control file.
    explicit ServiceUnderTest(int row, const std::string& control = "");
    ~ServiceUnderTest();
    ServiceUnderTest(const ServiceUnderTest&) = delete;
    ServiceUnderTest& operator=(const ServiceUnderTest&) = delete;

    /// The control file is replaced.
    void Control(const std::string& toml) const;

    /// @return what StartServiceW says: 0 or a Windows error.
    DWORD Start();
    DWORD Start(const std::vector<std::wstring>& arguments);
    /// Starts and waits until it runs. @return false when it does not.
    bool StartAndRun();

    DWORD SendStop();
    SERVICE_STATUS_PROCESS Status() const;
    /// Waits, for at most the time given.
    bool Reaches(DWORD state, DWORD milliseconds) const;
    /// All different reports, watched until the state is reached or the time is over.
    std::vector<SERVICE_STATUS_PROCESS> Watch(DWORD state, DWORD milliseconds) const;

    /// The log in the data folder, or the second one (log = 'second.log').
    std::string Log() const;
    std::string SecondLog() const;
    /// Waits up to 5 s for a line that contains the text.
    bool LogComesToSay(const std::string& text) const;

    const std::filesystem::path& DataFolder() const { return data_; }
    const std::filesystem::path& InstallFolder() const { return install_; }

private:
    std::filesystem::path root_;
    std::filesystem::path install_;
    std::filesystem::path data_;
    int row_;
    SC_HANDLE manager_;
    SC_HANDLE service_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_DEVSERVICE_SERVICE_UNDER_TEST_H
