#include "companion/recorded_log.h"

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <utility>

#include "platform/call_text.h"
#include "platform/fake_scope.h"

namespace {

std::string TextOf(const RecordedLine& line) {
    return "L" + std::to_string(line.level) + " " + Narrow(line.text);
}

}  // namespace

RecordedLog& RecordedLog::Get() {
    static RecordedLog* const log = new RecordedLog;
    return *log;
}

std::vector<RecordedLine> RecordedLog::Lines() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return lines_;
}

std::vector<std::string> RecordedLog::Texts() const {
    std::vector<std::string> texts;
    for (const RecordedLine& line : Lines()) {
        texts.push_back(TextOf(line));
    }
    return texts;
}

void RecordedLog::Clear() {
    const std::lock_guard<std::mutex> lock(mutex_);
    lines_.clear();
}

bool RecordedLog::WaitFor(const std::string& line, std::chrono::milliseconds timeout,
                          std::size_t times) const {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, timeout, [&] {
        const auto count =
            std::count_if(lines_.begin(), lines_.end(),
                          [&](const RecordedLine& each) { return TextOf(each) == line; });
        return static_cast<std::size_t>(count) >= times;
    });
}

void RecordedLog::SetMissing(bool missing) {
    const std::lock_guard<std::mutex> lock(mutex_);
    missing_ = missing;
}

void RecordedLog::SetUnmakeable(bool unmakeable) {
    const std::lock_guard<std::mutex> lock(mutex_);
    unmakeable_ = unmakeable;
}

void RecordedLog::SetHook(Hook hook) {
    const std::lock_guard<std::mutex> lock(mutex_);
    hook_ = std::move(hook);
}

void RecordedLog::SetThrowing(bool throwing) {
    const std::lock_guard<std::mutex> lock(mutex_);
    throwing_ = throwing;
}

void RecordedLog::SetWatcher(std::function<void(const std::wostringstream&)> watcher) {
    const std::lock_guard<std::mutex> lock(mutex_);
    watcher_ = std::move(watcher);
}

void RecordedLog::Watch(const std::wostringstream& stream) const {
    std::unique_lock<std::mutex> lock(mutex_);
    const auto watcher = watcher_;
    lock.unlock();  // a watcher may log itself
    if (watcher) {
        watcher(stream);
    }
}

std::size_t RecordedLog::Requests() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return requests_;
}

bool RecordedLog::IsMissing() {
    const std::lock_guard<std::mutex> lock(mutex_);
    ++requests_;
    if (unmakeable_) {
        throw std::runtime_error("the logger cannot be made");
    }
    return missing_;
}

void RecordedLog::Take(int level, const std::wstring& text) {
    Hook hook;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (throwing_) {
            throw std::runtime_error("the logger fails");
        }
        lines_.push_back({level, text});
        hook = hook_;
    }
    changed_.notify_all();
    if (hook) {
        hook(TextOf({level, text}));
    }
    errno = EBADF;  // a real logger writes files and may leave any value
}

OvLogger* OvLogger::GetInstance() {
    static OvLogger logger;
    return RecordedLog::Get().IsMissing() ? nullptr : &logger;
}

void OvLogger::Log(LOG_MESSAGE_LEVEL level, const std::wostringstream& stream) {
    const FakeScope inside;
    RecordedLog::Get().Watch(stream);
    RecordedLog::Get().Take(level, stream.str());
}
