// OvLogger, which the DLL exports. Nothing here is ever destroyed, because the static destructors
// of other DLLs still log. Nothing is made at load time, because loading runs under the loader
// lock.

#include "log_helper.h"

#include <windows.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "common/process.h"
#include "loghelper/log_file.h"
#include "loghelper/log_settings.h"
#include "loghelper/log_text.h"
#include "support/handle.h"

namespace LogHelper {
namespace {

OvLogger logger;
std::atomic<const LogSettings*> settings{nullptr};
std::mutex mutex;         // guards file
LogFile* file = nullptr;  // made by the first line

// Reads the settings once. It takes no lock, because the end of the process may have made locks
// useless.
const LogSettings& Settings() {
    const LogSettings* known = settings.load(std::memory_order_acquire);
    if (known == nullptr) {
        auto fresh = std::make_unique<const LogSettings>(ReadLogSettings());
        if (settings.compare_exchange_strong(known, fresh.get(), std::memory_order_acq_rel)) {
            known = fresh.release();
        }
    }
    return *known;
}

void WriteToFile(const std::string& text) {
    const std::lock_guard<std::mutex> guard(mutex);
    if (file == nullptr) {
        file = new LogFile(Settings());
    }
    file->Write(text);
}

// Opens the file for this line alone. When the process is ending, the mutex may belong for ever to
// a thread that the system has ended, and the open LogFile may be in any state.
void AppendToFile(const std::string& text) {
    const PlenxSupport::Handle end(
        CreateFileW(Settings().file.c_str(), FILE_APPEND_DATA,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                    FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!end) {
        return;
    }
    const std::string line = FormatLine(text);
    DWORD written = 0;
    WriteFile(end.Get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

void WriteLine(LOG_MESSAGE_LEVEL level, const std::wostringstream& stream) {
    if (level < Settings().leastLevel) {
        return;
    }
    const std::string text = LogText(level, Companion::ThreadId(), stream.str());
    if (Companion::ProcessIsEnding()) {
        AppendToFile(text);
    } else {
        WriteToFile(text);
    }
}

}  // namespace
}  // namespace LogHelper

OvLogger* OvLogger::GetInstance() {
    return &LogHelper::logger;
}

void OvLogger::Log(LOG_MESSAGE_LEVEL level, const std::wostringstream& stream) {
    try {
        LogHelper::WriteLine(level, stream);
    } catch (...) {
        // Logging must never fail its caller.
    }
}
