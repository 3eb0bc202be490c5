#include "log/file_logger.h"

#include <mutex>

#include "common/process.h"
#include "loghelper/log_file.h"
#include "loghelper/log_settings.h"
#include "loghelper/log_text.h"

namespace bench {
namespace {

LogHelper::LogSettings SettingsFor(const std::string& file) {
    LogHelper::LogSettings settings;
    settings.file = file;
    return settings;
}

}  // namespace

struct FileLogger::State {
    explicit State(const std::string& path) : file(SettingsFor(path)) {}

    std::mutex mutex;
    LogHelper::LogFile file;
};

FileLogger::FileLogger(const std::string& file) : state_(std::make_unique<State>(file)) {}

FileLogger::~FileLogger() = default;

// Does with a line what OvLogger of the stand-in does, whose own source knows only Windows.
void FileLogger::Write(LOG_MESSAGE_LEVEL level, const std::wostringstream& stream) {
    const std::string text = LogHelper::LogText(level, Companion::ThreadId(), stream.str());
    const std::lock_guard<std::mutex> guard(state_->mutex);
    state_->file.Write(text);
}

}  // namespace bench
