// The rotating log file. A line is the local time, a blank and the text:
//
//     2026-01-31 12:34:56.789 [info] [1234] text
//
// Lines end with LF. When the file would grow beyond its size, name.log becomes name.1.log,
// name.1.log becomes name.2.log and so on, and a new name.log begins.
//
// The class is not thread-safe: its owner must lock.

#ifndef COMPANION_LOGHELPER_LOG_FILE_H
#define COMPANION_LOGHELPER_LOG_FILE_H

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "loghelper/log_settings.h"

namespace spdlog::sinks {
class sink;
}

namespace LogHelper {

class LogFile {
public:
    /// The first line opens the file.
    explicit LogFile(const LogSettings& settings);
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    /// Writes one line and hands it to the system. Drops a line that it cannot write. If it cannot
    /// open the file, it tries again after a few seconds.
    void Write(std::string_view text) noexcept;

private:
    bool EnsureOpen() noexcept;
    bool TryWrite(std::string_view text) noexcept;

    const LogSettings settings_;
    std::unique_ptr<spdlog::sinks::sink> sink_;
    std::chrono::steady_clock::time_point nextOpen_{};
};

/// The line as Write would write it, for a caller that writes it itself.
std::string FormatLine(std::string_view text);

}  // namespace LogHelper

#endif  // COMPANION_LOGHELPER_LOG_FILE_H
