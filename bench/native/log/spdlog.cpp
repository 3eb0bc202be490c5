// spdlog and, for scale, the fmt that it formats with. Nothing that logs from one thread alone
// takes a lock; the file's sink does, as the stand-in logger's does.

#include <spdlog/sinks/null_sink.h>
#include <spdlog/sinks/ostream_sink.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/spdlog.h>

#include <fmt/chrono.h>
#include <fmt/compile.h>

#include <cstdio>
#include <ctime>
#include <memory>
#include <sstream>

#include "log/log_line.h"

namespace bench {
namespace {

class Spdlog {
public:
    explicit Spdlog(const Destination& there) : text_(there.text), logger_("bench", Sink(there)) {
        if (there.file.empty()) {
            logger_.set_pattern("%v");
        } else {
            logger_.set_pattern("%Y-%m-%d %H:%M:%S.%e [%l] [%t] %v");
            logger_.flush_on(spdlog::level::info);
        }
    }
    ~Spdlog() {
        if (text_ != nullptr) {
            *text_ = stream_.str();
            text_->pop_back();  // the end of the line
        }
    }
    Spdlog(const Spdlog&) = delete;
    Spdlog& operator=(const Spdlog&) = delete;

    void Line(const LineValues& values) {
        logger_.info(
            "[PLENXSDK] Invalid Args offset:{} rpcReqArgSize:{} rpcMsgSize_:{} argLen:{}"
            "({})",
            values.offset, values.argumentSize, values.messageSize, values.length, kLineFunction);
    }

private:
    spdlog::sink_ptr Sink(const Destination& there) {
        if (!there.file.empty()) {  // the sizes of the stand-in
            return std::make_shared<spdlog::sinks::rotating_file_sink_mt>(there.file.string(),
                                                                          10 * 1024 * 1024, 4);
        }
        if (there.text != nullptr) {
            return std::make_shared<spdlog::sinks::ostream_sink_st>(stream_);
        }
        return std::make_shared<spdlog::sinks::null_sink_st>();
    }

    std::string* text_;
    std::ostringstream stream_;
    spdlog::logger logger_;
};

// The format is compiled into code. No logger: no level, no filter, no sinks.
class Fmt {
public:
    explicit Fmt(const Destination& there) : text_(there.text) {
        if (!there.file.empty()) {
            file_ = std::fopen(there.file.c_str(), "w");
        }
    }
    ~Fmt() {
        if (file_ != nullptr) {
            std::fclose(file_);
        }
    }
    Fmt(const Fmt&) = delete;
    Fmt& operator=(const Fmt&) = delete;

    void Line(const LineValues& values) {
        fmt::memory_buffer line;
        if (file_ != nullptr) {
            timespec now{};
            clock_gettime(CLOCK_REALTIME, &now);
            fmt::format_to(std::back_inserter(line), FMT_COMPILE("{:%Y-%m-%d %H:%M:%S}.{:03} "),
                           fmt::localtime(now.tv_sec), now.tv_nsec / 1000000);
            fmt::format_to(std::back_inserter(line), FMT_COMPILE("[info] [{}] "),
                           spdlog::details::os::thread_id());
        }
        fmt::format_to(std::back_inserter(line),
                       FMT_COMPILE("[PLENXSDK] Invalid Args offset:{} rpcReqArgSize:{} "
                                   "rpcMsgSize_:{} argLen:{}({})"),
                       values.offset, values.argumentSize, values.messageSize, values.length,
                       kLineFunction);
        Take(line);
    }

private:
    __attribute__((noinline)) void Take(fmt::memory_buffer& line) {
        Escape(line.data());
        if (file_ != nullptr) {
            line.push_back('\n');
            std::fwrite(line.data(), 1, line.size(), file_);
            std::fflush(file_);
        } else if (text_ != nullptr) {
            text_->assign(line.data(), line.size());
        }
    }

    std::string* text_;
    std::FILE* file_ = nullptr;
};

[[maybe_unused]] const int registered =
    RegisterLogger<Spdlog>("spdlog") + RegisterLogger<Fmt>("(fmt)");

}  // namespace
}  // namespace bench
