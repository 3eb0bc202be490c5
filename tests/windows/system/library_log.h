// Reads the lines of the library, as the logging stand-in wrote them. It shows a line as its level
// and its text: "info [PLENXSDK] plenx manager Init(DistributedFs::PLENXManager::Init)".

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_LIBRARY_LOG_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_LIBRARY_LOG_H

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

namespace PlenxTest {

using Lines = std::vector<std::string>;

/// These make the two kinds of lines as they must be. function: its name without the namespace.
std::string Info(const std::string& function, const std::string& text);
std::string Error(const std::string& function, const std::string& text);

/// Returns the number that follows the text in the first line that has the text, or "0".
std::string NumberBehind(const std::string& text, const Lines& lines);

struct LogLine {
    std::string text;
    DWORD thread;
};

/// Returns all lines of the running test so far, or those from a byte of the file on.
std::vector<LogLine> ReadLibraryLog(std::size_t from = 0);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_LIBRARY_LOG_H
