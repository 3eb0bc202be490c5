// Tests programs that the judge leads through a life with the Service Control Manager.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "kit/judge/judgement.h"
#include "support/install_folder.h"
#include "support/service_state.h"

namespace PlenxTest {
namespace {

using testing::ElementsAreArray;
using testing::HasSubstr;

using Numbers = std::set<std::string>;

class JudgedLife : public testing::Test {
protected:
    JudgeFolder folder;

    Judgement Judge(const std::string& program, const std::string& options) const {
        return RunJudge("--service " + folder.Copy(program) + " " + options);
    }
    void ExpectNothingIsLeft() const {
        EXPECT_FALSE(IsRegistered(L"PlenxPcSvc"));
        EXPECT_FALSE(IsRegistered(L"PlenxPhoneSvc"));
    }
};

TEST_F(JudgedLife, DevelopmentService_PassesEverything) {
    const Judgement judgement = Judge("plenxservice.exe", "--strict --soak 1");
    EXPECT_EQ(judgement.code, 0) << judgement.output;
    EXPECT_EQ(judgement.Judged().size(), judgement.verdicts.size()) << judgement.output;
    ExpectNothingIsLeft();
}

TEST_F(JudgedLife, HelloService_PassesAtLevelShould) {
    const Judgement judgement = Judge("hello_service.exe", "--strict --role phone");
    EXPECT_EQ(judgement.code, 0) << judgement.output;
    ExpectNothingIsLeft();
}

TEST_F(JudgedLife, ProgramThatIsNoService_DoesNotStart) {
    const Judgement judgement = Judge("plenxkit.exe", "--only start,ping,stop");
    EXPECT_EQ(judgement.code, 1) << judgement.output;
    EXPECT_THAT(judgement.Failed(), ElementsAreArray({"start/1"})) << judgement.output;
    ExpectNothingIsLeft();
}

TEST_F(JudgedLife, RegisteredServiceOfAHost_IsNotTouched) {
    const SC_HANDLE manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    const SC_HANDLE service =
        CreateServiceW(manager, L"PlenxPcSvc", L"PlenxPcSvc", SERVICE_ALL_ACCESS,
                       SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL,
                       L"C:\\Other\\plenxservice.exe", nullptr, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(service, nullptr);
    const Judgement judgement = Judge("plenxservice.exe", "--only start");
    EXPECT_EQ(judgement.code, 3);
    EXPECT_THAT(judgement.output, HasSubstr("PlenxPcSvc is registered already"));
    EXPECT_TRUE(IsRegistered(L"PlenxPcSvc"));
    DeleteService(service);
    CloseServiceHandle(service);
    CloseServiceHandle(manager);
}

TEST_F(JudgedLife, PathWithBlanks_IsRefused) {
    const Judgement judgement = RunJudge("--service \"C:\\Program Files\\plenxservice.exe\"");
    EXPECT_EQ(judgement.code, 3);
    EXPECT_THAT(judgement.output, HasSubstr("free of blanks"));
}

struct Life {
    const char* name;
    const char* control;
    Numbers failed;
};

// A program that does not start, or serves nobody, is not judged by any other check.
const Life kLives[] = {
    {"slow_start", "[start]\ndelay_ms = 700\n", {}},
    {"silent_start", "[start]\nsilent_ms = 4000\n", {"start/1"}},
    {"start_without_a_hint", "[start]\ndelay_ms = 700\nhint_ms = 0\n", {"start/2"}},
    {"failing_start", "[start]\nfail = 7\n", {"start/1"}},
    {"crash_at_the_start", "[start]\ncrash = true\n", {"start/1"}},
    {"deaf", "[start]\nserve = false\n", {"start/3"}},
    {"refused_stop", "[stop]\naccept = false\n", {"start/4", "stop/1", "stop/3", "stop/4"}},
    {"ignored_stop", "[stop]\nhow = \"ignore\"\n", {"stop/1", "stop/3", "stop/4"}},
    {"stop_that_never_ends", "[stop]\nhow = \"never\"\n", {"stop/1", "stop/3", "stop/4"}},
    {"slow_stop", "[stop]\ndelay_ms = 700\n", {}},
    {"lingering_process", "[stop]\nlinger_ms = 2500\n", {"stop/2"}},
};

std::string NameOf(const testing::TestParamInfo<Life>& info) {
    return info.param.name;
}

class JudgedLives : public testing::TestWithParam<Life> {
protected:
    JudgeFolder folder;
};

TEST_P(JudgedLives, TripTheirChecksAndNoOther) {
    folder.Write("plenxservice.toml", GetParam().control);
    const Judgement judgement =
        RunJudge("--strict --only start,ping,stop,folder,restart,arguments --service " +
                 folder.Copy("plenxservice.exe"));
    EXPECT_THAT(judgement.Failed(), ElementsAreArray(GetParam().failed)) << judgement.output;
    EXPECT_EQ(judgement.code, GetParam().failed.empty() ? 0 : 1) << judgement.output;
    EXPECT_FALSE(IsRegistered(L"PlenxPcSvc"));
}

INSTANTIATE_TEST_SUITE_P(All, JudgedLives, testing::ValuesIn(kLives), NameOf);

}  // namespace
}  // namespace PlenxTest
