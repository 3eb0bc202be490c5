#include "loghelper/log_file.h"

#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <thread>

#include "temporary_folder.h"

using LogHelper::FormatLine;
using LogHelper::LogFile;
using LogHelper::LogSettings;
using testing::MatchesRegex;

namespace {

constexpr char kTime[] =
    "[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9] "
    "[0-9][0-9]:[0-9][0-9]:[0-9][0-9]\\.[0-9][0-9][0-9] ";

LogSettings SettingsFor(const std::filesystem::path& file) {
    LogSettings settings;
    settings.file = file;
    return settings;
}

// A line consists of 24 characters of time, the text and LF.
std::size_t LineBytes(const std::string& text) {
    return 24 + text.size() + 1;
}

// Returns the text of the file's only line.
std::string OnlyText(const std::filesystem::path& file) {
    const std::string content = ReadFile(file);
    EXPECT_EQ(content.find('\n'), content.size() - 1);
    return content.size() < 25 ? content : content.substr(24, content.size() - 25);
}

}  // namespace

TEST(LogFileTest, LineIsTimeBlankTextAndLineFeed) {
    EXPECT_THAT(FormatLine("[info] [1] a {} %v"),
                MatchesRegex(kTime + std::string("\\[info\\] \\[1\\] a \\{\\} %v\n")));
}

TEST(LogFileTest, NothingIsOpenedBeforeTheFirstLine) {
    const TemporaryFolder folder;
    LogFile file(SettingsFor(folder / "a.log"));
    EXPECT_FALSE(std::filesystem::exists(folder / "a.log"));
}

TEST(LogFileTest, EachLineIsInTheFileAtOnce) {
    const TemporaryFolder folder;
    LogFile file(SettingsFor(folder / "a.log"));
    file.Write("one");
    EXPECT_THAT(ReadFile(folder / "a.log"), MatchesRegex(kTime + std::string("one\n")));
    file.Write("two");
    EXPECT_THAT(ReadFile(folder / "a.log"),
                MatchesRegex(kTime + std::string("one\n") + kTime + "two\n"));
}

TEST(LogFileTest, FileIsContinued_AndItsFolderMade) {
    const TemporaryFolder folder;
    const auto path = folder / "x/y/h\xC3\xA9.log";
    LogFile(SettingsFor(path)).Write("one");
    LogFile(SettingsFor(path)).Write("two");
    EXPECT_EQ(ReadFile(path).size(), LineBytes("one") + LineBytes("two"));
}

TEST(LogFileTest, FileThatWouldGrowBeyondItsSize_IsRotated_AndTheOldestGoes) {
    const TemporaryFolder folder;
    LogSettings settings = SettingsFor(folder / "a.log");
    settings.maxBytes = LineBytes("line 0");
    settings.files = 3;
    LogFile file(settings);
    for (int i = 0; i != 5; ++i) {
        file.Write("line " + std::to_string(i));
    }
    EXPECT_EQ(OnlyText(folder / "a.log"), "line 4");
    EXPECT_EQ(OnlyText(folder / "a.1.log"), "line 3");
    EXPECT_EQ(OnlyText(folder / "a.2.log"), "line 2");
    EXPECT_FALSE(std::filesystem::exists(folder / "a.3.log"));
}

TEST(LogFileTest, SingleFile_IsBegunAnew) {
    const TemporaryFolder folder;
    LogSettings settings = SettingsFor(folder / "a.log");
    settings.maxBytes = 1;
    settings.files = 1;
    LogFile file(settings);
    file.Write("one");
    file.Write("two");
    EXPECT_EQ(OnlyText(folder / "a.log"), "two");
    EXPECT_FALSE(std::filesystem::exists(folder / "a.1.log"));
}

TEST(LogFileTest, FailedRotation_WritesTheLineAllTheSame) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder / "a.1.log/in the way");
    LogSettings settings = SettingsFor(folder / "a.log");
    settings.maxBytes = 1;
    LogFile file(settings);
    file.Write("one");
    file.Write("two");
    EXPECT_EQ(OnlyText(folder / "a.log"), "two");
    file.Write("three");
    EXPECT_EQ(OnlyText(folder / "a.log"), "three");
}

TEST(LogFileTest, FileThatCannotBeOpened_DropsLinesSilently_AndIsNotTriedForEachLine) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder / "a.log");
    LogFile file(SettingsFor(folder / "a.log"));
    testing::internal::CaptureStderr();
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i != 1000; ++i) {
        file.Write("lost");
    }
    const auto time = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_LT(time, std::chrono::seconds(2)) << "one try takes 50 ms";
}

TEST(LogFileTest, FileThatCouldNotBeOpened_IsTriedAgainLater) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder / "a.log");
    LogFile file(SettingsFor(folder / "a.log"));
    file.Write("lost");
    std::filesystem::remove(folder / "a.log");
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!std::filesystem::exists(folder / "a.log")) {
        ASSERT_LT(std::chrono::steady_clock::now(), deadline);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        file.Write("found");
    }
    EXPECT_EQ(OnlyText(folder / "a.log"), "found");
}

TEST(LogFileTest, FullDisk_DropsLinesSilently) {
    LogFile file(SettingsFor("/dev/full"));
    testing::internal::CaptureStderr();
    file.Write("lost");
    file.Write("lost");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(LogFileTest, LineLongerThanAnyBuffer_IsWhole) {
    const TemporaryFolder folder;
    const std::string text(300000, 'x');
    LogFile file(SettingsFor(folder / "a.log"));
    file.Write(text);
    EXPECT_EQ(OnlyText(folder / "a.log"), text);
}
