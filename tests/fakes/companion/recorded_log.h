// RecordedLog: what the product has logged, in place of LogHelper.dll.
//
// Thread-safe. Lives until the process ends, so that lines written at the very end of it
// are still taken.

#ifndef FAKES_COMPANION_RECORDED_LOG_H
#define FAKES_COMPANION_RECORDED_LOG_H

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
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
    /// Each line as "L3 text" or "L4 text" in UTF-8. Half a surrogate pair, which has no
    /// UTF-8, shows as "{D800}".
    std::vector<std::string> Texts() const;
    void Clear();
    /// How often the logger was asked for.
    std::size_t Requests() const;

    /// Waits until the line stands in the log, `times` times; line as Texts has it.
    /// @return false when the time is up before that.
    bool WaitFor(const std::string& line,
                 std::chrono::milliseconds timeout = std::chrono::seconds(20),
                 std::size_t times = 1) const;

    /// From now on there is no logger / there is one again.
    void SetMissing(bool missing);
    /// From now on asking for the logger throws / gives it again.
    void SetUnmakeable(bool unmakeable);
    /// Runs on the thread that has written a line, once the line stands in the log.
    using Hook = std::function<void(const std::string& line)>;
    void SetHook(Hook hook);
    /// From now on Log throws instead of taking the line / takes lines again.
    void SetThrowing(bool throwing);

    // For the fake logger.
    /// Somebody asks for the logger.
    /// @throws std::runtime_error when it cannot be made.
    bool IsMissing();
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
};

/// The UTF-8 of UTF-16 units (or of UTF-32) in a wide string.
std::string NarrowForTest(const std::wstring& text);

#endif  // FAKES_COMPANION_RECORDED_LOG_H
