// An Output whose lines a test can read.

#ifndef TESTS_UNIT_HOST_CAPTURED_OUTPUT_H
#define TESTS_UNIT_HOST_CAPTURED_OUTPUT_H

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "host/output.h"

namespace PlenxHost {

class CapturedOutput {
public:
    explicit CapturedOutput(std::unique_ptr<LineFormat> format)
        : file_(std::tmpfile()), output_(file_, std::move(format)) {}
    ~CapturedOutput() { std::fclose(file_); }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    Output& Get() { return output_; }

    std::vector<std::string> Lines() {
        std::vector<std::string> lines;
        static_cast<void>(std::fseek(file_, 0, SEEK_SET));
        std::string line;
        for (int byte = std::getc(file_); byte != EOF; byte = std::getc(file_)) {
            if (byte == '\n') {
                lines.push_back(std::exchange(line, ""));
            } else {
                line.push_back(static_cast<char>(byte));
            }
        }
        static_cast<void>(std::fseek(file_, 0, SEEK_END));
        return lines;
    }

private:
    std::FILE* file_;
    Output output_;
};

}  // namespace PlenxHost

#endif  // TESTS_UNIT_HOST_CAPTURED_OUTPUT_H
