#include "loghelper/log_settings.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

using LogHelper::LogSettings;
using LogHelper::ReadLogSettings;

namespace {

class LogSettingsTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char* const name : kNames) {
            unsetenv(name);
        }
    }
    void TearDown() override { SetUp(); }

    static LogSettings With(const char* name, const char* value) {
        setenv(name, value, 1);
        return ReadLogSettings();
    }

private:
    static constexpr const char* kNames[] = {"PLENX_LOG_FILE", "PLENX_LOG_LEVEL",
                                             "PLENX_LOG_MAX_BYTES", "PLENX_LOG_FILES"};
};

}  // namespace

TEST_F(LogSettingsTest, NothingSet_GivesDefaults) {
    const LogSettings settings = ReadLogSettings();
    EXPECT_EQ(settings.file, std::filesystem::temp_directory_path() /
                                 ("plenxsdk-" + std::to_string(getpid()) + ".log"));
    EXPECT_EQ(settings.leastLevel, LogSettings::kEveryLevel);
    EXPECT_EQ(settings.maxBytes, 10U * 1024 * 1024);
    EXPECT_EQ(settings.files, 5U);
}

TEST_F(LogSettingsTest, EmptyFile_CountsAsNotSet) {
    EXPECT_EQ(With("PLENX_LOG_FILE", "").file.extension(), ".log");
}

TEST_F(LogSettingsTest, FileMayHoldAnyCharacter) {
    EXPECT_EQ(With("PLENX_LOG_FILE", "/tmp/h\xC3\xA9 \xE4\xB8\xAD.log").file.native(),
              "/tmp/h\xC3\xA9 \xE4\xB8\xAD.log");
}

TEST_F(LogSettingsTest, LevelIsNameOrNumber) {
    EXPECT_EQ(With("PLENX_LOG_LEVEL", "info").leastLevel, 3);
    EXPECT_EQ(With("PLENX_LOG_LEVEL", "error").leastLevel, 4);
    EXPECT_EQ(With("PLENX_LOG_LEVEL", "off").leastLevel, LogSettings::kNoLevel);
    EXPECT_EQ(With("PLENX_LOG_LEVEL", "5").leastLevel, 5);
    EXPECT_EQ(With("PLENX_LOG_LEVEL", "-2").leastLevel, -2);
}

TEST_F(LogSettingsTest, MeaninglessLevel_CountsAsNotSet) {
    for (const char* const value : {"", "loud", "3x", " 3", "99999999999"}) {
        EXPECT_EQ(With("PLENX_LOG_LEVEL", value).leastLevel, LogSettings::kEveryLevel) << value;
    }
}

TEST_F(LogSettingsTest, SizeAndCountAreRead) {
    EXPECT_EQ(With("PLENX_LOG_MAX_BYTES", "1").maxBytes, 1U);
    EXPECT_EQ(With("PLENX_LOG_MAX_BYTES", "5000000000").maxBytes, 5000000000U);
    EXPECT_EQ(With("PLENX_LOG_FILES", "1").files, 1U);
    EXPECT_EQ(With("PLENX_LOG_FILES", "1000").files, 1000U);
}

TEST_F(LogSettingsTest, MeaninglessSizeAndCount_CountAsNotSet) {
    for (const char* const value : {"0", "-1", "1k", "99999999999999999999999"}) {
        EXPECT_EQ(With("PLENX_LOG_MAX_BYTES", value).maxBytes, 10U * 1024 * 1024) << value;
        EXPECT_EQ(With("PLENX_LOG_FILES", value).files, 5U) << value;
    }
    EXPECT_EQ(With("PLENX_LOG_FILES", "1001").files, 5U);
}
