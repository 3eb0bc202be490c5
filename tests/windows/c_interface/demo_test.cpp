// plenxkit carries out the demo's script on the class, and the same plenxkit carries it out on the
// plain C interface. The library must do and write the same.

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "support/install_folder.h"

namespace PlenxTest {
namespace {

namespace fs = std::filesystem;

std::wstring Quoted(const fs::path& path) {
    return L"\"" + path.wstring() + L"\"";
}

// Removes the time and the thread, which differ from run to run.
std::vector<std::string> LinesOf(const fs::path& log) {
    static const std::regex head(R"(^\S+ \S+ (\[\w+\]) \[\d+\] )");
    std::vector<std::string> lines;
    std::istringstream stream(ReadFile(log));
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        lines.push_back(std::regex_replace(line, head, "$1 "));
    }
    return lines;
}

class Demo : public testing::Test {
protected:
    std::vector<std::string> Run(const wchar_t* program) {
        const InstallFolder folder(L"plenx-demo");
        folder.AddUpgrade();
        const fs::path log = folder.DataPath().parent_path() / L"library.log";
        SetEnvironmentVariableW(L"PLENX_LOG_FILE", log.c_str());
        ChildProcess host(Quoted(fs::path(ProgramFolder()) / program) + L" host --install " +
                          Quoted(folder.InstallPath()) + L" --data " + Quoted(folder.DataPath()) +
                          L" --third demo --flag --timeout 60 --script " +
                          Quoted(fs::path(ProgramFolder()) / L"demo.plenx"));
        EXPECT_TRUE(host.Started()) << "error " << host.StartError();
        EXPECT_EQ(host.WaitForExit(90000).value_or(0xDEAD), 0U) << "an expectation did not hold";
        SetEnvironmentVariableW(L"PLENX_LOG_FILE", nullptr);
        return LinesOf(log);
    }
};

// Threads take turns in any order, so the test compares the lines without their order. A host of
// the class unregisters its observer before it ends; the interface's own observer stays until the
// process ends.
TEST_F(Demo, ThroughThePlainCInterface_WritesTheSameLibraryLog) {
    std::vector<std::string> ofTheClass = Run(L"plenxkit.exe");
    std::vector<std::string> ofTheInterface = Run(L"plenxkit_over_c.exe");
    const auto unregisters = [](const std::string& line) {
        return line.find("::UnregisterPLENXServiceObserver)") != std::string::npos;
    };
    const auto last = std::remove_if(ofTheClass.begin(), ofTheClass.end(), unregisters);
    EXPECT_EQ(ofTheClass.end() - last, 3);
    ofTheClass.erase(last, ofTheClass.end());
    std::sort(ofTheClass.begin(), ofTheClass.end());
    std::sort(ofTheInterface.begin(), ofTheInterface.end());
    EXPECT_GT(ofTheClass.size(), 200U);
    EXPECT_EQ(ofTheInterface, ofTheClass);
}

}  // namespace
}  // namespace PlenxTest
