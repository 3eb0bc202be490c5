#include "harness/bench_logger.h"

namespace bench {
namespace {

LogSink currentSink = nullptr;

}  // namespace

void SetLogSink(LogSink sink) {
    currentSink = sink;
}

}  // namespace bench

OvLogger* OvLogger::GetInstance() {
    static OvLogger logger;
    return &logger;
}

void OvLogger::Log(LOG_MESSAGE_LEVEL level, const std::wostringstream& stream) {
    if (bench::currentSink != nullptr) {
        bench::currentSink(level, stream);
    }
}
