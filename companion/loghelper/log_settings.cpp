#include "loghelper/log_settings.h"

#include <charconv>
#include <optional>
#include <string>
#include <system_error>

#include "common/process.h"
#include "log_helper.h"

namespace LogHelper {
namespace {

constexpr std::size_t kMostFiles = 1000;

template <class Number>
std::optional<Number> ParseNumber(const std::string& text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end) {
        return std::nullopt;
    }
    return number;
}

std::filesystem::path DefaultFile() {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    return folder / ("plenxsdk-" + std::to_string(Companion::ProcessId()) + ".log");
}

int ParseLevel(const std::string& text) {
    if (text == "info") {
        return LOG_MESSAGE_LEVEL_INFO;
    }
    if (text == "error") {
        return LOG_MESSAGE_LEVEL_ERROR;
    }
    if (text == "off") {
        return LogSettings::kNoLevel;
    }
    return ParseNumber<int>(text).value_or(LogSettings::kEveryLevel);
}

}  // namespace

LogSettings ReadLogSettings() {
    LogSettings settings;
    settings.file = Companion::PathVariable("PLENX_LOG_FILE");
    if (settings.file.empty()) {
        settings.file = DefaultFile();
    }
    settings.leastLevel = ParseLevel(Companion::TextVariable("PLENX_LOG_LEVEL"));
    const auto maxBytes = ParseNumber<std::size_t>(Companion::TextVariable("PLENX_LOG_MAX_BYTES"));
    if (maxBytes && *maxBytes != 0) {
        settings.maxBytes = *maxBytes;
    }
    const auto files = ParseNumber<std::size_t>(Companion::TextVariable("PLENX_LOG_FILES"));
    if (files && *files != 0 && *files <= kMostFiles) {
        settings.files = *files;
    }
    return settings;
}

}  // namespace LogHelper
