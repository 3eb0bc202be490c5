#include "companion/recorded_log.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include "platform/fake_scope.h"

namespace {

bool IsHighHalf(std::uint32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowHalf(std::uint32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendUtf8(std::string& out, std::uint32_t point) {
    if (point < 0x80) {
        out += static_cast<char>(point);
    } else if (point < 0x800) {
        out += static_cast<char>(0xC0 | (point >> 6));
        out += static_cast<char>(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        out += static_cast<char>(0xE0 | (point >> 12));
        out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (point & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (point >> 18));
        out += static_cast<char>(0x80 | ((point >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (point & 0x3F));
    }
}

std::string TextOf(const RecordedLine& line) {
    return "L" + std::to_string(line.level) + " " + NarrowForTest(line.text);
}

}  // namespace

std::string NarrowForTest(const std::wstring& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto unit = static_cast<std::uint32_t>(text[i]);
        if (IsHighHalf(unit) && i + 1 < text.size() &&
            IsLowHalf(static_cast<std::uint32_t>(text[i + 1]))) {
            const auto low = static_cast<std::uint32_t>(text[++i]);
            AppendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00));
        } else if (IsHighHalf(unit) || IsLowHalf(unit)) {
            char half[8];
            std::snprintf(half, sizeof(half), "{%04X}", static_cast<unsigned>(unit & 0xFFFF));
            out += half;
        } else {
            AppendUtf8(out, unit);
        }
    }
    return out;
}

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
    RecordedLog::Get().Take(level, stream.str());
}
