// All reports go here: one writer for all threads writes each report whole and flushes it.

#ifndef PLENXKIT_HOST_OUTPUT_H
#define PLENXKIT_HOST_OUTPUT_H

#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>

#include "host/line_format.h"

namespace PlenxHost {

/// The part of a console below the reports, which makes room for each. The output calls it with
/// its lock held.
class Footer {
public:
    virtual ~Footer() = default;
    virtual void Saw(const CommandReport& report) = 0;
    virtual void Saw(const NotificationReport& report) = 0;
    virtual void Hide() = 0;
    virtual void Show() = 0;
};

class Output {
public:
    /// The file belongs to the caller. The seconds in reports count from this moment.
    Output(std::FILE* file, std::unique_ptr<LineFormat> format)
        : file_(file), format_(std::move(format)) {}
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    template <class Report>
    void Write(const Report& report) {
        const std::lock_guard<std::mutex> lock(mutex_);
        const std::string lines = format_->Format(Now(), report);
        if (footer_ == nullptr) {
            Print(lines);
            return;
        }
        if constexpr (std::is_same_v<Report, CommandReport> ||
                      std::is_same_v<Report, NotificationReport>) {
            footer_->Saw(report);
        }
        footer_->Hide();
        Print(lines);
        footer_->Show();
    }

    /// Null removes the footer.
    void Attach(Footer* footer) {
        const std::lock_guard<std::mutex> lock(mutex_);
        footer_ = footer;
    }

    /// Runs the action while nothing is printed.
    template <class Action>
    void Exclusively(Action action) {
        const std::lock_guard<std::mutex> lock(mutex_);
        action();
    }

private:
    Stamp Now() const;
    void Print(const std::string& lines);

    std::mutex mutex_;
    Footer* footer_ = nullptr;
    std::FILE* const file_;
    const std::unique_ptr<LineFormat> format_;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_OUTPUT_H
