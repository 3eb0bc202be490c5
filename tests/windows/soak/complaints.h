// Collects what went wrong. Any thread may complain. It keeps only the first few complaints.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_COMPLAINTS_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_COMPLAINTS_H

#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

namespace PlenxSoak {

class Complaints {
public:
    void Add(const std::string& text) {
        constexpr std::size_t kMost = 20;
        const std::lock_guard<std::mutex> lock(mutex_);
        if (texts_.size() < kMost) {
            texts_.push_back(text);
        }
    }
    std::vector<std::string> All() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return texts_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> texts_;
};

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_COMPLAINTS_H
