#include "loghelper/log_file.h"

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/rotating_file_sink.h>

#include <cstdio>

namespace LogHelper {
namespace {

// A failed attempt to open the file blocks for up to 50 ms, so not every line tries again.
constexpr std::chrono::seconds kOpenAgainAfter{5};

// A line that fits the buffer reaches the file in one write. If the process ends in the middle of
// that write, the file contains the whole line or nothing of it.
constexpr std::size_t kBufferBytes = std::size_t{64} * 1024;

std::unique_ptr<spdlog::formatter> MakeFormatter() {
    return std::make_unique<spdlog::pattern_formatter>("%Y-%m-%d %H:%M:%S.%e %v",
                                                       spdlog::pattern_time_type::local, "\n");
}

// The text contains the level, so the sink's own level does not matter.
spdlog::details::log_msg Message(std::string_view text) {
    return {spdlog::string_view_t(), spdlog::level::info,
            spdlog::string_view_t(text.data(), text.size())};
}

std::unique_ptr<spdlog::sinks::sink> OpenSink(const LogSettings& settings) {
    spdlog::file_event_handlers handlers;
    handlers.after_open = [](const spdlog::filename_t&, std::FILE* file) {
        std::setvbuf(file, nullptr, _IOFBF, kBufferBytes);
    };
    auto sink = std::make_unique<spdlog::sinks::rotating_file_sink_st>(
        settings.file.native(), settings.maxBytes, settings.files - 1, false, handlers);
    sink->set_formatter(MakeFormatter());
    return sink;
}

}  // namespace

LogFile::LogFile(const LogSettings& settings) : settings_(settings) {}

LogFile::~LogFile() = default;

void LogFile::Write(std::string_view text) noexcept {
    // A failed rotation leaves the sink without a usable file, so the line opens it again.
    for (int attempt = 0; attempt != 2 && EnsureOpen(); ++attempt) {
        if (TryWrite(text)) {
            return;
        }
        sink_.reset();
    }
}

bool LogFile::EnsureOpen() noexcept {
    if (sink_ != nullptr) {
        return true;
    }
    if (std::chrono::steady_clock::now() < nextOpen_) {
        return false;
    }
    try {
        sink_ = OpenSink(settings_);
        return true;
    } catch (...) {
        nextOpen_ = std::chrono::steady_clock::now() + kOpenAgainAfter;
        return false;
    }
}

bool LogFile::TryWrite(std::string_view text) noexcept {
    try {
        sink_->log(Message(text));
        sink_->flush();
        return true;
    } catch (...) {
        return false;
    }
}

std::string FormatLine(std::string_view text) {
    spdlog::memory_buf_t line;
    MakeFormatter()->format(Message(text), line);
    return std::string(line.data(), line.size());
}

}  // namespace LogHelper
