// Measures spdlog. A logger that only one thread uses takes no lock. The file's sink takes one, as
// the stand-in logger's does.

#include <spdlog/sinks/null_sink.h>
#include <spdlog/sinks/ostream_sink.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/spdlog.h>

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

[[maybe_unused]] const int kRegistered = RegisterLogger<Spdlog>("spdlog");

}  // namespace
}  // namespace bench
