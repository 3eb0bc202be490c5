// Measures LogInfo. To a file it goes through the stand-in logger.

#include <memory>

#include "common/log.h"
#include "harness/bench_logger.h"
#include "log/file_logger.h"
#include "log/log_line.h"

namespace bench {
namespace {

std::string* recorded = nullptr;

void Record(LOG_MESSAGE_LEVEL, const std::wostringstream& stream) {
    const std::wstring line = stream.str();
    recorded->assign(line.begin(), line.end());
}

std::unique_ptr<FileLogger> file;

void WriteToFile(LOG_MESSAGE_LEVEL level, const std::wostringstream& stream) {
    file->Write(level, stream);
}

class Ours {
public:
    explicit Ours(const Destination& there) {
        if (there.text != nullptr) {
            recorded = there.text;
            SetLogSink(Record);
        } else if (!there.file.empty()) {
            file = std::make_unique<FileLogger>(there.file.string());
            SetLogSink(WriteToFile);
        }
    }
    ~Ours() {
        SetLogSink(nullptr);
        file.reset();
    }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;

    void Line(const LineValues& values) {
        DistributedFs::LogInfo(kLineFunction, "[PLENXSDK] Invalid Args offset:", values.offset,
                               " rpcReqArgSize:", values.argumentSize,
                               " rpcMsgSize_:", values.messageSize, " argLen:", values.length);
    }
};

[[maybe_unused]] const int kRegistered = RegisterLogger<Ours>("ours");

}  // namespace
}  // namespace bench
