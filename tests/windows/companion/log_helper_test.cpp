// Tests the logger in processes of its own, because it reads its settings once per process, and
// because its behaviour at the end of a process matters most.

#include <gtest/gtest.h>

#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "companion/log_file_content.h"
#include "companion/logging_hosts.h"
#include "companion/run_host.h"
#include "support/child_process.h"
#include "support/handle.h"
#include "support/install_folder.h"

namespace PlenxTest {
namespace {

class LogHelperTest : public testing::Test {
protected:
    void SetUp() override {
        RemoveFolder(folder_);
        std::filesystem::create_directories(folder_);
        Set(L"PLENX_LOG_FILE", file_.wstring());
    }
    void TearDown() override {
        for (const wchar_t* const name :
             {L"PLENX_LOG_FILE", L"PLENX_LOG_LEVEL", L"PLENX_LOG_MAX_BYTES", L"PLENX_LOG_FILES"}) {
            SetEnvironmentVariableW(name, nullptr);
        }
        RemoveFolder(folder_);
    }

    static void Set(const wchar_t* name, const std::wstring& value) {
        ASSERT_TRUE(SetEnvironmentVariableW(name, value.c_str()));
    }

    std::filesystem::path Rotated(int number) const {
        return folder_ / (L"h\u00E9 \u4E2D." + std::to_wstring(number) + L".log");
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / L"plenx-companion-log";
    const std::filesystem::path file_ = folder_ / L"h\u00E9 \u4E2D.log";
};

int CountOf(const std::string& content, const std::string& part) {
    int count = 0;
    for (auto at = content.find(part); at != std::string::npos; at = content.find(part, at + 1)) {
        ++count;
    }
    return count;
}

void ExpectLateLine(const LogLine& line) {
    EXPECT_EQ(line.level, "error");
    EXPECT_EQ(line.text, "late line, office code 1007");
}

TEST_F(LogHelperTest, LevelsControlCharactersAndSurrogatesAreWrittenAsDocumented) {
    RunHost("levels");
    const std::vector<LogLine> lines = ReadLogLines(file_);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0].level, "info");
    EXPECT_EQ(lines[0].text, "a\\u000D\\u000Ab");
    EXPECT_EQ(lines[1].level, "error");
    EXPECT_EQ(lines[1].text, "\xE4\xB8\xAD\xF0\x9F\x98\x80 \xEF\xBF\xBD");
    EXPECT_EQ(lines[2].level, "2");
    EXPECT_EQ(lines[2].text, "two");
    EXPECT_EQ(lines[2].thread, lines[0].thread);
    ExpectLateLine(lines[3]);
}

TEST_F(LogHelperTest, LevelErrorDropsTheRest) {
    Set(L"PLENX_LOG_LEVEL", L"error");
    RunHost("levels");
    const std::vector<LogLine> lines = ReadLogLines(file_);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].text, "\xE4\xB8\xAD\xF0\x9F\x98\x80 \xEF\xBF\xBD");
    ExpectLateLine(lines[1]);
}

TEST_F(LogHelperTest, LevelOffMakesNoFile) {
    Set(L"PLENX_LOG_LEVEL", L"off");
    RunHost("levels");
    EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(LogHelperTest, LinesOfManyThreadsAreWhole_AndInTheOrderOfEachThread) {
    RunHost("threads");
    std::vector<LogLine> lines = ReadLogLines(file_);
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(kThreads * kLinesPerThread) + 1);
    ExpectLateLine(lines.back());
    lines.pop_back();
    std::map<unsigned long, int> next;
    std::map<unsigned long, std::string> front;
    std::string time;
    for (const LogLine& line : lines) {
        if (front[line.thread].empty()) {
            front[line.thread] = line.text.substr(0, sizeof("thread 0 line ") - 1);
        }
        ASSERT_EQ(line.text, front[line.thread] + std::to_string(next[line.thread]++));
        ASSERT_LE(time, line.time);
        time = line.time;
    }
    EXPECT_EQ(next.size(), static_cast<std::size_t>(kThreads));
}

TEST_F(LogHelperTest, FirstLineAtProcessEnd_IsWritten) {
    RunHost("nothing");
    const std::vector<LogLine> lines = ReadLogLines(file_);
    ASSERT_EQ(lines.size(), 1U);
    ExpectLateLine(lines[0]);
}

TEST_F(LogHelperTest, ProcessEndsWhileThreadsLog_LateLineIsWritten_AndTheExitCodeKept) {
    for (int i = 0; i != Repetitions(); ++i) {
        SCOPED_TRACE(i);
        std::filesystem::remove(file_);
        ASSERT_NO_FATAL_FAILURE(RunHost("busy"));
        // Wine does not wait until a thread that it ends has finished its last write, so the
        // neighbour of the late line may be torn.
        const std::string content = ReadFile(file_);
        ASSERT_GT(CountOf(content, "] busy\n"), 10);
        ASSERT_EQ(CountOf(content, "] late line, office code 1007\n"), 1);
    }
}

TEST_F(LogHelperTest, FullFileIsRotated) {
    Set(L"PLENX_LOG_MAX_BYTES", L"100000");
    Set(L"PLENX_LOG_FILES", L"3");
    RunHost("threads");
    std::vector<LogLine> lines = ReadLogLines(file_);
    ASSERT_FALSE(lines.empty());
    ExpectLateLine(lines.back());
    for (int number : {1, 2}) {
        EXPECT_GT(ReadLogLines(Rotated(number)).size(), 1000U) << number;
        EXPECT_LE(std::filesystem::file_size(Rotated(number)), 100000U) << number;
    }
    EXPECT_FALSE(std::filesystem::exists(Rotated(3)));
}

TEST_F(LogHelperTest, FileThatAReaderKeepsFromBeingRenamed_IsEmptied) {
    Set(L"PLENX_LOG_MAX_BYTES", L"1");
    const PlenxSupport::Handle oneIsWritten = PlenxSupport::MakeEvent(kOneIsWritten);
    const PlenxSupport::Handle goOn = PlenxSupport::MakeEvent(kGoOn);
    ChildProcess host(HostCommand("twice"));
    ASSERT_EQ(WaitForSingleObject(oneIsWritten.Get(), 10000), WAIT_OBJECT_0);
    PlenxSupport::Handle reader(CreateFileW(file_.c_str(), GENERIC_READ,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                            OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(reader);
    SetEvent(goOn.Get());
    ExpectHostExits(host, "twice");
    reader.Reset();
    const std::vector<LogLine> lines = ReadLogLines(file_);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].text, "two");
    ExpectLateLine(lines[1]);
    EXPECT_FALSE(std::filesystem::exists(Rotated(1)));
}

TEST_F(LogHelperTest, FileThatCannotBeOpened_DropsLines_AndTheExitCodeIsKept) {
    std::filesystem::create_directories(file_);
    RunHost("threads");
    EXPECT_TRUE(std::filesystem::is_empty(file_));
}

}  // namespace
}  // namespace PlenxTest
