#include "system/other_host.h"

#include <string_view>

#include "plenxsdk/plenx_manager.h"

namespace PlenxTest {
namespace {

constexpr DWORD kLongest = 60 * 1000;

std::wstring CommandLine(const InstallFolder& folder, OtherHost::Does what) {
    return ChildProcess::Self(std::wstring(L"--other-host ") + folder.InstallPath().wstring() +
                              L" " + folder.DataPath().wstring() + L" " +
                              (what == OtherHost::Does::kStart ? L"start" : L"stop"));
}

/// Its lines go to another log than those of the host that the test looks at.
class LogOfItsOwn {
public:
    LogOfItsOwn() {
        before_.resize(GetEnvironmentVariableW(kName, before_.data(), kMost));
        SetEnvironmentVariableW(kName, (before_ + L".other").c_str());
    }
    ~LogOfItsOwn() { SetEnvironmentVariableW(kName, before_.c_str()); }
    LogOfItsOwn(const LogOfItsOwn&) = delete;
    LogOfItsOwn& operator=(const LogOfItsOwn&) = delete;

private:
    static constexpr wchar_t kName[] = L"PLENX_LOG_FILE";
    static constexpr DWORD kMost = 4096;
    std::wstring before_ = std::wstring(kMost, L'\0');
};

ChildProcess StartedWithALogOfItsOwn(const std::wstring& commandLine) {
    const LogOfItsOwn log;
    return ChildProcess(commandLine);
}

}  // namespace

OtherHost::OtherHost(const InstallFolder& folder, Does what)
    : process_(StartedWithALogOfItsOwn(CommandLine(folder, what))) {}

bool RunAsOtherHost(int argc, char** argv) {
    if (argc != 5 || std::string_view(argv[1]) != "--other-host") {
        return false;
    }
    auto& manager = DistributedFs::PLENXManager::GetInstance();
    manager.Init(argv[2], argv[3], "third", true);
    manager.Start(DistributedFs::kPcService, "former", "argument");
    if (std::string_view(argv[4]) == "stop") {
        manager.Stop(DistributedFs::kPcService, "former");
    }
    WaitForSingleObject(GetCurrentProcess(), kLongest);  // until it is killed
    return true;
}

}  // namespace PlenxTest
