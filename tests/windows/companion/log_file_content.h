// Takes a log file apart.

#ifndef PLENXSDK_TESTS_WINDOWS_COMPANION_LOG_FILE_CONTENT_H
#define PLENXSDK_TESTS_WINDOWS_COMPANION_LOG_FILE_CONTENT_H

#include <filesystem>
#include <string>
#include <vector>

namespace PlenxTest {

struct LogLine {
    std::string time;
    std::string level;
    unsigned long thread = 0;
    std::string text;
};

/// Returns all lines of the file, or no lines when there is no file. A line that does not have the
/// documented form, or lacks its end, fails the running test.
std::vector<LogLine> ReadLogLines(const std::filesystem::path& file);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_COMPANION_LOG_FILE_CONTENT_H
