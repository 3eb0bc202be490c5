// A LogStream is the wide stream in which a line goes to the logger.
//
// Making a stream takes several times as long as writing a line, so one stream is kept for all
// lines. A line that finds it in use, by another thread or by a logger that logs, makes one of its
// own. So nobody ever waits, not even for a thread that has ended in the middle of a line. Use an
// object on one thread and for one line only.

#ifndef PLENXSDK_COMMON_LOG_STREAM_H
#define PLENXSDK_COMMON_LOG_STREAM_H

#include <cstddef>
#include <optional>
#include <sstream>

namespace DistributedFs {

class LogStream {
public:
    /// Lines of up to this many characters use the kept stream, which never keeps room for more.
    static constexpr std::size_t kMostKept = 512;

    /// The line must not be longer than length.
    explicit LogStream(std::size_t length);
    ~LogStream();
    LogStream(const LogStream&) = delete;
    LogStream& operator=(const LogStream&) = delete;

    /// The stream is empty at first and prints in the classic locale.
    std::wostringstream& Get() noexcept { return *stream_; }

    /// Makes the kept stream. An object that logs in its destructor calls this in its constructor,
    /// so that the stream outlives it.
    static void Keep();

private:
    std::optional<std::wostringstream> own_;
    std::wostringstream* stream_;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_COMMON_LOG_STREAM_H
