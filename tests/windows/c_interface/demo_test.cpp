// plenxkit carries out the demo's script on the class, and the same plenxkit carries it out on the
// plain C interface. The library must do and write the same.

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
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

const std::string kHost = "the host's thread";
const std::string kWorker = "the library's worker";
const std::string kPcService = "the PC service";
const std::string kPhoneService = "the phone service";

// The lines of each of these four. Each does one thing after the other, while the four take turns
// in any order.
using Lines = std::map<std::string, std::vector<std::string>>;

bool Contains(const std::string& line, const char* text) {
    return line.find(text) != std::string::npos;
}

// Tells for whom a thread writes the line, and before: for whom it wrote the one before. The
// threads of the RPC runtime serve both services. Each notification begins with a line of its own,
// and in the demo's script the phone service sends none without its number.
std::string WriterOf(const std::string& line, const std::string& before) {
    if (before == kHost || before == kWorker) {
        return before;
    }
    if (Contains(line, "::RegisterPLENXServiceObserver)")) {
        return kHost;
    }
    if (Contains(line, "service manager initialization")) {
        return kWorker;
    }
    if (Contains(line, " invoked")) {
        return Contains(line, "svcType:2") ? kPhoneService : kPcService;
    }
    return before;
}

// Removes the time and the thread, which differ from run to run.
Lines LinesOf(const fs::path& log) {
    static const std::regex whole(R"(\S+ \S+ (\[\w+\]) \[(\d+)\] (.*?)\r?)");
    Lines lines;
    std::map<std::string, std::string> writers;  // by the number of the thread
    std::istringstream stream(ReadFile(log));
    for (std::string line; std::getline(stream, line);) {
        std::smatch parts;
        EXPECT_TRUE(std::regex_match(line, parts, whole)) << line;
        std::string& writer = writers[parts[2]];
        writer = WriterOf(line, writer);
        lines[writer].push_back(parts.format("$1 $3"));
    }
    return lines;
}

class Demo : public testing::Test {
protected:
    Lines Run(const wchar_t* program) {
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

// A host of the class unregisters its observer before it ends; the interface's own observer stays
// until the process ends.
TEST_F(Demo, ThroughThePlainCInterface_WritesTheSameLibraryLog) {
    Lines ofTheClass = Run(L"plenxkit.exe");
    Lines ofTheInterface = Run(L"plenxkit_over_c.exe");
    std::vector<std::string>& host = ofTheClass[kHost];
    const auto last = std::remove_if(host.begin(), host.end(), [](const std::string& line) {
        return Contains(line, "::UnregisterPLENXServiceObserver)");
    });
    EXPECT_EQ(host.end() - last, 3);
    host.erase(last, host.end());
    EXPECT_EQ(ofTheClass.size(), 4U);
    EXPECT_EQ(ofTheInterface.size(), 4U);
    std::size_t count = 0;
    for (const auto& [writer, lines] : ofTheClass) {
        EXPECT_EQ(ofTheInterface[writer], lines) << writer;
        count += lines.size();
    }
    EXPECT_GT(count, 200U);
}

}  // namespace
}  // namespace PlenxTest
