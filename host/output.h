// Where all reports go: one writer for all threads, each report written whole and flushed.

#ifndef PLENXHOST_OUTPUT_H
#define PLENXHOST_OUTPUT_H

#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>

#include "line_format.h"

namespace PlenxHost {

class Output {
public:
    /// The file belongs to the caller. Time counts from here.
    Output(std::FILE* file, std::unique_ptr<LineFormat> format)
        : file_(file), format_(std::move(format)) {}
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    template <class Report>
    void Write(const Report& report) {
        const std::lock_guard<std::mutex> lock(mutex_);
        Print(format_->Format(Now(), report));
    }

private:
    Stamp Now() const;
    void Print(const std::string& lines);

    std::mutex mutex_;
    std::FILE* const file_;
    const std::unique_ptr<LineFormat> format_;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace PlenxHost

#endif  // PLENXHOST_OUTPUT_H
