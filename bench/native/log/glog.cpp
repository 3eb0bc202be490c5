// glog, without its prefix where it only discards; in the file the prefix is its own.

#include <glog/logging.h>

#include "log/log_line.h"

namespace bench {
namespace {

class TakingSink : public google::LogSink {
public:
    explicit TakingSink(std::string* text) : text_(text) {}

    void send(google::LogSeverity, const char*, const char*, int, const google::LogMessageTime&,
              const char* message, std::size_t size) override {
        if (text_ != nullptr) {
            text_->assign(message, size);
        }
    }

private:
    std::string* text_;
};

class Glog {
public:
    explicit Glog(const Destination& there) : sink_(there.text), toFile_(!there.file.empty()) {
        static const bool initialised = [] {
            google::InitGoogleLogging("bench");
            FLAGS_stderrthreshold = google::NUM_SEVERITIES;
            FLAGS_timestamp_in_logfile_name = false;
            FLAGS_logbuflevel = -1;  // each line is flushed
            for (int severity = 0; severity != google::NUM_SEVERITIES; ++severity) {
                google::SetLogSymlink(severity, "");
            }
            return true;
        }();
        benchmark::DoNotOptimize(initialised);
        FLAGS_log_prefix = toFile_;
        google::SetLogDestination(google::GLOG_INFO, there.file.c_str());
    }
    ~Glog() { google::SetLogDestination(google::GLOG_INFO, ""); }
    Glog(const Glog&) = delete;
    Glog& operator=(const Glog&) = delete;

    void Line(const LineValues& values) {
        if (toFile_) {
            Compose(LOG(INFO), values);
        } else {
            Compose(LOG_TO_SINK_BUT_NOT_TO_LOGFILE(&sink_, INFO), values);
        }
    }

private:
    static void Compose(std::ostream& stream, const LineValues& values) {
        stream << "[PLENXSDK] Invalid Args offset:" << values.offset
               << " rpcReqArgSize:" << values.argumentSize << " rpcMsgSize_:" << values.messageSize
               << " argLen:" << values.length << "(" << kLineFunction << ")";
    }

    TakingSink sink_;
    const bool toFile_;
};

[[maybe_unused]] const int registered = RegisterLogger<Glog>("glog");

}  // namespace
}  // namespace bench
