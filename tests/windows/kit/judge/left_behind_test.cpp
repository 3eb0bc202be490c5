// Tests a judge that cannot remove what it has brought.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "kit/judge/judgement.h"
#include "support/handle.h"
#include "support/install_folder.h"
#include "support/service_state.h"
#include "support/wait.h"

namespace PlenxTest {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr DWORD kLongest = 60000;
constexpr int kLeftBehind = 4;
const fs::path kWork = L"C:\\plenxkit";
// Gives the test the time to take something that the judge will want to remove.
constexpr char kForAMoment[] = "[[on]]\nrequest = \"PingService\"\ntimes = 2\ndelay_ms = 1000\n";

class HinderedJudge : public testing::Test {
protected:
    JudgeFolder folder;

    // Without this, the folder that another test has left would stay.
    HinderedJudge() { fs::remove_all(kWork); }

    std::string Service(const std::string& control) const {
        folder.Write("plenxservice.toml", control);
        return "--service " + folder.Copy("plenxservice.exe");
    }
    static bool Runs() {
        return WaitFor([] { return StateOf(L"PlenxPcSvc") == SERVICE_RUNNING; }, kLongest);
    }
};

TEST_F(HinderedJudge, ServiceThatSomebodyHasOpen_IsLeftBehind) {
    JudgeAtWork judge("--only start,ping " + Service(kForAMoment));
    ASSERT_TRUE(Runs());
    PlenxSupport::ServiceHandle held = OpenedService(L"PlenxPcSvc", SERVICE_QUERY_STATUS);
    const Judgement judgement = judge.Wait();
    EXPECT_EQ(judgement.code, kLeftBehind) << judgement.output;
    EXPECT_THAT(judgement.output,
                HasSubstr("\nleft behind: the service PlenxPcSvc; it goes when "));
    held.Reset();
    EXPECT_FALSE(IsRegistered(L"PlenxPcSvc"));
}

TEST_F(HinderedJudge, FolderInWhichSomebodyHasAFileOpen_IsLeftBehind) {
    JudgeAtWork judge("--only start,ping " + Service(kForAMoment));
    ASSERT_TRUE(Runs());
    const fs::path file = kWork / "judge" / "pc" / "held.txt";
    const PlenxSupport::Handle held(CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr,
                                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(held);
    const Judgement judgement = judge.Wait();
    EXPECT_EQ(judgement.code, kLeftBehind) << judgement.output;
    EXPECT_THAT(judgement.output,
                HasSubstr("\nleft behind: C:\\plenxkit\\judge cannot be removed: "));
    EXPECT_FALSE(IsRegistered(L"PlenxPcSvc"));
}

}  // namespace
}  // namespace PlenxTest
