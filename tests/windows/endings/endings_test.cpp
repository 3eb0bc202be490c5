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

enum class Left { kNothing, kWhatInitHadMade };

int Repetitions() {
    const char* const text = std::getenv("PLENX_TEST_ENDINGS");
    return text != nullptr ? std::atoi(text) : 50;
}

bool WaitUntilGone(const wchar_t* service) {
    for (int i = 0; i != 100 && IsRegistered(service); ++i) {
        Sleep(20);
    }
    return !IsRegistered(service);
}

class Endings : public testing::Test {
protected:
    Endings() {
        SetEnvironmentVariableW(L"PLENX_LOG_FILE", libraryLog_.c_str());
        SetEnvironmentVariableW(L"PLENX_OFFICE_LOG", officeLog_.c_str());
    }
    ~Endings() override {
        SetEnvironmentVariableW(L"PLENX_LOG_FILE", nullptr);
        SetEnvironmentVariableW(L"PLENX_OFFICE_LOG", nullptr);
    }

    bool CompanionWasReleased() const {
        return ReadFile(officeLog_).find("~DistributedFileManager()") != std::string::npos;
    }

    // Runs a host to its end; the test has failed when it does not end well.
    void Run(const HostMode& mode) {
        std::filesystem::remove(libraryLog_);
        std::filesystem::remove(officeLog_);
        const std::string arguments =
            std::string("--host ") + mode.name + " " + folder_.Install() + " " + folder_.Data();
        ChildProcess host(ChildProcess::Self(std::wstring(arguments.begin(), arguments.end())));
        ASSERT_TRUE(host.Started()) << "error " << host.StartError();
        const auto code = host.WaitForExit(kRunTime + kDeadline);
        ASSERT_TRUE(code.has_value()) << "the host hangs";
        ASSERT_EQ(*code, static_cast<DWORD>(mode.exitCode));
    }

    // A deleted service is gone when the last handle to it is closed; one that the worker died
    // with is closed by the system soon after the exit.
    void ExpectNothingIsLeft() {
        EXPECT_TRUE(WaitUntilGone(L"PlenxPcSvc"));
        EXPECT_TRUE(WaitUntilGone(L"PlenxPhoneSvc"));
        EXPECT_FALSE(std::filesystem::exists(folder_.WorkingFolder()));
    }

    void RunOften(const std::string& modeName, Left left = Left::kNothing) {
        const HostMode* const mode = FindHostMode(modeName);
        ASSERT_NE(mode, nullptr);
        for (int i = 0; i != Repetitions() && !HasFailure(); ++i) {
            Run(*mode);
            if (left == Left::kNothing) {
                ExpectNothingIsLeft();
            }
            if (HasFailure()) {
                ADD_FAILURE() << "in run " << i << "; the library wrote:\n"
                              << ReadFile(libraryLog_);
            }
        }
    }

    InstallFolder folder_{L"plenx-endings"};
    const std::filesystem::path libraryLog_ = folder_.DataPath() / L"library.log";
    const std::filesystem::path officeLog_ = folder_.DataPath() / L"office.log";
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

TEST_F(Endings, HostWithIdleWorker_ExitsUninstallsAndReleasesTheCompanion) {
    RunOften("idle");
    EXPECT_TRUE(CompanionWasReleased());
}

TEST_F(Endings, HostThatReturnsWhileInitRuns_Exits) {
    // Init may be anywhere; what it has made by then is taken over by the next run.
    RunOften("return-at-once", Left::kWhatInitHadMade);
    RunOften("idle");
}

// The worker may have died inside the companion library, so that is left alone.
TEST_F(Endings, HostWithBusyWorkerAndQueuedJobs_ExitsUninstallsAndLeavesTheCompanion) {
    folder_.SetServiceControl("serve=no\n");
    RunOften("busy-with-queue");
    EXPECT_FALSE(CompanionWasReleased());
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
