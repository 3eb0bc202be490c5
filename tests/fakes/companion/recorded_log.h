// RecordedLog stands in for LogHelper.dll and keeps every line that the product logs.
//
// It is thread-safe. It lives until the process ends, so it still takes lines that are written
// at the very end.

#ifndef FAKES_COMPANION_RECORDED_LOG_H
#define FAKES_COMPANION_RECORDED_LOG_H

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

#include "log_helper.h"

struct RecordedLine {
    int level;
    std::wstring text;
};

class RecordedLog {
public:
    static RecordedLog& Get();

    std::vector<RecordedLine> Lines() const;
    /// Gives each line as "L3 text" or "L4 text" in UTF-8. An unpaired surrogate, which has no
    /// UTF-8, shows as "{D800}".
    std::vector<std::string> Texts() const;
    void Clear();
    /// Returns how often the product asked for the logger.
    std::size_t Requests() const;

    /// Waits until the log contains the line `times` times; the line has the form that Texts gives.
    /// @return false when the time is up before that.
    bool WaitFor(const std::string& line,
                 std::chrono::milliseconds timeout = std::chrono::seconds(20),
                 std::size_t times = 1) const;

    /// Removes the logger, or brings it back.
    void SetMissing(bool missing);
    /// Makes the request for the logger throw, or succeed again.
    void SetUnmakeable(bool unmakeable);
    /// The hook runs on the thread that has written a line, once the log has the line.
    using Hook = std::function<void(const std::string& line)>;
    void SetHook(Hook hook);
    /// Makes Log throw instead of taking the line, or take lines again.
    void SetThrowing(bool throwing);
    /// From now on Log calls this with the stream of a line before it takes the line.
    void SetWatcher(std::function<void(const std::wostringstream&)> watcher);

    // For the fake logger.
    /// Counts a request for the logger.
    /// @throws std::runtime_error after SetUnmakeable(true).
    bool IsMissing();
    void Watch(const std::wostringstream& stream) const;
    void Take(int level, const std::wstring& text);

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<RecordedLine> lines_;
    bool missing_ = false;
    bool unmakeable_ = false;
    std::size_t requests_ = 0;
    bool throwing_ = false;
    Hook hook_;
    std::function<void(const std::wostringstream&)> watcher_;
};

#endif  // FAKES_COMPANION_RECORDED_LOG_H
