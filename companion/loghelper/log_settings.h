// The process's environment says where the log goes and which lines it gets:
//
//     PLENX_LOG_FILE       the file; by default plenxsdk-<process id>.log in the temp folder
//     PLENX_LOG_LEVEL      the lowest level to log: a number, "info" (3), "error" (4) or "off";
//                          by default everything is written
//     PLENX_LOG_MAX_BYTES  the size at which a new file is begun; by default 10 MiB
//     PLENX_LOG_FILES      how many files are kept, 1 to 1000; by default 5
//
// A value that makes no sense counts as not set.

#ifndef COMPANION_LOGHELPER_LOG_SETTINGS_H
#define COMPANION_LOGHELPER_LOG_SETTINGS_H

#include <climits>
#include <cstddef>
#include <filesystem>

namespace LogHelper {

struct LogSettings {
    static constexpr int kEveryLevel = INT_MIN;
    static constexpr int kNoLevel = INT_MAX;

    std::filesystem::path file;
    int leastLevel = kEveryLevel;
    std::size_t maxBytes = std::size_t{10} * 1024 * 1024;
    std::size_t files = 5;
};

LogSettings ReadLogSettings();

}  // namespace LogHelper

#endif  // COMPANION_LOGHELPER_LOG_SETTINGS_H
