// The library's lines go to this logger. It discards them as long as no sink is set.

#ifndef PLENXSDK_BENCH_HARNESS_BENCH_LOGGER_H
#define PLENXSDK_BENCH_HARNESS_BENCH_LOGGER_H

#include <string>

#include "log_helper.h"

namespace bench {

using LogSink = void (*)(LOG_MESSAGE_LEVEL level, const std::wostringstream& stream);

/// null: lines are discarded. Do not call it while anybody logs.
void SetLogSink(LogSink sink);

}  // namespace bench

#endif  // PLENXSDK_BENCH_HARNESS_BENCH_LOGGER_H
