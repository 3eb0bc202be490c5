// A host may end at any moment: it ends with its own exit code, within five seconds, and leaves
// neither services nor a working folder behind.

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

#include "endings/ending_hosts.h"
#include "support/child_process.h"
#include "support/install_folder.h"
#include "support/service_state.h"

namespace PlenxTest {
namespace {

constexpr DWORD kDeadline = 5000;  // from the host's return to its exit, and then some
constexpr DWORD kRunTime = 15000;  // for what the host does before it returns

int Repetitions() {
    const char* const text = std::getenv("PLENX_TEST_ENDINGS");
    return text != nullptr ? std::atoi(text) : 50;
}

class Endings : public testing::Test {
protected:
    void RunOften(const std::string& modeName) {
        const HostMode* const mode = FindHostMode(modeName);
        ASSERT_NE(mode, nullptr);
        const std::string arguments =
            "--host " + modeName + " " + folder_.Install() + " " + folder_.Data();
        const std::wstring command =
            ChildProcess::Self(std::wstring(arguments.begin(), arguments.end()));
        for (int i = 0; i != Repetitions(); ++i) {
            ChildProcess host(command);
            ASSERT_TRUE(host.Started());
            const auto code = host.WaitForExit(kRunTime + kDeadline);
            ASSERT_TRUE(code.has_value()) << "the host hangs, run " << i;
            ASSERT_EQ(*code, static_cast<DWORD>(mode->exitCode)) << "run " << i;
            ASSERT_FALSE(IsRegistered(L"PlenxPcSvc")) << "run " << i;
            ASSERT_FALSE(IsRegistered(L"PlenxPhoneSvc")) << "run " << i;
            ASSERT_FALSE(std::filesystem::exists(folder_.WorkingFolder())) << "run " << i;
        }
    }

    InstallFolder folder_{L"plenx-endings"};
};

TEST_F(Endings, HostThatUsesNothing_Exits) {
    RunOften("use-nothing");
}

TEST_F(Endings, HostThatLoadsAndFreesWithoutInit_IsRidOfTheLibrary) {
    RunOften("load-and-free");
}

TEST_F(Endings, HostThatFreesTheLibraryAfterInit_KeepsItAndExits) {
    RunOften("init-and-free");
}

TEST_F(Endings, HostWithIdleWorker_ExitsAndUninstalls) {
    RunOften("idle");
}

TEST_F(Endings, HostThatReturnsWhileInitRuns_Exits) {
    // Init may be anywhere; what it has made by then is taken over by the next run.
    const HostMode* const mode = FindHostMode("return-at-once");
    const std::string arguments =
        "--host return-at-once " + folder_.Install() + " " + folder_.Data();
    const std::wstring command =
        ChildProcess::Self(std::wstring(arguments.begin(), arguments.end()));
    for (int i = 0; i != Repetitions(); ++i) {
        ChildProcess host(command);
        const auto code = host.WaitForExit(kDeadline);
        ASSERT_TRUE(code.has_value()) << "the host hangs, run " << i;
        ASSERT_EQ(*code, static_cast<DWORD>(mode->exitCode)) << "run " << i;
    }
    RunOften("idle");
}

TEST_F(Endings, HostWithBusyWorkerAndQueuedJobs_ExitsAndUninstalls) {
    folder_.SetServiceControl("serve=no\n");
    RunOften("busy-with-queue");
}

TEST_F(Endings, HostThatExitsInsideAnObserver_ExitsAndUninstalls) {
    RunOften("exit-inside-observer");
}

TEST_F(Endings, HostWithCallsArriving_ExitsAndUninstalls) {
    RunOften("calls-arriving");
}

}  // namespace
}  // namespace PlenxTest

int main(int argc, char** argv) {
    if (argc == 5 && std::string(argv[1]) == "--host") {
        const PlenxTest::HostMode* const mode = PlenxTest::FindHostMode(argv[2]);
        try {
            return mode != nullptr ? mode->run(argv[3], argv[4]) : 98;
        } catch (const std::exception& failure) {
            std::fprintf(stderr, "host %s: %s\n", argv[2], failure.what());
            return 97;
        }
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
