// Rows 3 and 4: one line of the library's own, with the same four values, by every logger:
//
//     [PLENXSDK] Invalid Args offset:48 rpcReqArgSize:4096 rpcMsgSize_:4168 argLen:4097(function)
//
// A contender is a class that is made with a destination and has Line(values). In row 3 its
// lines are composed and then discarded. In row 4 they go to a file, after the time to the
// millisecond, the level and the thread, and each is handed to the system at once. Whatever a
// logger lets its user leave out in row 3 (prefix, lock, filter) is left out.

#ifndef PLENXSDK_BENCH_LOG_LOG_LINE_H
#define PLENXSDK_BENCH_LOG_LOG_LINE_H

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "harness/measure.h"

namespace bench {

struct LineValues {
    std::uint32_t offset = 48;
    std::uint32_t argumentSize = 4096;
    std::int32_t messageSize = 4168;
    std::int32_t length = 4097;
};

constexpr char kLineFunction[] = "DistributedFs::RpcMessageReader::ReadInt8Array";
constexpr char kLineText[] =
    "[PLENXSDK] Invalid Args offset:48 rpcReqArgSize:4096 rpcMsgSize_:4168 argLen:4097"
    "(DistributedFs::RpcMessageReader::ReadInt8Array)";

/// Says where lines go: into *text, to a file, or, if neither is set, nowhere.
struct Destination {
    std::string* text = nullptr;
    std::filesystem::path file;
};

/// A file of this run in the current folder. It is removed in the end, together with the files that
/// it was rotated to.
class LogFolder {
public:
    LogFolder() : folder_("bench-log") { std::filesystem::create_directories(folder_); }
    ~LogFolder() { std::filesystem::remove_all(folder_); }
    LogFolder(const LogFolder&) = delete;
    LogFolder& operator=(const LogFolder&) = delete;

    std::filesystem::path File() const { return folder_ / "lines.log"; }
    bool HoldsLine() const {
        std::ifstream file(File());
        const std::string content{std::istreambuf_iterator<char>(file), {}};
        return content.find(kLineText) != std::string::npos;
    }

private:
    std::filesystem::path folder_;
};

/// Hides the values from the compiler, so that it cannot work the line out beforehand.
inline LineValues Values() {
    LineValues values;
    benchmark::DoNotOptimize(values);
    return values;
}

template <class Logger>
void LogToNowhere(benchmark::State& state) {
    std::string text;
    {
        Destination there;
        there.text = &text;
        Logger logger(there);
        logger.Line(Values());
    }
    if (text != kLineText) {
        state.SkipWithError(("the line is: " + text).c_str());
        return;
    }
    Logger logger(Destination{});
    Measure(state, [&] { logger.Line(Values()); });
}

template <class Logger>
void LogToFile(benchmark::State& state) {
    const LogFolder folder;
    Destination there;
    there.file = folder.File();
    Logger logger(there);
    logger.Line(Values());
    if (!folder.HoldsLine()) {
        state.SkipWithError("the line is not in the file");
        return;
    }
    Measure(state, [&] { logger.Line(Values()); });
}

template <class Logger>
int RegisterLogger(const std::string& contender) {
    benchmark::RegisterBenchmark(("3 log line/" + contender).c_str(), LogToNowhere<Logger>);
    benchmark::RegisterBenchmark(("4 log line to file/" + contender).c_str(), LogToFile<Logger>);
    return 0;
}

}  // namespace bench

#endif  // PLENXSDK_BENCH_LOG_LOG_LINE_H
