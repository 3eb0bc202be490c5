// The stand-in logger's file is a library of its own, as it is on Windows. It is built with
// spdlog's headers in another configuration than the peer, so the two must not share symbols.

#ifndef PLENXSDK_BENCH_LOG_FILE_LOGGER_H
#define PLENXSDK_BENCH_LOG_FILE_LOGGER_H

#include <memory>
#include <string>

#include "log_helper.h"

namespace bench {

class LOGHELPER_API FileLogger {
public:
    explicit FileLogger(const std::string& file);
    ~FileLogger();
    FileLogger(const FileLogger&) = delete;
    FileLogger& operator=(const FileLogger&) = delete;

    void Write(LOG_MESSAGE_LEVEL level, const std::wostringstream& stream);

private:
    struct State;
    const std::unique_ptr<State> state_;
};

}  // namespace bench

#endif  // PLENXSDK_BENCH_LOG_FILE_LOGGER_H
