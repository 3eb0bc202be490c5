#include "endings/endings.h"

#include <windows.h>

#include <cstdlib>
#include <string>

#include "support/child_process.h"
#include "support/service_state.h"
#include "support/wait.h"
#include "support/wide_text.h"

namespace PlenxTest {
namespace {

constexpr DWORD kDeadline = 5000;  // from the host's return to its exit, with some reserve
constexpr DWORD kRunTime = 15000;  // for the host's work before it returns

bool WaitUntilGone(const wchar_t* service) {
    return WaitFor([=] { return !IsRegistered(service); }, 2000);
}

}  // namespace

int Repetitions() {
    const char* const text = std::getenv("PLENX_TEST_ENDINGS");
    return text != nullptr ? std::stoi(text) : 50;
}

Endings::Endings() {
    SetEnvironmentVariableW(L"PLENX_LOG_FILE", libraryLog_.c_str());
    SetEnvironmentVariableW(L"PLENX_OFFICE_LOG", officeLog_.c_str());
}

Endings::~Endings() {
    SetEnvironmentVariableW(L"PLENX_LOG_FILE", nullptr);
    SetEnvironmentVariableW(L"PLENX_OFFICE_LOG", nullptr);
}

bool Endings::CompanionWasReleased() const {
    return ReadFile(officeLog_).find("~DistributedFileManager()") != std::string::npos;
}

void Endings::Run(const HostMode& mode) {
    std::filesystem::remove(libraryLog_);
    std::filesystem::remove(officeLog_);
    const std::string arguments =
        std::string("--host ") + mode.name + " " + folder_.Install() + " " + folder_.Data();
    ChildProcess host(ChildProcess::Self(PlenxSupport::ToWide(arguments)));
    ASSERT_TRUE(host.Started()) << "error " << host.StartError();
    const auto code = host.WaitForExit(kRunTime + kDeadline);
    ASSERT_TRUE(code.has_value()) << "the host hangs";
    ASSERT_EQ(*code, static_cast<DWORD>(mode.exitCode));
}

// A deleted service disappears when its last handle is closed. If the worker died with such a
// handle, the system closes it soon after the exit.
void Endings::ExpectIsLeft(Left left) {
    if (left == Left::kWhatInitHadMade) {
        return;
    }
    EXPECT_TRUE(WaitUntilGone(L"PlenxPhoneSvc"));
    if (left == Left::kNothing) {
        EXPECT_TRUE(WaitUntilGone(L"PlenxPcSvc"));
        EXPECT_FALSE(std::filesystem::exists(folder_.WorkingFolder()));
    } else {
        EXPECT_TRUE(IsRegistered(L"PlenxPcSvc"));
        EndService(L"PlenxPcSvc");
        EXPECT_TRUE(WaitUntilGone(L"PlenxPcSvc"));
    }
}

void Endings::RunOften(const std::string& modeName, Left left, const std::function<void()>& check,
                       int times) {
    const HostMode* const mode = FindHostMode(modeName);
    ASSERT_NE(mode, nullptr);
    for (int i = 0; i < times && !HasFailure(); ++i) {
        Run(*mode);
        ExpectIsLeft(left);
        check();
        if (HasFailure()) {
            ADD_FAILURE() << "in run " << i << "; the library wrote:\n" << ReadFile(libraryLog_);
        }
    }
}

}  // namespace PlenxTest
