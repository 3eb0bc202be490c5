// LogStream: the wide stream in which a line is handed to the logger.
//
// Making a stream costs several times as much as writing a line, so one is kept for all
// lines. A line that finds it in use, by another thread or by a logger that logs, makes
// one of its own: nobody ever waits, also not for a thread that has ended in the middle
// of a line. One object, one thread, one line.

#ifndef PLENXSDK_COMMON_LOG_STREAM_H
#define PLENXSDK_COMMON_LOG_STREAM_H

#include <cstddef>
#include <optional>
#include <sstream>

namespace DistributedFs {

class LogStream {
public:
    /// Lines up to this many characters use the kept stream; it never holds room for more.
    static constexpr std::size_t kMostKept = 512;

    /// length: of the line, at most.
    explicit LogStream(std::size_t length);
    ~LogStream();
    LogStream(const LogStream&) = delete;
    LogStream& operator=(const LogStream&) = delete;

    /// Empty until it is written to; prints in the classic locale.
    std::wostringstream& Get() noexcept { return *stream_; }

    /// Makes the kept stream. What logs in its destructor calls this in its constructor, so
    /// that the stream outlives it.
    static void Keep();

private:
    std::optional<std::wostringstream> own_;
    std::wostringstream* stream_;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_COMMON_LOG_STREAM_H
