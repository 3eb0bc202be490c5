#include "system/own_process.h"

#include <windows.h>

#include <fstream>
#include <iostream>

#include "support/child_process.h"
#include "support/install_folder.h"
#include "support/service_state.h"
#include "support/test_folder.h"
#include "support/wide_text.h"

namespace PlenxTest {
namespace {

namespace fs = std::filesystem;

DWORD longestTest = 0;
constexpr int kSkipped = 77;
constexpr wchar_t kChildMark[] = L"PLENX_SYSTEM_TEST_CHILD";
const fs::path kLogFolder = TestFolder() / L"plenx-system-logs";
const fs::path kInstallFolder = TestFolder() / L"plenx-system";

bool IsChild() {
    return GetEnvironmentVariableW(kChildMark, nullptr, 0) != 0;
}

std::string RunningTest() {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    return std::string(test.test_suite_name()) + "." + test.name();
}

fs::path PropertyFile() {
    return kLogFolder / (RunningTest() + ".properties");
}

// Otherwise, what a test has recorded about itself would be lost with the child.
void LeaveProperties() {
    const testing::TestResult& result =
        *testing::UnitTest::GetInstance()->current_test_info()->result();
    std::ofstream file(PropertyFile());
    for (int i = 0; i != result.test_property_count(); ++i) {
        const testing::TestProperty& property = result.GetTestProperty(i);
        file << property.key() << '\n' << property.value() << '\n';
    }
}

void TakeProperties() {
    std::ifstream file(PropertyFile());
    std::string value;
    for (std::string key; std::getline(file, key) && std::getline(file, value);) {
        testing::Test::RecordProperty(key, value);
    }
}

void PrintTail(const char* title, const fs::path& file) {
    constexpr std::size_t kMost = 12000;
    const std::string text = ReadFile(file);
    std::cout << "--- " << title << ":\n"
              << (text.size() > kMost ? text.substr(text.size() - kMost) : text) << "---\n";
}

void CleanUp() {
    for (const wchar_t* const name : {L"PlenxPcSvc", L"PlenxPhoneSvc", L"PlenxOfficeSvc"}) {
        EndService(name);
    }
    RemoveService(L"Dokan1");
    RemoveFolder(kInstallFolder);
}

}  // namespace

fs::path LibraryLogFile() {
    return kLogFolder / (RunningTest() + ".log");
}

fs::path ServiceLogFile() {
    return kLogFolder / (RunningTest() + ".service.log");
}

void InOwnProcess::TestBody() {
    if (IsChild()) {
        body_();
        LeaveProperties();
    } else {
        RunChild();
    }
}

void InOwnProcess::RunChild() {
    fs::create_directories(kLogFolder);
    fs::remove(LibraryLogFile());
    fs::remove(ServiceLogFile());
    fs::remove(PropertyFile());
    SetEnvironmentVariableW(kChildMark, L"1");
    for (const wchar_t* const shard : {L"GTEST_TOTAL_SHARDS", L"GTEST_SHARD_INDEX"}) {
        SetEnvironmentVariableW(shard, nullptr);  // the child has a single test
    }
    SetEnvironmentVariableW(L"PLENX_LOG_FILE", LibraryLogFile().c_str());
    const std::string filter = "--gtest_brief=1 --gtest_filter=" + RunningTest();
    ChildProcess child(ChildProcess::Self(PlenxSupport::ToWide(filter)));
    SetEnvironmentVariableW(kChildMark, nullptr);
    const auto code = child.WaitForExit(longestTest);
    child.Kill();
    CleanUp();
    TakeProperties();
    if (code == DWORD{kSkipped}) {
        GTEST_SKIP() << "see the output of the child";
    }
    EXPECT_EQ(code, DWORD{0}) << "the host process has failed, or hangs";
    if (HasFailure()) {
        PrintTail("the library's log", LibraryLogFile());
        PrintTail("the services' log", ServiceLogFile());
    }
}

// A child that should have run its test and ran none has failed.
int RunAllTests(unsigned long longest) {
    longestTest = longest;
    if (!IsChild()) {
        return RUN_ALL_TESTS();
    }
    testing::UnitTest& tests = *testing::UnitTest::GetInstance();
    delete tests.listeners().Release(tests.listeners().default_xml_generator());
    if (RUN_ALL_TESTS() != 0 || tests.test_to_run_count() != 1) {
        return 1;
    }
    return tests.skipped_test_count() != 0 ? kSkipped : 0;
}

}  // namespace PlenxTest
