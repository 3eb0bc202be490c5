#include "service_log.h"

#include <windows.h>

#include <cstdio>
#include <utility>

#include "support/handle.h"

namespace PlenxService {
namespace {

std::string LocalTime() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d", now.wYear, now.wMonth,
                  now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
    return text;
}

// Appends with a single write, so that lines of several processes do not mix.
void Append(const std::wstring& path, const std::string& line) {
    const PlenxSupport::Handle file(CreateFileW(
        path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file) {
        DWORD written = 0;
        WriteFile(file.Get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    }
}

}  // namespace

ServiceLog::ServiceLog(std::string nickname, const std::wstring& dataFolder, bool toConsole)
    : nickname_(std::move(nickname)), file_(dataFolder + L"\\service.log"), toConsole_(toConsole) {}

void ServiceLog::Write(std::string_view text) noexcept try {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::string line = LocalTime() + " " + nickname_ + " ";
    line.append(text).append("\n");
    if (!file_.empty()) {
        Append(file_, line);
    }
    if (!secondFile_.empty()) {
        Append(secondFile_, line);
    }
    if (toConsole_) {
        std::fwrite(line.data(), 1, line.size(), stdout);
        std::fflush(stdout);
    }
} catch (...) {
    // A line that cannot be built is lost, and the service goes on.
}

void ServiceLog::SetSecondFile(std::wstring path) {
    const std::lock_guard<std::mutex> lock(mutex_);
    secondFile_ = std::move(path);
}

void ServiceLog::LeaveDataFolder() {
    const std::lock_guard<std::mutex> lock(mutex_);
    file_.clear();
}

}  // namespace PlenxService
