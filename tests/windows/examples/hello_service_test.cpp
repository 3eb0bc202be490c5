// Tests the small service in C. The library drives it through plenxkit host, as with any other
// host.

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "support/child_process.h"
#include "support/install_folder.h"

namespace PlenxTest {
namespace {

constexpr DWORD kLongestRun = 120 * 1000;

// The states at the end say that both services stopped when they were asked to, and that neither
// was stopped by force. The script also shows that no request about a device was refused.
constexpr char kScript[] = R"(init
start pc photos "the argument"
expect NotifyStatus pc photos start true within 60000
expect NotifyConnect pc photos within 60000
start phone a_b "the argument"
expect NotifyStatus phone a_b start true within 60000
expect NotifyConnect phone a_b within 60000
get-int pc 5
expect-result 0
get-int phone 5
expect-result 0
local-online pc photos laptop hex:c0a80117
remote-online pc photos tablet
rename Laptop
message 42 hello
remote-offline pc photos tablet 1
local-offline pc photos laptop 1
start pc more "a second group"
expect NotifyStatus pc more start true within 60000
expect NotifyConnect pc more within 60000
stop pc photos
expect NotifyStatus pc photos stop false within 60000
stop phone a_b
expect NotifyStatus phone a_b stop false within 60000
get-int pc 5
expect-result 1
get-int phone 5
expect-result 1
expect-none NotifyStatus pc photos online for 1
expect-none NotifyStatus pc photos offline for 1
)";

TEST(HelloService, ServesAHostAsPcAndAsPhoneService) {
    const InstallFolder folder(L"plenx-hello");
    const std::wstring service = (folder.InstallPath() / L"plenxservice.exe").wstring();
    ASSERT_TRUE(CopyFileW((ProgramFolder() + L"\\hello_service.exe").c_str(), service.c_str(), 0));
    const std::wstring script = (folder.InstallPath() / L"hello.plenx").wstring();
    WriteFile(script, kScript);
    ChildProcess host(L"\"" + ProgramFolder() + L"\\plenxkit.exe\" host --install " +
                      folder.InstallPath().wstring() + L" --data " + folder.DataPath().wstring() +
                      L" --timeout 90 --script " + script);
    EXPECT_EQ(host.WaitForExit(kLongestRun), 0u);
}

}  // namespace
}  // namespace PlenxTest
