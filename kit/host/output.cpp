#include "host/output.h"

#include "host/platform.h"

namespace PlenxHost {

Stamp Output::Now() const {
    using std::chrono::milliseconds;
    const auto elapsed = std::chrono::steady_clock::now() - start_;
    return {std::chrono::system_clock::now(), std::chrono::duration_cast<milliseconds>(elapsed),
            CurrentThreadNumber()};
}

void Output::Print(const std::string& lines) {
    std::fwrite(lines.data(), 1, lines.size(), file_);
    std::fputc('\n', file_);
    std::fflush(file_);
}

}  // namespace PlenxHost
