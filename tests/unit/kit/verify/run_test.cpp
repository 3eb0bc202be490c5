// Tests runs of verify on a fake machine: when it refuses, what it starts, how it judges what
// happens, and that it always removes everything.

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "fake_system.h"
#include "verify/run_on.h"
#include "verify/stage.h"

namespace PlenxVerify {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class VerifyRun : public testing::Test {
protected:
    VerifyRun() {
        options.yes = true;
        // The tests run at the same time, each in a process of its own.
        const std::string name = "verify-results-" + std::to_string(getpid());
        options.out = (fs::path(testing::TempDir()) / name).u8string();
        fs::remove_all(options.out);
    }
    ~VerifyRun() override { fs::remove_all(options.out); }

    int Run() {
        std::istringstream in;
        std::ostringstream errors;
        std::ostringstream printed;
        const PlenxKit::StandardStreams process;
        const int code = RunOn(system, options, {in, printed, errors, process});
        output = printed.str();
        return code;
    }

    std::string WhyRefused() {
        try {
            Run();
        } catch (const Refusal& refusal) {
            return refusal.what();
        }
        return "it has begun";
    }

    std::string Report() const { return TextOfFile(fs::u8path(options.out) / "report.html"); }

    std::string Zip() const {
        for (const auto& entry : fs::directory_iterator(fs::u8path(options.out))) {
            if (entry.path().extension() == ".zip") {
                return TextOfFile(entry.path());
            }
        }
        return {};
    }

    static std::string TextOfFile(const fs::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    FakeSystem system;
    Options options;
    std::string output;
};

TEST_F(VerifyRun, WithoutRights_IsRefused) {
    system.hasRights = false;
    EXPECT_EQ(WhyRefused(), "it needs administrator rights; start it from an elevated prompt");
}

TEST_F(VerifyRun, BesideAnother_IsRefused) {
    system.isAlone = false;
    EXPECT_EQ(WhyRefused(), "another plenxkit verify runs, or is removing what it has made");
}

TEST_F(VerifyRun, WithoutItsPrograms_IsRefused) {
    system.missing = {"rpc_interface_test.exe"};
    EXPECT_THAT(WhyRefused(), HasSubstr("rpc_interface_test.exe is not beside plenxkit.exe"));
    options.only = {"load"};
    EXPECT_EQ(WhyRefused(), "it has begun");
}

TEST_F(VerifyRun, BesideAProduct_IsRefusedAndTouchesNothing) {
    system.traces = {{"the service PlenxPcSvc, C:\\app\\plenxservice.exe", false},
                     {"the folder C:\\root", true}};
    EXPECT_EQ(WhyRefused(),
              "a product of ours may be installed on this machine:\n"
              "  the service PlenxPcSvc, C:\\app\\plenxservice.exe\n"
              "  the folder C:\\root\n"
              "Use a machine that has none.");
    EXPECT_THAT(system.steps, ElementsAre());
}

TEST_F(VerifyRun, AfterARunThatLeftSomething_IsRefusedUntilItIsCleaned) {
    system.traces = {{"the folder C:\\root", true}};
    EXPECT_EQ(WhyRefused(),
              "an earlier run has left something; plenxkit verify --clean removes it");
    EXPECT_THAT(system.steps, ElementsAre());
    options.clean = true;
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(output, "Nothing of an earlier run is left.\n");
    EXPECT_THAT(system.steps, ElementsAre("clean all"));
    options.clean = false;
    EXPECT_EQ(Run(), 0);
}

TEST_F(VerifyRun, CleanOfAProduct_IsRefused) {
    system.traces = {{"the service PlenxPcSvc, C:\\app\\plenxservice.exe", false}};
    options.clean = true;
    EXPECT_THAT(WhyRefused(), HasSubstr("not all of this comes from plenxkit verify:"));
    EXPECT_THAT(system.steps, ElementsAre());
}

TEST_F(VerifyRun, CleanThatLeavesSomething_EndsWith4) {
    system.stubborn = {{"the folder C:\\root", true}};
    options.clean = true;
    EXPECT_EQ(Run(), 4);
    EXPECT_EQ(output, "left behind:\n  the folder C:\\root\n");
}

TEST_F(VerifyRun, WithNobodyToAsk_NeedsYes) {
    options.yes = false;
    EXPECT_THROW(Run(), UsageError);
    EXPECT_THAT(system.steps, ElementsAre());
}

TEST_F(VerifyRun, ThatCannotPrepare_IsRefusedAndCleans) {
    system.prepareError = "cannot copy";
    EXPECT_EQ(WhyRefused(), "cannot copy");
    EXPECT_THAT(system.steps, ElementsAre("prepare", "clean all"));
}

TEST_F(VerifyRun, DryRun_DoesNothing) {
    options.dryRun = true;
    EXPECT_EQ(Run(), 0);
    EXPECT_THAT(output, HasSubstr("What is removed again"));
    EXPECT_THAT(system.steps, ElementsAre());
    EXPECT_FALSE(fs::exists(options.out));
}

TEST_F(VerifyRun, OfAll_RunsEachPartWithItsLimitAndEndsWith0) {
    EXPECT_EQ(Run(), 0);
    std::size_t parts = 0;
    for (const Stage& stage : Stages()) {
        parts += stage.parts.size();
    }
    EXPECT_EQ(system.launched.size(), parts);
    EXPECT_THAT(output, HasSubstr("  wire          1 passed "));
    EXPECT_THAT(output, HasSubstr("All is as expected.\n"));
    EXPECT_EQ(system.steps.back(), "clean all");
    const Launch& image = system.launched.at(1);
    EXPECT_EQ(image.program, "system_test.exe");
    EXPECT_EQ(image.seconds, 60U);
    EXPECT_THAT(
        image.arguments,
        ElementsAre("--gtest_color=no", "--gtest_output=json:C:\\root\\results\\load-image.json",
                    "--gtest_filter=Image.*"));
}

TEST_F(VerifyRun, Scenarios_ArePlayedByTheKitInTheWorkFolder) {
    options.only = {"scenarios"};
    EXPECT_EQ(Run(), 0);
    ASSERT_EQ(system.launched.size(), 1U);
    EXPECT_THAT(system.launched[0].arguments,
                ElementsAre("scenario", "run", "--all", "--work", "C:\\root\\work\\scenarios",
                            "--json", "C:\\root\\results\\scenarios-scenarios.json"));
}

TEST_F(VerifyRun, FailedTest_IsShownAndEndsWith1) {
    options.only = {"wire"};
    system.ends["wire-calls"] = {Ended::How::kByItself, 1, 12};
    system.results["wire-calls"] =
        JsonOfTests({PassedTest("Echo"), FailedTest("Size", "a.cpp:9\nExpected 1")});
    EXPECT_EQ(Run(), 1);
    EXPECT_THAT(output, HasSubstr("  wire          1 passed, 1 failed                            "
                                  "12 s\n"
                                  "    FAIL Suite.Size\n"
                                  "      a.cpp:9\n"
                                  "      Expected 1\n"));
    EXPECT_THAT(output, HasSubstr("Something failed.\n"));
    EXPECT_THAT(Zip(), HasSubstr("logs/wire-library.log"));
}

struct BadEnd {
    Ended ended;
    std::string results;
    std::string problem;
};

TEST_F(VerifyRun, ProgramThatDoesNotEndAsItShould_HasFailed) {
    options.only = {"wire"};
    system.outputs["wire-calls"] = "[ RUN      ] Suite.Echo\n";
    const BadEnd ends[] = {
        {{Ended::How::kNotStarted, 2}, "", "rpc_interface_test.exe cannot be started, error 2"},
        {{Ended::How::kTimeWasOver},
         "",
         "rpc_interface_test.exe had not ended after 180 s, in Suite.Echo"},
        {{Ended::How::kByItself, 0xC0000005},
         "",
         "rpc_interface_test.exe ended with 0xC0000005, in Suite.Echo"},
        {{Ended::How::kByItself, 0}, JsonOfTests({}), "nothing was tried"},
        {{Ended::How::kByItself, 0}, "{", "its results cannot be read: "},
        {{Ended::How::kByItself, 1},
         JsonOfTests({PassedTest("Echo")}),
         "it ended with 1 although nothing failed"},
    };
    for (const BadEnd& end : ends) {
        SCOPED_TRACE(end.problem);
        system.ends["wire-calls"] = end.ended;
        system.results["wire-calls"] = end.results;
        EXPECT_EQ(Run(), 1);
        EXPECT_THAT(output, HasSubstr("    FAIL calls: " + end.problem));
    }
}

TEST_F(VerifyRun, Stage_IsCleanedUpBeforeTheNextOne) {
    options.only = {"load,demo"};
    EXPECT_EQ(Run(), 0);
    EXPECT_THAT(system.steps, ElementsAre("prepare", "load-hardening", "load-image", "clean",
                                          "demo-demo", "clean", "clean all"));
    EXPECT_THAT(Report(), HasSubstr("<li>the service Dokan1</li>"));
}

TEST_F(VerifyRun, ThatLeavesSomething_EndsWith4EvenIfSomethingFailed) {
    options.only = {"load"};
    system.results["load-image"] = JsonOfTests({FailedTest("Exports", "no")});
    system.ends["load-image"] = {Ended::How::kByItself, 1, 0};
    system.staysAfterRun = {{"the service PlenxPcSvc, C:\\root\\app\\plenxservice.exe", true}};
    EXPECT_EQ(Run(), 4);
    EXPECT_THAT(output, HasSubstr("left behind: the service PlenxPcSvc, "
                                  "C:\\root\\app\\plenxservice.exe\nSomething was left behind.\n"));
}

TEST_F(VerifyRun, Interrupted_RunsNothingMoreAndRemovesEverything) {
    options.only = {"load,wire"};
    system.interruptedAt = "load-hardening";
    EXPECT_EQ(Run(), 5);
    EXPECT_THAT(system.steps,
                ElementsAre("prepare", "load-hardening", "clean", "clean", "clean all"));
    EXPECT_THAT(output, HasSubstr("    FAIL hardening: the run was interrupted\n"));
    EXPECT_THAT(output, HasSubstr("  wire          not run: the run was interrupted\n"));
    EXPECT_THAT(output, HasSubstr("The run was interrupted. Everything was removed.\n"));
}

TEST_F(VerifyRun, Reports_NameNobody) {
    options.only = {"wire"};
    system.secrets = {{"erika", "%USERNAME%"}};
    system.outputs["wire-calls"] = "C:\\Users\\erika";
    system.results["wire-calls"] = JsonOfTests({FailedTest("Echo", "Erika was here")});
    system.ends["wire-calls"] = {Ended::How::kByItself, 1, 0};
    options.json = options.out + ".json";
    EXPECT_EQ(Run(), 1);
    EXPECT_THAT(Report(), HasSubstr("%USERNAME% was here"));
    for (const std::string& text : {Report(), Zip(), TextOfFile(options.json)}) {
        EXPECT_FALSE(text.empty());
        EXPECT_THAT(text, Not(HasSubstr("rika")));
    }
    fs::remove(options.json);
}

}  // namespace
}  // namespace PlenxVerify
